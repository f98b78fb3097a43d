// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Every report for every combination of options: no instrument makes one fail, and each report
// keeps its form.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "catalogue/OptionGating.h"
#include "reports/ReportLayouts.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::LinesOf;
using test::Viewing;

// The options but for the three of the lens family: key and number of values, from 0.
struct WalkedOption {
  const char* key;
  int values;
};
constexpr auto kWalked = std::to_array<WalkedOption>({{"STYLEB", 3},
                                                      {"NEW_RF", 3},
                                                      {"QPTYPE", 3},
                                                      {"AFC", 3},
                                                      {"SC", 2},
                                                      {"OPGS", 2},
                                                      {"COLOPGS", 2}});

// Section "OPTION" of combination `number`; empty behind the last one.
std::string Combination(int number, const std::string& lens) {
  std::string section = "[OPTION]\r\n" + lens;
  for (const WalkedOption& option : kWalked) {
    section += option.key + ("=" + std::to_string(number % option.values)) + "\r\n";
    number /= option.values;
  }
  return number == 0 ? section : "";
}

// What is wrong with the form of a report in its code page; empty if nothing is.
std::string FaultOf(const ReportLayout& layout, const std::string& text,
                    const LogOptions& options) {
  std::size_t headings = 0;
  for (const std::string& line : LinesOf(text)) {
    if (line.empty()) continue;
    if (line[0] != ' ') {
      ++headings;
      if (!line.ends_with(':')) return "a heading without colon: " + line;
    } else if (line.size() < layout.NameWidth + 3 || line[layout.NameWidth + 1] != ':') {
      return "a row out of its columns: " + line;
    }
  }
  const auto joined = static_cast<std::size_t>(
      std::count_if(layout.Order.begin(), layout.Order.end(),
                    [&](const JoinStep& step) { return step.Condition(options); }));
  return headings == joined ? "" : "sections missing or too many";
}

class OptionCombinations : public testing::TestWithParam<std::tuple<int, int, int>> {};

TEST_P(OptionCombinations, MakeNoReportFail) {
  const auto [lens, lens2, lens3] = GetParam();
  const std::string family = "LENS=" + std::to_string(lens) + "\r\nLENS2=" + std::to_string(lens2) +
                             "\r\nLENS3=" + std::to_string(lens3) + "\r\n";
  Viewing viewing;
  for (const auto& entry :
       fs::directory_iterator(fs::path(TEST_DATA_DIR) / "snapshots" / "trz-ce")) {
    std::ifstream in(entry.path(), std::ios::binary);
    viewing.Put(entry.path().filename().string(),
                std::string(std::istreambuf_iterator<char>(in), {}));
  }
  const std::string& folder = viewing.view.LogFolderPath;
  int number = 0;
  for (std::string section = Combination(0, family); !section.empty();
       section = Combination(++number, family)) {
    viewing.Put("logfile.ini", section);
    const LogOptions options = ReadLogOptions(viewing.disk, folder + "logfile.ini");
    for (std::size_t i = 0; i < kReportLayouts.size(); ++i) {
      const std::string text = ValueReportText(viewing.disk, viewing.state.catalogues,
                                               static_cast<ValueReport>(i), folder);
      const std::string bytes = viewing.disk.machine().code_page->FromUtf8(text);
      ASSERT_EQ(FaultOf(kReportLayouts[i], bytes, options), "") << section;
    }
    ASSERT_EQ(TuneCells(viewing.disk, viewing.state.catalogues, folder).size(), 163U) << section;
  }
  EXPECT_EQ(number, 3 * 3 * 3 * 3 * 2 * 2 * 2);
}

INSTANTIATE_TEST_SUITE_P(Lens, OptionCombinations,
                         testing::Combine(testing::Values(0, 1, 2), testing::Values(0, 1),
                                          testing::Values(0, 1)));

}  // namespace
}  // namespace logbook
