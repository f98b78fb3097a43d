// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/ReportModel.h"

#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

#include "base/CodePage.h"
#include "text/NumberFormat.h"

namespace logbook::test {

namespace {

using Headings = std::vector<const char*>;

// clang-format off
const Headings kSysHeadings = {
    "Stanby Mode:", "Analysis Mode:", "Penning Gauge:", "Turbo Pump:", "Isolation Valve:", "Gas:",
    "Plasma RF:", "QP Driver:", "Detector:", "Log Amp:", "XYZ Stage:", "S/C:", "Housing:", "Water:",
    "Peri Pump:", "Lenses:", "Lenses:", "Lumarin:", "Lenses:", "Analysis Mode(Style B):",
    "Penning Gauge(Style B):", "Turbo Pump(Style B):", "Isolation Valve(Style B):",
    "Water(Style B):", "Lenses:"};
// clang-format on

enum LensFamily { kPlain, kLumarin, kVarionCs, kVarionCe };

LensFamily FamilyOf(const Instrument& i) {
  if (i.LENS != 1) return kPlain;
  if (i.LENS2 != 1) return kLumarin;
  return i.LENS3 == 1 ? kVarionCe : kVarionCs;
}

// True if the row is one of these, each from a first to a last one.
bool In(int row, std::initializer_list<std::pair<int, int>> ranges) {
  for (const auto& [first, last] : ranges) {
    if (row >= first && row <= last) return true;
  }
  return false;
}

// A report: its sections by number, each begun by its heading.
class Report {
 public:
  Report(std::size_t name_width, const Headings& headings) : width_(name_width) {
    for (const char* heading : headings) sections_.push_back(heading + std::string("\r\n"));
  }

  void Add(int section, const std::string& name, const std::string& reading) {
    const std::size_t bytes = CodePage::Find(1252)->Length(name);
    const std::string blanks(bytes < width_ ? width_ - bytes : 0, ' ');
    Section(section) += " " + name + blanks + ":" + reading + "\r\n";
  }
  void AddNumber(const ItemRecord& item, int row, bool applies) {
    Add(item.Group, item.Name, applies ? FormatNumber(row, item.Format) + " " + item.Unit : "N/A");
  }
  // Puts sections behind each other, an empty line behind each.
  void Join(std::initializer_list<int> sections) {
    for (const int section : sections) text += Section(section) + "\r\n";
  }
  std::string& Section(int number) { return sections_.at(static_cast<std::size_t>(number) - 1); }

  std::string text;

 private:
  std::size_t width_;
  std::vector<std::string> sections_;
};

bool AnalogRowApplies(int row, const Instrument& i) {
  const LensFamily family = FamilyOf(i);
  if (i.SC == 0 && In(row, {{43, 45}})) return false;
  if (i.OPGS == 0 && In(row, {{35, 35}, {40, 41}})) return false;
  if (i.COLOPGS == 0 && row == 105) return false;
  if (i.NEW_RF == 0 && In(row, {{125, 149}})) return false;
  if (i.NEW_RF == 1 && In(row, {{9, 21}, {23, 32}, {95, 95}})) return false;
  if (family != kPlain && In(row, {{71, 90}})) return false;
  if (family != kLumarin && In(row, {{107, 124}})) return false;
  if (family != kVarionCs && In(row, {{150, 168}})) return false;
  if (family != kVarionCe && In(row, {{173, 191}})) return false;
  if (i.STYLEB == 0 && In(row, {{169, 172}})) return false;
  if (i.STYLEB != 0 && In(row, {{46, 47}, {49, 50}, {52, 53}, {58, 59}})) return false;
  if (i.QPTYPE == 1 ? In(row, {{63, 64}}) : row == 192) return false;
  return !(i.AFC == 1 ? In(row, {{39, 39}, {42, 42}}) : In(row, {{193, 214}}));
}

bool MeterRowApplies(int row, const Instrument& i) {
  if (i.SC == 0 && row == 13) return false;
  if (i.OPGS == 0 && In(row, {{6, 6}, {11, 12}})) return false;
  if (i.LENS == 0 && In(row, {{22, 24}})) return false;
  if (i.COLOPGS == 0 && row == 24) return false;
  if (i.STYLEB == 0 ? In(row, {{25, 27}}) : In(row, {{14, 15}, {17, 18}, {20, 21}})) return false;
  return row != (i.AFC == 1 ? 10 : 28);
}

bool SysRowApplies(int row, const Instrument& i) {
  if (i.STYLEB == 0 && In(row, {{204, 225}})) return false;
  const bool replaced = In(row, {{0, 6}, {8, 17}, {25, 28}, {106, 109}, {158, 159}, {161, 161}});
  if (i.STYLEB != 0 && replaced) return false;
  if (i.QPTYPE == 0 ? In(row, {{240, 241}}) : In(row, {{66, 67}})) return false;
  if (i.AFC == 0) return !In(row, {{242, 243}});
  return !In(row, {{113, 113}, {115, 115}, {117, 117}, {119, 119}, {121, 126}});
}

std::string BitReading(const BitItemRecord& item, const std::array<std::uint16_t, 16>& words) {
  const int word = words.at(static_cast<std::size_t>(item.Word));
  return (word & item.Mask) != 0 ? item.Label1 : item.Label0;
}

}  // namespace

std::string AnalogModel(const Catalogues& catalogues, const Instrument& i) {
  Report report(30, {"Gas:", "SC:", "Vacuum:", "Q-Pole:", "Detector:", "Main Board:", "Plasma RF:",
                     "Water:", "Lenses:", "Housing:", "Lumarin:", "Reaction Cell:", "Lenses:",
                     "Plasma RF:", "Lenses:", "Vacuum(Style B):", "Water(Style B):", "Lenses:"});
  const std::map<LensFamily, int> bias = {{kLumarin, 113}, {kVarionCs, 157}, {kVarionCe, 180}};
  for (int row = 0; row < 215; ++row) {
    const bool is_bias = row == 113 || row == 157 || row == 180;
    if (is_bias && i.LENS == 1 && bias.at(FamilyOf(i)) != row) continue;
    const ItemRecord& item = catalogues.AnalogItems.at(static_cast<std::size_t>(row));
    report.AddNumber(item, row, AnalogRowApplies(row, i));
  }
  report.Join({1, 2, 3});
  if (i.STYLEB == 1) report.Join({16});
  if (i.LENS == 1) report.Join({11});
  report.Join({4, 5, 6, i.NEW_RF == 1 ? 14 : 7, 8});
  if (i.STYLEB == 1) report.Join({17});
  if (i.LENS == 0) {
    report.Join({9});
  } else {
    report.Join({12, i.LENS2 != 1 ? 13 : i.LENS3 != 1 ? 15 : 18});
  }
  report.Join({10});
  return report.text;
}

std::string MeterModel(const Catalogues& catalogues, const Instrument& i) {
  Report report(30, {"Vacuum:", "Water:", "Housing:", "SC:", "Gas:", "Plasma RF:", "Reaction Cell:",
                     "Vacuum(Style B):", "Water(Style B):"});
  for (int row = 0; row < 29; ++row) {
    const ItemRecord& item = catalogues.MeterItems.at(static_cast<std::size_t>(row));
    report.AddNumber(item, row, MeterRowApplies(row, i));
  }
  report.Join({1});
  if (i.STYLEB == 1) report.Join({8});
  report.Join({2});
  if (i.STYLEB == 1) report.Join({9});
  report.Join({3, 4, 5, 6});
  if (i.LENS == 1) report.text += report.Section(7);
  return report.text;
}

std::string SysModel(const Catalogues& catalogues, const Instrument& i) {
  Report report(64, kSysHeadings);
  for (int row = 0; row < 245; ++row) {
    if (row >= 15 && row <= 17) continue;
    const ItemRecord& item = catalogues.SysItems.at(static_cast<std::size_t>(row));
    if (row == 83) {
      report.Add(item.Group, item.Name, "83");
    } else {
      report.AddNumber(item, row, SysRowApplies(row, i));
    }
  }
  report.Join({1});
  // A section and, on Style B, the one that belongs behind it.
  constexpr std::pair<int, int> kPairs[] = {{2, 20}, {3, 21}, {4, 22}, {5, 23}};
  for (const auto& [section, style_b] : kPairs) {
    report.Join({section});
    if (i.STYLEB == 1) report.Join({style_b});
  }
  report.Join({6, 7, 8, 9, 10, 11, 12, 13, 14});
  if (i.STYLEB == 1) report.Join({24});
  report.Join({15});
  if (i.LENS == 0) {
    report.Join({16});
  } else {
    report.Join({i.LENS2 != 1 ? 17 : i.LENS3 != 1 ? 19 : 25});
  }
  report.Join({18});
  return report.text;
}

std::string BitOutModel(const Catalogues& catalogues, const Instrument& i,
                        const std::array<std::uint16_t, 16>& words) {
  Report report(40, {"XYZ Stage:", "Gas:", "Peri Pump:", "Vacuum:", "Water:", "QP Driver:",
                     "Plasma RF:", "Lenses:", "Housing:", "Lumarin:", "Vacuum(Style B):"});
  for (int row = 0; row < 58; ++row) {
    if (row == 54) continue;
    const int shown = row == 44 && i.NEW_RF == 1 ? 54 : row;
    const BitItemRecord& item = catalogues.BoutItems.at(static_cast<std::size_t>(shown));
    const bool applies = !(i.STYLEB == 1 && In(row, {{30, 31}})) &&
                         !(i.AFC == 1 ? row == 12 || row == 15 : row == 57);
    report.Add(item.Group, item.Name, applies ? BitReading(item, words) : "N/A");
  }
  report.Join({1, 2, 3, 4});
  if (i.STYLEB == 1) report.Join({11});
  report.Join({5, 6, 7, 8, 9, 10});
  return report.text;
}

std::string BitInModel(const Catalogues& catalogues, const Instrument& i,
                       const std::array<std::uint16_t, 16>& words) {
  Report report(40, {"XYZ Stage:", "Vacuum:", "QP Driver:", "Plasma RF:", "Detector:", "Housing:",
                     "Main Board:", "Power Supply:", "Lumarin:"});
  const std::map<int, int> new_rf = {{27, 62}, {32, 63}, {36, 64}};
  for (int row = 0; row < (i.NEW_RF == 1 ? 62 : 58); ++row) {
    const bool replaced = i.NEW_RF == 1 && new_rf.contains(row);
    const int shown = replaced ? new_rf.at(row) : row;
    const BitItemRecord& item = catalogues.BinItems.at(static_cast<std::size_t>(shown));
    const bool applies = !(i.STYLEB == 1 && row == 16);
    report.Add(item.Group, item.Name, applies ? BitReading(item, words) : "N/A");
  }
  report.Join({1, 2, 3, 4, 5, 6, 7, 8, 9});
  return report.text;
}

bool TuneRowApplies(const TuneItemRecord& row, const Instrument& i) {
  const std::map<int, LensFamily> families = {
      {5, kPlain}, {7, kLumarin}, {9, kVarionCs}, {11, kVarionCe}};
  if (row.Group == 8) return i.LENS != 0;
  const auto family = families.find(row.Group);
  return family == families.end() || family->second == FamilyOf(i);
}

}  // namespace logbook::test
