// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

namespace logbook {

// A new file beside the old one, then the old one's name.
void ReplacePrivateFile(const std::string& path, std::string_view bytes) {
  std::string temporary = path + ".XXXXXX";
  const posix::Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));  // mode 0600
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
