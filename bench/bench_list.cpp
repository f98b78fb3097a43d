// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rebuild of the list, listlog.csv included.
//
//   bench_list HOME make LOGS      makes the store
//   bench_list HOME rounds ROUNDS  samples of list.base (each needed file opened, read and closed
//                                  once), list.fresh (nothing kept) and list.again (in a running
//                                  process), in turn
//   bench_list HOME first          a sample of list.first, which begins without listlog.csv, so
//   that
//                                  it is written
//   bench_list HOME bare           the same of list.bare: the needed files read once
//   bench_list HOME once|twice     one rebuild or two and nothing else: for counting instructions
//                                  and system calls from outside
//   bench_list HOME look LOGS      fails unless the store has so many logs and listlog.csv is that
//                                  of their list: the look after once and twice
//
// Each rebuild is looked at afterwards: a row a log with a text in each of its cells, the same in
// listlog.csv, and no message.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
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

void RebuildRows(AppState& state) {
  KeptMessages messages;
  RebuildList(state, messages);
  if (state.ListView1.Rows.size() < kFullList) {
    Expect(messages.texts.empty(), "a list without a message");
  }
}

void Rebuild(AppState& state) {
  RebuildRows(state);
  SaveList(state);
}

bool IsFull(const ListRow& row) {
  return !row.Text.empty() && row.SubItems.size() + 1 == ListView::kColumns &&
         std::none_of(row.SubItems.begin(), row.SubItems.end(),
                      [](const std::string& text) { return text.empty(); });
}

void ExpectList(const LogStore& store, const AppState& state) {
  const std::vector<ListRow>& rows = state.ListView1.Rows;
  Expect(!rows.empty() && rows.size() == store.FilesOfTheList().size() / kFilesALog, "a row a log");
  ReadBare(store.FilesOfTheList());  // all of them are there
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

void First(const LogStore& store) {
  const auto state = store.NewState();
  std::filesystem::remove(NativePath(state->machine, state->LogRoot + "listlog.csv"));
  Measure("list.first", [&] { Rebuild(*state); });
  ExpectList(store, *state);
}

void Look(const LogStore& store, int logs) {
  const auto state = store.NewState();
  RebuildRows(*state);
  Expect(state->ListView1.Rows.size() == static_cast<std::size_t>(logs), "the number of logs");
  ExpectList(store, *state);
}

int Run(const LogStore& store, const char* what, int number) {
  if (std::strcmp(what, "make") == 0) {
    store.Make(number);
  } else if (std::strcmp(what, "rounds") == 0) {
    Rounds(store, number);
  } else if (std::strcmp(what, "bare") == 0) {
    const std::vector<std::string> needed = store.FilesOfTheList();
    Measure("list.bare", [&] { ReadBare(needed); });
  } else if (std::strcmp(what, "first") == 0) {
    First(store);
  } else if (std::strcmp(what, "look") == 0) {
    Look(store, number);
  } else if (std::strcmp(what, "once") == 0 || std::strcmp(what, "twice") == 0) {
    const auto state = store.NewState();
    Rebuild(*state);
    if (std::strcmp(what, "twice") == 0) Rebuild(*state);
  } else {
    return 2;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: bench_list HOME make LOGS | rounds ROUNDS | first | bare | once | twice "
                 "| look LOGS\n";
    return 2;
  }
  return Run(LogStore(argv[1]), argv[2], argc > 3 ? std::atoi(argv[3]) : 0);
}
