// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"
#include "base/win32/TemporaryFile.h"

namespace logbook {

using win32::Handle;
using win32::Status;

namespace {

constexpr DWORD kLongestLockWait = 1900;  // milliseconds

// The full path with links followed; the path itself where there is nothing to follow.
std::string FollowLinks(const std::string& path) {
  Status status;
  if (!StatusOf(path, win32::Follow::kNo, status) || !status.IsLink()) return path;
  const Handle file = win32::OpenToRead(path, win32::Follow::kYes);
  if (!file.IsOpen()) return path;
  std::vector<wchar_t> buffer(32768);
  const DWORD length =
      GetFinalPathNameByHandleW(file.Value(), buffer.data(), static_cast<DWORD>(buffer.size()), 0);
  return length == 0 || length >= buffer.size() ? path : win32::Narrow({buffer.data(), length});
}

std::string ReadToEnd(const Handle& file, std::size_t most) {
  std::string bytes;
  char buffer[16384];
  while (const std::size_t count = win32::ReadSome(file, buffer, sizeof buffer)) {
    if (count > most - bytes.size()) throw RunTimeError(ErrorNumber::kOutOfMemory);
    bytes.append(buffer, count);
  }
  return bytes;
}

// The lock of a folder has the number that the disk knows the folder by; without one its path.
std::wstring LockName(const std::string& folder) {
  Status status;
  std::string name = UpperCaseText(folder);
  if (StatusOf(folder, win32::Follow::kYes, status) && status.stamp.inode != 0)
    name = std::to_string(status.stamp.device) + "-" + std::to_string(status.stamp.inode);
  std::replace(name.begin(), name.end(), '\\', '/');
  return L"Global\\logbook-folder-" + win32::Wide(name);
}

// Writers of a folder wait for each other as long as a writer needs; the system gives the lock of
// a writer that was killed to the next one.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder)
      : mutex_(CreateMutexW(nullptr, FALSE, LockName(folder).c_str())) {
    const DWORD result =
        mutex_.IsOpen() ? WaitForSingleObject(mutex_.Value(), kLongestLockWait) : WAIT_FAILED;
    held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }
  ~FolderLock() {
    if (held_) ReleaseMutex(mutex_.Value());
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  Handle mutex_;
  bool held_ = false;
};

}  // namespace

std::string ReadNativeFile(const std::string& native_path, std::size_t most) {
  return ReadToEnd(win32::OpenForReading(native_path), most);
}

struct FileReplacement::State {
  explicit State(std::string the_path)
      : path(std::move(the_path)), folder(win32::ParentOf(path)), lock(folder) {}

  const std::string path;  // links followed
  const std::string folder;
  const FolderLock lock;

  // True if there is a file. Raises what forbids the replacement.
  bool CheckTarget() const {
    Status status;
    if (!StatusOf(path, win32::Follow::kYes, status)) {
      const int error = win32::LastErrno();
      if (error != ENOENT || !win32::IsFolder(folder)) win32::RaiseFileError(error, path);
      return false;
    }
    if (status.IsFolder() || status.IsReadOnly()) throw RunTimeError(ErrorNumber::kPathFileAccess);
    return true;
  }

  void Replace(const std::function<bool(const Handle&)>& write, bool is_synced) const {
    CheckTarget();
    win32::RemoveLeftovers(folder);
    win32::TemporaryFile temporary(folder);
    const bool written = write(temporary.File()) &&
                         (!is_synced || FlushFileBuffers(temporary.File().Value())) &&
                         temporary.Rename(path);
    if (!written) win32::RaiseFileError(win32::LastErrno(), path);
  }
};

FileReplacement::FileReplacement(const std::string& native_path) {
  if (native_path.empty() || win32::NameOf(native_path).empty())
    throw RunTimeError(ErrorNumber::kPathFileAccess);
  const std::string path = FollowLinks(native_path);
  if (!win32::IsFolder(win32::ParentOf(path))) throw RunTimeError(ErrorNumber::kPathNotFound);
  state_ = std::make_unique<State>(path);
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
  state_->Replace([bytes](const Handle& file) { return WriteAll(file, bytes); }, true);
}

void FileReplacement::ReplaceMadeFile(std::string_view bytes) {
  try {
    if (state_->CheckTarget() && ReadNativeFile(state_->path, bytes.size()) == bytes) return;
  } catch (const RunTimeError& error) {
    // A longer file, or one that cannot be read, is not the same.
    if (error.Number() == ErrorNumber::kPathFileAccess) throw;
  }
  state_->Replace([bytes](const Handle& file) { return WriteAll(file, bytes); }, false);
}

void FileReplacement::ReplaceByCopyOf(const std::string& native_source) {
  const Handle source = win32::OpenForReading(native_source);
  state_->Replace(
      [&source](const Handle& file) {
        constexpr std::size_t kBuffer = 256 * 1024;
        std::string buffer(kBuffer, '\0');
        while (const std::size_t count = win32::ReadSome(source, buffer.data(), buffer.size())) {
          if (!WriteAll(file, std::string_view(buffer.data(), count))) return false;
        }
        return true;
      },
      true);
}

}  // namespace logbook
