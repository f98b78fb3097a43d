// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/PositionalNumbers.h"

#include <array>
#include <cstddef>

#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook {
namespace {

bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t';
}

// By byte: whether it ends a number.
constexpr std::array<bool, 256> kEndsNumber = [] {
  std::array<bool, 256> ends{};
  for (const unsigned char byte : {' ', '\t', ',', '\r', '\n'}) ends[byte] = true;
  return ends;
}();

// Walks over the fields of the bytes.
class Fields {
 public:
  explicit Fields(std::string_view bytes)
      : next_(bytes.data()), end_(bytes.data() + bytes.size()) {}

  bool AtEnd() const { return next_ == end_; }

  std::string_view Take() {
    SkipBlanks();
    const char* const begin = next_;
    while (next_ != end_ && !kEndsNumber[static_cast<unsigned char>(*next_)]) ++next_;
    const std::string_view field(begin, static_cast<std::size_t>(next_ - begin));
    SkipBlanks();
    if (next_ == end_) return field;
    if (*next_ == '\r') {
      if (++next_ != end_ && *next_ == '\n') ++next_;
    } else if (*next_ == ',' || *next_ == '\n') {
      ++next_;
    }
    return field;
  }

 private:
  void SkipBlanks() {
    while (next_ != end_ && IsBlank(*next_)) ++next_;
  }

  const char* next_;
  const char* end_;
};

double NumberOf(std::string_view field) {
  try {
    return LeadingNumber(field);
  } catch (const RunTimeError&) {
    return 0;
  }
}

}  // namespace

std::vector<double> NumbersAt(std::string_view bytes, std::span<const int> rows) {
  std::vector<double> numbers;
  numbers.reserve(rows.size());
  Fields fields(bytes);
  int row = 0;
  for (const int wanted : rows) {
    for (; row < wanted && !fields.AtEnd(); ++row) fields.Take();
    if (fields.AtEnd()) {
      numbers.push_back(0);
    } else {
      numbers.push_back(NumberOf(fields.Take()));
      ++row;
    }
  }
  return numbers;
}

}  // namespace logbook
