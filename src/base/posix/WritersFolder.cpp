// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/WritersFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "base/RunTimeError.h"
#include "base/posix/FolderLock.h"
#include "base/posix/OpenFolder.h"
#include "base/posix/SystemError.h"
#include "base/posix/TemporaryFile.h"

namespace logbook::posix {

namespace {

// Owner and mode of the old file; false with errno set on failure.
bool TakeOver(const struct stat& old, const Descriptor& file) {
  // Only a privileged process may give a file away; without that the new owner is ours.
  if (fchown(file.Number(), old.st_uid, old.st_gid) != 0) errno = 0;
  return fchmod(file.Number(), old.st_mode & 07777) == 0;
}

}  // namespace

WritersFolder::WritersFolder(const std::string& native_folder)
    : path_(native_folder), folder_(OpenFolder(native_folder)), locked_(LockFolder(folder_)) {}

std::optional<struct stat> WritersFolder::Look(const std::string& name, Links links) const {
  struct stat status = {};
  const int flags = links == Links::kLeave ? AT_SYMLINK_NOFOLLOW : 0;
  if (fstatat(folder_.Number(), name.c_str(), &status, flags) == 0) return status;
  if (errno != ENOENT) RaiseFileError(errno, PathOf(name));
  return std::nullopt;
}

const std::vector<std::string>& WritersFolder::Names() {
  if (names_) return *names_;
  try {
    names_ = AllNamesIn(folder_);
  } catch (const RunTimeError&) {
    names_.emplace();
  }
  return *names_;
}

void WritersFolder::RequireReplaceable(const std::string& name, const struct stat& status) const {
  if (!S_ISREG(status.st_mode) || (status.st_mode & S_IWUSR) == 0) {
    throw RunTimeError(ErrorNumber::kPathFileAccess);
  }
  if (faccessat(folder_.Number(), name.c_str(), W_OK, AT_EACCESS) != 0)
    RaiseFileError(errno, PathOf(name));
}

bool WritersFolder::Holds(const std::string& name, const struct stat& status,
                          std::string_view bytes) const {
  if (status.st_size != static_cast<off_t>(bytes.size())) return false;
  const Descriptor file(openat(folder_.Number(), name.c_str(), kOpenForReading));
  try {
    return file.IsOpen() && ReadToEnd(file, bytes.size()) == bytes;
  } catch (const RunTimeError&) {
    return false;
  }
}

void WritersFolder::Replace(const std::string& name, const ContentWriter& write,
                            Durability durability) {
  const std::optional<struct stat> old = Look(name, Links::kFollow);
  if (old) RequireReplaceable(name, *old);
  Write(name, old, write, durability);
}

void WritersFolder::ReplaceMadeFile(const std::string& name, const std::optional<struct stat>& old,
                                    std::string_view bytes) {
  if (old) RequireReplaceable(name, *old);
  if (old && Holds(name, *old, bytes)) return;
  Write(
      name, old, [bytes](const Descriptor& file) { return WriteAll(file, bytes); },
      Durability::kInMemory);
}

void WritersFolder::Write(const std::string& name, const std::optional<struct stat>& old,
                          const ContentWriter& write, Durability durability) {
  if (!is_tidy_) RemoveLeftovers(folder_, Names(), false);
  is_tidy_ = true;
  // Until it has the old file's mode, nobody else may look into it.
  TemporaryFile temporary(folder_, locked_, old ? S_IRUSR | S_IWUSR : 0666);
  const Descriptor& file = temporary.File();
  const bool is_synced = durability == Durability::kOnDisk;
  if (!write(file) || (old && !TakeOver(*old, file)) || (is_synced && fsync(file.Number()) != 0) ||
      !temporary.Rename(name))
    RaiseFileError(errno, PathOf(name));
  if (is_synced) fsync(folder_.Number());
  if (!old) names_->push_back(name);
}

}  // namespace logbook::posix
