// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/NumberFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace logbook {
namespace {

constexpr int kSignificantDigits = 15;

// Enough digits to tell a half from its neighbours.
constexpr int kExactDigits = 41;
// From here on a double has all its digits.
constexpr double kSmallestFull = 1e-290;

// A decimal number without sign: digits d1 d2 d3 ... stand for d1.d2d3... times ten to the power
// of the exponent. Zero is the single digit 0 with exponent 0.
struct Decimal {
  std::array<char, kExactDigits> digits;
  int count = 0;
  int exponent = 0;

  char& operator[](int index) { return digits[static_cast<std::size_t>(index)]; }
  char operator[](int index) const { return digits[static_cast<std::size_t>(index)]; }
  void SetTo(char digit) {
    digits[0] = digit;
    count = 1;
  }
  bool IsZero() const {
    return std::all_of(digits.begin(), digits.begin() + count, [](char c) { return c == '0'; });
  }
};

// Keeps the first `count` digits, halves away from zero. A count of 0 or less keeps nothing but
// the carry.
void RoundTo(Decimal& number, int count) {
  if (count >= number.count) return;
  const bool up = count >= 0 && number[count] >= '5';
  number.count = std::max(count, 0);
  if (up) {
    while (number.count > 0 && number[number.count - 1] == '9') --number.count;
    if (number.count == 0) {
      number.SetTo('1');
      ++number.exponent;
    } else {
      ++number[number.count - 1];
    }
  }
  if (number.IsZero()) {
    number.SetTo('0');
    number.exponent = 0;
  }
}

// A number in the form d.ddde+xx.
Decimal Parse(std::string_view text) {
  const std::size_t letter = text.find('e');
  Decimal number;
  for (const char c : text.substr(0, letter)) {
    if (c != '.') number[number.count++] = c;
  }
  const std::size_t sign = text[letter + 1] == '+' ? 1 : 0;
  std::from_chars(text.data() + letter + 1 + sign, text.data() + text.size(), number.exponent);
  return number;
}

// The number, if it is one of at most fifteen digits of which at most six stand behind the point,
// as nearly all are: it is then the double nearest to such a decimal, as a quotient of two whole
// numbers below 2 to the power of 53 is, and no other of so few digits reads as it.
std::optional<Decimal> ShortDecimalOf(double value) {
  constexpr double kMillion = 1e6;
  constexpr int kPlaces = 6;
  constexpr double kSixteenDigits = 1e15;
  const double millionths = value * kMillion + 0.5;
  if (!(millionths < kSixteenDigits)) return std::nullopt;
  const auto whole = static_cast<std::int64_t>(millionths);
  if (static_cast<double>(whole) / kMillion != value) return std::nullopt;
  Decimal number;
  if (whole == 0) {
    number.SetTo('0');
    return number;
  }
  char* const begin = number.digits.data();
  number.count =
      static_cast<int>(std::to_chars(begin, begin + number.digits.size(), whole).ptr - begin);
  number.exponent = number.count - 1 - kPlaces;
  return number;
}

Decimal DecimalOf(double value) {
  if (const auto number = ShortDecimalOf(value)) return *number;
  std::array<char, kExactDigits + 16> buffer;
  const auto text_to = [&](const char* end) {
    return std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  };
  char* const last = buffer.data() + buffer.size();
  if (value >= kSmallestFull) {
    // The shortest number that reads as the value again lies nearer to it than half a unit of the
    // last significant digit: if it has no more digits, it is the value rounded to them.
    const Decimal shortest = Parse(
        text_to(std::to_chars(buffer.data(), last, value, std::chars_format::scientific).ptr));
    if (shortest.count <= kSignificantDigits) return shortest;
  }
  Decimal number = Parse(text_to(
      std::to_chars(buffer.data(), last, value, std::chars_format::scientific, kExactDigits - 1)
          .ptr));
  RoundTo(number, kSignificantDigits);
  return number;
}

// The digit that stands at this power of ten.
char DigitAt(const Decimal& number, int power) {
  const int index = number.exponent - power;
  return index >= 0 && index < number.count ? number[index] : '0';
}

void AppendDigits(std::string& text, const Decimal& number, int highest_power, int places) {
  for (int power = highest_power; power >= 0; --power) text += DigitAt(number, power);
  if (places > 0) text += '.';
  for (int power = -1; power >= -places; --power) text += DigitAt(number, power);
}

void AppendScientific(std::string& text, Decimal number, int places) {
  RoundTo(number, places + 1);
  const int exponent = number.exponent;
  number.exponent = 0;
  AppendDigits(text, number, 0, places);
  text += 'e';
  text += std::to_string(exponent);
}

void AppendFixedPoint(std::string& text, Decimal number, int places) {
  RoundTo(number, number.exponent + places + 1);
  AppendDigits(text, number, std::max(number.exponent, 0), places);
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
  (scientific ? AppendScientific : AppendFixedPoint)(text, number, places);
  return text;
}

}  // namespace logbook
