// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The working file of a zip file: ".<name>.<number>.part" beside it, and with a "2" behind while it
// is written anew as a whole. It is locked as long as it is open. Whatever returns false has left
// errno set.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "archive/FileFacts.h"

namespace logbook {

class WorkingFile {
 public:
  // Not open.
  WorkingFile();
  ~WorkingFile();
  WorkingFile(WorkingFile&&) noexcept;
  WorkingFile& operator=(WorkingFile&&) noexcept;

  // Takes away what killed writers have left in the folder of this zip file (native path), and
  // makes a working file for it. Not open on failure, with errno set.
  static WorkingFile MakeFor(const std::string& zip_file);
  // The one for writing this one anew, with its rights; one that a failure has left goes.
  WorkingFile MakeSecond() const;

  bool IsOpen() const;
  // Native path.
  const std::string& Path() const;
  bool Size(std::uint64_t& size) const;
  bool Identity(FileIdentity& identity) const;
  // Number of bytes read, less than asked for only at the end; -1 with errno set.
  std::int64_t ReadAt(char* buffer, std::size_t size, std::uint64_t position) const;
  bool WriteAt(const char* bytes, std::uint64_t size, std::uint64_t position);
  bool Resize(std::uint64_t size);
  bool Sync();
  // Takes the bytes and the rights of another file, if that exists, which `existed` tells.
  bool CopyFrom(const std::string& native_path, bool& existed);

  // Becomes the second file, which gets this one's name.
  bool BecomeSecond(WorkingFile second);
  // Gives it its final name and brings that to the disk; it is closed then.
  bool GiveName(const std::string& zip_file);
  // Closes and deletes it.
  void Remove();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// What stands under the name of a zip file that is to be written; false if nothing does.
enum class ZipTarget { kNothing, kFile, kNoFile, kReadOnly, kRefused };
// `error` is errno's number for a refusal.
ZipTarget LookAtTarget(const std::string& native_path, FileIdentity& identity, int& error);

}  // namespace logbook
