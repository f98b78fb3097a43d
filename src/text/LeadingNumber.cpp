// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/LeadingNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "base/PlainText.h"
#include "base/RunTimeError.h"

namespace logbook {
namespace {

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
};

// The text begins with a number.
DecimalShape ShapeOf(std::string_view text) {
  DecimalShape shape;
  shape.whole = text.substr(0, DigitRun(text));
  text.remove_prefix(shape.whole.size());
  if (!text.empty() && text[0] == '.') {
    shape.fraction = text.substr(1, DigitRun(text.substr(1)));
    text.remove_prefix(1 + shape.fraction.size());
  }
  if (text.empty() || (text[0] != 'e' && text[0] != 'E')) return shape;
  text.remove_prefix(1);
  const std::size_t sign = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  const std::size_t digits = DigitRun(text.substr(sign));
  if (digits > 0) shape.exponent = text.substr(0, sign + digits);
  return shape;
}

// Beyond it every exponent means the same: no text has so many digits that they make up for it.
constexpr long long kFarExponent = 1'000'000'000'000;

// True if a number that a double cannot hold is too large for it, false if it is too small.
bool IsTooLarge(const DecimalShape& shape) {
  std::string_view exponent_text = shape.exponent;
  const bool negative = !exponent_text.empty() && exponent_text[0] == '-';
  if (!exponent_text.empty() && !IsDigit(exponent_text[0])) exponent_text.remove_prefix(1);
  long long exponent = 0;
  const auto [end, error] =
      std::from_chars(exponent_text.data(), exponent_text.data() + exponent_text.size(), exponent);
  if (error == std::errc::result_out_of_range) return !negative;
  exponent = std::min(exponent, kFarExponent);
  if (negative) exponent = -exponent;
  const std::size_t lead = shape.whole.find_first_not_of('0');
  if (lead != std::string_view::npos) {
    return static_cast<long long>(shape.whole.size() - lead) + exponent > 0;
  }
  return exponent > static_cast<long long>(shape.fraction.find_first_not_of('0'));
}

// The value of a hexadecimal digit; -1 for any other character.
int HexadecimalDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::optional<double> ReadHexadecimal(std::string_view text) {
  if (text.empty() || HexadecimalDigit(text[0]) < 0) return std::nullopt;
  double value = 0;
  for (const char c : text) {
    const int digit = HexadecimalDigit(c);
    if (digit < 0) break;
    value = value * 16 + digit;
  }
  if (std::isinf(value)) throw RunTimeError(ErrorNumber::kOverflow);
  return value;
}

constexpr std::size_t kMostDigits = 15;
constexpr auto kPowers =
    std::to_array<double>({1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                           1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22});

// The exponent that a text behind the letter begins with: a sign or none and one or two digits;
// nothing for any other.
std::optional<int> ShortExponent(std::string_view text) {
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  const std::size_t digits = DigitRun(text.substr(0, 3));
  if (digits < 1 || digits > 2) return std::nullopt;
  const int value = digits == 1 ? text[0] - '0' : (text[0] - '0') * 10 + (text[1] - '0');
  return negative ? -value : value;
}

// A number of so few digits that it is one multiplication or division away; nothing for any other
// text. A whole number below 2^53 and a power of ten up to 10^22 are exact, so their product or
// quotient is the nearest double.
std::optional<double> ReadPlainDecimal(std::string_view text) {
  std::uint64_t digits = 0;
  std::size_t at = 0;
  const auto take_digits = [&] {
    const std::size_t begin = at;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
      digits = digits * 10 + static_cast<std::uint64_t>(text[at] - '0');
    }
    return at - begin;
  };
  const std::size_t whole = take_digits();
  const bool has_point = at < text.size() && text[at] == '.';
  at += has_point ? 1 : 0;
  const std::size_t places = has_point ? take_digits() : 0;
  const bool has_exponent = at < text.size() && (text[at] == 'e' || text[at] == 'E');
  if (whole + places == 0 || whole + places > kMostDigits) return std::nullopt;
  if (!has_exponent) return static_cast<double>(digits) / kPowers[places];
  const std::optional<int> exponent = ShortExponent(text.substr(at + 1));
  if (!exponent) return std::nullopt;
  const int power = *exponent - static_cast<int>(places);
  const auto distance = static_cast<std::size_t>(power < 0 ? -power : power);
  if (distance >= kPowers.size()) return std::nullopt;
  const auto number = static_cast<double>(digits);
  return power < 0 ? number / kPowers[distance] : number * kPowers[distance];
}

}  // namespace

double LeadingNumber(std::string_view text) {
  return FindLeadingNumber(text).value_or(0);
}

std::optional<double> FindLeadingNumber(std::string_view text) {
  while (!text.empty() && (text[0] == ' ' || text[0] == '\t')) text.remove_prefix(1);
  if (text.size() >= 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
    return ReadHexadecimal(text.substr(2));
  }
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  // The library also reads "inf" and "nan", which are no numbers here.
  if (text.empty() || !(IsDigit(text[0]) || text[0] == '.')) return std::nullopt;
  if (const auto plain = ReadPlainDecimal(text)) return negative ? -*plain : *plain;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    if (IsTooLarge(ShapeOf(text))) throw RunTimeError(ErrorNumber::kOverflow);
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
