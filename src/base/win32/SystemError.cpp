// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/SystemError.h"

#include <cerrno>

#include "base/FileFailure.h"
#include "base/win32/Status.h"
#include "base/win32/System.h"

namespace logbook::win32 {

namespace {

constexpr unsigned long kDiskQuotaExceeded = 1295;  // the compiler's header lacks its name

}  // namespace

int ErrnoOf(unsigned long error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_NOT_READY:
      return ENOENT;
    case ERROR_DIRECTORY:
      return ENOTDIR;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
      return EACCES;
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS:
      return EEXIST;
    case ERROR_DIR_NOT_EMPTY:
      return ENOTEMPTY;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
      return ENOSPC;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_FILENAME_EXCED_RANGE:
      return ENAMETOOLONG;
    case ERROR_NOT_SUPPORTED:
      return ENOTSUP;
    default:
      return EIO;
  }
}

int LastErrno() {
  return ErrnoOf(GetLastError());
}

void RaiseFileError(int error, const std::string& native_path) {
  throw FileFailure(error, error == ENOENT && IsFolder(ParentOf(native_path)));
}

void RaiseFolderError(int error) {
  throw FolderFailure(error);
}

std::string ParentOf(const std::string& native_path) {
  const std::size_t end = native_path.find_last_of("/\\");
  if (end == std::string::npos) return ".";
  const bool is_root = end == 0 || native_path[end - 1] == ':';
  return native_path.substr(0, is_root ? end + 1 : end);
}

std::string NameOf(const std::string& native_path) {
  return native_path.substr(native_path.find_last_of("/\\:") + 1);
}

}  // namespace logbook::win32
