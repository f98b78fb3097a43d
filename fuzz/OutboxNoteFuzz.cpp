// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Notes of the outbox: any bytes are read, and what was noted comes back.

#include <algorithm>
#include <string>

#include "Fuzzing.h"
#include "upload/Outbox.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  workshop.Clear();
  Outbox outbox(workshop.Native("C:\\area"));
  workshop.Put("C:\\area\\outbox\\one\\note", input.Rest());
  DeliveryNote note = outbox.NoteOf("one");
  FUZZ_REQUIRE(note.reason.find('\n') == std::string::npos);
  note.tries = std::max(0, note.tries);
  outbox.SetNote("one", note);
  const DeliveryNote again = outbox.NoteOf("one");
  FUZZ_REQUIRE(again.tries == note.tries);
  FUZZ_REQUIRE(again.last_try == note.last_try);
  std::replace(note.reason.begin(), note.reason.end(), '\r', ' ');
  FUZZ_REQUIRE(again.reason == note.reason);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
