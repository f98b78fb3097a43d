// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "base/FolderDeletion.h"
#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"
#include "base/posix/Descriptor.h"
#include "base/posix/OpenFolder.h"
#include "base/posix/SystemError.h"
#include "base/posix/TemporaryFile.h"

namespace logbook {

using posix::Descriptor;
using posix::RaiseFileError;
using posix::RaiseFolderError;

namespace {

// A backslash in a name parts folders in a path text, which would lead elsewhere.
FolderEntry::Kind KindOf(const Descriptor& folder, const std::string& name) {
  struct stat status = {};
  if (name.find('\\') != std::string::npos ||
      fstatat(folder.Number(), name.c_str(), &status, 0) != 0) {
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

// Deletes one name of a folder. Raises what the system refuses.
Deletion DeleteIn(const Descriptor& folder, const std::string& name, const std::string& path) {
  struct stat status = {};
  if (fstatat(folder.Number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
    RaiseFileError(errno, path);
  if (S_ISDIR(status.st_mode)) return Deletion::kIsFolder;
  // A link has no rights of its own.
  if (!S_ISLNK(status.st_mode) && (status.st_mode & S_IWUSR) == 0) return Deletion::kSpared;
  if (unlinkat(folder.Number(), name.c_str(), 0) != 0) RaiseFileError(errno, path);
  return Deletion::kDone;
}

}  // namespace

std::vector<FolderEntry> ScanFolder(const Machine& machine, std::string_view folder) {
  const Descriptor opened = posix::OpenFolder(NativePath(machine, folder));
  struct Sorted {
    std::u16string upper;
    FolderEntry entry;
  };
  std::vector<Sorted> sorted;
  for (std::string& name : posix::NamesIn(opened)) {
    const FolderEntry::Kind kind = KindOf(opened, name);
    sorted.push_back({Utf16Of(UpperCaseText(name)), {std::move(name), kind}});
  }
  std::sort(sorted.begin(), sorted.end(), [](const Sorted& a, const Sorted& b) {
    return a.upper != b.upper ? a.upper < b.upper : a.entry.name < b.entry.name;
  });
  std::vector<FolderEntry> entries;
  entries.reserve(sorted.size());
  for (Sorted& each : sorted) entries.push_back(std::move(each.entry));
  return entries;
}

std::string ReadFile(const Machine& machine, std::string_view path, std::size_t most) {
  return ReadToEnd(posix::OpenForReading(machine, path), most);
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
  const posix::NameInFolder place = posix::ExactName(machine, path);
  const Descriptor above = posix::OpenFolder(place.folder);
  const auto remove = [&] {
    return unlinkat(above.Number(), place.name.c_str(), AT_REMOVEDIR) == 0;
  };
  if (remove()) return;
  if (errno == ENOTEMPTY || errno == EEXIST) {
    // What writers that were killed have left does not keep it.
    const Descriptor folder = posix::OpenFolderIn(above, place.name);
    const std::vector<std::string> names = posix::AllNamesIn(folder);
    for (const std::string& name : names) {
      if (!posix::IsTemporaryFile(folder, name)) throw RunTimeError(ErrorNumber::kPathFileAccess);
    }
    posix::RemoveLeftovers(folder, names, true);
    if (remove()) return;
  }
  RaiseFolderError(errno);
}

void DeleteFile(const Machine& machine, std::string_view path) {
  DeleteNativeFile(NativePath(machine, path));
}

void DeleteFilesIn(const Machine& machine, std::string_view path) {
  const posix::NameInFolder place = posix::ExactName(machine, path);
  const Descriptor folder = posix::OpenFolderIn(posix::OpenFolder(place.folder), place.name);
  FolderDeletion deletion;
  std::vector<std::string> names = posix::NamesIn(folder);
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    if (name[0] == '.') continue;
    deletion.Try(
        [&] { return DeleteIn(folder, name, place.folder + "/" + place.name + "/" + name); });
  }
  deletion.Finish();
}

void CopyFile(const Machine& machine, std::string_view from, std::string_view to) {
  FileReplacement(NativePath(machine, to)).ReplaceByCopyOf(NativePath(machine, from));
}

}  // namespace logbook
