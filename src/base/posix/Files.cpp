// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

namespace logbook {

using posix::RaiseFileError;
using posix::RaiseFolderError;

namespace {

bool IsTemporary(std::string_view name) {
  return name.starts_with(kTemporaryName);
}

// All names but "." and "..". A missing folder is error 76 here, and so is a file in its place.
std::vector<std::string> AllNamesIn(const std::string& native_folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(opendir(native_folder.c_str()), closedir);
  if (scan == nullptr && errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  if (scan == nullptr) RaiseFolderError(errno);
  std::vector<std::string> names;
  while (true) {
    errno = 0;
    const dirent* entry = readdir(scan.get());
    if (entry == nullptr && errno != 0) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
    if (entry == nullptr) return names;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
}

// The names that count: what a killed writer has left is no entry of its folder.
std::vector<std::string> NamesIn(const std::string& native_folder) {
  std::vector<std::string> names = AllNamesIn(native_folder);
  std::erase_if(names, IsTemporary);
  return names;
}

// A backslash in a name parts folders in a path text, which would lead elsewhere.
FolderEntry::Kind KindOf(const std::string& native_folder, const std::string& name) {
  struct stat status = {};
  if (name.find('\\') != std::string::npos ||
      stat((native_folder + "/" + name).c_str(), &status) != 0) {
    return FolderEntry::Kind::kUnreadable;
  }
  return S_ISDIR(status.st_mode) ? FolderEntry::Kind::kFolder : FolderEntry::Kind::kFile;
}

void DeleteNativeFile(const std::string& native_path) {
  struct stat status = {};
  if (lstat(native_path.c_str(), &status) != 0) RaiseFileError(errno, native_path);
  if (S_ISLNK(status.st_mode) && stat(native_path.c_str(), &status) != 0) status.st_mode = S_IWUSR;
  if (S_ISDIR(status.st_mode) || (status.st_mode & S_IWUSR) == 0) {
    throw RunTimeError(ErrorNumber::kPathFileAccess);
  }
  if (unlink(native_path.c_str()) != 0) RaiseFileError(errno, native_path);
}

// What writers that were killed have left would keep the folder from being removed.
void RemoveTemporaries(const std::string& native_folder) {
  const posix::Descriptor folder(open(native_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.IsOpen()) return;
  flock(folder.Number(), LOCK_EX);
  for (const std::string& name : AllNamesIn(native_folder)) {
    if (IsTemporary(name)) unlinkat(folder.Number(), name.c_str(), 0);
  }
}

}  // namespace

std::vector<FolderEntry> ScanFolder(const Machine& machine, std::string_view folder) {
  const std::string native = NativePath(machine, folder);
  struct Sorted {
    std::string upper;
    FolderEntry entry;
  };
  std::vector<Sorted> sorted;
  for (std::string& name : NamesIn(native)) {
    const FolderEntry::Kind kind = KindOf(native, name);
    sorted.push_back({UpperCaseText(name), {std::move(name), kind}});
  }
  std::sort(sorted.begin(), sorted.end(), [](const Sorted& a, const Sorted& b) {
    return a.upper != b.upper ? a.upper < b.upper : a.entry.name < b.entry.name;
  });
  std::vector<FolderEntry> entries;
  for (Sorted& each : sorted) entries.push_back(std::move(each.entry));
  return entries;
}

std::string ReadFile(const Machine& machine, std::string_view path) {
  return ReadToEnd(posix::OpenForReading(machine, path));
}

void WriteFile(const Machine& machine, std::string_view path, std::string_view bytes) {
  FileReplacement(NativePath(machine, path)).Replace(bytes);
}

void WriteMadeFile(const Machine& machine, std::string_view path, std::string_view bytes) {
  FileReplacement(NativePath(machine, path)).ReplaceMadeFile(bytes);
}

void MakeFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  if (mkdir(native.c_str(), 0777) == 0) return;
  if (errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  RaiseFolderError(errno);
}

void RemoveFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  if (rmdir(native.c_str()) == 0) return;
  if (errno == ENOTEMPTY || errno == EEXIST) {
    if (!NamesIn(native).empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
    RemoveTemporaries(native);
    if (rmdir(native.c_str()) == 0) return;
  }
  RaiseFolderError(errno);
}

void DeleteFile(const Machine& machine, std::string_view path) {
  DeleteNativeFile(NativePath(machine, path));
}

void DeleteFilesIn(const Machine& machine, std::string_view folder) {
  const std::string native = NativePath(machine, folder);
  bool matched = false;
  bool read_only_stayed = false;
  std::optional<RunTimeError> first_failure;
  std::vector<std::string> names = NamesIn(native);
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    const std::string file = native + "/" + name;
    if (name[0] == '.' || posix::IsFolder(file)) continue;
    matched = true;
    try {
      DeleteNativeFile(file);
    } catch (const RunTimeError& error) {
      read_only_stayed |= error.Number() == ErrorNumber::kPathFileAccess;
      if (!first_failure) first_failure = error;
    }
  }
  if (!matched) throw RunTimeError(ErrorNumber::kFileNotFound);
  if (read_only_stayed) throw RunTimeError(ErrorNumber::kPathFileAccess);
  if (first_failure) throw RunTimeError(*first_failure);
}

void CopyFile(const Machine& machine, std::string_view from, std::string_view to) {
  FileReplacement(NativePath(machine, to)).ReplaceByCopyOf(NativePath(machine, from));
}

}  // namespace logbook
