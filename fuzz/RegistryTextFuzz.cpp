// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The hive file: any bytes are read to their end, and a text never holds a NUL.

#include "Fuzzing.h"
#include "base/RegistryText.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  const std::string key = input.Text();
  const std::string name = input.Text();
  const auto text = FindRegistryText(input.Rest(), key, name);
  if (text) FUZZ_REQUIRE(text->find('\0') == std::string::npos);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
