// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "GoldenText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace logbook::test {
namespace {

namespace fs = std::filesystem;

std::string Read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The first line in which two texts differ, "-" as it should be and "+" as it is.
std::string FirstDifference(const std::string& golden, const std::string& actual) {
  std::istringstream expected(golden);
  std::istringstream got(actual);
  std::string left;
  std::string right;
  for (int line = 1;; ++line) {
    const bool has_left = static_cast<bool>(std::getline(expected, left));
    const bool has_right = static_cast<bool>(std::getline(got, right));
    if (!has_left && !has_right) return "line ends differ";
    if (has_left && has_right && left == right) continue;
    return "line " + std::to_string(line) + "\n-" + (has_left ? left : "(none)") + "\n+" +
           (has_right ? right : "(none)");
  }
}

}  // namespace

std::string GoldenPath(const std::string& name) {
  return TEST_DATA_DIR "/insight/" + name;
}

void ExpectGolden(const std::string& name, const std::string& actual) {
  const fs::path left = fs::path(ACTUAL_INSIGHT_DIR) / name;
  fs::create_directories(left.parent_path());
  std::ofstream(left, std::ios::binary) << actual;
  const std::string golden = Read(GoldenPath(name));
  if (golden != actual) ADD_FAILURE() << name << ": " << FirstDifference(golden, actual);
}

}  // namespace logbook::test
