// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/WorkingFile.h"

#include <algorithm>
#include <cerrno>

#include "archive/WorkingName.h"
#include "base/NativeDisk.h"
#include "base/win32/LockedFile.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

using win32::Handle;
using win32::Status;
using win32::WidePath;

namespace {

constexpr std::uint64_t kMostAtOnce = 1 << 30;

// The result of a call of the system, with errno set on failure.
bool Done(int result) {
  if (result == 0) errno = win32::LastErrno();
  return result != 0;
}

OVERLAPPED At(std::uint64_t position) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(position);
  place.OffsetHigh = static_cast<DWORD>(position >> 32);
  return place;
}

}  // namespace

struct WorkingFile::State {
  Handle file;
  std::string path;
};

WorkingFile::WorkingFile() : state_(std::make_unique<State>()) {}
WorkingFile::~WorkingFile() = default;
WorkingFile::WorkingFile(WorkingFile&&) noexcept = default;
WorkingFile& WorkingFile::operator=(WorkingFile&&) noexcept = default;

WorkingFile WorkingFile::MakeFor(const std::string& zip_file) {
  const std::string folder = win32::ParentOf(zip_file);
  win32::RemoveLeftFiles(folder, IsWorkingName, "PK");
  WorkingFile made;
  for (int number = 1;; ++number) {
    made.state_->path = folder + "/" + WorkingName(win32::NameOf(zip_file), number);
    made.state_->file = win32::MakeLockedFile(made.state_->path, nullptr);
    if (Done(made.IsOpen()) || errno != EEXIST) return made;
  }
}

WorkingFile WorkingFile::MakeSecond() const {
  WorkingFile made;
  made.state_->path = state_->path + "2";
  ::DeleteFileW(WidePath(made.state_->path).c_str());
  made.state_->file = win32::MakeLockedFile(made.state_->path, nullptr);
  Done(made.IsOpen());
  return made;
}

bool WorkingFile::IsOpen() const {
  return state_->file.IsOpen();
}

const std::string& WorkingFile::Path() const {
  return state_->path;
}

bool WorkingFile::Size(std::uint64_t& size) const {
  LARGE_INTEGER count = {};
  if (!Done(GetFileSizeEx(state_->file.Value(), &count))) return false;
  size = static_cast<std::uint64_t>(count.QuadPart);
  return true;
}

bool WorkingFile::Identity(FileIdentity& identity) const {
  Status status;
  if (!Done(StatusOf(state_->file, status))) return false;
  identity = {status.stamp.device, status.stamp.inode};
  return true;
}

std::int64_t WorkingFile::ReadAt(char* buffer, std::size_t size, std::uint64_t position) const {
  std::size_t done = 0;
  while (done < size) {
    OVERLAPPED place = At(position + done);
    DWORD count = 0;
    const auto most = static_cast<DWORD>(std::min<std::uint64_t>(size - done, kMostAtOnce));
    if (!::ReadFile(state_->file.Value(), buffer + done, most, &count, &place) &&
        GetLastError() != ERROR_HANDLE_EOF) {
      errno = win32::LastErrno();
      return -1;
    }
    if (count == 0) break;
    done += count;
  }
  return static_cast<std::int64_t>(done);
}

bool WorkingFile::WriteAt(const char* bytes, std::uint64_t size, std::uint64_t position) {
  while (size > 0) {
    OVERLAPPED place = At(position);
    DWORD count = 0;
    const auto most = static_cast<DWORD>(std::min(size, kMostAtOnce));
    if (!Done(::WriteFile(state_->file.Value(), bytes, most, &count, &place))) return false;
    bytes += count;
    size -= count;
    position += count;
  }
  return true;
}

bool WorkingFile::Resize(std::uint64_t size) {
  LARGE_INTEGER end = {};
  end.QuadPart = static_cast<LONGLONG>(size);
  return Done(SetFilePointerEx(state_->file.Value(), end, nullptr, FILE_BEGIN)) &&
         Done(SetEndOfFile(state_->file.Value()));
}

bool WorkingFile::Sync() {
  return Done(FlushFileBuffers(state_->file.Value()));
}

bool WorkingFile::CopyFrom(const std::string& native_path, bool& existed) {
  const Handle from = win32::OpenToRead(native_path, win32::Follow::kYes);
  existed = Done(from.IsOpen());
  if (!existed) return errno == ENOENT;
  constexpr DWORD kBuffer = 256 * 1024;
  std::string buffer(kBuffer, '\0');
  for (std::uint64_t position = 0;;) {
    DWORD count = 0;
    if (!Done(::ReadFile(from.Value(), buffer.data(), kBuffer, &count, nullptr))) return false;
    if (count == 0) return true;
    if (!WriteAt(buffer.data(), count, position)) return false;
    position += count;
  }
}

// A file that is open cannot change its name; for a moment nothing but the name holds it.
bool WorkingFile::BecomeSecond(WorkingFile second) {
  state_->file.Close();
  second.state_->file.Close();
  if (const auto error = native::Rename(second.state_->path, state_->path)) {
    errno = error.value();
    return false;
  }
  state_->file =
      Handle(CreateFileW(WidePath(state_->path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                         FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return Done(state_->file.IsOpen());
}

bool WorkingFile::GiveName(const std::string& zip_file) {
  state_->file.Close();
  const auto error = native::Rename(state_->path, zip_file);
  errno = error.value();
  return !error;
}

void WorkingFile::Remove() {
  state_->file.Close();
  ::DeleteFileW(WidePath(state_->path).c_str());
}

ZipTarget LookAtTarget(const std::string& native_path, FileIdentity& identity, int& error) {
  identity = {};
  Status status;
  if (!StatusOf(native_path, win32::Follow::kYes, status)) return ZipTarget::kNothing;
  identity = {status.stamp.device, status.stamp.inode};
  if (status.IsFolder()) return ZipTarget::kNoFile;
  if (status.IsReadOnly()) return ZipTarget::kReadOnly;
  const Handle file(CreateFileW(WidePath(native_path).c_str(), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, 0, nullptr));
  if (file.IsOpen()) return ZipTarget::kFile;
  error = win32::LastErrno();
  return ZipTarget::kRefused;
}

}  // namespace logbook
