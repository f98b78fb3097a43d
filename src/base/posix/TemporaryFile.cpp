// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/TemporaryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "base/RunTimeError.h"
#include "base/TemporaryName.h"
#include "base/posix/OpenFolder.h"
#include "base/posix/SystemError.h"

namespace logbook::posix {

namespace {

// True if the name is still that of the opened file.
bool IsNameOf(const Descriptor& folder, const std::string& name, const Descriptor& file) {
  struct stat named = {};
  struct stat opened = {};
  return fstatat(folder.Number(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         fstat(file.Number(), &opened) == 0 && named.st_dev == opened.st_dev &&
         named.st_ino == opened.st_ino;
}

void RemoveLeftover(const Descriptor& folder, const std::string& name, bool without_locks) {
  const Descriptor file(openat(folder.Number(), name.c_str(), kOpenForReading | O_NOFOLLOW));
  if (!file.IsOpen()) return;
  const bool locked = flock(file.Number(), LOCK_EX | LOCK_NB) == 0;
  const bool at_work = !locked && (errno == EWOULDBLOCK || !without_locks);
  if (!at_work && IsNameOf(folder, name, file)) unlinkat(folder.Number(), name.c_str(), 0);
}

}  // namespace

TemporaryFile::TemporaryFile(const Descriptor& folder, bool folder_is_locked, mode_t mode)
    : folder_(folder) {
  constexpr int kMostNames = 100;
  const std::string numbered = std::string(kTemporaryName) + std::to_string(getpid());
  if (folder_is_locked && Make(std::string(kTemporaryName), mode, folder_is_locked)) return;
  if (Make(numbered, mode, folder_is_locked)) return;
  for (int i = 1; i < kMostNames; ++i) {
    if (Make(numbered + "-" + std::to_string(i), mode, folder_is_locked)) return;
  }
  throw RunTimeError(ErrorNumber::kDeviceInputOutput);
}

TemporaryFile::~TemporaryFile() {
  if (!name_.empty()) unlinkat(folder_.Number(), name_.c_str(), 0);
}

// False if the name is taken, or another writer has just taken the file for a leftover.
bool TemporaryFile::Make(const std::string& name, mode_t mode, bool folder_is_locked) {
  Descriptor file(openat(folder_.Number(), name.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file.IsOpen() && errno == EEXIST) return false;
  if (!file.IsOpen()) RaiseFolderError(errno);
  const bool locked = flock(file.Number(), LOCK_EX | LOCK_NB) == 0;
  if ((!locked && errno == EWOULDBLOCK) || !IsNameOf(folder_, name, file)) {
    // In a locked folder nobody else has had the time to put another file there: the disk would not
    // be looked at.
    if (folder_is_locked) unlinkat(folder_.Number(), name.c_str(), 0);
    return false;
  }
  file_ = std::move(file);
  name_ = name;
  return true;
}

bool TemporaryFile::Rename(const std::string& name) {
  if (renameat(folder_.Number(), name_.c_str(), folder_.Number(), name.c_str()) != 0) return false;
  name_.clear();
  return true;
}

bool IsTemporaryFile(const Descriptor& folder, const std::string& name) {
  if (!IsTemporaryName(name)) return false;
  struct stat status = {};
  return fstatat(folder.Number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISREG(status.st_mode);
}

std::vector<std::string> NamesIn(const Descriptor& folder) {
  std::vector<std::string> names = AllNamesIn(folder);
  std::erase_if(names, [&folder](const auto& name) { return IsTemporaryFile(folder, name); });
  return names;
}

void RemoveLeftovers(const Descriptor& folder, const std::vector<std::string>& names,
                     bool without_locks) {
  for (const std::string& name : names) {
    if (IsTemporaryFile(folder, name)) RemoveLeftover(folder, name, without_locks);
  }
}

}  // namespace logbook::posix
