// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The program's resources, built in from the data files of this folder: for each language a folder
// with its numbered strings, the places of the controls and a few facts. A localised build changes
// only those files (docs/languages.md). The build fails on a number that stands twice or that a
// language lacks.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace logbook {

struct StringResource {
  int number;
  std::string_view text;
};

struct Language {
  std::string_view id;       // name of its folder, such as "de"
  std::string_view name;     // in English
  std::string_view pages;    // numbers of the code pages that hold its words, or "all"
  std::string_view toolkit;  // the toolkit's own catalogue, such as "qtbase_de"; empty for none
  std::string_view manual;   // folder of its manual below that of the English one, "." for itself
};

// The languages that are built in, English first.
std::size_t LanguageCount();
const Language& LanguageAt(std::size_t index);

// The language of all texts and places below: English until another is chosen.
const Language& CurrentLanguage();

// Chooses the language of this id for the process; false, and no change, if there is none. To be
// called before the first text is loaded: texts that were loaded stay as they are.
bool ChooseLanguage(std::string_view id);

// True if machines of this code page can hold the language's words in their files.
bool IsWrittenIn(const Language& language, int code_page);

// All strings in ascending order of their numbers.
std::span<const StringResource> AllStrings();

// The text of this number. A missing number is a fault of the build; the result is then empty.
std::string_view LoadResString(int number);

// The text of this number in one of the languages, whichever is chosen.
std::string_view LoadResString(int number, std::size_t language);

// The bytes of a custom resource, such as id "IDRES_LOGBOOK_ARRANGE" of type "LOGBOOK_RES", in the
// code page, closing NULs included. Nothing if there is none. Names ignore case.
std::optional<std::string_view> LoadResData(std::string_view id, std::string_view type);

}  // namespace logbook
