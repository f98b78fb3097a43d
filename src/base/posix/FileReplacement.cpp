// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <functional>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

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

Descriptor OpenFolder(const std::string& folder) {
  Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.IsOpen()) return descriptor;
  if (errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  posix::RaiseFolderError(errno);
}

// Some network disks know no locks on folders; writers there go without.
bool Lock(const Descriptor& folder) {
  int result = 0;
  do {
    result = flock(folder.Number(), LOCK_EX);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace

std::string ReadNativeFile(const std::string& native_path) {
  return ReadToEnd(posix::OpenForReading(native_path));
}

// Writes the new contents; false with errno set if the system refused.
using ContentWriter = std::function<bool(const Descriptor&)>;

// Whether a replacement waits until the disk holds it.
enum class Durability { kOnDisk, kInMemory };

struct FileReplacement::State {
  std::string path;  // links followed
  std::string name;  // within the folder
  Descriptor folder;
  std::string temporary;

  // The mode that the new file shall have. Raises what forbids the replacement.
  mode_t CheckTarget(struct stat& status, bool& exists) const {
    exists = fstatat(folder.Number(), name.c_str(), &status, 0) == 0;
    if (!exists && errno != ENOENT) RaiseFileError(errno, path);
    if (!exists) return 0;
    if (!S_ISREG(status.st_mode) || (status.st_mode & S_IWUSR) == 0) {
      throw RunTimeError(ErrorNumber::kPathFileAccess);
    }
    if (faccessat(folder.Number(), name.c_str(), W_OK, AT_EACCESS) != 0)
      RaiseFileError(errno, path);
    return status.st_mode & 07777;
  }

  // Writes the temporary file; false with errno set on failure.
  bool WriteTemporary(const ContentWriter& write, bool exists, const struct stat& old, mode_t mode,
                      Durability durability) const {
    unlinkat(folder.Number(), temporary.c_str(), 0);
    // Until it has the old file's mode, nobody else may look into it.
    const mode_t first_mode = exists ? S_IRUSR | S_IWUSR : 0666;
    const Descriptor file(openat(folder.Number(), temporary.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, first_mode));
    if (!file.IsOpen() || !write(file)) return false;
    if (exists) {
      // Only a privileged process may give a file away; without that the new owner is ours.
      if (fchown(file.Number(), old.st_uid, old.st_gid) != 0) errno = 0;
      if (fchmod(file.Number(), mode) != 0) return false;
    }
    return durability == Durability::kInMemory || fsync(file.Number()) == 0;
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
    struct stat old = {};
    bool exists = false;
    CheckTarget(old, exists);
    if (exists && Holds(bytes, old)) return;
    Replace([bytes](const Descriptor& file) { return WriteAll(file, bytes); },
            Durability::kInMemory);
  }

  void Replace(const ContentWriter& write, Durability durability) const {
    struct stat old = {};
    bool exists = false;
    const mode_t mode = CheckTarget(old, exists);
    try {
      if (!WriteTemporary(write, exists, old, mode, durability) ||
          renameat(folder.Number(), temporary.c_str(), folder.Number(), name.c_str()) != 0)
        RaiseFileError(errno, path);
    } catch (const RunTimeError&) {
      unlinkat(folder.Number(), temporary.c_str(), 0);
      throw;
    }
    if (durability == Durability::kOnDisk) fsync(folder.Number());
  }
};

FileReplacement::FileReplacement(const std::string& native_path)
    : state_(std::make_unique<State>()) {
  if (native_path.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  state_->path = FollowLinks(native_path);
  state_->name = state_->path.substr(state_->path.rfind('/') + 1);
  if (state_->name.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  state_->folder = OpenFolder(ParentOf(state_->path));
  state_->temporary = kTemporaryName;
  if (!Lock(state_->folder)) state_->temporary += std::to_string(getpid());
}

FileReplacement::~FileReplacement() = default;

std::optional<std::string> FileReplacement::Bytes() const {
  try {
    return ReadNativeFile(state_->path);
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
