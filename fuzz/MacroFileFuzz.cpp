// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Macro files: reading line by line and looking through the assignments agree.

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "snapshot/MacroFile.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFile = "C:\\log\\sensevar.mac";

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  workshop.SetPage(AnyPage(input));
  const std::string var = input.Text();
  workshop.Put(kFile, input.Rest());
  const MacroLines lines = ReadMacroLines(workshop.machine(), kFile, var);
  FUZZ_REQUIRE(FindMacroLines(ReadAssignments(workshop.machine(), kFile), var) == lines);
  for (const std::string* line : {&lines.Value, &lines.ColOpgs, &lines.Clmd}) {
    if (line->empty()) continue;
    FUZZ_REQUIRE(line->find('=') != std::string::npos);
    const std::string_view value = BehindEqualSign(*line);
    try {
      MacroNumber(*line);
      MacroFlag(*line);
    } catch (const RunTimeError&) {
      // A number too large.
    }
    try {
      FUZZ_REQUIRE(value.find(MacroText(*line)) != std::string_view::npos ||
                   line->find(MacroText(*line)) != std::string::npos);
    } catch (const RunTimeError&) {
      // No text between quotes.
    }
  }
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
