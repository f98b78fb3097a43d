// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/SystemError.h"

#include <sys/stat.h>

#include <cerrno>

#include "base/FileFailure.h"

namespace logbook::posix {

namespace {

// No room is left for this user, or for anybody.
int WithoutQuota(int error) {
  return error == EDQUOT ? ENOSPC : error;
}

}  // namespace

bool IsFolder(const std::string& native_path) {
  struct stat status = {};
  return stat(native_path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void RaiseFileError(int error, const std::string& native_path) {
  throw FileFailure(WithoutQuota(error), error == ENOENT && IsFolder(ParentOf(native_path)));
}

void RaiseFolderError(int error) {
  throw FolderFailure(WithoutQuota(error));
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
