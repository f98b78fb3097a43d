// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FileLock.h"

#include "base/win32/PrivateRights.h"
#include "base/win32/System.h"
#include "base/win32/SystemError.h"

namespace logbook {

struct FileLock::State {
  win32::Handle file;
};

FileLock::FileLock(const std::string& path, Patience patience) {
  win32::PrivateRights rights;
  win32::Handle file(CreateFileW(win32::WidePath(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 rights.ForFile(), OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen()) win32::RaiseFileError(win32::LastErrno(), path);
  const DWORD at_once = patience == Patience::kTry ? LOCKFILE_FAIL_IMMEDIATELY : 0;
  OVERLAPPED from_the_start = {};
  if (!LockFileEx(file.Value(), LOCKFILE_EXCLUSIVE_LOCK | at_once, 0, 1, 0, &from_the_start)) {
    const DWORD error = GetLastError();
    if (error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING) return;
    win32::RaiseFileError(win32::ErrnoOf(error), path);
  }
  state_ = std::make_unique<State>(State{std::move(file)});
}

FileLock::~FileLock() = default;

}  // namespace logbook
