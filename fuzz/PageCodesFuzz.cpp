// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Headers and footers: no run is empty, and a text without codes stands in the centre as it is.

#include <string>

#include "Fuzzing.h"
#include "printing/PageCodes.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  const std::string codes(input.Rest());
  const PageText text = ExpandPageCodes(codes, {"Sheet", 2, 7, "11/15/2026", "05:09"});
  for (const auto* part : {&text.Left, &text.Centre, &text.Right}) {
    for (const PageRun& run : *part) FUZZ_REQUIRE(!run.Text.empty());
  }
  if (codes.empty() || codes.find('&') != std::string::npos) return;
  FUZZ_REQUIRE(text.Left.empty() && text.Right.empty());
  FUZZ_REQUIRE(text.Centre.size() == 1 && text.Centre.front().Text == codes);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
