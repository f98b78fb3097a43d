// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <functional>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"
#include "base/posix/FolderLock.h"
#include "base/posix/OpenFolder.h"
#include "base/posix/SystemError.h"
#include "base/posix/TemporaryFile.h"

namespace logbook {

using posix::Descriptor;
using posix::ParentOf;
using posix::RaiseFileError;

namespace {

// The path with links followed to the end, also if the last one leads nowhere yet.
std::string FollowLinks(std::string path) {
  constexpr int kMostLinks = 40;
  for (int links = 0; links < kMostLinks; ++links) {
    char target[PATH_MAX];
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    if (length < 0) return path;
    const std::string text(target, static_cast<std::size_t>(length));
    path = !text.empty() && text[0] == '/' ? text : ParentOf(path) + "/" + text;
  }
  throw RunTimeError(ErrorNumber::kDeviceInputOutput);
}

}  // namespace

std::string ReadNativeFile(const std::string& native_path, std::size_t most) {
  return ReadToEnd(posix::OpenForReading(native_path), most);
}

// Writes the new contents; false with errno set if the system refused.
using ContentWriter = std::function<bool(const Descriptor&)>;

// Whether a replacement waits until the disk holds it.
enum class Durability { kOnDisk, kInMemory };

struct FileReplacement::State {
  std::string path;  // links followed
  std::string name;  // within the folder
  Descriptor folder;
  bool locked = false;

  // The file's status; nothing if there is no file. Raises what forbids the replacement.
  std::optional<struct stat> CheckTarget() const {
    struct stat status = {};
    const bool exists = fstatat(folder.Number(), name.c_str(), &status, 0) == 0;
    if (!exists && errno != ENOENT) RaiseFileError(errno, path);
    if (!exists) return std::nullopt;
    if (!S_ISREG(status.st_mode) || (status.st_mode & S_IWUSR) == 0) {
      throw RunTimeError(ErrorNumber::kPathFileAccess);
    }
    if (faccessat(folder.Number(), name.c_str(), W_OK, AT_EACCESS) != 0)
      RaiseFileError(errno, path);
    return status;
  }

  // Owner and mode of the old file; false with errno set on failure.
  static bool TakeOver(const struct stat& old, const Descriptor& file) {
    // Only a privileged process may give a file away; without that the new owner is ours.
    if (fchown(file.Number(), old.st_uid, old.st_gid) != 0) errno = 0;
    return fchmod(file.Number(), old.st_mode & 07777) == 0;
  }

  // True if the file holds these bytes.
  bool Holds(std::string_view bytes, const struct stat& status) const {
    if (status.st_size != static_cast<off_t>(bytes.size())) return false;
    try {
      return ReadNativeFile(path) == bytes;
    } catch (const RunTimeError&) {
      return false;
    }
  }

  void ReplaceMadeFile(std::string_view bytes) const {
    const std::optional<struct stat> old = CheckTarget();
    if (old && Holds(bytes, *old)) return;
    Replace([bytes](const Descriptor& file) { return WriteAll(file, bytes); },
            Durability::kInMemory);
  }

  void Replace(const ContentWriter& write, Durability durability) const {
    const std::optional<struct stat> old = CheckTarget();
    posix::RemoveLeftovers(folder, false);
    // Until it has the old file's mode, nobody else may look into it.
    posix::TemporaryFile temporary(folder, locked, old ? S_IRUSR | S_IWUSR : 0666);
    const Descriptor& file = temporary.File();
    const bool is_synced = durability == Durability::kOnDisk;
    if (!write(file) || (old && !TakeOver(*old, file)) ||
        (is_synced && fsync(file.Number()) != 0) || !temporary.Rename(name))
      RaiseFileError(errno, path);
    if (is_synced) fsync(folder.Number());
  }
};

FileReplacement::FileReplacement(const std::string& native_path)
    : state_(std::make_unique<State>()) {
  if (native_path.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  state_->path = FollowLinks(native_path);
  state_->name = state_->path.substr(state_->path.rfind('/') + 1);
  if (state_->name.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  state_->folder = posix::OpenFolder(ParentOf(state_->path));
  state_->locked = posix::LockFolder(state_->folder);
}

FileReplacement::~FileReplacement() = default;

std::optional<std::string> FileReplacement::Bytes(std::size_t most) const {
  try {
    return ReadNativeFile(state_->path, most);
  } catch (const RunTimeError& error) {
    if (error.Number() != ErrorNumber::kFileNotFound) throw;
    return std::nullopt;
  }
}

void FileReplacement::Replace(std::string_view bytes) {
  state_->Replace([bytes](const Descriptor& file) { return WriteAll(file, bytes); },
                  Durability::kOnDisk);
}

void FileReplacement::ReplaceMadeFile(std::string_view bytes) {
  state_->ReplaceMadeFile(bytes);
}

void FileReplacement::ReplaceByCopyOf(const std::string& native_source) {
  const Descriptor source = posix::OpenForReading(native_source);
  state_->Replace([&source](const Descriptor& file) { return CopyToEnd(source, file); },
                  Durability::kOnDisk);
}

}  // namespace logbook
