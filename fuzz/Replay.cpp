// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Runs a fuzz target, the first word of the command line, over the files of the folders named
// behind it, so that an ordinary build replays its corpus. Ends with 1 if there was no such target
// or no input at all.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>

#include "Fuzzing.h"

namespace fs = std::filesystem;

#define TARGET(name) extern "C" int Fuzz##name(const std::uint8_t* data, std::size_t size);
#include "Targets.inc"
#undef TARGET

namespace {

using Target = int (*)(const std::uint8_t*, std::size_t);

#define TARGET(name) {#name, &Fuzz##name},
const std::map<std::string, Target> kTargets = {
#include "Targets.inc"
};
#undef TARGET

}  // namespace

int main(int argc, char** argv) {
  const auto target = kTargets.find(argc > 1 ? argv[1] : "");
  if (target == kTargets.end()) {
    std::cout << "no such target\n";
    return 1;
  }
  int count = 0;
  for (int i = 2; i < argc; ++i) {
    for (const fs::directory_entry& entry : fs::directory_iterator(argv[i])) {
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(in), {}};
      std::cout << entry.path().filename().string() << std::endl;
      target->second(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++count;
    }
  }
  std::cout << count << " inputs replayed\n";
  return count > 0 ? 0 : 1;
}
