// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Files.h"

#include <algorithm>

#include "base/FolderDeletion.h"
#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/TemporaryName.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"
#include "base/win32/TemporaryFile.h"

namespace logbook {

using win32::LastErrno;
using win32::RaiseFileError;
using win32::RaiseFolderError;
using win32::Status;
using win32::WidePath;

namespace {

// What a link leads to counts.
FolderEntry::Kind KindOf(const std::string& folder, const std::string& name, DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    Status status;
    if (!StatusOf(folder + "/" + name, win32::Follow::kYes, status))
      return FolderEntry::Kind::kUnreadable;
    attributes = status.attributes;
  }
  const bool is_folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return is_folder ? FolderEntry::Kind::kFolder : FolderEntry::Kind::kFile;
}

// Entries with their own attributes, temporary files left out. Raises 76, 70, 57.
struct RawEntry {
  std::string name;
  DWORD attributes;
};
std::vector<RawEntry> EntriesOf(const std::string& folder) {
  std::vector<RawEntry> entries;
  const bool done = win32::ForEachEntry(folder, [&entries](const WIN32_FIND_DATAW& found) {
    std::string name = win32::Narrow(found.cFileName);
    if (!IsTemporaryName(name) || (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
      entries.push_back({std::move(name), found.dwFileAttributes});
  });
  if (done) return entries;
  const DWORD error = GetLastError();
  if (error == ERROR_DIRECTORY) throw RunTimeError(ErrorNumber::kPathNotFound);
  RaiseFolderError(win32::ErrnoOf(error));
}

// A link goes itself, whatever it leads to.
bool DeleteLink(const std::string& path, DWORD attributes) {
  const bool to_folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return to_folder ? RemoveDirectoryW(WidePath(path).c_str()) != 0
                   : DeleteFileW(WidePath(path).c_str()) != 0;
}

// Deletes one name of a folder. Raises what the system refuses.
Deletion DeleteIn(const std::string& folder, const RawEntry& entry) {
  const std::string path = folder + "/" + entry.name;
  const Status status{entry.attributes, {}};
  if (status.IsLink()) {
    if (!DeleteLink(path, entry.attributes)) RaiseFileError(LastErrno(), path);
    return Deletion::kDone;
  }
  if (status.IsFolder()) return Deletion::kIsFolder;
  if (status.IsReadOnly()) return Deletion::kSpared;
  if (!DeleteFileW(WidePath(path).c_str())) RaiseFileError(LastErrno(), path);
  return Deletion::kDone;
}

bool IsHidden(const RawEntry& entry) {
  return entry.name[0] == '.' || (entry.attributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

// A folder itself, and no link to one. Raises 76, 75, 70, 57.
void RequireFolderItself(const std::string& native) {
  Status status;
  if (!StatusOf(native, win32::Follow::kNo, status)) RaiseFolderError(LastErrno());
  if (!status.IsFolder() || status.IsLink()) throw RunTimeError(ErrorNumber::kPathFileAccess);
}

}  // namespace

std::vector<FolderEntry> ScanFolder(const Machine& machine, std::string_view folder) {
  const std::string native = NativePath(machine, folder);
  if (native.empty()) throw RunTimeError(ErrorNumber::kPathNotFound);
  struct Sorted {
    std::u16string upper;
    FolderEntry entry;
  };
  std::vector<Sorted> sorted;
  for (RawEntry& each : EntriesOf(native)) {
    const FolderEntry::Kind kind = KindOf(native, each.name, each.attributes);
    sorted.push_back({Utf16Of(UpperCaseText(each.name)), {std::move(each.name), kind}});
  }
  std::sort(sorted.begin(), sorted.end(), [](const Sorted& a, const Sorted& b) {
    return a.upper != b.upper ? a.upper < b.upper : a.entry.name < b.entry.name;
  });
  std::vector<FolderEntry> entries;
  for (Sorted& each : sorted) entries.push_back(std::move(each.entry));
  return entries;
}

std::string ReadFile(const Machine& machine, std::string_view path, std::size_t most) {
  return ReadNativeFile(NativePath(machine, path), most);
}

void WriteFile(const Machine& machine, std::string_view path, std::string_view bytes) {
  FileReplacement(NativePath(machine, path)).Replace(bytes);
}

void WriteMadeFile(const Machine& machine, std::string_view path, std::string_view bytes) {
  FileReplacement(NativePath(machine, path)).ReplaceMadeFile(bytes);
}

void MakeFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  if (native.empty()) throw RunTimeError(ErrorNumber::kPathNotFound);
  if (CreateDirectoryW(WidePath(native).c_str(), nullptr)) return;
  const int error = LastErrno();
  if (error == EEXIST || win32::IsThere(native)) throw RunTimeError(ErrorNumber::kPathFileAccess);
  RaiseFolderError(error == ENOTDIR ? ENOENT : error);
}

void RemoveFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  RequireFolderItself(native);
  if (RemoveDirectoryW(WidePath(native).c_str())) return;
  const int error = LastErrno();
  if (error != ENOTEMPTY) RaiseFolderError(error);
  // What writers that were killed have left does not keep it.
  if (!EntriesOf(native).empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  win32::RemoveLeftovers(native);
  if (!RemoveDirectoryW(WidePath(native).c_str())) RaiseFolderError(LastErrno());
}

void DeleteFile(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  Status status;
  if (!StatusOf(native, win32::Follow::kNo, status)) RaiseFileError(LastErrno(), native);
  if (status.IsFolder() || status.IsReadOnly()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  if (!DeleteFileW(WidePath(native).c_str())) RaiseFileError(LastErrno(), native);
}

void DeleteFilesIn(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  RequireFolderItself(native);
  FolderDeletion deletion;
  std::vector<RawEntry> entries = EntriesOf(native);
  std::sort(entries.begin(), entries.end(),
            [](const RawEntry& a, const RawEntry& b) { return a.name < b.name; });
  for (const RawEntry& entry : entries) {
    if (IsHidden(entry)) continue;
    deletion.Try([&] { return DeleteIn(native, entry); });
  }
  deletion.Finish();
}

void CopyFile(const Machine& machine, std::string_view from, std::string_view to) {
  FileReplacement(NativePath(machine, to)).ReplaceByCopyOf(NativePath(machine, from));
}

}  // namespace logbook
