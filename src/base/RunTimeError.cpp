// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/RunTimeError.h"

#include <string_view>

#include "resources/Resources.h"

namespace logbook {

namespace {

// In the string table: the description of no error in particular; those of the errors stand at
// this and their number, before the numbers of other things begin.
constexpr int kDescriptions = 1500;
constexpr int kMostErrors = 500;

}  // namespace

std::string DescriptionOf(ErrorNumber number) {
  const int error = static_cast<int>(number);
  std::string_view text;
  if (error > 0 && error < kMostErrors) text = LoadResString(kDescriptions + error);
  return std::string(text.empty() ? LoadResString(kDescriptions) : text);
}

RunTimeError::RunTimeError(ErrorNumber number) : RunTimeError(number, DescriptionOf(number)) {}

RunTimeError::RunTimeError(ErrorNumber number, const std::string& description)
    : std::runtime_error(description), number_(number) {}

}  // namespace logbook
