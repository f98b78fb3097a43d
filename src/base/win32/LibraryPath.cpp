// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/LibraryPath.h"

#include "base/win32/System.h"

namespace logbook {

namespace {

// Empty if a letter of the path is none of the code page.
std::string InCodePage(const std::wstring& path) {
  std::string bytes(path.size() * 4, '\0');
  BOOL is_changed = FALSE;
  const int length =
      WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.data(), static_cast<int>(path.size()),
                          bytes.data(), static_cast<int>(bytes.size()), nullptr, &is_changed);
  bytes.resize(is_changed ? 0 : static_cast<std::size_t>(length));
  return bytes;
}

}  // namespace

std::string PathForLibraries(const std::string& native_path) {
  const std::wstring path = win32::Wide(native_path);
  const std::string bytes = InCodePage(path);
  if (!bytes.empty()) return bytes;
  std::wstring shorter(32768, L'\0');
  const DWORD length =
      GetShortPathNameW(path.c_str(), shorter.data(), static_cast<DWORD>(shorter.size()));
  shorter.resize(length < shorter.size() ? length : 0);
  return InCodePage(shorter);
}

}  // namespace logbook
