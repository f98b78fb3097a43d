// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A chained log of any size as the viewer opens it.
//
//   bench_text HOME make MEGABYTES   makes C:\chnseq.log in this home
//   bench_text HOME once             the wall time until the whole text is at hand (text.first) and
//                                    the memory taken for it, in bytes a byte of the file
//                                    (text.memory)

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "Samples.h"
#include "viewer/TextLogs.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

std::string NativeLog(const std::string& home) {
  return home + "/drives/c/chnseq.log";
}

void Make(const std::string& home, int megabytes) {
  std::filesystem::create_directories(home + "/drives/c");
  std::ofstream file(NativeLog(home), std::ios::binary);
  for (long long size = 0, line = 0; size < 1000000LL * megabytes; ++line) {
    const std::string text = "11/15/2026 05:09:59  sample " + std::to_string(line) +
                             "  acquired, 31 masses, 3 repetitions, no warnings\r\n";
    file << text;
    size += static_cast<long long>(text.size());
  }
}

void Once(const std::string& home) {
  const Machine machine{.home = home};
  const double before = PeakBytes();
  const double start = WallSeconds();
  const std::string text = ReadWholeText(machine, "C:\\chnseq.log");
  Report("text.first", WallSeconds() - start);
  const auto size = static_cast<double>(std::filesystem::file_size(NativeLog(home)));
  if (text.empty()) std::abort();
  Report("text.memory", (PeakBytes() - before) / size);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[2], "make") == 0) {
    Make(argv[1], std::atoi(argv[3]));
  } else if (argc == 3 && std::strcmp(argv[2], "once") == 0) {
    Once(argv[1]);
  } else {
    std::cerr << "usage: bench_text HOME make MEGABYTES | once\n";
    return 2;
  }
  return 0;
}
