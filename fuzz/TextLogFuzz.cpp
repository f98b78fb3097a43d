// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Text logs: a limited text is the beginning of the whole one and stays below its limit.

#include "Fuzzing.h"
#include "base/CodePage.h"
#include "viewer/TextLogs.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFile = "C:\\log\\acqlog.txt";
constexpr std::size_t kBeyond = kLongestOfInterest + 5000;

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  const CodePage& page = AnyPage(input);
  workshop.SetPage(page);
  // One in eight is beyond the limits of a text and of a line; the others take no time.
  const std::size_t size = input.Number(8) == 0 ? kBeyond : 1000;
  const std::string once(input.Rest());
  std::string bytes = once;
  while (!once.empty() && bytes.size() < size) bytes += once;
  workshop.Put(kFile, bytes);
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
