// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/WorkingFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "archive/WorkingName.h"
#include "archive/posix/Facts.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"
#include "base/posix/LockedFile.h"
#include "base/posix/SystemError.h"

namespace logbook {

using posix::Descriptor;

struct WorkingFile::State {
  Descriptor file;
  std::string path;
};

WorkingFile::WorkingFile() : state_(std::make_unique<State>()) {}
WorkingFile::~WorkingFile() = default;
WorkingFile::WorkingFile(WorkingFile&&) noexcept = default;
WorkingFile& WorkingFile::operator=(WorkingFile&&) noexcept = default;

WorkingFile WorkingFile::MakeFor(const std::string& zip_file) {
  const std::string folder = posix::ParentOf(zip_file);
  posix::RemoveLeftFiles(folder, IsWorkingName, "PK");
  WorkingFile made;
  for (int number = 1;; ++number) {
    made.state_->path =
        folder + "/" + WorkingName(zip_file.substr(zip_file.rfind('/') + 1), number);
    made.state_->file = posix::MakeLockedFile(made.state_->path, 0666);
    if (made.IsOpen() || errno != EEXIST) return made;
  }
}

// Nobody's but ours, as the first one, and no easier to read than that.
WorkingFile WorkingFile::MakeSecond() const {
  WorkingFile made;
  made.state_->path = state_->path + "2";
  struct stat status {};
  if (fstat(state_->file.Number(), &status) != 0) return made;
  unlink(made.state_->path.c_str());
  made.state_->file = posix::MakeLockedFile(made.state_->path, 0600);
  if (!made.IsOpen() || fchmod(made.state_->file.Number(), status.st_mode & 07777) == 0)
    return made;
  const int error = errno;
  made.Remove();
  errno = error;
  return made;
}

bool WorkingFile::IsOpen() const {
  return state_->file.IsOpen();
}

const std::string& WorkingFile::Path() const {
  return state_->path;
}

bool WorkingFile::Size(std::uint64_t& size) const {
  struct stat status {};
  if (fstat(state_->file.Number(), &status) != 0) return false;
  size = static_cast<std::uint64_t>(status.st_size);
  return true;
}

bool WorkingFile::Identity(FileIdentity& identity) const {
  struct stat status {};
  if (fstat(state_->file.Number(), &status) != 0) return false;
  identity = posix::FactsFrom(status).identity;
  return true;
}

std::int64_t WorkingFile::ReadAt(char* buffer, std::size_t size, std::uint64_t position) const {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = pread(state_->file.Number(), buffer + done, size - done,
                                static_cast<off_t>(position + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return static_cast<std::int64_t>(done);
}

bool WorkingFile::WriteAt(const char* bytes, std::uint64_t size, std::uint64_t position) {
  while (size > 0) {
    const ssize_t count = pwrite(state_->file.Number(), bytes, size, static_cast<off_t>(position));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes += count;
    size -= static_cast<std::uint64_t>(count);
    position += static_cast<std::uint64_t>(count);
  }
  return true;
}

bool WorkingFile::Resize(std::uint64_t size) {
  return ftruncate(state_->file.Number(), static_cast<off_t>(size)) == 0;
}

bool WorkingFile::Sync() {
  return fdatasync(state_->file.Number()) == 0;
}

bool WorkingFile::CopyFrom(const std::string& native_path, bool& existed) {
  const Descriptor from(open(native_path.c_str(), O_RDONLY | O_CLOEXEC));
  existed = from.IsOpen();
  if (!existed) return errno == ENOENT;
  struct stat status {};
  if (fstat(from.Number(), &status) == 0) fchmod(state_->file.Number(), status.st_mode & 07777);
  try {
    return CopyToEnd(from, state_->file);
  } catch (const RunTimeError&) {
    errno = EIO;
    return false;
  }
}

bool WorkingFile::BecomeSecond(WorkingFile second) {
  if (std::rename(second.state_->path.c_str(), state_->path.c_str()) != 0) return false;
  state_->file = std::move(second.state_->file);
  return true;
}

bool WorkingFile::GiveName(const std::string& zip_file) {
  if (std::rename(state_->path.c_str(), zip_file.c_str()) != 0) return false;
  posix::SyncFolder(posix::ParentOf(zip_file));
  state_->file.Close();
  return true;
}

void WorkingFile::Remove() {
  state_->file.Close();
  unlink(state_->path.c_str());
}

ZipTarget LookAtTarget(const std::string& native_path, FileIdentity& identity, int& error) {
  struct stat status {};
  identity = {};
  if (stat(native_path.c_str(), &status) != 0) return ZipTarget::kNothing;
  identity = posix::FactsFrom(status).identity;
  if (!S_ISREG(status.st_mode)) return ZipTarget::kNoFile;
  if ((status.st_mode & S_IWUSR) == 0) return ZipTarget::kReadOnly;
  if (faccessat(AT_FDCWD, native_path.c_str(), W_OK, AT_EACCESS) == 0) return ZipTarget::kFile;
  error = errno;
  return ZipTarget::kRefused;
}

}  // namespace logbook
