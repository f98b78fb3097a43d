// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "resources/Resources.h"

#include <algorithm>

#include "resources/ResourceData.h"

namespace logbook {

namespace {

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  const auto upper = [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return upper(x) == upper(y); });
}

}  // namespace

std::span<const StringResource> AllStrings() {
  return StringData();
}

std::string_view LoadResString(int number) {
  const std::span<const StringResource> strings = StringData();
  const auto found =
      std::lower_bound(strings.begin(), strings.end(), number,
                       [](const StringResource& each, int wanted) { return each.number < wanted; });
  if (found == strings.end() || found->number != number) return {};
  return found->text;
}

std::optional<std::string_view> LoadResData(std::string_view id, std::string_view type) {
  if (!EqualIgnoringCase(type, "LOGBOOK_RES") || !EqualIgnoringCase(id, "IDRES_LOGBOOK_ARRANGE"))
    return std::nullopt;
  return ArrangementData();
}

}  // namespace logbook
