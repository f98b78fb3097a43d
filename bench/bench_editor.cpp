// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// OK in the editor of a log, with all ticks turned and another comment: for counting system calls
// from outside. The record is looked at afterwards.
//
//   bench_editor HOME   the store is one that bench_list has made

#include <iostream>

#include "LogStore.h"
#include "Samples.h"
#include "base/Files.h"
#include "base/Profile.h"
#include "records/LogEditor.h"

namespace {

constexpr const char* kComment = "Injector replaced.";

class TypedComment : public logbook::WrappedTextBox {
 public:
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override { text_ = text; }
  int LineCount() const override { return 1; }
  long LineIndex(int line) const override { return line == 0 ? 0 : -1; }

 private:
  std::string text_;
};

// Each tick in the profile of the log, and the comment beside it.
void ExpectRecord(const logbook::AppState& state, const logbook::LogEditor& editor) {
  using logbook::bench::Expect;
  for (std::size_t i = 0; i < logbook::LogEditor::kChecks; ++i) {
    const std::string tick =
        GetPrivateProfileString(state.machine, "Maintenance", "Item" + std::to_string(i), "", 8,
                                state.LogPath + "\\logfile.ini");
    Expect(tick == (editor.Ticked[i] ? "1" : "0"), "tick " + std::to_string(i));
  }
  Expect(ReadFile(state.machine, state.LogPath + "\\comment.txt").find(kComment) == 0,
         "the comment");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: bench_editor HOME\n";
    return 2;
  }
  const logbook::bench::LogStore store(argv[1]);
  const auto state = store.NewState();
  state->LogPath = logbook::bench::LogStore::LogFolderText(0);
  state->LogPath.pop_back();
  logbook::LogEditor editor;
  TypedComment comment;
  LoadLogEditor(*state, editor, comment);
  for (bool& tick : editor.Ticked) tick = !tick;
  comment.SetText(kComment);
  LogEditorOK(*state, editor, comment);
  ExpectRecord(*state, editor);
  return 0;
}
