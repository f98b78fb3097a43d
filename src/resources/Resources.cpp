// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "resources/Resources.h"

#include <algorithm>
#include <string>

#include "resources/ResourceData.h"

namespace logbook {

namespace {

// A process has one set of resources, as it has one code; it is chosen once, when it starts.
std::size_t chosen = 0;

const LanguageData& Chosen() {
  return LanguageTables()[chosen];
}

// Names of resources are plain letters.
bool IsName(std::string_view name, std::string_view wanted) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace

std::size_t LanguageCount() {
  return LanguageTables().size();
}

const Language& LanguageAt(std::size_t index) {
  return LanguageTables()[index].facts;
}

const Language& CurrentLanguage() {
  return Chosen().facts;
}

bool ChooseLanguage(std::string_view id) {
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    if (!IsName(LanguageAt(i).id, id)) continue;
    chosen = i;
    return true;
  }
  return false;
}

bool IsWrittenIn(const Language& language, int code_page) {
  const std::string pages = " " + std::string(language.pages) + " ";
  return language.pages == "all" ||
         pages.find(" " + std::to_string(code_page) + " ") != std::string::npos;
}

std::span<const StringResource> AllStrings() {
  return Chosen().strings;
}

std::string_view LoadResString(int number) {
  return LoadResString(number, chosen);
}

std::string_view LoadResString(int number, std::size_t language) {
  const std::span<const StringResource> strings = LanguageTables()[language].strings;
  const auto found =
      std::lower_bound(strings.begin(), strings.end(), number,
                       [](const StringResource& each, int wanted) { return each.number < wanted; });
  if (found == strings.end() || found->number != number) return {};
  return found->text;
}

std::optional<std::string_view> LoadResData(std::string_view id, std::string_view type) {
  if (!IsName(type, "LOGBOOK_RES")) return std::nullopt;
  for (const DataResource& each : Chosen().data) {
    if (IsName(each.id, id)) return each.bytes;
  }
  return std::nullopt;
}

}  // namespace logbook
