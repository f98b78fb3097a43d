// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rebuild of the list, listlog.csv included.
//
//   bench_list HOME make LOGS      makes the store
//   bench_list HOME rounds ROUNDS  samples of list.base (each needed file opened, read and closed
//                                  once), list.fresh (nothing kept) and list.again (in a running
//                                  process), in turn
//   bench_list HOME first|again|none   one rebuild, two, or none at all: for counting instructions
//                                  and system calls from outside; "first" is a sample of list.first
//   bench_list HOME bare           the same of list.bare: the needed files read once
//
// Each rebuild is looked at afterwards: a row a log with a text in each of its cells, the same in
// listlog.csv, and no message.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "LogStore.h"
#include "Samples.h"
#include "base/Files.h"
#include "loglist/LogList.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

constexpr std::size_t kFilesALog = 6;

// As many logs fill the list, which tells so.
constexpr std::size_t kFullList = 256;

// What the list says is kept for the look afterwards.
class KeptMessages : public MessageBoxes {
 public:
  MessageAnswer Show(const Message& message) override {
    texts.push_back(message.Text);
    return MessageAnswer::kOk;
  }
  std::vector<std::string> texts;
};

void Rebuild(AppState& state) {
  KeptMessages messages;
  RebuildList(state, messages);
  SaveList(state);
  if (state.ListView1.Rows.size() < kFullList) {
    Expect(messages.texts.empty(), "a list without a message");
  }
}

bool IsFull(const ListRow& row) {
  return !row.Text.empty() && row.SubItems.size() + 1 == ListView::kColumns &&
         std::none_of(row.SubItems.begin(), row.SubItems.end(),
                      [](const std::string& text) { return text.empty(); });
}

void ExpectList(const LogStore& store, const AppState& state) {
  const std::vector<ListRow>& rows = state.ListView1.Rows;
  Expect(rows.size() == store.FilesOfTheList().size() / kFilesALog, "a row a log");
  Expect(std::all_of(rows.begin(), rows.end(), IsFull), "a text in each cell");
  Expect(ReadFile(state.machine, state.LogRoot + "listlog.csv") == ListText(state), "listlog.csv");
}

void Rounds(const LogStore& store, int rounds) {
  const std::vector<std::string> needed = store.FilesOfTheList();
  const auto running = store.NewState();
  Rebuild(*running);
  ExpectList(store, *running);
  for (int round = 0; round < rounds; ++round) {
    Measure("list.base", [&] { ReadBare(needed); });
    const auto fresh = store.NewState();
    Measure("list.fresh", [&] { Rebuild(*fresh); });
    Measure("list.again", [&] { Rebuild(*running); });
    ExpectList(store, *fresh);
    ExpectList(store, *running);
  }
}

int Run(const LogStore& store, const char* what, int number) {
  if (std::strcmp(what, "make") == 0) {
    store.Make(number);
  } else if (std::strcmp(what, "rounds") == 0) {
    Rounds(store, number);
  } else if (std::strcmp(what, "bare") == 0) {
    const std::vector<std::string> needed = store.FilesOfTheList();
    Measure("list.bare", [&] { ReadBare(needed); });
  } else {
    const auto state = store.NewState();
    if (std::strcmp(what, "none") != 0) Measure("list.first", [&] { Rebuild(*state); });
    if (std::strcmp(what, "again") == 0) Rebuild(*state);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: bench_list HOME make LOGS | rounds ROUNDS | first | again | none | bare\n";
    return 2;
  }
  return Run(LogStore(argv[1]), argv[2], argc > 3 ? std::atoi(argv[3]) : 0);
}
