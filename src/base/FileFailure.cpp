// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FileFailure.h"

#include <cerrno>

namespace logbook {
namespace {

RunTimeError CommonFailure(int error) {
  switch (error) {
    case EISDIR:
    case EEXIST:
    case ENOTEMPTY:
      return RunTimeError(ErrorNumber::kPathFileAccess);
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
      return RunTimeError(ErrorNumber::kPermissionDenied);
    case ENOSPC:
    case EFBIG:
      return RunTimeError(ErrorNumber::kDiskFull);
    case ENOMEM:
      return RunTimeError(ErrorNumber::kOutOfMemory);
    default:
      return RunTimeError(ErrorNumber::kDeviceInputOutput);
  }
}

}  // namespace

RunTimeError FileFailure(int error, bool parent_is_folder) {
  if (error == ENOENT && parent_is_folder) return RunTimeError(ErrorNumber::kFileNotFound);
  if (error == ENOENT || error == ENOTDIR) return RunTimeError(ErrorNumber::kPathNotFound);
  return CommonFailure(error);
}

RunTimeError FolderFailure(int error) {
  if (error == ENOENT) return RunTimeError(ErrorNumber::kPathNotFound);
  if (error == ENOTDIR) return RunTimeError(ErrorNumber::kPathFileAccess);
  return CommonFailure(error);
}

}  // namespace logbook
