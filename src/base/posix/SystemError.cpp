// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/SystemError.h"

#include <sys/stat.h>

#include <cerrno>

#include "base/RunTimeError.h"

namespace logbook::posix {

namespace {

ErrorNumber CommonNumber(int error) {
  switch (error) {
    case EISDIR:
    case EEXIST:
    case ENOTEMPTY:
      return ErrorNumber::kPathFileAccess;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
      return ErrorNumber::kPermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return ErrorNumber::kDiskFull;
    case ENOMEM:
      return ErrorNumber::kOutOfMemory;
    default:
      return ErrorNumber::kDeviceInputOutput;
  }
}

}  // namespace

bool IsFolder(const std::string& native_path) {
  struct stat status = {};
  return stat(native_path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void RaiseFileError(int error, const std::string& native_path) {
  if (error == ENOENT && IsFolder(ParentOf(native_path))) {
    throw RunTimeError(ErrorNumber::kFileNotFound);
  }
  if (error == ENOENT || error == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  throw RunTimeError(CommonNumber(error));
}

void RaiseFolderError(int error) {
  if (error == ENOENT) throw RunTimeError(ErrorNumber::kPathNotFound);
  if (error == ENOTDIR) throw RunTimeError(ErrorNumber::kPathFileAccess);
  throw RunTimeError(CommonNumber(error));
}

void RaiseReadError(int error) {
  throw RunTimeError(error == ENOMEM ? ErrorNumber::kOutOfMemory : ErrorNumber::kDeviceInputOutput);
}

std::string ParentOf(const std::string& native_path) {
  const std::size_t slash = native_path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : native_path.substr(0, slash);
}

}  // namespace logbook::posix
