// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Profiles: what was written comes back, a second writing changes nothing, and no other value
// moves.

#include <algorithm>

#include "Fuzzing.h"
#include "base/CodePage.h"
#include "base/ProfileText.h"

namespace logbook::fuzz {
namespace {

// Letters and digits only: what every reader of profiles takes as it stands.
bool IsPlain(const std::string& text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
}

bool IsSame(const std::string& a, const std::string& b) {
  return std::ranges::equal(a, b, [](char x, char y) { return (x | 0x20) == (y | 0x20); });
}

void Try(Input input) {
  const CodePage& page = AnyPage(input);
  const std::string section = input.Text();
  const std::string key = input.Text();
  const std::string value = input.Text();
  const std::string other_section = input.Text();
  const std::string other_key = input.Text();
  const std::string_view file = input.Rest();
  const auto old_other = FindProfileValue(page, file, other_section, other_key);
  FindProfileValue(page, file, section, key);
  if (!IsPlain(section) || !IsPlain(key) || !IsPlain(value)) return;

  const std::string written = SetProfileValue(page, file, section, key, value);
  FUZZ_REQUIRE(FindProfileValue(page, written, section, key) == value);
  FUZZ_REQUIRE(SetProfileValue(page, written, section, key, value) == written);
  if (!IsPlain(other_section) || !IsPlain(other_key)) return;
  if (IsSame(section, other_section) && IsSame(key, other_key)) return;
  FUZZ_REQUIRE(FindProfileValue(page, written, other_section, other_key) == old_other);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
