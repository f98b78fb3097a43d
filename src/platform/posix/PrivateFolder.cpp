// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/PrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/SystemError.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

constexpr mode_t kOwnerOnly = 0700;

std::string WithoutSlash(std::string native) {
  while (native.size() > 1 && native.back() == '/') native.pop_back();
  return native;
}

bool Lists(const std::string& file, const std::string& name) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line == name) return true;
  }
  return false;
}

}  // namespace

void MakePrivateFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  if (mkdir(native.c_str(), kOwnerOnly) != 0 && errno != EEXIST) posix::RaiseFolderError(errno);
  const posix::Descriptor folder(open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status = {};
  if (!folder.IsOpen() || fstat(folder.Number(), &status) != 0) {
    if (errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathFileAccess);
    posix::RaiseFolderError(errno);
  }
  if (status.st_uid != geteuid()) throw RunTimeError(ErrorNumber::kPermissionDenied);
  if ((status.st_mode & 07777) != kOwnerOnly && fchmod(folder.Number(), kOwnerOnly) != 0)
    posix::RaiseFolderError(errno);
}

void HideFolder(const Machine& machine, std::string_view path) {
  const fs::path native = WithoutSlash(NativePath(machine, path));
  const std::string parent = native.parent_path().string();
  const std::string list = parent + "/.hidden";
  struct stat status = {};
  if (stat(parent.c_str(), &status) != 0 || status.st_uid != geteuid()) return;
  if (Lists(list, native.filename().string())) return;
  const posix::Descriptor file(
      open(list.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (file.IsOpen()) WriteAll(file, native.filename().string() + "\n");
}

}  // namespace logbook
