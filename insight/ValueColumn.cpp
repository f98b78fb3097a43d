// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ValueColumn.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

#include "insight/LittleEndian.h"

namespace logbook::insight {
namespace {

// Layout: checksum (4 bytes), number of values (2), form of the states (1), states (1 or one a
// value), form of the numbers (1), and by that form:
//   kOne      the number (8)
//   kDecimal  places (1), width (1), smallest (8), and of each value its distance from the smallest
//             in so many bytes: a number is (smallest + distance) / 10 ^ places
//   kWhole    each number (8)
// All in the order of the least byte first.
enum class States : std::uint8_t { kOne, kEach };
enum class Numbers : std::uint8_t { kOne, kDecimal, kWhole };

constexpr int kMostPlaces = 9;
constexpr auto kPowers = std::to_array<double>({1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9});
// Beyond this a whole number and its neighbour are not told apart by a double.
constexpr double kMostWhole = 9e15;

void Put(std::string& bytes, std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

void PutDouble(std::string& bytes, double value) {
  Put(bytes, std::bit_cast<std::uint64_t>(value), 8);
}

// Takes numbers from the front of bytes; zeros and a mark once they are used up.
class Source {
 public:
  explicit Source(std::string_view bytes) : bytes_(bytes) {}

  std::uint64_t Take(int width) {
    if (bytes_.size() < static_cast<std::size_t>(width)) {
      short_ = true;
      return 0;
    }
    std::uint64_t value = 0;
    for (int i = width - 1; i >= 0; --i) {
      value = value << 8 | static_cast<unsigned char>(bytes_[static_cast<std::size_t>(i)]);
    }
    bytes_.remove_prefix(static_cast<std::size_t>(width));
    return value;
  }
  double TakeDouble() { return std::bit_cast<double>(Take(8)); }
  bool IsWhole() const { return !short_ && bytes_.empty(); }

 private:
  std::string_view bytes_;
  bool short_ = false;
};

bool SameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// The whole number that, divided by 10 ^ places, is just this value.
std::optional<std::int64_t> ScaledWhole(double value, int places) {
  const double power = kPowers[static_cast<std::size_t>(places)];
  const double scaled = value * power;
  if (!(std::fabs(scaled) < kMostWhole)) return std::nullopt;
  const auto whole = static_cast<std::int64_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
  if (!SameBits(static_cast<double>(whole) / power, value)) return std::nullopt;
  return whole;
}

// All values as whole numbers with the fewest places that keep them exact.
struct Decimals {
  int places = 0;
  std::vector<std::int64_t> wholes;
};

std::optional<Decimals> AsDecimals(const std::vector<double>& numbers) {
  Decimals decimals;
  decimals.wholes.reserve(numbers.size());
  while (decimals.wholes.size() < numbers.size()) {
    const auto whole = ScaledWhole(numbers[decimals.wholes.size()], decimals.places);
    if (whole) {
      decimals.wholes.push_back(*whole);
      continue;
    }
    decimals.wholes.clear();
    if (++decimals.places > kMostPlaces) return std::nullopt;
  }
  return decimals;
}

int WidthOf(std::uint64_t most) {
  for (const int width : {1, 2, 3, 4, 6}) {
    if (most >> (8 * width) == 0) return width;
  }
  return 8;
}

void PackDecimals(const Decimals& decimals, std::string& bytes) {
  const auto [least, most] = std::minmax_element(decimals.wholes.begin(), decimals.wholes.end());
  const int width = WidthOf(static_cast<std::uint64_t>(*most) - static_cast<std::uint64_t>(*least));
  Put(bytes, static_cast<std::uint8_t>(Numbers::kDecimal), 1);
  Put(bytes, static_cast<std::uint64_t>(decimals.places), 1);
  Put(bytes, static_cast<std::uint64_t>(width), 1);
  Put(bytes, static_cast<std::uint64_t>(*least), 8);
  for (const std::int64_t whole : decimals.wholes) {
    Put(bytes, static_cast<std::uint64_t>(whole) - static_cast<std::uint64_t>(*least), width);
  }
}

void PackNumbers(const std::vector<double>& numbers, std::string& bytes) {
  if (numbers.empty() || std::all_of(numbers.begin(), numbers.end(),
                                     [&](double number) { return SameBits(number, numbers[0]); })) {
    Put(bytes, static_cast<std::uint8_t>(Numbers::kOne), 1);
    PutDouble(bytes, numbers.empty() ? 0 : numbers[0]);
  } else if (const std::optional<Decimals> decimals = AsDecimals(numbers)) {
    PackDecimals(*decimals, bytes);
  } else {
    Put(bytes, static_cast<std::uint8_t>(Numbers::kWhole), 1);
    for (const double number : numbers) PutDouble(bytes, number);
  }
}

void UnpackDecimals(Source& source, std::size_t count, std::vector<double>& numbers) {
  const auto places = static_cast<std::size_t>(source.Take(1));
  const auto width = static_cast<int>(source.Take(1));
  const std::uint64_t least = source.Take(8);
  const double power = kPowers[std::min(places, kPowers.size() - 1)];
  for (std::size_t i = 0; i < count; ++i) {
    const auto whole = static_cast<std::int64_t>(least + source.Take(std::min(width, 8)));
    numbers.push_back(static_cast<double>(whole) / power);
  }
}

void UnpackNumbers(Source& source, std::size_t count, std::vector<double>& numbers) {
  numbers.reserve(count);
  switch (static_cast<Numbers>(source.Take(1))) {
    case Numbers::kOne:
      numbers.assign(count, source.TakeDouble());
      break;
    case Numbers::kDecimal:
      UnpackDecimals(source, count, numbers);
      break;
    case Numbers::kWhole:
      for (std::size_t i = 0; i < count; ++i) numbers.push_back(source.TakeDouble());
      break;
  }
}

}  // namespace

std::string PackColumn(const ValueColumn& column) {
  std::string bytes(4, '\0');
  const std::size_t count = column.States.size();
  Put(bytes, count, 2);
  const bool one = std::all_of(column.States.begin(), column.States.end(),
                               [&](std::uint8_t state) { return state == column.States[0]; });
  Put(bytes, static_cast<std::uint8_t>(one ? States::kOne : States::kEach), 1);
  if (one) {
    Put(bytes, count == 0 ? 0 : column.States[0], 1);
  } else {
    bytes.append(column.States.begin(), column.States.end());
  }
  PackNumbers(column.Numbers, bytes);
  std::string checksum;
  Put(checksum, ChecksumOf(std::string_view(bytes).substr(4)), 4);
  return bytes.replace(0, 4, checksum);
}

std::optional<ValueColumn> UnpackColumn(std::string_view bytes) {
  Source source(bytes);
  const std::uint64_t checksum = source.Take(4);
  if (bytes.size() < 4 || checksum != ChecksumOf(bytes.substr(4))) return std::nullopt;
  ValueColumn column;
  const auto count = static_cast<std::size_t>(source.Take(2));
  if (static_cast<States>(source.Take(1)) == States::kOne) {
    column.States.assign(count, static_cast<std::uint8_t>(source.Take(1)));
  } else {
    column.States.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      column.States.push_back(static_cast<std::uint8_t>(source.Take(1)));
    }
  }
  UnpackNumbers(source, count, column.Numbers);
  const bool has_other = std::any_of(column.Numbers.begin(), column.Numbers.end(),
                                     [](double number) { return std::isnan(number); });
  if (!source.IsWhole() || has_other || column.Numbers.size() != count) return std::nullopt;
  return column;
}

std::uint32_t ChecksumOf(std::string_view bytes) {
  std::uint64_t state = 0x9E3779B97F4A7C15ULL ^ bytes.size();
  const auto add = [&state](std::uint64_t word) {
    state = std::rotl(state ^ word, 23) * 0xBF58476D1CE4E5B9ULL;
  };
  while (bytes.size() >= 8) {
    add(WordOf(bytes.substr(0, 8)));
    bytes.remove_prefix(8);
  }
  if (!bytes.empty()) add(WordOf(bytes));
  return static_cast<std::uint32_t>(state >> 32 ^ state);
}

}  // namespace logbook::insight
