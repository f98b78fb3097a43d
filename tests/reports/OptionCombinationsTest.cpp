// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Every report on every instrument, held against the model: options that a host writes (0 and 1),
// and 2, at which tests for "is 1" and for "is not 0" part.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "reports/ReportModel.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

using test::Counting;
using test::Instrument;
using test::LinesOf;
using test::Viewing;

std::string SectionOf(const Instrument& i) {
  const std::tuple<const char*, int> options[] = {
      {"LENS", i.LENS}, {"LENS2", i.LENS2},    {"LENS3", i.LENS3}, {"STYLEB", i.STYLEB},
      {"AFC", i.AFC},   {"NEW_RF", i.NEW_RF},  {"SC", i.SC},       {"QPTYPE", i.QPTYPE},
      {"OPGS", i.OPGS}, {"COLOPGS", i.COLOPGS}};
  std::string section = "[OPTION]\r\n";
  for (const auto& [key, value] : options) section += key + ("=" + std::to_string(value)) + "\r\n";
  return section;
}

// A line for each variable of a macro file, and both flags.
std::string Macro(const Catalogues& catalogues, const std::string& file) {
  std::string text = "OPT_COLOPGS=1\r\nCLMD=1\r\n";
  for (const TuneItemRecord& item : catalogues.TuneItems) {
    if (item.File == file) text += item.Var + (item.Format.empty() ? "=\"text\"\r\n" : "=12\r\n");
  }
  return text;
}

constexpr std::array<std::uint16_t, 16> kWords = {0x5A5A, 0xA5A5, 0x3C3C, 0xC3C3, 0x0F0F, 0xF0F0,
                                                  0x6969, 0x9696, 0x55AA, 0xAA55, 0x33CC, 0xCC33,
                                                  0x1248, 0x8421, 0x0000, 0xFFFF};

std::string Words() {
  std::string bytes;
  for (const int word : kWords) {
    for (int shift = 12; shift >= 0; shift -= 4) bytes += "0123456789ABCDEF"[word >> shift & 0xF];
    bytes += "\r\n";
  }
  return bytes;
}

class OptionCombinations : public testing::TestWithParam<std::tuple<int, int, int>> {
 protected:
  OptionCombinations() {
    log.Put("aall.txt", Counting(kAnalogRowCount));
    log.Put("auser.txt", Counting(kMeterRowCount));
    log.Put("sys.txt", Counting(kSysRowCount));
    log.Put("bout.txt", Words());
    log.Put("bin.txt", Words());
    std::tie(instrument.LENS, instrument.LENS2, instrument.LENS3) = GetParam();
  }

  // The first line in which the report and its model differ; empty if none does.
  std::string Fault(ValueReport report, const std::string& model) {
    const std::string text = ValueReportText(log.disk, log.state.catalogues, report, Folder());
    if (text == model) return "";
    const std::vector<std::string> got = LinesOf(text), expected = LinesOf(model);
    std::size_t line = 0;
    while (line < got.size() && line < expected.size() && got[line] == expected[line]) ++line;
    const auto at = [&](const std::vector<std::string>& lines) {
      return line < lines.size() ? "\"" + lines[line] + "\"" : std::string("the end");
    };
    return "line " + std::to_string(line + 1) + ": " + at(got) + " instead of " + at(expected);
  }
  const std::string& Folder() const { return log.view.LogFolderPath; }

  Viewing log;
  Instrument instrument;
};

TEST_P(OptionCombinations, EachReportSaysWhatTheModelSays) {
  const Catalogues& catalogues = log.state.catalogues;
  constexpr int kCombinations = 3 * 3 * 3 * 3;
  for (int number = 0; number < kCombinations; ++number) {
    instrument.STYLEB = number % 3;
    instrument.NEW_RF = number / 3 % 3;
    instrument.QPTYPE = number / 9 % 3;
    instrument.AFC = number / 27 % 3;
    // These three stand for themselves; their eight combinations go round.
    instrument.SC = number % 2;
    instrument.OPGS = number / 2 % 2;
    instrument.COLOPGS = number / 4 % 2;
    const std::string section = SectionOf(instrument);
    log.Put("logfile.ini", section);
    EXPECT_EQ(Fault(ValueReport::kAnalog, AnalogModel(catalogues, instrument)), "") << section;
    EXPECT_EQ(Fault(ValueReport::kMeter, MeterModel(catalogues, instrument)), "") << section;
    EXPECT_EQ(Fault(ValueReport::kSys, SysModel(catalogues, instrument)), "") << section;
    EXPECT_EQ(Fault(ValueReport::kBitOut, BitOutModel(catalogues, instrument, kWords)), "")
        << section;
    EXPECT_EQ(Fault(ValueReport::kBitIn, BitInModel(catalogues, instrument, kWords)), "")
        << section;
  }
}

TEST_P(OptionCombinations, TheRowsOfTheTuneReportApplyAsTheModelSays) {
  const Catalogues& catalogues = log.state.catalogues;
  for (const char* file : {"sensevar.mac", "othervar.mac", "resovar.mac", "paramvar.mac"})
    log.Put(file, Macro(catalogues, file));
  for (const int others : {0, 1, 2}) {
    instrument.STYLEB = instrument.NEW_RF = instrument.QPTYPE = instrument.AFC = others;
    log.Put("logfile.ini", SectionOf(instrument));
    const std::vector<TuneCell> cells = TuneCells(log.disk, catalogues, Folder());
    ASSERT_EQ(cells.size(), 163U);
    for (std::size_t row = 0; row < cells.size(); ++row) {
      const bool applies = TuneRowApplies(catalogues.TuneItems.at(row), instrument);
      EXPECT_EQ(cells[row].Value != "N/A", applies) << row << " " << SectionOf(instrument);
      EXPECT_NE(cells[row].Value, "") << row;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Lens, OptionCombinations,
                         testing::Combine(testing::Values(0, 1, 2), testing::Values(0, 1, 2),
                                          testing::Values(0, 1, 2)));

}  // namespace
}  // namespace logbook
