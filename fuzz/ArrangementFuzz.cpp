// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The arrangement: any text places the controls or raises one of two errors.

#include <string>

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "placement/LogbookGen.h"
#include "support/TestServices.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  static test::TestWorkstation station;
  try {
    ArrangeMainWindow(station.state, station.services, std::string(input.Rest()));
  } catch (const RunTimeError& error) {
    FUZZ_REQUIRE(error.Number() == ErrorNumber::kTypeMismatch ||
                 error.Number() == ErrorNumber::kOverflow);
  }
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
