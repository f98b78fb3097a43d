// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The directory of a zip file: one without large numbers stays as it is when it moves by
// nothing.

#include "Fuzzing.h"
#include "archive/ZipDirectory.h"

namespace logbook::fuzz {
namespace {

// A field for large numbers has the kind 1; a number that does not fit is all ones.
bool MayHoldLargeNumbers(std::string_view bytes) {
  return bytes.find("\xFF\xFF\xFF\xFF") != std::string_view::npos ||
         bytes.find(std::string_view("\1\0", 2)) != std::string_view::npos;
}

void Try(Input input) {
  const std::uint64_t distance = input.Byte() * 1000003ULL;
  const std::string_view bytes = input.Rest();
  if (const auto place = FindZipDirectory(bytes)) FUZZ_REQUIRE(!ZipEnd(*place).empty());
  const auto moved = MoveZipDirectory(bytes, 0);
  if (moved && !MayHoldLargeNumbers(bytes)) FUZZ_REQUIRE(*moved == bytes);
  const auto further = MoveZipDirectory(bytes, distance);
  FUZZ_REQUIRE(further.has_value() == moved.has_value());
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
