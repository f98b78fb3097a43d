// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/NumberFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace logbook {
namespace {

constexpr int kSignificantDigits = 15;

// A decimal number without sign: digits d1 d2 d3 ... stand for d1.d2d3... times ten to the power
// of the exponent. Zero is the single digit 0 with exponent 0.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

// Keeps the first `count` digits, halves away from zero. A count of 0 or less keeps nothing but
// the carry.
void RoundTo(Decimal& number, int count) {
  if (count >= static_cast<int>(number.digits.size())) return;
  const bool up = count >= 0 && number.digits[static_cast<std::size_t>(count)] >= '5';
  number.digits.resize(static_cast<std::size_t>(std::max(count, 0)));
  if (up) {
    const std::size_t last = number.digits.find_last_not_of('9');
    number.digits.resize(last == std::string::npos ? 0 : last + 1);
    if (number.digits.empty()) {
      number.digits += '1';
      ++number.exponent;
    } else {
      ++number.digits.back();
    }
  }
  if (number.digits.find_first_not_of('0') == std::string::npos) number = {"0", 0};
}

Decimal DecimalOf(double value) {
  // Enough digits to tell a half from its neighbours.
  constexpr int kPrecision = 40;
  std::array<char, kPrecision + 16> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::scientific, kPrecision);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t letter = text.find('e');
  Decimal number;
  number.digits = text.substr(0, 1);
  number.digits += text.substr(2, letter - 2);
  const std::size_t sign = text[letter + 1] == '+' ? 1 : 0;
  std::from_chars(text.data() + letter + 1 + sign, text.data() + text.size(), number.exponent);
  RoundTo(number, kSignificantDigits);
  if (number.digits.find_first_not_of('0') == std::string::npos) number = {"0", 0};
  return number;
}

// The digit that stands at this power of ten.
char DigitAt(const Decimal& number, int power) {
  const int index = number.exponent - power;
  const bool held = index >= 0 && index < static_cast<int>(number.digits.size());
  return held ? number.digits[static_cast<std::size_t>(index)] : '0';
}

std::string Digits(const Decimal& number, int highest_power, int places) {
  std::string text;
  for (int power = highest_power; power >= 0; --power) text += DigitAt(number, power);
  if (places > 0) text += '.';
  for (int power = -1; power >= -places; --power) text += DigitAt(number, power);
  return text;
}

std::string Scientific(Decimal number, int places) {
  RoundTo(number, places + 1);
  const int exponent = number.exponent;
  number.exponent = 0;
  std::string text = Digits(number, 0, places);
  text += 'e';
  return text += std::to_string(exponent);
}

std::string FixedPoint(Decimal number, int places) {
  RoundTo(number, number.exponent + places + 1);
  return Digits(number, std::max(number.exponent, 0), places);
}

}  // namespace

std::string FormatNumber(double value, std::string_view picture) {
  if (picture.find('0') == std::string_view::npos) return std::string(picture);
  const std::string_view mantissa = picture.substr(0, picture.find('e'));
  const std::size_t point = mantissa.find('.');
  const int places =
      point == std::string_view::npos ? 0 : static_cast<int>(mantissa.size() - point - 1);
  const Decimal number = DecimalOf(std::abs(value));
  const bool scientific = mantissa.size() < picture.size();
  std::string text = value < 0 ? "-" : "";
  return text += scientific ? Scientific(number, places) : FixedPoint(number, places);
}

}  // namespace logbook
