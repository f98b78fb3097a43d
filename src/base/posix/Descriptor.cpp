// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/Descriptor.h"

#include <sys/stat.h>

#include <cerrno>

#include "base/RunTimeError.h"
#include "base/posix/SystemError.h"

namespace logbook::posix {

Descriptor OpenForReading(const std::string& native_path) {
  if (native_path.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  Descriptor file(open(native_path.c_str(), kOpenForReading));
  if (!file.IsOpen()) RaiseFileError(errno, native_path);
  return RefuseAllButFile(std::move(file));
}

Descriptor RefuseAllButFile(Descriptor file) {
  struct stat status = {};
  if (fstat(file.Number(), &status) != 0) RaiseReadError(errno);
  if (!S_ISREG(status.st_mode)) throw RunTimeError(ErrorNumber::kPathFileAccess);
  return file;
}

std::size_t ReadSome(const Descriptor& file, char* buffer, std::size_t size) {
  while (true) {
    const ssize_t count = read(file.Number(), buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) RaiseReadError(errno);
  }
}

std::string ReadToEnd(const Descriptor& file, std::size_t most) {
  std::string bytes;
  struct stat status = {};
  if (fstat(file.Number(), &status) == 0 && status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > most) throw RunTimeError(ErrorNumber::kOutOfMemory);
    bytes.reserve(size);
  }
  char buffer[16384];
  while (const std::size_t count = ReadSome(file, buffer, sizeof buffer)) {
    if (count > most - bytes.size()) throw RunTimeError(ErrorNumber::kOutOfMemory);
    bytes.append(buffer, count);
  }
  return bytes;
}

bool CopyToEnd(const Descriptor& from, const Descriptor& to) {
  constexpr std::size_t kBuffer = 256 * 1024;
  std::string buffer(kBuffer, '\0');
  while (const std::size_t count = ReadSome(from, buffer.data(), buffer.size())) {
    if (!WriteAll(to, std::string_view(buffer.data(), count))) return false;
  }
  return true;
}

void SyncFolder(const std::string& native_folder) {
  const Descriptor folder(open(native_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.IsOpen()) fsync(folder.Number());
}

bool WriteAll(const Descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file.Number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace logbook::posix
