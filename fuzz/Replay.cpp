// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Runs a fuzz target over the files of the folders named on the command line, so that an ordinary
// build replays its corpus. Ends with 1 if there was no input at all.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "Fuzzing.h"

namespace fs = std::filesystem;

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const fs::directory_entry& entry : fs::directory_iterator(argv[i])) {
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(in), {}};
      std::cout << entry.path().filename().string() << std::endl;
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++count;
    }
  }
  std::cout << count << " inputs replayed\n";
  return count > 0 ? 0 : 1;
}
