// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Comments: the list shows the first line of what the viewer shows.

#include <string>

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "loglist/LogList.h"
#include "support/TestServices.h"
#include "viewer/LogView.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  static test::TestWorkstation station;
  AppState& state = station.state;
  state.LogRoot = "C:\\logs\\";
  state.LogCount = 1;
  state.FileList[1].Name = "26111500";
  station.disk.Put("C:\\logs\\26111500\\comment.txt", input.Rest());
  LogView view;
  view.LogFolderPath = "C:\\logs\\26111500\\";
  try {
    FillFileList(state);
  } catch (const RunTimeError& error) {
    FUZZ_REQUIRE(error.Number() == ErrorNumber::kInputPastEndOfFile && input.Rest().empty());
    return;
  }
  LoadComment(state, view);
  if (input.Rest().size() < 60000)
    FUZZ_REQUIRE(view.CommentText.starts_with(state.FileList[1].Comment));
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
