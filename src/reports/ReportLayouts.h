// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How the value reports are laid out: the headings of their sections and the order in which the
// sections are joined. A section's number is the Group of its rows and counts from 1; the same
// heading can stand over several sections, one for each hardware variant.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "catalogue/OptionGating.h"
#include "resources/StringNumbers.h"

namespace logbook {

// The instruments on which a section is joined.
using JoinCondition = bool (*)(const LogOptions& options);

struct SectionHeading {
  int Section;
  int String;
  std::string_view Text;
};

enum class Behind { kEmptyLine, kNothing };

// One step of the joining order.
struct JoinStep {
  int Section;
  JoinCondition Condition;
  Behind After = Behind::kEmptyLine;
};

struct ReportLayout {
  std::string_view Snapshot;    // file in the log folder
  std::string_view ReportFile;  // file in the log folder
  std::size_t NameWidth;        // bytes of the code page
  std::span<const SectionHeading> Headings;
  std::span<const JoinStep> Order;
};

namespace join {

constexpr bool Always(const LogOptions&) {
  return true;
}
constexpr bool StyleB(const LogOptions& options) {
  return options.STYLEB == 1;
}
constexpr bool OldRf(const LogOptions& options) {
  return options.NEW_RF != 1;
}
constexpr bool NewRf(const LogOptions& options) {
  return options.NEW_RF == 1;
}
// The section "Lumarin:" of the analog report and "Reaction Cell:" of the meter report want LENS to
// be exactly 1, while the choice of the lens section asks only whether it is 0.
constexpr bool LensIsOne(const LogOptions& options) {
  return options.LENS == 1;
}
constexpr bool NoLens(const LogOptions& options) {
  return options.LENS == 0;
}
constexpr bool AnyLens(const LogOptions& options) {
  return options.LENS != 0;
}
constexpr bool FirstLens(const LogOptions& options) {
  return AnyLens(options) && options.LENS2 != 1;
}
constexpr bool SecondLens(const LogOptions& options) {
  return AnyLens(options) && options.LENS2 == 1 && options.LENS3 != 1;
}
constexpr bool ThirdLens(const LogOptions& options) {
  return AnyLens(options) && options.LENS2 == 1 && options.LENS3 == 1;
}

}  // namespace join

// clang-format off
//  section string text
inline constexpr auto kAnalogHeadings = std::to_array<SectionHeading>({
    { 1, 503, "Gas:"},
    { 2, 504, "SC:"},
    { 3, 505, "Vacuum:"},
    { 4, 506, "Q-Pole:"},
    { 5, 507, "Detector:"},
    { 6, 508, "Main Board:"},
    { 7, 509, "Plasma RF:"},
    { 8, 510, "Water:"},
    { 9, 511, "Lenses:"},
    {10, 512, "Housing:"},
    {11, 514, "Lumarin:"},        // 514 before 513
    {12, 513, "Reaction Cell:"},
    {13, 511, "Lenses:"},
    {14, 509, "Plasma RF:"},
    {15, 511, "Lenses:"},
    {16, 515, "Vacuum(Style B):"},
    {17, 516, "Water(Style B):"},
    {18, 511, "Lenses:"},
});
inline constexpr auto kMeterHeadings = std::to_array<SectionHeading>({
    { 1, 250, "Vacuum:"},
    { 2, 251, "Water:"},
    { 3, 252, "Housing:"},
    { 4, 253, "SC:"},
    { 5, 254, "Gas:"},
    { 6, 255, "Plasma RF:"},
    { 7, 256, "Reaction Cell:"},
    { 8, 257, "Vacuum(Style B):"},
    { 9, 258, "Water(Style B):"},
});
inline constexpr auto kSysHeadings = std::to_array<SectionHeading>({
    { 1, 931, "Stanby Mode:"},
    { 2, 932, "Analysis Mode:"},
    { 3, 933, "Penning Gauge:"},
    { 4, 934, "Turbo Pump:"},
    { 5, 935, "Isolation Valve:"},
    { 6, 936, "Gas:"},
    { 7, 937, "Plasma RF:"},
    { 8, 938, "QP Driver:"},
    { 9, 939, "Detector:"},
    {10, 940, "Log Amp:"},
    {11, 941, "XYZ Stage:"},
    {12, 942, "S/C:"},
    {13, 943, "Housing:"},
    {14, 944, "Water:"},
    {15, 945, "Peri Pump:"},
    {16, 946, "Lenses:"},
    {17, 946, "Lenses:"},
    {18, 947, "Lumarin:"},
    {19, 946, "Lenses:"},
    {20, 948, "Analysis Mode(Style B):"},
    {21, 949, "Penning Gauge(Style B):"},
    {22, 950, "Turbo Pump(Style B):"},
    {23, 951, "Isolation Valve(Style B):"},
    {24, 952, "Water(Style B):"},
    {25, 946, "Lenses:"},
});
inline constexpr auto kBitOutHeadings = std::to_array<SectionHeading>({
    { 1, 716, "XYZ Stage:"},
    { 2, 717, "Gas:"},
    { 3, 718, "Peri Pump:"},
    { 4, 719, "Vacuum:"},
    { 5, 720, "Water:"},
    { 6, 721, "QP Driver:"},
    { 7, 722, "Plasma RF:"},
    { 8, 723, "Lenses:"},
    { 9, 724, "Housing:"},
    {10, 725, "Lumarin:"},
    {11, 726, "Vacuum(Style B):"},
});
inline constexpr auto kBitInHeadings = std::to_array<SectionHeading>({
    { 1, 839, "XYZ Stage:"},
    { 2, 840, "Vacuum:"},
    { 3, 841, "QP Driver:"},
    { 4, 842, "Plasma RF:"},
    { 5, 843, "Detector:"},
    { 6, 844, "Housing:"},
    { 7, 845, "Main Board:"},
    { 8, 846, "Power Supply:"},
    { 9, 847, "Lumarin:"},
});

//  section  joined on
inline constexpr auto kAnalogOrder = std::to_array<JoinStep>({
    { 1, join::Always},
    { 2, join::Always},
    { 3, join::Always},
    {16, join::StyleB},
    {11, join::LensIsOne},
    { 4, join::Always},
    { 5, join::Always},
    { 6, join::Always},
    { 7, join::OldRf},
    {14, join::NewRf},
    { 8, join::Always},
    {17, join::StyleB},
    { 9, join::NoLens},
    {12, join::AnyLens},
    {13, join::FirstLens},
    {15, join::SecondLens},
    {18, join::ThirdLens},
    {10, join::Always},
});
inline constexpr auto kMeterOrder = std::to_array<JoinStep>({
    { 1, join::Always},
    { 8, join::StyleB},
    { 2, join::Always},
    { 9, join::StyleB},
    { 3, join::Always},
    { 4, join::Always},
    { 5, join::Always},
    { 6, join::Always},
    { 7, join::LensIsOne, Behind::kNothing},
});
inline constexpr auto kSysOrder = std::to_array<JoinStep>({
    { 1, join::Always},
    { 2, join::Always},
    {20, join::StyleB},
    { 3, join::Always},
    {21, join::StyleB},
    { 4, join::Always},
    {22, join::StyleB},
    { 5, join::Always},
    {23, join::StyleB},
    { 6, join::Always},
    { 7, join::Always},
    { 8, join::Always},
    { 9, join::Always},
    {10, join::Always},
    {11, join::Always},
    {12, join::Always},
    {13, join::Always},
    {14, join::Always},
    {24, join::StyleB},
    {15, join::Always},
    {16, join::NoLens},
    {17, join::FirstLens},
    {19, join::SecondLens},
    {25, join::ThirdLens},
    {18, join::Always},
});
inline constexpr auto kBitOutOrder = std::to_array<JoinStep>({
    { 1, join::Always},
    { 2, join::Always},
    { 3, join::Always},
    { 4, join::Always},
    {11, join::StyleB},
    { 5, join::Always},
    { 6, join::Always},
    { 7, join::Always},
    { 8, join::Always},
    { 9, join::Always},
    {10, join::Always},
});
inline constexpr auto kBitInOrder = std::to_array<JoinStep>({
    { 1, join::Always},
    { 2, join::Always},
    { 3, join::Always},
    { 4, join::Always},
    { 5, join::Always},
    { 6, join::Always},
    { 7, join::Always},
    { 8, join::Always},
    { 9, join::Always},
});

// In the order of ValueReport.
//   snapshot     report file   name  headings         order
inline constexpr auto kReportLayouts = std::to_array<ReportLayout>({
    {"aall.txt",  "analog.rpt", 30,   kAnalogHeadings, kAnalogOrder},
    {"auser.txt", "meter.rpt",  30,   kMeterHeadings,  kMeterOrder},
    {"sys.txt",   "Sys.rpt",    64,   kSysHeadings,    kSysOrder},
    {"bout.txt",  "bitout.rpt", 40,   kBitOutHeadings, kBitOutOrder},
    {"bin.txt",   "bitin.rpt",  40,   kBitInHeadings,  kBitInOrder},
});
// clang-format on

// True if a report joins this section on the instrument of these options; false for a section that
// it does not have.
constexpr bool IsJoined(const ReportLayout& layout, int section, const LogOptions& options) {
  for (const JoinStep& step : layout.Order) {
    if (step.Section == section) return step.Condition(options);
  }
  return false;
}

// Headings by section, dense from 1, with strings that exist; a joining order names each section
// once and no other.
constexpr bool LayoutIsSound(const ReportLayout& layout) {
  std::size_t named = 0;
  for (std::size_t i = 0; i < layout.Headings.size(); ++i) {
    const SectionHeading& heading = layout.Headings[i];
    if (heading.Section != static_cast<int>(i) + 1 || !HasString(heading.String)) return false;
    for (const JoinStep& step : layout.Order) named += step.Section == heading.Section ? 1 : 0;
  }
  return named == layout.Headings.size() && layout.Order.size() == layout.Headings.size();
}
static_assert(LayoutIsSound(kReportLayouts[0]));
static_assert(LayoutIsSound(kReportLayouts[1]));
static_assert(LayoutIsSound(kReportLayouts[2]));
static_assert(LayoutIsSound(kReportLayouts[3]));
static_assert(LayoutIsSound(kReportLayouts[4]));

}  // namespace logbook
