// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/ValueReports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "reports/ReportLayouts.h"
#include "resources/Resources.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

using test::Counting;
using test::CountingInOneLine;
using test::LinesOf;
using test::Viewing;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Lines = std::vector<std::string>;
using Options = std::map<std::string, std::string>;

constexpr const char* kSixteenWords = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n";

// The lines of a report for these options, with the numbers 0, 1, 2 ... in the file.
Lines Analog(const Options& options, int count = kAnalogRowCount) {
  Viewing viewing;
  viewing.SetOptions(options);
  viewing.Put("aall.txt", Counting(count));
  ViewAnalog(viewing.state, viewing.view);
  return LinesOf(viewing.view.ReportText);
}
Lines Meter(const Options& options, int count = kMeterRowCount) {
  Viewing viewing;
  viewing.SetOptions(options);
  viewing.Put("auser.txt", Counting(count));
  ViewMeter(viewing.state, viewing.view);
  return LinesOf(viewing.view.ReportText);
}
Lines Sys(const Options& options, const std::string& bytes = Counting(kSysRowCount)) {
  Viewing viewing;
  viewing.SetOptions(options);
  viewing.Put("sys.txt", bytes);
  ViewSys(viewing.state, viewing.view);
  return LinesOf(viewing.view.ReportText);
}
Lines BitOut(const Options& options, const std::string& words = kSixteenWords) {
  Viewing viewing;
  viewing.SetOptions(options);
  viewing.Put("bout.txt", words);
  ViewBout(viewing.state, viewing.view);
  return LinesOf(viewing.view.ReportText);
}
Lines BitIn(const Options& options, const std::string& words = kSixteenWords) {
  Viewing viewing;
  viewing.SetOptions(options);
  viewing.Put("bin.txt", words);
  ViewBin(viewing.state, viewing.view);
  return LinesOf(viewing.view.ReportText);
}

// The headings of a report: lines that do not begin with a blank.
Lines Headings(const Lines& lines) {
  Lines headings;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(headings),
               [](const std::string& line) { return !line.empty() && line[0] != ' '; });
  return headings;
}

// The lines of the section under the n-th heading of this text, counted from 1.
Lines Section(const Lines& lines, const std::string& heading, int number = 1) {
  Lines section;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] != heading || --number > 0) continue;
    for (++i; i < lines.size() && !lines[i].empty(); ++i) section.push_back(lines[i]);
    break;
  }
  return section;
}

std::string Line(const std::string& name, std::size_t width, const std::string& reading) {
  return " " + name + std::string(width - name.size(), ' ') + ":" + reading;
}

TEST(ValueReports, AValueStandsInItsFormatWithOneBlankBeforeItsUnit) {
  const Lines lines = Meter({});
  EXPECT_THAT(lines, Contains(" Inlet Temp                    :0 degC"));
  EXPECT_THAT(lines, Contains(" Mekeup Gas                    :5.00 L/min"));
  EXPECT_THAT(lines, Contains(" Analyzer Press                :1.60e1 Pa"));
}

TEST(ValueReports, AMeterRowWithNoUnitEndsInTheValueAndOneBlank) {
  Viewing viewing;
  viewing.state.catalogues.MeterItems[0].Unit.clear();
  viewing.Put("auser.txt", Counting(29));
  ViewMeter(viewing.state, viewing.view);
  EXPECT_THAT(LinesOf(viewing.view.ReportText), Contains(" Inlet Temp                    :0 "));
}

TEST(ValueReports, ASystemParameterWithNoUnitEndsInTheValueAndOneBlank) {
  EXPECT_THAT(Sys({}), Contains(Line("Coarse AMU Gain", 64, "64 ")));
}

TEST(ValueReports, NotApplicableRowsHaveNeitherUnitNorBlankBehindThem) {
  EXPECT_THAT(Meter({}), Contains(" SC Temparature(L)             :N/A"));
}

TEST(ValueReports, TheColonStandsInTheColumnOfTheReport) {
  const auto expect_column = [](const Lines& lines, std::size_t width) {
    for (const std::string& line : lines) {
      if (line.empty() || line[0] != ' ') continue;
      EXPECT_EQ(line.at(width + 1), ':') << line;
    }
  };
  expect_column(Analog({}), 30);
  expect_column(Meter({}), 30);
  expect_column(BitOut({}), 40);
  expect_column(BitIn({}), 40);
}

TEST(ValueReports, TheNameFieldIsCountedInBytesOfTheCodePage) {
  Viewing viewing(932);
  const std::string label = "\xE6\xBC\xA2\xE5\xAD\x97";  // two characters, four bytes
  viewing.state.catalogues.MeterItems[0].Name = label;
  viewing.Put("auser.txt", Counting(29));
  ViewMeter(viewing.state, viewing.view);
  EXPECT_THAT(LinesOf(viewing.view.ReportText),
              Contains(" " + label + std::string(26, ' ') + ":0 degC"));
  EXPECT_THAT(viewing.Get("meter.rpt"),
              HasSubstr("\r\n \x8A\xBF\x8E\x9A" + std::string(26, ' ') + ":0 degC\r\n"));
}

TEST(ValueReports, TheFullWidthParenthesisTakesAsManyPlacesAsTheCodePageGivesIt) {
  const auto line = [](int code_page) {
    Viewing viewing(code_page);
    viewing.Put("sys.txt", Counting(245));
    ViewSys(viewing.state, viewing.view);
    for (const std::string& text : LinesOf(viewing.Get("Sys.rpt"))) {
      if (text.find("Timeout (Reaction Mode -> Normal)") != std::string::npos) return text;
    }
    return std::string();
  };
  EXPECT_EQ(line(1252),
            Line("Stanby Mode(Reaction Mode)/Timeout (Reaction Mode -> Normal)", 64, "164 sec"));
  EXPECT_EQ(line(932), Line("Stanby Mode\x81\x69Reaction Mode)/Timeout (Reaction Mode -> Normal)",
                            64, "164 sec"));
}

TEST(ValueReports, NoLabelIsWiderThanItsFieldInAnyCodePage) {
  Viewing viewing;
  const Catalogues& catalogues = viewing.state.catalogues;
  for (const int number : CodePage::Numbers()) {
    const CodePage& code_page = *CodePage::Find(number);
    for (const auto& item : catalogues.AnalogItems) EXPECT_LE(code_page.Length(item.Name), 30U);
    for (const auto& item : catalogues.MeterItems) EXPECT_LE(code_page.Length(item.Name), 30U);
    for (const auto& item : catalogues.SysItems) EXPECT_LE(code_page.Length(item.Name), 64U);
    for (const auto& item : catalogues.BoutItems) EXPECT_LE(code_page.Length(item.Name), 40U);
    for (const auto& item : catalogues.BinItems) EXPECT_LE(code_page.Length(item.Name), 40U);
  }
}

TEST(ValueReports, ALabelWiderThanItsFieldIsFollowedByTheColon) {
  Viewing viewing;
  viewing.state.catalogues.MeterItems[0].Name = std::string(31, 'x');
  viewing.Put("auser.txt", Counting(29));
  ViewMeter(viewing.state, viewing.view);
  EXPECT_THAT(LinesOf(viewing.view.ReportText), Contains(" " + std::string(31, 'x') + ":0 degC"));
}

TEST(ValueReports, RowsStandInTheirSectionInCatalogueOrder) {
  EXPECT_THAT(Section(Meter({}), "Plasma RF:"),
              ElementsAre(Line("Foward Power", 30, "2 W"), Line("Reflected Power", 30, "3 W")));
  EXPECT_THAT(Section(Meter({}), "Gas:"),
              ElementsAre(StartsWith(" Carrier Gas "), StartsWith(" Mekeup Gas "),
                          StartsWith(" Option Gas "), StartsWith(" Plasma Gas "),
                          StartsWith(" Aux Gas "), StartsWith(" Argon Gas "),
                          StartsWith(" Carrier Gas Press "), StartsWith(" OP Gas Press "),
                          StartsWith(" OP Gas Tank Press "), StartsWith(" Carrier Gas(BP) ")));
}

TEST(ValueReports, ASectionIsFollowedByOneEmptyLine) {
  const Lines lines = BitOut({});
  EXPECT_EQ(lines.front(), "XYZ Stage:");
  EXPECT_TRUE(lines.back().empty());
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const bool heading = !lines[i].empty() && lines[i][0] != ' ';
    EXPECT_EQ(heading, !lines[i].empty() && lines[i - 1].empty()) << i << lines[i];
  }
}

TEST(ValueReports, ASectionWithoutARowIsItsHeadingAlone) {
  Viewing viewing;
  for (ItemRecord& item : viewing.state.catalogues.MeterItems) {
    if (item.Group == 6) item.Group = 5;
  }
  viewing.Put("auser.txt", Counting(29));
  ViewMeter(viewing.state, viewing.view);
  EXPECT_THAT(viewing.view.ReportText, testing::EndsWith("\r\n\r\nPlasma RF:\r\n\r\n"));
}

TEST(ValueReports, TheFileHoldsTheTextAndOneMoreLineEnd) {
  Viewing viewing;
  viewing.Put("bin.txt", kSixteenWords);
  viewing.Put("bitin.rpt", std::string(100000, 'x'));
  ViewBin(viewing.state, viewing.view);
  EXPECT_EQ(viewing.Get("bitin.rpt"), viewing.view.ReportText + "\r\n");
}

TEST(ValueReports, ALogWithoutSnapshotGivesAnEmptyPaneAndAFileOfOneEmptyLine) {
  Viewing viewing;
  viewing.view.ReportText = "older";
  const std::pair<void (*)(const AppState&, LogView&), const char*> reports[] = {
      {ViewAnalog, "analog.rpt"},
      {ViewMeter, "meter.rpt"},
      {ViewSys, "Sys.rpt"},
      {ViewBout, "bitout.rpt"},
      {ViewBin, "bitin.rpt"}};
  for (const auto& [routine, file] : reports) {
    routine(viewing.state, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "") << file;
    EXPECT_EQ(viewing.Get(file), "\r\n") << file;
  }
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(ValueReports, AnEmptyFileOfNumbersReadsNotApplicableInEveryRow) {
  for (const Lines& lines : {Analog({}, 0), Meter({}, 0), Sys({}, "")}) {
    EXPECT_GT(lines.size(), 20U);
    for (const std::string& line : lines) {
      if (line.empty() || line[0] != ' ') continue;
      EXPECT_THAT(line, HasSubstr(":N/A")) << line;
    }
  }
}

TEST(ValueReports, AnalogValuesInOneLineAndOneToALineGiveTheSameReport) {
  Viewing viewing;
  viewing.Put("aall.txt", CountingInOneLine(215));
  ViewAnalog(viewing.state, viewing.view);
  EXPECT_EQ(LinesOf(viewing.view.ReportText), Analog({}));
}

TEST(ValueReports, FieldsBehindTheLastRowAreIgnored) {
  EXPECT_EQ(Analog({}, 400), Analog({}));
  EXPECT_EQ(Meter({}, 30), Meter({}));
  EXPECT_EQ(Sys({}, Counting(246)), Sys({}));
}

TEST(ValueReports, AHundredAnalogValuesGiveNumbersThenNotApplicable) {
  const Options lumarin = {{"LENS", "1"}};
  const Lines lines = Analog(lumarin, 100);
  EXPECT_THAT(lines, Contains(Line("LmrP RF Set", 30, "99.00 V")));    // row 99
  EXPECT_THAT(lines, Contains(Line("LmrP FET BIas Set", 30, "N/A")));  // row 100
  EXPECT_THAT(Section(lines, "Lenses:"), testing::Each(HasSubstr(":N/A")));
  // Rows 157 and 180 are omitted, not "N/A".
  EXPECT_EQ(std::count(lines.begin(), lines.end(), Line("LmrP Bias", 30, "N/A")), 1);
}

TEST(AnalogReport, AnOmittedRowHasConsumedItsField) {
  EXPECT_THAT(Section(Analog({{"LENS", "1"}, {"LENS2", "1"}}), "Lenses:"),
              Contains(Line("HV Current 1", 30, "158.0 A")));
}

TEST(AnalogReport, ThePlainLensLogHasNoSectionLumarin) {
  EXPECT_THAT(Headings(Analog({})),
              ElementsAre("Gas:", "SC:", "Vacuum:", "Q-Pole:", "Detector:", "Main Board:",
                          "Plasma RF:", "Water:", "Lenses:", "Housing:"));
}

TEST(AnalogReport, EveryOptionJoinsItsSectionsInTheirPlace) {
  EXPECT_THAT(Headings(Analog({{"STYLEB", "1"}, {"LENS", "1"}, {"NEW_RF", "1"}})),
              ElementsAre("Gas:", "SC:", "Vacuum:", "Vacuum(Style B):", "Lumarin:", "Q-Pole:",
                          "Detector:", "Main Board:", "Plasma RF:", "Water:", "Water(Style B):",
                          "Reaction Cell:", "Lenses:", "Housing:"));
}

TEST(AnalogReport, ALensOfTwoHasTheReactionCellAndNoSectionLumarin) {
  const Lines lines = Analog({{"LENS", "2"}});
  EXPECT_THAT(Headings(lines), Not(Contains("Lumarin:")));
  EXPECT_THAT(Headings(lines), Contains("Reaction Cell:"));
  // The lens part asks whether LENS is 0, the rows whether it is 1: those of Lumarin read "N/A".
  EXPECT_THAT(Section(lines, "Lenses:"), Contains(Line("Extract", 30, "N/A")));
}

TEST(AnalogReport, ALensOfTwoChoosesItsLensPartByTheOtherTwoAllTheSame) {
  const Lines second = Section(Analog({{"LENS", "2"}, {"LENS2", "1"}}), "Lenses:");
  EXPECT_THAT(second, Contains(Line("Varion Bias-cs", 30, "N/A")));
  const Lines third = Section(Analog({{"LENS", "2"}, {"LENS2", "1"}, {"LENS3", "1"}}), "Lenses:");
  EXPECT_THAT(third, Contains(Line("Varion Bias-ce", 30, "N/A")));
}

TEST(AnalogReport, TheLensPartFollowsTheLensFamily) {
  EXPECT_THAT(Section(Analog({}), "Lenses:"), Contains(Line("Extract 1", 30, "71.0 V")));
  EXPECT_THAT(Section(Analog({{"LENS", "1"}, {"LENS3", "1"}}), "Lenses:"),
              Contains(Line("Extract", 30, "107.0 V")));
  EXPECT_THAT(Section(Analog({{"LENS", "1"}, {"LENS2", "1"}}), "Lenses:"),
              Contains(Line("Varion Bias-cs", 30, "152 V")));
  EXPECT_THAT(Section(Analog({{"LENS", "1"}, {"LENS2", "1"}, {"LENS3", "1"}}), "Lenses:"),
              Contains(Line("Varion Bias-ce", 30, "175 V")));
  EXPECT_THAT(Section(Analog({{"LENS2", "1"}, {"LENS3", "1"}}), "Lenses:"),
              Contains(Line("Extract 1", 30, "71.0 V")));
}

TEST(AnalogReport, OneLensBiasRowStandsInSectionLumarin) {
  const auto bias = [](const Options& options) {
    Lines rows;
    for (const std::string& line : Section(Analog(options), "Lumarin:")) {
      if (line.rfind(" LmrP Bias ", 0) == 0) rows.push_back(line);
    }
    return rows;
  };
  EXPECT_THAT(bias({{"LENS", "1"}}), ElementsAre(Line("LmrP Bias", 30, "113.0 V")));
  EXPECT_THAT(bias({{"LENS", "1"}, {"LENS2", "1"}}), ElementsAre(Line("LmrP Bias", 30, "157 V")));
  EXPECT_THAT(bias({{"LENS", "1"}, {"LENS2", "1"}, {"LENS3", "1"}}),
              ElementsAre(Line("LmrP Bias", 30, "180 V")));
  // A plain lens log builds three such lines of "N/A" in a section that it does not join.
  EXPECT_THAT(Analog({}), Not(Contains(StartsWith(" LmrP Bias "))));
}

TEST(AnalogReport, TheNewRfUnitReplacesTheRowsOfThePlasmaRfSection) {
  const Lines old_rf = Section(Analog({}), "Plasma RF:");
  const Lines new_rf = Section(Analog({{"NEW_RF", "1"}}), "Plasma RF:");
  EXPECT_EQ(old_rf.size(), 24U);
  EXPECT_EQ(old_rf.front(), Line("Series C Pos", 30, "9.000 V"));
  EXPECT_EQ(new_rf.size(), 25U);
  EXPECT_EQ(new_rf.front(), Line("Series C Pos", 30, "125.000 V"));
  EXPECT_THAT(Analog({{"NEW_RF", "1"}}), Not(Contains(StartsWith(" Bias(EEPROM)"))));
  EXPECT_EQ(std::ranges::count(Headings(Analog({{"NEW_RF", "1"}})), "Plasma RF:"), 1);
}

TEST(MeterReport, SectionsFollowTheOptions) {
  EXPECT_THAT(Headings(Meter({})),
              ElementsAre("Vacuum:", "Water:", "Housing:", "SC:", "Gas:", "Plasma RF:"));
  EXPECT_THAT(Headings(Meter({{"STYLEB", "1"}, {"LENS", "1"}})),
              ElementsAre("Vacuum:", "Vacuum(Style B):", "Water:", "Water(Style B):", "Housing:",
                          "SC:", "Gas:", "Plasma RF:", "Reaction Cell:"));
  EXPECT_THAT(Headings(Meter({{"LENS", "2"}})), Not(Contains("Reaction Cell:")));
}

TEST(MeterReport, TheReactionCellAtItsEndHasNoEmptyLineBehindIt) {
  EXPECT_EQ(Meter({{"LENS", "1"}}).back(), Line("Optional Gas(Reaction Cell)", 30, "N/A"));
  EXPECT_EQ(Meter({}).back(), "");
}

TEST(SysReport, SectionsFollowTheOptions) {
  const Lines plain = {
      "Stanby Mode:", "Analysis Mode:", "Penning Gauge:", "Turbo Pump:", "Isolation Valve:", "Gas:",
      "Plasma RF:",   "QP Driver:",     "Detector:",      "Log Amp:",    "XYZ Stage:",       "S/C:",
      "Housing:",     "Water:",         "Peri Pump:",     "Lenses:",     "Lumarin:"};
  EXPECT_EQ(Headings(Sys({})), plain);
  EXPECT_EQ(Headings(Sys({{"LENS", "1"}})), plain);
  const Lines style_b = {"Stanby Mode:",
                         "Analysis Mode:",
                         "Analysis Mode(Style B):",
                         "Penning Gauge:",
                         "Penning Gauge(Style B):",
                         "Turbo Pump:",
                         "Turbo Pump(Style B):",
                         "Isolation Valve:",
                         "Isolation Valve(Style B):",
                         "Gas:",
                         "Plasma RF:",
                         "QP Driver:",
                         "Detector:",
                         "Log Amp:",
                         "XYZ Stage:",
                         "S/C:",
                         "Housing:",
                         "Water:",
                         "Water(Style B):",
                         "Peri Pump:",
                         "Lenses:",
                         "Lumarin:"};
  EXPECT_EQ(Headings(Sys({{"STYLEB", "1"}})), style_b);
}

TEST(SysReport, TheLensPartFollowsTheLensFamily) {
  EXPECT_EQ(Section(Sys({}), "Lenses:").size(), 18U);
  EXPECT_THAT(Section(Sys({{"LENS", "2"}}), "Lenses:"),
              Contains(Line("Extract/Voltage Self-Adjustment (Slope)", 64, "168.000 V")));
  EXPECT_THAT(Section(Sys({{"LENS", "1"}, {"LENS2", "1"}}), "Lenses:"),
              Contains(Line("Varion Bias-cs/Voltage Calibration (Slope)", 64, "192.000 V")));
  EXPECT_THAT(Section(Sys({{"LENS", "1"}, {"LENS2", "1"}, {"LENS3", "1"}}), "Lenses:"),
              Contains(Line("Varion Bias-ce/Voltage Self-Adjustment (Slope)", 64, "228.000 V")));
}

TEST(SysReport, TheRowsThatNoReportPrintsAreLeftOut) {
  for (const Lines& lines : {Sys({}), Sys({{"STYLEB", "1"}}), Sys({}, "")}) {
    EXPECT_THAT(lines, Not(Contains(StartsWith(" TP (Analysis Mode)/"))));
  }
}

TEST(SysReport, TheStampIsTextAsItStandsWithoutUnit) {
  std::string bytes = Counting(83) + "\"No. 7, 2026 \"\r\n84\r\n";
  EXPECT_THAT(Section(Sys({}, bytes), "Log Amp:"),
              Contains(Line("Log Amp/Manufacturing Stamp", 64, "No. 7, 2026 ")));
  EXPECT_THAT(Section(Sys({}, Counting(83)), "Log Amp:"),
              Contains(Line("Log Amp/Manufacturing Stamp", 64, "N/A")));
}

TEST(SysReport, AStampCutAtItsCommaShiftsTheLaterRows) {
  std::string bytes = Counting(83) + "A,7\r\n";
  for (int row = 84; row < 245; ++row) bytes += std::to_string(row) + "\r\n";
  const Lines lines = Sys({}, bytes);
  EXPECT_THAT(lines, Contains(Line("Log Amp/Manufacturing Stamp", 64, "A")));
  EXPECT_THAT(lines, Contains(Line("Q-Pole/Mass RF Matching Frequency", 64, "7.000 MHz")));
  EXPECT_THAT(lines, Contains(Line("EM Discriminator Limit", 64, "243.0 mV")));
}

TEST(SysReport, TheFileIsWrittenOverOneWhoseNameDiffersInCase) {
  Viewing viewing;
  viewing.Put("sys.rpt", "older");
  viewing.Put("sys.txt", Counting(245));
  ViewSys(viewing.state, viewing.view);
  EXPECT_EQ(viewing.Get("sys.rpt").size(), viewing.Get("sys.rpt").rfind("\r\n") + 2);
  EXPECT_NE(viewing.Get("sys.rpt"), "older");
  EXPECT_FALSE(viewing.Has("Sys.rpt"));
}

TEST(BitReports, ABitReadsItsLabelWithoutUnitOrBlank) {
  const Lines clear = BitOut({});
  EXPECT_THAT(clear, Contains(Line("XYZ Motor Rotation", 40, "Backward")));
  EXPECT_THAT(clear, Contains(Line("Nebulizer Pump Rotation", 40, "Forward")));
  const Lines set = BitOut({}, "0,0,2000,1,0,0,0,0,0,0,0,0,0,0,0,0");
  EXPECT_THAT(set, Contains(Line("XYZ Motor Rotation", 40, "Forward")));
  EXPECT_THAT(set, Contains(Line("Nebulizer Pump Rotation", 40, "Backward")));
}

TEST(BitReports, TheHighestBitOfAWordReadsItsSetLabel) {
  EXPECT_THAT(BitOut({}, "0,0,FFFF8000,0,0,0,0,0,0,0,0,0,0,0,0,0"),
              Contains(Line("Y Axis", 40, "Select")));
  EXPECT_THAT(BitIn({}, "0,0,0,0,0,8000,0,0,0,0,0,0,0,0,0,0"),
              Contains(Line("Isolation Valve Pos 2 SW", 40, "Detect")));
}

TEST(BitReports, TheWordsBehindTheTwelfthAreReadAndNotUsed) {
  const std::string words = "0,0,0,0,0,0,0,0,0,0,0,0,0,FFFF,FFFF,FFFF\r\n";
  EXPECT_EQ(BitOut({}, words), BitOut({}));
  EXPECT_EQ(BitIn({{"NEW_RF", "1"}}, words), BitIn({{"NEW_RF", "1"}}));
}

TEST(BitReports, FifteenFieldsGiveAnEmptyPaneAndLeaveAnOlderFile) {
  Viewing viewing;
  viewing.Put("bout.txt", "1,2,3,4,5,6,7,8,9,A,B,C,D,E,F\r\n");
  viewing.Put("bitout.rpt", "older");
  viewing.view.ReportText = "shown before";
  viewing.Choose(&LogView::mnuBout);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_EQ(viewing.Get("bitout.rpt"), "older");
  EXPECT_TRUE(viewing.messages.shown.empty());
  EXPECT_EQ(viewing.state.ViewMode, 9);
}

TEST(BitOutReport, SectionsFollowTheOptions) {
  EXPECT_THAT(Headings(BitOut({})),
              ElementsAre("XYZ Stage:", "Gas:", "Peri Pump:", "Vacuum:", "Water:", "QP Driver:",
                          "Plasma RF:", "Lenses:", "Housing:", "Lumarin:"));
  EXPECT_THAT(Headings(BitOut({{"STYLEB", "1"}})),
              ElementsAre("XYZ Stage:", "Gas:", "Peri Pump:", "Vacuum:", "Vacuum(Style B):",
                          "Water:", "QP Driver:", "Plasma RF:", "Lenses:", "Housing:", "Lumarin:"));
}

TEST(BitOutReport, TheNewRfUnitReplacesRfBiasInItsPlace) {
  const std::string words = "0,0,0,0,0,0,0,0,1000,0,0,0,0,0,0,0";
  EXPECT_THAT(BitOut({}, words), Contains(Line("RF Bias", 40, "On")));
  EXPECT_THAT(BitOut({}, words), Not(Contains(StartsWith(" PWM Threshold"))));
  const Lines new_rf = BitOut({{"NEW_RF", "1"}}, words);
  EXPECT_THAT(new_rf, Not(Contains(StartsWith(" RF Bias"))));
  EXPECT_EQ(Section(new_rf, "Plasma RF:").back(),
            Line("PWM Threshold Voltage Manual Setting", 40, "On"));
  EXPECT_EQ(std::ranges::count(new_rf, Line("PWM Threshold Voltage Manual Setting", 40, "On")), 1);
}

TEST(BitOutReport, AfcDecidesBetweenGasValvesAndStopValve) {
  const std::string words = "0,0,0,1200,0,0,0,0,0,0,0,0,400,0,0,0";
  const Lines with = BitOut({{"AFC", "1"}}, words);
  EXPECT_THAT(with, Contains(Line("Carrier GAS Valve", 40, "N/A")));
  EXPECT_THAT(with, Contains(Line("Vent Gas Supply Valve", 40, "N/A")));
  EXPECT_THAT(with, Contains(Line("Stop Valve", 40, "Open")));
  for (const char* afc : {"0", "2"}) {
    const Lines without = BitOut({{"AFC", afc}}, words);
    EXPECT_THAT(without, Contains(Line("Carrier GAS Valve", 40, "Open")));
    EXPECT_THAT(without, Contains(Line("Vent Gas Supply Valve", 40, "Open")));
    EXPECT_THAT(without, Contains(Line("Stop Valve", 40, "N/A")));
  }
}

TEST(BitOutReport, StyleBHasNoSeparateTurboPumps) {
  EXPECT_THAT(BitOut({}), Contains(Line("Turbo Pump (Analyzer)", 40, "Off")));
  const Lines style_b = BitOut({{"STYLEB", "1"}});
  EXPECT_THAT(style_b, Contains(Line("Turbo Pump (Analyzer)", 40, "N/A")));
  EXPECT_THAT(style_b, Contains(Line("Turbo Pump (IF)", 40, "N/A")));
  EXPECT_THAT(Section(style_b, "Vacuum(Style B):"),
              ElementsAre(Line("Turbo Pump", 40, "Off"), Line("Turbo Pump FAN", 40, "Off")));
}

TEST(BitInReport, TheNewRfUnitReplacesThreeRowsAndAddsFour) {
  const Lines old_rf = BitIn({});
  EXPECT_THAT(old_rf, Contains(Line("RF Output Status", 40, "Balance")));
  EXPECT_THAT(old_rf, Not(Contains(StartsWith(" RF 48V Power Supply Error"))));
  EXPECT_THAT(old_rf, Not(Contains(StartsWith(" RF Unbalanse Sensor"))));
  const Lines new_rf = BitIn({{"NEW_RF", "1"}});
  EXPECT_EQ(new_rf.size(), old_rf.size() + 4);
  const auto place = [](const Lines& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) - lines.begin();
  };
  EXPECT_EQ(place(new_rf, Line("RF Unbalanse Sensor", 40, "Connected")),
            place(old_rf, Line("RF Output Status", 40, "Balance")));
  EXPECT_EQ(place(new_rf, Line("RF Feedback Error", 40, "Not Detect")),
            place(old_rf, Line("RF Local 12V Error", 40, "Normal")));
  EXPECT_EQ(place(new_rf, Line("RF Cable Connection Error", 40, "Not Detect")),
            place(old_rf, Line("RF Directional Coupler Error", 40, "Normal")));
  EXPECT_THAT(new_rf, Contains(Line("RF Reflected Power Status", 40, "Normal")));
  EXPECT_THAT(new_rf, Contains(Line("RF 48V Power Supply Error", 40, "Not Detect")));
}

TEST(BitInReport, StyleBHasNoTurboPumpFanStatus) {
  EXPECT_THAT(BitIn({}), Contains(Line("Turbo Pump Fan Status", 40, "Normal")));
  EXPECT_THAT(BitIn({{"STYLEB", "1"}}), Contains(Line("Turbo Pump Fan Status", 40, "N/A")));
}

TEST(ValueReports, ANumberTooLargeForADoubleGivesAnEmptyPaneInSilence) {
  Viewing viewing;
  viewing.Put("auser.txt", "1,2,1e999");
  viewing.Put("meter.rpt", "older");
  viewing.view.ReportText = "shown before";
  ViewMeter(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_EQ(viewing.Get("meter.rpt"), "older");
}

TEST(ValueReports, ASnapshotThatCannotBeOpenedGivesAnEmptyPaneInSilence) {
  Viewing viewing;
  viewing.disk.MakeFolders(Viewing::File("aall.txt"));
  ViewAnalog(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_FALSE(viewing.Has("analog.rpt"));
}

TEST(ValueReports, AReportFileThatCannotBeWrittenLeavesTheTextOnShow) {
  Viewing viewing;
  viewing.Put("auser.txt", Counting(29));
  viewing.disk.MakeFolders(Viewing::File("meter.rpt"));
  viewing.Choose(&LogView::mnuMeter);
  EXPECT_EQ(LinesOf(viewing.view.ReportText), Meter({}));
  EXPECT_EQ(viewing.state.ViewMode, 7);
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(ValueReports, EveryViewReadsOptionsAndSnapshotAfresh) {
  Viewing viewing;
  viewing.Put("auser.txt", Counting(29));
  ViewMeter(viewing.state, viewing.view);
  viewing.SetOptions({{"SC", "1"}});
  viewing.Put("auser.txt", "5\r\n");
  ViewMeter(viewing.state, viewing.view);
  EXPECT_THAT(LinesOf(viewing.view.ReportText), Contains(Line("Inlet Temp", 30, "5 degC")));
  EXPECT_THAT(LinesOf(viewing.view.ReportText), Contains(Line("Exhaust Temp", 30, "N/A")));
}

TEST(ValueReports, OptionsAreComparedByTheirLeadingNumber) {
  EXPECT_EQ(Analog({{"NEW_RF", " 1.0 x"}}), Analog({{"NEW_RF", "1"}}));
  EXPECT_EQ(Analog({{"NEW_RF", "x"}}), Analog({}));
}

TEST(ReportLayouts, HeadingsStandInTheStringTable) {
  for (const ReportLayout& layout : kReportLayouts) {
    for (const SectionHeading& heading : layout.Headings) {
      EXPECT_EQ(LoadResString(heading.String), heading.Text);
    }
  }
}

}  // namespace
}  // namespace logbook
