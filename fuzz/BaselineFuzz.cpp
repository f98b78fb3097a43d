// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Baselines, whole texts or a good one with changes: what is understood has all rows, comes back
// when it is written anew, and is no other log than itself; all else is told as damage.

#include <algorithm>
#include <optional>
#include <string>

#include "AllCatalogues.h"
#include "Fuzzing.h"
#include "insight/Baselines.h"
#include "insight/Difference.h"

namespace logbook::fuzz {
namespace {

using namespace insight;

// A reading with a value of each kind in all rows.
const std::string& GoodText() {
  static const std::string text = [] {
    LogReading reading;
    reading.Identity = {"/logs", "26010100", "01/01/2026 10:20:30", 0x123456789ABCDEF0};
    reading.HasComment = true;
    reading.Comment = "cones\ncleaned";
    reading.Ticks[3] = reading.Ticks[17] = reading.HasTicks = true;
    for (int place = 0; place < kAllRows; ++place) {
      RowValue value;
      value.State = static_cast<ValueState>(std::max(0, place % 9 - 4));
      const bool is_text = KindOf(test::AllCatalogues(), RowAtPlace(place)) == RowKind::kText;
      if (value.State == ValueState::kOk && is_text) value.Text = "a text";
      if (value.State == ValueState::kOk && !is_text) value.Number = place / 8.0;
      reading.Values.push_back(value);
    }
    return ReadingText(reading);
  }();
  return text;
}

// Places of the good text, in front or anywhere, where some bytes give way to others.
std::string Changed(Input& input) {
  std::string text = GoodText();
  while (!input.Rest().empty()) {
    const std::size_t place = input.Byte() * std::size_t{256} + input.Byte();
    const std::size_t count = input.Byte();
    const std::string bytes = input.Text();
    text.replace(std::min(place, text.size()), count, bytes);
  }
  return text;
}

std::optional<LogReading> Parsed(const std::string& text) {
  try {
    return ParseReading(text);
  } catch (const BaselineError& error) {
    FUZZ_REQUIRE(std::string(error.what()).size() < 100);
    return std::nullopt;
  }
}

void Try(Input input) {
  const bool is_whole = input.Number(2) == 1;
  const std::string text = is_whole ? std::string(input.Rest()) : Changed(input);
  const std::optional<LogReading> reading = Parsed(text);
  if (!reading) return;
  FUZZ_REQUIRE(reading->Values.size() == static_cast<std::size_t>(kAllRows));
  const std::string written = ReadingText(*reading);
  if (text == GoodText()) FUZZ_REQUIRE(written == text);
  const std::optional<LogReading> again = Parsed(written);
  FUZZ_REQUIRE(again.has_value());
  FUZZ_REQUIRE(again->Identity == reading->Identity && again->Values == reading->Values);
  FUZZ_REQUIRE(ReadingText(*again) == written);
  FUZZ_REQUIRE(!CompareLogs(test::AllCatalogues(), *reading, *again, {}).Different());
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
