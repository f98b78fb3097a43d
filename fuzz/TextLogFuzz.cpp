// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Text logs: a limited text is the beginning of the whole one and stays below its limit.

#include "Fuzzing.h"
#include "base/CodePage.h"
#include "viewer/TextLogs.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFile = "C:\\log\\acqlog.txt";

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  const CodePage& page = AnyPage(input);
  workshop.SetPage(page);
  const int repeats = 1 + input.Number(40);
  std::string bytes;
  for (int i = 0; i < repeats * 40; ++i) bytes += input.Rest();
  workshop.Put(kFile, bytes.size() < 400000 ? bytes : bytes.substr(0, 400000));
  const std::string whole = ReadWholeText(workshop.machine(), kFile);
  const LimitedText limited = ReadLimitedText(workshop.machine(), kFile);
  FUZZ_REQUIRE(whole.starts_with(limited.Text));
  FUZZ_REQUIRE(limited.OverLimit == (limited.Text.size() < whole.size()));
  FUZZ_REQUIRE(page.Length(limited.Text) <= 65535);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
