// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/TemporaryName.h"

namespace logbook {
namespace {

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

bool IsTemporaryName(std::string_view name) {
  if (!name.starts_with(kTemporaryName)) return false;
  const std::string_view rest = name.substr(kTemporaryName.size());
  const std::size_t hyphen = rest.find('-');
  if (hyphen == std::string_view::npos) return rest.empty() || IsNumber(rest);
  return IsNumber(rest.substr(0, hyphen)) && IsNumber(rest.substr(hyphen + 1));
}

}  // namespace logbook
