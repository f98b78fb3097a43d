// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rebuild of the list, listlog.csv included.
//
//   bench_list HOME make LOGS      makes the store
//   bench_list HOME rounds ROUNDS  samples of list.base (each needed file opened, read and closed
//                                  once), list.first (nothing read before) and list.again (in a
//                                  running process), in turn
//   bench_list HOME first|again|none   one rebuild, two, or none at all: for counting instructions
//                                  and system calls from outside

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "LogStore.h"
#include "Samples.h"
#include "loglist/LogList.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

class IgnoredMessages : public MessageBoxes {
 public:
  MessageAnswer Show(const Message&) override { return MessageAnswer::kOk; }
};

void Rebuild(AppState& state) {
  IgnoredMessages messages;
  RebuildList(state, messages);
  SaveList(state);
}

void Rounds(const LogStore& store, int rounds) {
  const std::vector<std::string> needed = store.FilesOfTheList();
  const auto running = store.NewState();
  Rebuild(*running);
  for (int round = 0; round < rounds; ++round) {
    Measure("list.base", [&] { ReadBare(needed); });
    const auto fresh = store.NewState();
    Measure("list.first", [&] { Rebuild(*fresh); });
    Measure("list.again", [&] { Rebuild(*running); });
  }
}

int Run(const LogStore& store, const char* what, int number) {
  if (std::strcmp(what, "make") == 0) {
    store.Make(number);
  } else if (std::strcmp(what, "rounds") == 0) {
    Rounds(store, number);
  } else {
    const auto state = store.NewState();
    if (std::strcmp(what, "none") != 0) Rebuild(*state);
    if (std::strcmp(what, "again") == 0) Rebuild(*state);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: bench_list HOME make LOGS | rounds ROUNDS | first | again | none\n";
    return 2;
  }
  return Run(LogStore(argv[1]), argv[2], argc > 3 ? std::atoi(argv[3]) : 0);
}
