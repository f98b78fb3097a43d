// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/CSVMan.h"

#include <array>
#include <cstddef>
#include <optional>

#include "base/Profile.h"
#include "resources/Resources.h"

namespace logbook {

namespace {

constexpr std::size_t kProfileBuffer = 512;
constexpr std::size_t kPathFields = 201;  // bounds 0 to 200
using PathFields = std::array<std::string, kPathFields>;

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// "X:" for a single letter, else empty.
std::string DriveOf(std::string_view text) {
  const bool is_letter = text.size() == 1 &&
                         ((text[0] >= 'A' && text[0] <= 'Z') || (text[0] >= 'a' && text[0] <= 'z'));
  return is_letter ? std::string(text) + ":" : std::string();
}

// Drive and folder of a path with a backslash; returns the file name.
std::string SplitAtBackslashes(std::string_view path, std::string& drive, std::string& folder) {
  PathFields fields;
  SplitFields(path, fields, ":");
  drive = DriveOf(fields[0]);

  fields = {};
  const auto count = static_cast<std::size_t>(SplitFields(path, fields, "\\"));
  const bool starts_in_field_0 = !fields[0].empty() && fields[0].find(':') == std::string::npos;
  folder = starts_in_field_0 ? fields[0] + "\\" : "\\";
  for (std::size_t i = 1; i + 1 < count; ++i) folder += fields[i] + "\\";
  folder.pop_back();
  return fields[count - 1];
}

// Drive of a path without a backslash; returns the file name.
std::string SplitAtColon(std::string_view path, std::string& drive) {
  PathFields fields;
  SplitFields(path, fields, ":");
  const bool may_be_drive = fields[0].size() == 1 && path.find(':') == 1;
  drive = may_be_drive ? DriveOf(fields[0]) : std::string();
  return drive.empty() ? fields[0] : fields[1];
}

// Takes what stands before the first NUL of a buffer.
std::int32_t TakeValue(const Machine& machine, const std::string& buffer, std::string& value) {
  std::array<std::string, 3> fields;
  SplitFields(buffer, fields, std::string_view("\0", 1));
  value = machine.code_page->ToUtf8(fields[0]);
  return AnsiLen(machine, value);
}

}  // namespace

std::int32_t AnsiLen(const Machine& machine, std::string_view text) {
  return static_cast<std::int32_t>(machine.code_page->Length(text));
}

std::int32_t GetIniString(const Machine& machine, std::string_view section, std::string_view key,
                          std::string_view default_value, std::string& value,
                          std::string_view file) {
  return TakeValue(
      machine, GetPrivateProfileString(machine, section, key, default_value, kProfileBuffer, file),
      value);
}

std::int32_t GetIniStringFrom(const Machine& machine, std::string_view section,
                              std::string_view key, std::string_view default_value,
                              std::string& value, std::string_view profile_bytes) {
  return TakeValue(
      machine,
      GetProfileString(machine, section, key, default_value, kProfileBuffer, profile_bytes), value);
}

std::int16_t SplitFields(std::string_view text, std::span<std::string> fields,
                         std::string_view delimiter) {
  if (text.empty() || fields.empty()) return 0;
  const std::string work(text);  // the text may be one of the fields
  text = work;
  const std::size_t limit = fields.size() - 1;  // the last element is never filled
  std::size_t count = 0;
  while (count < limit) {
    const std::size_t found = text.find(delimiter);
    if (found == std::string_view::npos) {
      fields[count] = text;
      return static_cast<std::int16_t>(count + 1);
    }
    fields[count] = text.substr(0, found);
    ++count;
    text.remove_prefix(found + delimiter.size());
    if (text.empty()) break;
  }
  return static_cast<std::int16_t>(count);
}

void SplitPath(std::string_view path, std::string& drive, std::string& folder,
               std::string& base_name, std::string& extension) {
  const std::string work(Trim(path));  // the path may be one of the results
  path = work;
  folder.clear();
  const bool has_backslash = path.find('\\') != std::string_view::npos;
  const std::string name =
      has_backslash ? SplitAtBackslashes(path, drive, folder) : SplitAtColon(path, drive);

  PathFields parts;
  const auto count = static_cast<std::size_t>(SplitFields(name, parts, "."));
  base_name = name;
  extension.clear();
  if (count > 1) {
    extension = parts[count - 1];
    base_name = name.substr(0, name.size() - extension.size() - 1);
  }
}

std::string LoadResText(const Machine& machine, std::string_view id, std::string_view type) {
  const std::optional<std::string_view> data = LoadResData(id, type);
  return data ? TextOfResource(machine, *data) : std::string();
}

std::string TextOfResource(const Machine& machine, std::string_view bytes) {
  std::string text = machine.code_page->ToUtf8(bytes);
  const std::size_t last = text.find_last_not_of('\0');
  if (last != std::string::npos && text.size() - last > 2) text.resize(last + 2);
  return text;
}

}  // namespace logbook
