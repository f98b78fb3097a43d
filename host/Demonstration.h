// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The demonstration workstation: a home of its own with an instrument, past logs, the programs and
// a content server that is a folder. It is kept between runs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/InstrumentBuild.h"

namespace logbook::host {

// $LOGBOOK_DEMO, else quorex-logbook-demonstration in the user's folder for data.
std::string DefaultDemonstrationFolder();

// A demonstration in a folder of the disk. What is deleted or used bears a mark; a folder without
// it is never touched. All routines raise std::runtime_error with the native path if something
// cannot be read or written.
class Demonstration {
 public:
  explicit Demonstration(const std::string& folder);

  // True if the folder is one. The folder need not exist.
  bool Exists() const;

  // How many logs it keeps; 0 if it does not exist.
  int LogCount() const;

  // Puts right what a run that was cut off between two steps has left. Raises std::runtime_error if
  // this folder, or one that Make needs beside it, holds something that is no demonstration.
  void Mend() const;

  // Makes a new one with past logs and the help book of `manual`. It is made beside the place and
  // takes it when it is complete, so that an older one is there until then, and stays if this
  // fails. Its code page is 1252 where none is named; raises std::invalid_argument for one that
  // there is not.
  void Make(const InstrumentBuild& build, std::optional<int> code_page,
            const std::string& manual) const;

  // Gives it the programs of a folder as they are now, the help book, the language that is set for
  // them unless it has one of its own, and a content server if its settings name none.
  void Equip(const std::string& programs, const std::string& manual) const;

  // Whether its logbook is still tied to ContentServer(); a user may have put an address of his own
  // into the settings.
  bool IsTiedToFolder() const;

  std::string Home() const { return folder_.string(); }
  std::string LogRoot() const { return (Root() / "inst1/maintain").string(); }
  std::string Application() const { return (Root() / "qrxexe").string(); }
  std::string ContentServer() const { return (folder_ / "content-server").string(); }

 private:
  std::filesystem::path Root() const { return folder_ / "drives/c/QUOREX"; }
  std::filesystem::path Beside(const char* ending) const;

  std::filesystem::path folder_;
};

}  // namespace logbook::host
