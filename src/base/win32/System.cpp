// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/System.h"

#include <algorithm>

#include "base/Utf8.h"

namespace logbook::win32 {

namespace {

constexpr std::wstring_view kLiteral = L"\\\\?\\";

// Shorter paths go as they are: the literal form would make names that end with a point or a blank,
// or that are those of devices, which no other program can open. A folder has room for twelve
// characters more within the system's limit of 260.
constexpr std::size_t kShortest = 248;

bool IsHighHalf(wchar_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowHalf(wchar_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// A path in the literal form is not tidied up by the system any more.
std::wstring WithoutDoubledSeparators(std::wstring path, std::size_t from) {
  const auto begin = path.begin() + static_cast<std::ptrdiff_t>(from);
  const auto both = [](wchar_t a, wchar_t b) { return a == L'\\' && b == L'\\'; };
  path.erase(std::unique(begin, path.end(), both), path.end());
  return path;
}

bool HasDots(const std::wstring& path) {
  const std::wstring closed = path + L'\\';
  return closed.find(L"\\.\\") != std::wstring::npos ||
         closed.find(L"\\..\\") != std::wstring::npos;
}

}  // namespace

std::wstring Wide(std::string_view text) {
  const std::u16string units = Utf16Of(text);
  return {units.begin(), units.end()};
}

std::string Narrow(std::wstring_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (IsHighHalf(text[i]) && i + 1 < text.size() && IsLowHalf(text[i + 1])) {
      character = 0x10000 + ((character - 0xD800) << 10) + (text[++i] - 0xDC00u);
    }
    AppendCharacter(character, narrow);
  }
  return narrow;
}

std::wstring WidePath(std::string_view native_path) {
  std::wstring path = Wide(native_path);
  std::replace(path.begin(), path.end(), L'/', L'\\');
  if (path.starts_with(kLiteral) || path.size() < kShortest) return path;
  const bool has_drive = path.size() > 2 && path[1] == L':' && path[2] == L'\\';
  const bool is_share = !has_drive && path.size() > 2 && path[0] == L'\\' && path[1] == L'\\';
  if ((!has_drive && !is_share) || HasDots(path)) return path;
  path = WithoutDoubledSeparators(std::move(path), 2);
  while (path.size() > 3 && path.back() == L'\\') path.pop_back();
  if (is_share) return std::wstring(kLiteral) + L"UNC" + path.substr(1);
  return std::wstring(kLiteral) + path;
}

}  // namespace logbook::win32
