// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "base/PrivateName.h"
#include "base/posix/Descriptor.h"
#include "base/posix/LockedFile.h"
#include "base/posix/SystemError.h"

namespace logbook {

namespace {

posix::Descriptor MakeTemporary(const std::string& path, std::string& temporary) {
  for (;;) {
    temporary = NewPrivateName(path);
    posix::Descriptor file = posix::MakeLockedFile(temporary, S_IRUSR | S_IWUSR);
    if (file.IsOpen() || errno != EEXIST) return file;
  }
}

void RemoveLeftTemporaries(const std::string& path, std::string_view bytes) {
  const std::string name = path.substr(path.rfind('/') + 1);
  posix::RemoveLeftFiles(
      posix::ParentOf(path), [&](std::string_view each) { return IsPrivateName(each, name); },
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
