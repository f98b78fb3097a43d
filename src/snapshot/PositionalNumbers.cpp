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
  explicit Fields(std::string_view bytes) : bytes_(bytes) {}

  bool AtEnd() const { return next_ == bytes_.size(); }

  std::string_view Take() {
    SkipBlanks();
    const std::size_t begin = next_;
    while (next_ < bytes_.size() && !kEndsNumber[static_cast<unsigned char>(bytes_[next_])]) {
      ++next_;
    }
    const std::string_view field = bytes_.substr(begin, next_ - begin);
    SkipBlanks();
    if (Stands(',') || Stands('\n')) {
      ++next_;
    } else if (Stands('\r')) {
      ++next_;
      if (Stands('\n')) ++next_;
    }
    return field;
  }

 private:
  bool Stands(char byte) const { return next_ < bytes_.size() && bytes_[next_] == byte; }
  void SkipBlanks() {
    while (next_ < bytes_.size() && IsBlank(bytes_[next_])) ++next_;
  }

  std::string_view bytes_;
  std::size_t next_ = 0;
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
