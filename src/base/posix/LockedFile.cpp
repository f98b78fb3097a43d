// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/LockedFile.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "base/NativeDisk.h"

namespace logbook::posix {

namespace {

bool BeginsWith(const Descriptor& file, std::string_view beginning) {
  std::string bytes(beginning.size(), '\0');
  const ssize_t count = pread(file.Number(), bytes.data(), bytes.size(), 0);
  if (count < 0) return false;
  bytes.resize(static_cast<std::size_t>(count));
  return beginning.starts_with(bytes) ||
         std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

bool IsOurs(const Descriptor& file, struct stat& status) {
  return file.IsOpen() && fstat(file.Number(), &status) == 0 && S_ISREG(status.st_mode) &&
         status.st_uid == geteuid();
}

// Once it is locked and still bears its name, nobody else gives it another.
bool LockUnderItsName(const Descriptor& file, const struct stat& status, const std::string& path) {
  struct stat named = {};
  return flock(file.Number(), LOCK_EX | LOCK_NB) == 0 && lstat(path.c_str(), &named) == 0 &&
         named.st_dev == status.st_dev && named.st_ino == status.st_ino;
}

}  // namespace

Descriptor MakeLockedFile(const std::string& path, mode_t mode) {
  Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (!file.IsOpen()) return file;
  // Somebody who looks for what was left may have been quicker than the lock.
  const bool is_locked = flock(file.Number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
  struct stat status = {};
  if (is_locked && fstat(file.Number(), &status) == 0 && status.st_nlink > 0) return file;
  file.Close();
  errno = EEXIST;
  return file;
}

void RemoveLeftFiles(const std::string& folder,
                     const std::function<bool(std::string_view)>& is_working_name,
                     std::string_view beginning) {
  std::vector<std::string> names;
  native::NamesIn(folder, names);
  for (const std::string& name : names) {
    if (!is_working_name(name)) continue;
    const std::string path = folder + "/" + name;
    const Descriptor file(open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (IsOurs(file, status) && BeginsWith(file, beginning) && LockUnderItsName(file, status, path))
      unlink(path.c_str());
  }
}

}  // namespace logbook::posix
