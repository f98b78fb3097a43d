// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <random>

#include "base/posix/Descriptor.h"
#include "base/posix/LockedFile.h"
#include "base/posix/SystemError.h"

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

posix::Descriptor MakeTemporary(const std::string& path, std::string& temporary) {
  for (;;) {
    temporary = NewTemporaryName(path);
    posix::Descriptor file = posix::MakeLockedFile(temporary, S_IRUSR | S_IWUSR);
    if (file.IsOpen() || errno != EEXIST) return file;
  }
}

void RemoveLeftTemporaries(const std::string& path, std::string_view bytes) {
  const std::string name = path.substr(path.rfind('/') + 1);
  posix::RemoveLeftFiles(
      posix::ParentOf(path), [&](std::string_view each) { return IsTemporaryName(each, name); },
      bytes.substr(0, bytes.find(' ')));
}

}  // namespace

// A new file beside the old one, then the old one's name.
void ReplacePrivateFile(const std::string& path, std::string_view bytes) {
  RemoveLeftTemporaries(path, bytes);
  std::string temporary;
  const posix::Descriptor file = MakeTemporary(path, temporary);
  if (!file.IsOpen()) posix::RaiseFileError(errno, path);
  if (WriteAll(file, bytes) && fsync(file.Number()) == 0 &&
      std::rename(temporary.c_str(), path.c_str()) == 0)
    return;
  const int error = errno;
  unlink(temporary.c_str());
  posix::RaiseFileError(error, path);
}

bool EverybodyMayRead(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && (status.st_mode & S_IROTH) != 0;
}

}  // namespace logbook
