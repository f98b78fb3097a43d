// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The addition of one folder to an open zip archive.
#pragma once

#include <zip.h>

#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "archive/FileFacts.h"
#include "archive/SourceTree.h"
#include "archive/ZipFailure.h"
#include "archive/ZipStore.h"
#include "base/Machine.h"

namespace logbook {

// With what the zip library says.
[[noreturn]] void FailWithLibrary(zip_error_t* error);

// A file name of the disk as it stands in the archive: UTF-8; a name that is none is read in the
// machine's code page. Control characters and backslashes, which readers take for something else or
// refuse, are underscores.
std::string NameInZip(const Machine& machine, const std::string& disk_name);

class ZipAddition {
 public:
  // `zip_file` is what is not to be packed, beside the store's own file. Raises ZipFailure, as all.
  ZipAddition(const Machine& machine, zip_t* archive, ZipStore& store, FileIdentity zip_file);

  // The folder of this native path under this name, with its entry, its files and, if wanted, its
  // folders. SourceTree tells what is left out.
  void AddFolder(const std::string& native, const std::string& name, bool recurse);

 private:
  void AddFolderAt(const std::string& place, const std::string& name, bool recurse);
  bool IsZipFileItself(const FileFacts& facts) const;
  void AddFolderEntry(const std::string& name, const FileFacts& facts);
  void AddFile(const SourceTree::Child& file, const std::string& name);
  void DropOthers(const std::string& name, zip_uint64_t kept);
  bool SetExactTime(zip_uint64_t index, std::time_t time);
  void Describe(zip_uint64_t index, const FileFacts& facts);

  const Machine& machine_;
  zip_t* archive_;
  ZipStore& store_;
  std::vector<FileIdentity> avoid_;
  std::shared_ptr<const SourceTree> tree_;  // the library reads from it when the archive is closed
};

}  // namespace logbook
