// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

constexpr mode_t kOwnerOnly = 0700;

// A link that somebody else has put there may lead to any folder of ours.
void RefuseForeignLink(const std::string& native) {
  struct stat status = {};
  if (lstat(native.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return;
  if (status.st_uid != geteuid() && status.st_uid != 0)
    throw RunTimeError(ErrorNumber::kPermissionDenied);
}

// The line that the list lacks for this name, on a line of its own; empty if it has one.
std::string MissingLine(const std::string& list, const std::string& name) {
  std::ifstream in(list);
  bool is_cut_short = false;  // a hand-made last line may have no line end
  for (std::string line; std::getline(in, line);) {
    if (line == name) return {};
    is_cut_short = in.eof();
  }
  return (is_cut_short ? "\n" : "") + name + "\n";
}

}  // namespace

void MakePrivateFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  const bool is_new = mkdir(native.c_str(), kOwnerOnly) == 0;
  if (!is_new && errno != EEXIST) posix::RaiseFolderError(errno);
  // A folder's own name is on the disk when the folder above is.
  if (is_new) posix::SyncFolder(posix::ParentOf(native));
  RefuseForeignLink(native);
  const posix::Descriptor folder(open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status = {};
  if (!folder.IsOpen() || fstat(folder.Number(), &status) != 0) posix::RaiseFolderError(errno);
  if (status.st_uid != geteuid()) throw RunTimeError(ErrorNumber::kPermissionDenied);
  if ((status.st_mode & 07777) != kOwnerOnly && fchmod(folder.Number(), kOwnerOnly) != 0)
    posix::RaiseFolderError(errno);
}

void HideFolder(const Machine& machine, std::string_view path) {
  const fs::path native = NativePath(machine, path);
  const std::string parent = native.parent_path().string();
  const std::string list = parent + "/.hidden";
  struct stat status = {};
  if (stat(parent.c_str(), &status) != 0 || status.st_uid != geteuid()) return;
  const std::string line = MissingLine(list, native.filename().string());
  if (line.empty()) return;
  const posix::Descriptor file(
      open(list.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (file.IsOpen()) WriteAll(file, line);
}

}  // namespace logbook
