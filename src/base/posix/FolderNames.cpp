// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FolderNames.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>

#include "base/RunTimeError.h"
#include "base/posix/SystemError.h"

namespace logbook {

namespace {

bool IsFolder(DIR* scan, const dirent& entry) {
  if (entry.d_type == DT_DIR) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat status = {};
  return fstatat(dirfd(scan), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

void ForEachName(const std::string& native_folder, const NameTaker& take) {
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(opendir(native_folder.c_str()), closedir);
  if (scan == nullptr && errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  if (scan == nullptr) posix::RaiseFolderError(errno);
  while (true) {
    errno = 0;
    const dirent* entry = readdir(scan.get());
    if (entry == nullptr && errno != 0) posix::RaiseReadError(errno);
    if (entry == nullptr) return;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") take(name, [&] { return IsFolder(scan.get(), *entry); });
  }
}

}  // namespace logbook
