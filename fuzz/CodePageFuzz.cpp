// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Code pages both ways: Length is the size of what is written, and one round trip is enough.

#include "Fuzzing.h"
#include "base/CodePage.h"
#include "base/Utf8.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  const CodePage& page = AnyPage(input);
  const std::string_view any = input.Rest();
  const std::string written = page.FromUtf8(any);
  FUZZ_REQUIRE(page.Length(any) == written.size());
  const std::string read = page.ToUtf8(any);
  const std::string again = page.FromUtf8(read);
  FUZZ_REQUIRE(page.Length(read) == again.size());
  FUZZ_REQUIRE(page.FromUtf8(page.ToUtf8(again)) == again);
  if (page.Number() < 1000) {
    FUZZ_REQUIRE(again.size() <= any.size());
  } else {
    FUZZ_REQUIRE(again == any);
  }
  for (std::size_t at = 0; at < read.size();) FUZZ_REQUIRE(NextCharacter(read, at) != kNotUtf8);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
