// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Number pictures against decimal rounding of what printf gives with 15 significant digits.

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "Fuzzing.h"
#include "text/NumberFormat.h"

namespace logbook::fuzz {
namespace {

// The first `count` digits of a row of digits before the decimal point, halves away from zero; the
// place of the point moves with a carry.
std::string Cut(std::string digits, std::size_t count, int& point) {
  if (digits.size() < count + 1) digits.append(count + 1 - digits.size(), '0');
  const bool up = digits[count] >= '5';
  digits.resize(count);
  for (std::size_t i = count; up; --i) {
    if (i == 0) {
      ++point;
      return "1" + digits;
    }
    if (digits[i - 1] != '9') {
      ++digits[i - 1];
      break;
    }
    digits[i - 1] = '0';
  }
  return digits;
}

// What printf gives with more digits than decide a half, rounded by hand: first to 15 digits, then
// to the places.
std::string Rounded(double value, int places) {
  char text[64];
  std::snprintf(text, sizeof text, "%.40e", std::fabs(value));
  int point = std::atoi(std::strchr(text, 'e') + 1) + 1;  // digits before the decimal point
  std::string digits = Cut(std::string(1, text[0]) + std::string(text + 2, 40), 15, point);
  if (point < 1) {
    digits.insert(0, static_cast<std::size_t>(1 - point), '0');
    point = 1;
  }
  digits = Cut(digits, static_cast<std::size_t>(point + places), point);
  digits.resize(static_cast<std::size_t>(point + places));
  if (places > 0) digits.insert(static_cast<std::size_t>(point), 1, '.');
  return (value < 0 ? "-" : "") + digits;
}

void Try(Input input) {
  double value = 0;
  unsigned char bits[sizeof value];
  for (unsigned char& byte : bits) byte = input.Byte();
  std::memcpy(&value, bits, sizeof value);
  if (!std::isfinite(value)) return;
  const int places = input.Number(8);
  const std::string picture = places == 0 ? "0" : "0." + std::string(places, '0');
  FUZZ_REQUIRE(FormatNumber(value, picture) == Rounded(value, places));
  FormatNumber(value, "0.00e-#");
  FormatNumber(value, std::string(input.Rest()));
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
