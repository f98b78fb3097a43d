// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/TemporaryFile.h"

#include <vector>

#include "base/RunTimeError.h"
#include "base/TemporaryName.h"
#include "base/UpperCase.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook::win32 {

namespace {

// The path with the name of its file as the disk spells it. The search takes some signs for any
// name and so may find others.
std::wstring AsSpelled(const std::wstring& path) {
  WIN32_FIND_DATAW entry = {};
  const HANDLE search = FindFirstFileW(path.c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return path;
  FindClose(search);
  const std::size_t begin = path.find_last_of(L"\\/") + 1;
  if (!EqualIgnoringCase(Narrow(path.substr(begin)), Narrow(entry.cFileName))) return path;
  return path.substr(0, begin) + entry.cFileName;
}

bool Move(const std::wstring& from, const std::wstring& to) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
  const DWORD attributes = GetFileAttributesW(to.c_str());
  // Not every disk takes the attributes over by itself.
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kKept) != 0)
    SetFileAttributesW(from.c_str(), attributes & kKept);
  // Keeps what the old file has of rights, attributes and date of making.
  const bool replaced = attributes != INVALID_FILE_ATTRIBUTES &&
                        ReplaceFileW(to.c_str(), from.c_str(), nullptr,
                                     REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr);
  return replaced ||
         MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

bool IsHeldByAReader(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
         error == ERROR_USER_MAPPED_FILE;
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& native_folder) {
  constexpr int kMostNames = 100;
  const std::string first = native_folder + "/" + std::string(kTemporaryName);
  for (int i = 0; i < kMostNames; ++i) {
    path_ = first;
    if (i > 0) path_ += std::to_string(GetCurrentProcessId()) + "-" + std::to_string(i);
    file_ = Handle(CreateFileW(WidePath(path_).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file_.IsOpen()) return;
    const DWORD error = GetLastError();
    if (error != ERROR_FILE_EXISTS && error != ERROR_SHARING_VIOLATION)
      RaiseFolderError(ErrnoOf(error));
  }
  throw RunTimeError(ErrorNumber::kDeviceInputOutput);
}

TemporaryFile::~TemporaryFile() {
  file_.Close();
  if (!path_.empty()) DeleteFileW(WidePath(path_).c_str());
}

bool TemporaryFile::Rename(const std::string& native_path) {
  constexpr int kMostTries = 100;
  constexpr DWORD kPause = 10;  // milliseconds
  file_.Close();
  for (int i = 0; i < kMostTries; ++i) {
    if (Move(WidePath(path_), AsSpelled(WidePath(native_path)))) {
      path_.clear();
      return true;
    }
    const DWORD error = GetLastError();
    if (!IsHeldByAReader(error)) return false;
    Sleep(kPause);
    SetLastError(error);
  }
  return false;
}

void RemoveLeftovers(const std::string& native_folder) {
  std::vector<std::string> names;
  ForEachEntry(native_folder, [&names](const WIN32_FIND_DATAW& entry) {
    const std::string name = Narrow(entry.cFileName);
    const bool is_file =
        (entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0;
    if (is_file && IsTemporaryName(name)) names.push_back(name);
  });
  for (const std::string& name : names) DeleteFileW(WidePath(native_folder + "/" + name).c_str());
}

}  // namespace logbook::win32
