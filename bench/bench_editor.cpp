// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// OK in the editor of a log, with all ticks turned: for counting system calls from outside.
//
//   bench_editor HOME   the store is one that bench_list has made

#include <iostream>

#include "LogStore.h"
#include "records/LogEditor.h"

namespace {

class TypedComment : public logbook::WrappedTextBox {
 public:
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override { text_ = text; }
  int LineCount() const override { return 1; }
  long LineIndex(int line) const override { return line == 0 ? 0 : -1; }

 private:
  std::string text_;
};

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
  comment.SetText("Injector replaced.");
  LogEditorOK(*state, editor, comment);
  return 0;
}
