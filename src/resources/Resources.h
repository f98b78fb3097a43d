// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The program's resources, built in from the data files of this folder: strings.txt, one numbered
// string a line (number, one tab, text in UTF-8), and the arrangement of the main window. A
// localised build changes only those files. The build fails on a number that stands twice.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace logbook {

struct StringResource {
  int number;
  std::string_view text;
};

// All strings in ascending order of their numbers.
std::span<const StringResource> AllStrings();

// The text of this number. A missing number is a fault of the build; the result is then empty.
std::string_view LoadResString(int number);

// The bytes of a custom resource, such as id "IDRES_LOGBOOK_ARRANGE" of type "LOGBOOK_RES", in the
// code page, closing NULs included. Nothing if there is none. Names ignore case.
std::optional<std::string_view> LoadResData(std::string_view id, std::string_view type);

}  // namespace logbook
