// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/Status.h"

#include <algorithm>
#include <memory>

#include "base/RunTimeError.h"
#include "base/win32/SystemError.h"

namespace logbook::win32 {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Handle Open(const std::string& native_path, DWORD access, Follow follow) {
  const DWORD as_itself = follow == Follow::kNo ? FILE_FLAG_OPEN_REPARSE_POINT : 0;
  return Handle(CreateFileW(WidePath(native_path).c_str(), access, kShareAll, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | as_itself, nullptr));
}

// From the system's count of tenths of microseconds.
std::int64_t Nanoseconds(std::int64_t ticks) {
  constexpr std::int64_t kTicksTo1970 = 116444736000000000;
  return (ticks - kTicksTo1970) * 100;
}

std::uint64_t Joined(DWORD high, DWORD low) {
  return static_cast<std::uint64_t>(high) << 32 | low;
}

}  // namespace

bool StatusOf(const Handle& file, Status& status) {
  BY_HANDLE_FILE_INFORMATION facts = {};
  FILE_BASIC_INFO times = {};
  if (!GetFileInformationByHandle(file.Value(), &facts)) return false;
  const bool has_times =
      GetFileInformationByHandleEx(file.Value(), FileBasicInfo, &times, sizeof times) != 0;
  status.attributes = facts.dwFileAttributes;
  status.stamp = {.device = facts.dwVolumeSerialNumber,
                  .inode = Joined(facts.nFileIndexHigh, facts.nFileIndexLow),
                  .size = Joined(facts.nFileSizeHigh, facts.nFileSizeLow),
                  .modified_ns = Nanoseconds(static_cast<std::int64_t>(Joined(
                      facts.ftLastWriteTime.dwHighDateTime, facts.ftLastWriteTime.dwLowDateTime))),
                  .changed_ns = has_times ? Nanoseconds(times.ChangeTime.QuadPart) : 0};
  return true;
}

bool StatusOf(const std::string& native_path, Follow follow, Status& status) {
  if (native_path.empty()) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return false;
  }
  const Handle file = Open(native_path, FILE_READ_ATTRIBUTES, follow);
  if (file.IsOpen() && GetFileType(file.Value()) != FILE_TYPE_DISK) {
    SetLastError(ERROR_NOT_SUPPORTED);
    return false;
  }
  return file.IsOpen() && StatusOf(file, status);
}

bool IsFolder(const std::string& native_path) {
  Status status;
  return StatusOf(native_path, Follow::kYes, status) && status.IsFolder();
}

bool IsThere(const std::string& native_path) {
  return !native_path.empty() &&
         GetFileAttributesW(WidePath(native_path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

Handle OpenToRead(const std::string& native_path, Follow follow) {
  return Open(native_path, GENERIC_READ, follow);
}

Handle OpenForReading(const std::string& native_path) {
  if (native_path.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  Handle file = OpenToRead(native_path, Follow::kYes);
  if (!file.IsOpen()) RaiseFileError(LastErrno(), native_path);
  Status status;
  if (GetFileType(file.Value()) != FILE_TYPE_DISK) throw RunTimeError(ErrorNumber::kPathFileAccess);
  if (!StatusOf(file, status)) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  if (status.IsFolder()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  return file;
}

std::size_t ReadSome(const Handle& file, char* buffer, std::size_t size) {
  constexpr std::size_t kMost = 1 << 30;
  DWORD count = 0;
  if (!::ReadFile(file.Value(), buffer, static_cast<DWORD>(std::min(size, kMost)), &count, nullptr))
    throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  return count;
}

bool WriteAll(const Handle& file, std::string_view bytes) {
  constexpr std::size_t kMost = 1 << 30;
  while (!bytes.empty()) {
    DWORD count = 0;
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kMost));
    if (!::WriteFile(file.Value(), bytes.data(), size, &count, nullptr)) return false;
    bytes.remove_prefix(count);
  }
  return true;
}

bool ForEachEntry(const std::string& native_folder,
                  const std::function<void(const WIN32_FIND_DATAW&)>& take) {
  std::wstring pattern = WidePath(native_folder.empty() ? "." : native_folder);
  pattern += pattern.ends_with(L'\\') ? L"*" : L"\\*";
  WIN32_FIND_DATAW entry = {};
  const HANDLE search =
      FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr, 0);
  // A drive's root has no entries of its own; a folder always has.
  if (search == INVALID_HANDLE_VALUE)
    return GetLastError() == ERROR_FILE_NOT_FOUND && IsFolder(native_folder);
  const std::unique_ptr<void, BOOL(WINAPI*)(HANDLE)> closer(search, FindClose);
  do {
    const std::wstring_view name = entry.cFileName;
    if (name != L"." && name != L"..") take(entry);
  } while (FindNextFileW(search, &entry));
  return GetLastError() == ERROR_NO_MORE_FILES;
}

}  // namespace logbook::win32
