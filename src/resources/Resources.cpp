// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "resources/Resources.h"

#include <algorithm>

#include "base/UpperCase.h"
#include "resources/ResourceData.h"

namespace logbook {

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
