// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The reports of one snapshot for each build of the simulated instrument, held against files that
// a person has read line by line. The snapshots lie in data/snapshots, made by quorex-host with
// seed 7; the reports in data/reports. What the viewer makes stays in the build tree, below
// viewer/actual; accept_reports.sh copies it over after a person has looked.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/Viewing.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::Viewing;

const fs::path kSnapshots = fs::path(TEST_DATA_DIR) / "snapshots";
const fs::path kGolden = fs::path(TEST_DATA_DIR) / "reports";
const fs::path kActual = ACTUAL_REPORTS_DIR;

constexpr const char* kReports[] = {"analog.rpt", "meter.rpt",  "Sys.rpt", "bitout.rpt",
                                    "bitin.rpt",  "mainte.rpt", "tune.bin"};

std::string Read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void Write(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> Lines(const std::string& bytes) {
  std::vector<std::string> lines(1);
  for (const char byte : bytes) {
    lines.back() += byte;
    if (byte == '\n') lines.emplace_back();
  }
  return lines;
}

// The lines in which two texts differ, "-" as they should be and "+" as they are.
std::string Difference(const std::string& golden, const std::string& actual) {
  const std::vector<std::string> expected = Lines(golden);
  const std::vector<std::string> got = Lines(actual);
  std::string text;
  for (std::size_t i = 0; i < std::max(expected.size(), got.size()); ++i) {
    const std::string* left = i < expected.size() ? &expected[i] : nullptr;
    const std::string* right = i < got.size() ? &got[i] : nullptr;
    if (left != nullptr && right != nullptr && *left == *right) continue;
    text += "line " + std::to_string(i + 1) + "\n";
    if (left != nullptr) text += "  -" + testing::PrintToString(*left) + "\n";
    if (right != nullptr) text += "  +" + testing::PrintToString(*right) + "\n";
  }
  return text;
}

std::vector<std::string> Builds() {
  std::vector<std::string> builds;
  for (const auto& entry : fs::directory_iterator(kSnapshots)) {
    builds.push_back(entry.path().filename().string());
  }
  std::sort(builds.begin(), builds.end());
  return builds;
}

class GoldenReports : public testing::TestWithParam<std::string> {};

TEST_P(GoldenReports, AreAsAPersonHasReadThem) {
  Viewing viewing;
  for (const auto& entry : fs::directory_iterator(kSnapshots / GetParam())) {
    viewing.Put(entry.path().filename().string(), Read(entry.path()));
  }
  for (const ViewCommand& command : kViewCommands) {
    command.Run(viewing.state, viewing.services, viewing.view);
  }
  for (const char* report : kReports) {
    const std::string actual = viewing.Get(report);
    Write(kActual / GetParam() / report, actual);
    const fs::path golden = kGolden / GetParam() / report;
    EXPECT_TRUE(fs::exists(golden)) << golden;
    EXPECT_EQ(Difference(Read(golden), actual), "") << report;
  }
}

std::string NameOf(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Build, GoldenReports, testing::ValuesIn(Builds()), NameOf);

}  // namespace
}  // namespace logbook
