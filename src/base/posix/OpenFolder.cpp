// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/OpenFolder.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <memory>

#include "base/RunTimeError.h"
#include "base/posix/SystemError.h"

namespace logbook::posix {

namespace {

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

}  // namespace

Descriptor OpenFolder(const std::string& native_folder) {
  Descriptor folder(open(native_folder.c_str(), kOpenFolder));
  // Who may not list a folder may still have the right to change it.
  if (!folder.IsOpen() && errno == EACCES)
    folder = Descriptor(open(native_folder.c_str(), kOpenFolder | O_PATH));
  if (folder.IsOpen()) return folder;
  if (errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  RaiseFolderError(errno);
}

Descriptor OpenFolderIn(const Descriptor& folder, const std::string& name) {
  Descriptor inner(openat(folder.Number(), name.c_str(), kOpenFolder | O_NOFOLLOW));
  if (inner.IsOpen()) return inner;
  // Some systems tell a link as a loop of links, others as no folder.
  RaiseFolderError(errno == ELOOP ? ENOTDIR : errno);
}

std::vector<std::string> AllNamesIn(const Descriptor& folder) {
  const int scanned = openat(folder.Number(), ".", kOpenFolder);
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(scanned < 0 ? nullptr : fdopendir(scanned),
                                                 closedir);
  if (scan == nullptr) RaiseFolderError(errno);
  std::vector<std::string> names;
  while (true) {
    errno = 0;
    const dirent* entry = readdir(scan.get());
    if (entry == nullptr && errno != 0) RaiseReadError(errno);
    if (entry == nullptr) return names;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
}

}  // namespace logbook::posix
