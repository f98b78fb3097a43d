// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFile.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <vector>

#include "base/NativeDisk.h"
#include "base/win32/LockedFile.h"
#include "base/win32/PrivateRights.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

namespace {

constexpr std::size_t kEnding = 7;  // a point and six letters or digits

bool IsLetterOrDigit(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z');
}

// True for the temporary name of this file, or of one with the same extension.
bool IsTemporaryName(std::string_view name, std::string_view file) {
  if (name.size() < kEnding || name[name.size() - kEnding] != '.') return false;
  const std::string_view letters = name.substr(name.size() - kEnding + 1);
  name.remove_suffix(kEnding);
  const std::size_t point = file.rfind('.');
  return std::all_of(letters.begin(), letters.end(), IsLetterOrDigit) &&
         (name == file || (point != file.npos && name.ends_with(file.substr(point))));
}

std::string NewTemporaryName(const std::string& path) {
  constexpr std::string_view kLetters = "0123456789abcdefghijklmnopqrstuvwxyz";
  std::random_device random;
  std::string name = path + ".";
  for (std::size_t i = 1; i < kEnding; ++i) name += kLetters[random() % kLetters.size()];
  return name;
}

win32::Handle MakeTemporary(const std::string& path, std::string& temporary) {
  win32::PrivateRights rights;
  SECURITY_ATTRIBUTES* owner_only = rights.ForFile();
  for (;;) {
    temporary = NewTemporaryName(path);
    win32::Handle file = win32::MakeLockedFile(temporary, owner_only);
    if (file.IsOpen() || win32::LastErrno() != EEXIST) return file;
  }
}

}  // namespace

// A new file beside the old one, then the old one's name.
void ReplacePrivateFile(const std::string& path, std::string_view bytes) {
  const std::string name = win32::NameOf(path);
  win32::RemoveLeftFiles(
      win32::ParentOf(path), [&](std::string_view each) { return IsTemporaryName(each, name); },
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
