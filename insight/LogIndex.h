// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The index of one log root, ready for use: found or made in the user's cache, brought up to date,
// made anew where it is damaged, of an older version or of another root. Nothing below the root is
// ever written. Where the cache cannot be written, the index is made in memory for this use, and
// that is told.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/CodePage.h"
#include "insight/IndexSearch.h"
#include "insight/IndexUpdate.h"

namespace logbook::insight {

// quorex-logbook/insight in the user's folder for caches: where indexes lie unless told otherwise.
// A native path; empty if the environment names no such folder.
std::string DefaultIndexFolder();

// Whether a use of the index looks first at what has changed in the root.
enum class IndexLook {
  kAtFolders,
  kNone  // not if it was brought up to date before, however long ago
};

struct IndexSettings {
  // Native path, made if it is missing; with an empty one the index is kept in memory alone.
  std::string Folder = DefaultIndexFolder();
  ProgressSink Progress = [](const UpdateProgress&) {};
  // No index is kept below them, nor below the root itself; native paths.
  std::vector<std::string> GuardedRoots;
  IndexLook Look = IndexLook::kAtFolders;
  // Is told, as sentences for the user, what went wrong without harm to the result.
  std::function<void(const std::string&)> Warn = [](const std::string&) {};
};

class LogIndex {
 public:
  // The index of the logs below this root (a native path) as read in a code page. Opens nothing
  // yet; the references must outlive the object.
  LogIndex(const CodePage& code_page, const Catalogues& catalogues, const std::string& native_root,
           IndexSettings settings);
  ~LogIndex();
  LogIndex(const LogIndex&) = delete;
  LogIndex& operator=(const LogIndex&) = delete;

  // Brings the index up to date, if that has not been done yet and is wanted, and gives the answer.
  // Raises
  // kPathNotFound if the root cannot be found, kDeviceInputOutput if it cannot be read, and
  // IndexError if there is no room in memory either.
  FindResult Find(const FindRequest& request);

  // The native path of the root as it was opened, with no link in it.
  const std::string& Root() const { return root_; }
  // After Find with IndexLook::kNone: the local time, "YYYY-MM-DD HH:MM:SS", at which the index was
  // last brought up to date; nothing if the folders had to be looked at.
  const std::optional<std::string>& AsOf() const { return as_of_; }
  // The native path of the index file in use; empty for one in memory.
  const std::string& File() const { return file_; }

 private:
  void Open();
  void Prepare();
  // The empty file beside that of the index whose time is that of the last look.
  std::string MarkFile() const;
  void MarkLook() const;
  // Leaves the present file behind and goes on with the next one.
  void Retire();
  void Recover(const IndexError& error);

  const CodePage& code_page_;
  const Catalogues& catalogues_;
  std::string root_;
  IndexSettings settings_;
  std::string file_;
  bool in_memory_ = false;
  std::optional<std::string> as_of_;
  std::unique_ptr<LogRootWalk> walk_;
  std::unique_ptr<IndexStore> store_;
};

}  // namespace logbook::insight
