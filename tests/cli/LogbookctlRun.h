// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Runs the program logbookctl and tells what came of it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "support/TestMachine.h"

namespace logbook::test {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::string Read(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline std::string Quoted(const std::string& text) {
  return "'" + text + "'";
}

// Runs the program with this home; the arguments, and variables of the environment in front of it,
// are shell text. Where there is no shell it is read as one would, up to quotes; a case that asks
// for more of a shell is skipped there.
Outcome RunLogbookctl(const std::string& home, const std::string& arguments,
                      const std::string& variables = "");

// Every file below a folder with its bytes and its time.
inline std::map<std::string, std::string> Everything(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const auto time = std::filesystem::last_write_time(entry.path()).time_since_epoch().count();
    files[entry.path().string()] =
        std::to_string(time) + (entry.is_regular_file() ? Read(entry.path()) : "");
  }
  return files;
}

}  // namespace logbook::test
