// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Help books: each page has a file, and a topic leads to one of the pages.

#include "Fuzzing.h"
#include "help/HelpBook.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  const std::uint32_t topic = input.Byte();
  const HelpBook book = ReadHelpBook(input.Rest());
  for (const HelpPage& page : book.Pages) {
    FUZZ_REQUIRE(!page.File.empty());
    FUZZ_REQUIRE(page.Level >= 0);
  }
  const HelpPage* page = book.PageOf(topic);
  FUZZ_REQUIRE((page == nullptr) == book.Pages.empty());
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
