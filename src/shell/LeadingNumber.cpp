// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "shell/LeadingNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "platform/RunTimeError.h"

namespace logbook {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Number of decimal digits that the text begins with.
std::size_t DigitRun(std::string_view text) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) -
                                  text.begin());
}

// The parts of a decimal number at the start of a text.
struct DecimalShape {
  std::string_view whole;     // digits before the point
  std::string_view fraction;  // digits behind it
  std::string_view exponent;  // sign and digits behind the letter; empty if there is none
  std::size_t length = 0;     // characters in all; 0 if the text does not begin with a number
};

DecimalShape ShapeOf(std::string_view text) {
  DecimalShape shape;
  shape.whole = text.substr(0, DigitRun(text));
  std::size_t at = shape.whole.size();
  if (at < text.size() && text[at] == '.') {
    shape.fraction = text.substr(at + 1, DigitRun(text.substr(at + 1)));
    at += 1 + shape.fraction.size();
  }
  if (shape.whole.empty() && shape.fraction.empty()) return {};
  shape.length = at;
  if (at == text.size() || (text[at] != 'e' && text[at] != 'E')) return shape;
  const std::string_view behind = text.substr(at + 1);
  const std::size_t sign = !behind.empty() && (behind[0] == '+' || behind[0] == '-') ? 1 : 0;
  const std::size_t digits = DigitRun(behind.substr(sign));
  if (digits == 0) return shape;
  shape.exponent = behind.substr(0, sign + digits);
  shape.length = at + 1 + shape.exponent.size();
  return shape;
}

// True if a number that a double cannot hold is too large for it, false if it is too small.
bool IsTooLarge(const DecimalShape& shape) {
  std::string_view exponent_text = shape.exponent;
  const bool negative = !exponent_text.empty() && exponent_text[0] == '-';
  if (!exponent_text.empty() && !IsDigit(exponent_text[0])) exponent_text.remove_prefix(1);
  long long exponent = 0;
  const auto [end, error] =
      std::from_chars(exponent_text.data(), exponent_text.data() + exponent_text.size(), exponent);
  if (error == std::errc::result_out_of_range) return !negative;
  if (negative) exponent = -exponent;
  const std::size_t lead = shape.whole.find_first_not_of('0');
  if (lead != std::string_view::npos) {
    return static_cast<long long>(shape.whole.size() - lead) + exponent > 0;
  }
  return exponent > static_cast<long long>(shape.fraction.find_first_not_of('0'));
}

double ReadHexadecimal(std::string_view digits) {
  double value = 0;
  for (const char c : digits) {
    int digit = 0;
    const auto [end, error] = std::from_chars(&c, &c + 1, digit, 16);
    if (error != std::errc()) break;
    value = value * 16 + digit;
  }
  if (std::isinf(value)) throw RunTimeError(ErrorNumber::kOverflow);
  return value;
}

}  // namespace

double LeadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (text.size() >= 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
    return ReadHexadecimal(text.substr(2));
  }
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  const DecimalShape shape = ShapeOf(text);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + shape.length, value);
  if (error == std::errc::result_out_of_range) {
    if (IsTooLarge(shape)) throw RunTimeError(ErrorNumber::kOverflow);
    value = 0;
  }
  return negative ? -value : value;
}

std::int16_t LeadingInt16(std::string_view text) {
  const double value = LeadingNumber(text);
  // remainder() takes halves to the even neighbour whatever rounding the machine is set to.
  const double rounded = value - std::remainder(value, 1.0);
  if (rounded < std::numeric_limits<std::int16_t>::min() ||
      rounded > std::numeric_limits<std::int16_t>::max()) {
    throw RunTimeError(ErrorNumber::kOverflow);
  }
  return static_cast<std::int16_t>(rounded);
}

}  // namespace logbook
