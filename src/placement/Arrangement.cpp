// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "placement/Arrangement.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

#include "base/RunTimeError.h"
#include "resources/Resources.h"

namespace logbook {

namespace {

std::string_view TakeUntil(std::string_view& text, char delimiter) {
  const std::size_t length = text.find(delimiter);
  const std::string_view part = text.substr(0, length);
  text = length == std::string_view::npos ? std::string_view() : text.substr(length + 1);
  return part;
}

}  // namespace

int WholeNumber(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) throw RunTimeError(ErrorNumber::kTypeMismatch);
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    throw RunTimeError(ErrorNumber::kTypeMismatch);
  value = std::nearbyint(value);
  if (!(std::fabs(value) <= std::numeric_limits<std::int32_t>::max()))
    throw RunTimeError(ErrorNumber::kOverflow);
  return static_cast<int>(value);
}

std::vector<Rect> LoadPlaces(std::string_view id, std::size_t count) {
  std::string_view lists = LoadResData(id, "LOGBOOK_RES").value_or(std::string_view());
  std::vector<Rect> places;
  while (places.size() < count) {
    std::string_view list = TakeUntil(lists, '\0');
    Rect place;
    for (int* number : {&place.Left, &place.Top, &place.Width, &place.Height})
      *number = WholeNumber(TakeUntil(list, ','));
    places.push_back(place);
  }
  return places;
}

}  // namespace logbook
