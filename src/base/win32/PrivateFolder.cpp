// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFolder.h"

#include <cerrno>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/win32/PrivateRights.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

void MakePrivateFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  win32::PrivateRights rights;
  if (CreateDirectoryW(win32::WidePath(native).c_str(), rights.ForFolder())) return;
  const int error = win32::LastErrno();
  win32::Status status;
  if (!StatusOf(native, win32::Follow::kYes, status)) win32::RaiseFolderError(error);
  if (!status.IsFolder()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  const std::wstring owner = win32::OwnerOf(native);
  if (owner != win32::ThisUser() && owner != win32::OwnerOfNewFiles())
    throw RunTimeError(ErrorNumber::kPermissionDenied);
  if (!rights.GiveTo(native)) win32::RaiseFolderError(win32::LastErrno());
}

void HideFolder(const Machine& machine, std::string_view path) {
  const std::wstring native = win32::WidePath(NativePath(machine, path));
  const DWORD attributes = GetFileAttributesW(native.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES)
    SetFileAttributesW(native.c_str(), attributes | FILE_ATTRIBUTE_HIDDEN);
}

}  // namespace logbook
