// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The data of the benchmarks: a home with full logs and a logbook.ini that chooses six columns of
// all three categories.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"
#include "state/AppState.h"

namespace logbook::bench {

class LogStore {
 public:
  // The store in this home (a native path); nothing is made yet.
  explicit LogStore(const std::string& home);

  // Makes home, logs and logbook.ini. The files get the time stamps of yesterday, for a store is
  // older than what looks at it. Two logs whose numbers are seven apart have the same values,
  // others differ in each row of their files of numbers.
  void Make(int logs) const;

  // The state of a run over this store, before its first rebuild.
  std::unique_ptr<AppState> NewState() const;

  // Native paths of the files that the rebuild of the list needs: six of each log, by what lies
  // on the disk.
  std::vector<std::string> FilesOfTheList() const;

  // Native path of the folder of a log, counted from 0.
  std::string LogFolder(int log) const;
  // The same as a path text, with a trailing backslash.
  static std::string LogFolderText(int log);

  const Machine& TheMachine() const { return machine_; }
  const Catalogues& TheCatalogues() const { return catalogues_; }

 private:
  void MakeLog(int log) const;
  std::string Macro(const std::string& file) const;

  Machine machine_;
  Catalogues catalogues_;
};

}  // namespace logbook::bench
