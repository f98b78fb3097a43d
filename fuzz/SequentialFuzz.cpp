// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Snapshots of sequential fields: numbers read alone and as system parameters agree, and
// readers end.

#include <optional>
#include <variant>
#include <vector>

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "snapshot/BitWords.h"
#include "snapshot/SequentialReader.h"
#include "snapshot/SystemParameters.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFile = "C:\\log\\sys.txt";

// What reading the file gives; nothing if it raises.
template <typename Reading>
auto Result(Reading reading)
    -> std::optional<decltype(reading(std::declval<SequentialReader&>()))> {
  try {
    SequentialReader file(Workshop::Get().machine(), kFile);
    return reading(file);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  workshop.SetPage(AnyPage(input));
  workshop.Put(kFile, input.Rest());
  const auto numbers = Result([&](SequentialReader& file) { return ReadNumbers(file, kStampRow); });
  const auto parameters =
      Result([&](SequentialReader& file) { return ReadSystemParameters(file); });
  Result([&](SequentialReader& file) { return ReadBitWords(file); });
  Result([&](SequentialReader& file) {
    std::size_t fields = 0;
    while (!file.AtEnd()) fields += file.ReadText().size() + 1;
    return fields;
  });
  if (!numbers) FUZZ_REQUIRE(!parameters);
  if (!numbers || !parameters) return;
  FUZZ_REQUIRE(numbers->size() <= static_cast<std::size_t>(kStampRow));
  FUZZ_REQUIRE(parameters->size() <= 245);
  FUZZ_REQUIRE(parameters->size() >= numbers->size());
  for (std::size_t i = 0; i < numbers->size(); ++i)
    FUZZ_REQUIRE(std::get<double>((*parameters)[i]) == (*numbers)[i]);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
