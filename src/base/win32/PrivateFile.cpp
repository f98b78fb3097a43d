// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFile.h"

#include <cerrno>

#include "base/NativeDisk.h"
#include "base/PrivateName.h"
#include "base/win32/LockedFile.h"
#include "base/win32/PrivateRights.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

namespace {

win32::Handle MakeTemporary(const std::string& path, std::string& temporary) {
  win32::PrivateRights rights;
  SECURITY_ATTRIBUTES* owner_only = rights.ForFile();
  for (;;) {
    temporary = NewPrivateName(path);
    win32::Handle file = win32::MakeLockedFile(temporary, owner_only);
    if (file.IsOpen() || win32::LastErrno() != EEXIST) return file;
  }
}

}  // namespace

// A new file beside the old one, then the old one's name.
void ReplacePrivateFile(const std::string& path, std::string_view bytes) {
  const std::string name = win32::NameOf(path);
  win32::RemoveLeftFiles(
      win32::ParentOf(path), [&](std::string_view each) { return IsPrivateName(each, name); },
      bytes.substr(0, bytes.find(' ')));
  std::string temporary;
  win32::Handle file = MakeTemporary(path, temporary);
  if (!file.IsOpen()) win32::RaiseFileError(win32::LastErrno(), path);
  bool done = WriteAll(file, bytes) && FlushFileBuffers(file.Value());
  int error = done ? 0 : win32::LastErrno();
  file.Close();
  if (done) {
    const std::error_code renamed = native::Rename(temporary, path);
    done = !renamed;
    error = renamed.value();
  }
  if (done) return;
  DeleteFileW(win32::WidePath(temporary).c_str());
  win32::RaiseFileError(error, path);
}

bool EverybodyMayRead(const std::string& path) {
  return win32::EverybodyHasReadRight(path);
}

}  // namespace logbook
