// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Path texts are this system's own paths and go through unchanged, but for the separators, which
// are slashes in native ones. Only a machine with a home of its own, as tests make, has its drives
// below that. The disk finds names without regard to case by itself, and no two names in a folder
// differ in case alone, so a name between quotes is found as any other.

#include <algorithm>
#include <filesystem>

#include "base/Files.h"
#include "base/PathParts.h"
#include "base/UpperCase.h"
#include "base/Utf8Path.h"
#include "base/win32/Status.h"

namespace logbook {

namespace {

// Before a path that is native already, whatever home the machine has.
constexpr std::string_view kLiteral = "\\\\?\\";

// A computer's name and one of its folders.
bool IsShare(std::string_view path) {
  return path.size() > 2 && IsSeparator(path[0]) && IsSeparator(path[1]) && !IsSeparator(path[2]);
}

// The components with a slash before each.
std::string WithSlashes(std::string_view path) {
  std::string slashed;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i < path.size() && !IsSeparator(path[i])) continue;
    if (i > start) slashed.append("/").append(WithoutQuotes(path.substr(start, i - start)));
    start = i + 1;
  }
  return slashed;
}

std::string DriveOf(const Machine& machine, std::string_view path) {
  if (machine.home.empty()) return std::string(path.substr(0, 2));
  return machine.home + "/drives/" + static_cast<char>(path[0] | 0x20);
}

std::string WholePath(const std::string& native_path) {
  std::error_code ignored;
  const auto full = std::filesystem::absolute(Utf8Path(native_path), ignored);
  return ignored ? native_path : full.lexically_normal().generic_string();
}

std::string Below(const std::string& folder, const std::string& native_path) {
  return native_path.substr(folder.size());
}

bool LiesIn(const std::string& folder, const std::string& native_path) {
  if (native_path.size() < folder.size()) return false;
  return EqualIgnoringCase(native_path.substr(0, folder.size()), folder) &&
         (native_path.size() == folder.size() || native_path[folder.size()] == '/');
}

}  // namespace

std::string NativePath(const Machine& machine, std::string_view path) {
  if (path.empty()) return {};
  if (path.starts_with(kLiteral)) return NativePath({}, path.substr(kLiteral.size()));
  if (IsShare(path)) return "/" + WithSlashes(path);
  if (!HasDrive(path)) return path.find_first_not_of("\\/") == path.npos ? "/" : WithSlashes(path);
  std::string native_path = DriveOf(machine, path) + WithSlashes(path.substr(2));
  return native_path.size() == 2 ? native_path + "/" : native_path;
}

std::string PathText(const std::string& native_path) {
  const std::string text = WithBackslashes(WholePath(native_path));
  return HasDrive(text) ? std::string(kLiteral) + text : text;
}

std::string DrivePathText(const Machine& machine, const std::string& native_path) {
  const std::string whole = WholePath(native_path);
  if (machine.home.empty()) return WithBackslashes(whole);
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string drive = {letter, ':'};
    const std::string folder = WholePath(NativePath(machine, drive + "\\"));
    if (!LiesIn(folder, whole)) continue;
    const std::string text = drive + WithBackslashes(Below(folder, whole));
    return text.size() == 2 ? text + "\\" : text;
  }
  return PathText(native_path);
}

bool Exists(const Machine& machine, std::string_view path) {
  win32::Status status;
  return StatusOf(NativePath(machine, path), win32::Follow::kYes, status);
}

bool NameIsTaken(const Machine& machine, std::string_view path) {
  return win32::IsThere(NativePath(machine, path));
}

bool FolderExists(const Machine& machine, std::string_view path) {
  return win32::IsFolder(NativePath(machine, path));
}

FileStamp StampOf(const Machine& machine, std::string_view path) {
  win32::Status status;
  if (!StatusOf(NativePath(machine, path), win32::Follow::kYes, status)) return {};
  return status.stamp;
}

}  // namespace logbook
