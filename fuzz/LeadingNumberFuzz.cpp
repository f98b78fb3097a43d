// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The leading number against strtod on the same stretch of text.

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook::fuzz {
namespace {

// What of the text forms a decimal number, by a walk of its own; "0" if nothing does.
std::string Stretch(const std::string& text) {
  std::size_t at = text.find_first_not_of(" \t");
  if (at == std::string::npos) return "0";
  std::string number;
  const auto take_digits = [&] {
    std::size_t count = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at, ++count)
      number += text[at];
    return count;
  };
  if (text[at] == '+' || text[at] == '-') number += text[at++];
  std::size_t digits = take_digits();
  if (at < text.size() && text[at] == '.') {
    number += text[at++];
    digits += take_digits();
  }
  if (digits == 0) return "0";
  if (at < text.size() && (text[at] | 0x20) == 'e') {
    const std::string mantissa = number;
    number += text[at++];
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) number += text[at++];
    if (take_digits() == 0) return mantissa;
  }
  return number;
}

void Try(Input input) {
  const std::string text(input.Rest());
  std::optional<double> number;
  try {
    number = LeadingNumber(text);
  } catch (const RunTimeError& error) {
    FUZZ_REQUIRE(error.Number() == ErrorNumber::kOverflow);
  }
  const std::size_t start = text.find_first_not_of(" \t");
  if (start != std::string::npos && text[start] == '&') return;
  const double expected = std::strtod(Stretch(text).c_str(), nullptr);
  if (std::isinf(expected)) {
    FUZZ_REQUIRE(!number);
  } else {
    // What is too small for a double reads 0.
    FUZZ_REQUIRE(number && (*number == expected || (*number == 0 && std::fabs(expected) < 1e-300)));
  }
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
