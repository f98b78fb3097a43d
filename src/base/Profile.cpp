// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Profile.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "base/Files.h"
#include "base/NativeFile.h"
#include "base/PlainText.h"
#include "base/ProfileText.h"
#include "base/RunTimeError.h"
#include "base/Utf8.h"

namespace logbook {

namespace {

std::optional<std::string> Find(const Machine& machine, std::string_view section,
                                std::string_view key, std::string_view file) {
  const CodePage& page = *machine.code_page;
  try {
    return FindProfileValue(page, ReadFile(machine, file, kLargestProfile),
                            page.FromUtf8(UpToNul(section)), page.FromUtf8(UpToNul(key)));
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

// The bytes of a name or value for the file. Raises kInvalidProcedureCall for a line end in it.
std::string TextForFile(const CodePage& page, std::string_view text) {
  std::string bytes = page.FromUtf8(UpToNul(text));
  if (bytes.find_first_of("\r\n") != std::string::npos)
    throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
  return bytes;
}

std::string WithoutTrailingBlanks(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

// Characters as bytes of the code page. ASCII is the same in every page.
std::string InPage(const CodePage& page, std::string_view text) {
  return IsAscii(text) ? std::string(text) : page.FromUtf8(text);
}

// A value is read as characters and written as bytes again, as text of any other source is.
std::string ReadAndWritten(const CodePage& page, std::string_view bytes) {
  return IsAscii(bytes) ? std::string(bytes) : page.FromUtf8(page.ToUtf8(bytes));
}

// What a caller with a buffer of this size receives.
std::string Cut(const Machine& machine, const std::optional<std::string_view>& found,
                std::string_view default_value, std::size_t size) {
  const CodePage& page = *machine.code_page;
  std::string value = found ? ReadAndWritten(page, UpToNul(*found))
                            : InPage(page, WithoutTrailingBlanks(UpToNul(default_value)));
  value.resize(std::min(value.size(), size > 0 ? size - 1 : 0));
  return value;
}

// The leading digits; too many of them wrap at 32 bits.
int LeadingInt32(std::string_view value) {
  std::size_t position = std::min(value.find_first_not_of(" \t"), value.size());
  if (position < value.size() && value[position] == '+') ++position;
  std::uint32_t number = 0;
  for (; position < value.size(); ++position) {
    const char digit = value[position];
    if (digit < '0' || digit > '9') break;
    number = number * 10 + static_cast<std::uint32_t>(digit - '0');
  }
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::string GetPrivateProfileString(const Machine& machine, std::string_view section,
                                    std::string_view key, std::string_view default_value,
                                    std::size_t size, std::string_view file) {
  return Cut(machine, Find(machine, section, key, file), default_value, size);
}

std::string GetProfileString(const Machine& machine, std::string_view section, std::string_view key,
                             std::string_view default_value, std::size_t size,
                             std::string_view profile_bytes) {
  const CodePage& page = *machine.code_page;
  const auto found = FindProfileValue(page, profile_bytes, page.FromUtf8(UpToNul(section)),
                                      page.FromUtf8(UpToNul(key)));
  return Cut(machine, found, default_value, size);
}

std::vector<std::string> GetProfileStrings(const Machine& machine, std::string_view section,
                                           std::span<const std::string_view> keys,
                                           std::string_view default_value, std::size_t size,
                                           std::string_view profile_bytes) {
  const CodePage& page = *machine.code_page;
  std::vector<std::string> key_bytes;
  key_bytes.reserve(keys.size());
  for (const std::string_view key : keys) key_bytes.push_back(InPage(page, UpToNul(key)));
  const std::vector<std::string_view> key_views(key_bytes.begin(), key_bytes.end());
  std::vector<std::string> values;
  values.reserve(keys.size());
  for (const auto& found :
       FindProfileValues(page, profile_bytes, page.FromUtf8(UpToNul(section)), key_views)) {
    values.push_back(Cut(machine, found, default_value, size));
  }
  return values;
}

int GetPrivateProfileInt(const Machine& machine, std::string_view section, std::string_view key,
                         int default_value, std::string_view file) {
  const auto value = Find(machine, section, key, file);
  return value ? LeadingInt32(*value) : default_value;
}

int GetProfileInt(const Machine& machine, std::string_view section, std::string_view key,
                  int default_value, std::string_view profile_bytes) {
  const CodePage& page = *machine.code_page;
  const auto value = FindProfileValue(page, profile_bytes, page.FromUtf8(UpToNul(section)),
                                      page.FromUtf8(UpToNul(key)));
  return value ? LeadingInt32(*value) : default_value;
}

bool WritePrivateProfileString(const Machine& machine, std::string_view section,
                               std::string_view key, std::string_view value,
                               std::string_view file) {
  const ProfileValue one = {std::string(section), std::string(key), std::string(value)};
  return WritePrivateProfileStrings(machine, {&one, 1}, file);
}

bool WritePrivateProfileStrings(const Machine& machine, std::span<const ProfileValue> values,
                                std::string_view file) {
  const CodePage& page = *machine.code_page;
  try {
    FileReplacement replacement(NativePath(machine, file));
    std::string bytes = replacement.Bytes(kLargestProfile).value_or(std::string());
    for (const ProfileValue& each : values) {
      bytes = SetProfileValue(page, bytes, TextForFile(page, each.section),
                              TextForFile(page, each.key), TextForFile(page, each.value));
    }
    replacement.Replace(bytes);
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace logbook
