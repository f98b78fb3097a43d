// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/SystemRegistry.h"

#include "base/PlainText.h"
#include "base/win32/System.h"

namespace logbook {

namespace {

std::optional<std::string> ReadView(const std::wstring& key, const std::wstring& name,
                                    REGSAM view) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_QUERY_VALUE | view, &opened) !=
      ERROR_SUCCESS)
    return std::nullopt;
  DWORD type = 0;
  DWORD size = 0;
  LONG result = RegQueryValueExW(opened, name.c_str(), nullptr, &type, nullptr, &size);
  std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
  if (result == ERROR_SUCCESS)
    result = RegQueryValueExW(opened, name.c_str(), nullptr, &type,
                              reinterpret_cast<BYTE*>(value.data()), &size);
  RegCloseKey(opened);
  if (result != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
  value.resize(size / sizeof(wchar_t));
  return std::string(UpToNul(win32::Narrow(value)));
}

}  // namespace

std::optional<std::string> ReadSystemRegistry(std::string_view key, std::string_view name) {
  const std::wstring wide_key = win32::Wide(key);
  const std::wstring wide_name = win32::Wide(name);
  for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
    if (auto value = ReadView(wide_key, wide_name, view)) return value;
  }
  return std::nullopt;
}

std::optional<int> SystemCodePage() {
  return static_cast<int>(GetACP());
}

}  // namespace logbook
