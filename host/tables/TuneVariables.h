// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The tune of the simulated instrument: what the four macro variable files assign. A reader takes
// the last line that holds a variable's name anywhere, so a name that is part of another one stands
// behind it: OPT_COLOPGS before OPGS. Columns as in the tables of readings; "fitted" hardware that
// is lacking leaves a 0.
#pragma once

#include <array>
#include <string_view>

#include "host/InstrumentBuild.h"
#include "host/Wear.h"

namespace logbook::host {

inline constexpr std::string_view kSenseFile = "SENSEVAR.MAC";
inline constexpr std::string_view kOtherFile = "OTHERVAR.MAC";
inline constexpr std::string_view kResoFile = "RESOVAR.MAC";
inline constexpr std::string_view kParamFile = "PARAMVAR.MAC";

// A mass of the sensitivity test and its partner in the ratio; the slots behind the last one are
// not in use and hold -1.
struct SenseSlot {
  int mass;
  int ratio_mass;
  double mean;     // counts in the integration time with new cones
  double worn_by;  // change of the mean when the cones are due
  double rsd;      // %, with a new pump tube
};
inline constexpr int kSlots = 15;

struct BackgroundSlot {
  int mass;
  double mean;  // cps
};

struct AxisSlot {
  int mass;
  double w50;  // width of the peak at half height, m/z
  double w10;
};

struct VariableRow {
  std::string_view name;
  Fitted fitted;
  double fresh;
  double noise;
  Wear wear;
  double worn_by;
  int places;
};

// clang-format off
//    mass  ratio      mean   worn by   rsd
inline constexpr auto kSenseSlots = std::to_array<SenseSlot>({
    {    7,    89,   8200.0,  -2900.0,  1.9 },
    {   89,    89,  14800.0,  -4600.0,  1.3 },
    {  205,    89,   9100.0,  -3100.0,  1.6 },
    {   59,    89,  11600.0,  -3700.0,  1.5 },
    {  115,    89,  16900.0,  -5200.0,  1.2 },
    {  140,    89,  15200.0,  -4800.0,  1.3 },
});

//    mass   mean
inline constexpr auto kBackgroundSlots = std::to_array<BackgroundSlot>({
    {    5,   1.2 },
    {   56,  38.0 },
    {   78,  12.5 },
    {  220,   0.9 },
});

//    mass   w50   w10
inline constexpr auto kAxisSlots = std::to_array<AxisSlot>({
    {    7, 0.62, 0.74 },
    {   89, 0.61, 0.75 },
    {  205, 0.59, 0.73 },
});
static_assert(kAxisSlots.size() == 3);

//    name              fitted                     fresh  noise  wear                worn by  places
inline constexpr auto kParamVariables = std::to_array<VariableRow>({
    { "XPOS",           Fitted::kAlways,             8.0,   0.1, Wear::kNone,           0.0,  1 },
    { "YPOS",           Fitted::kAlways,             0.3,   0.1, Wear::kTorch,          0.4,  1 },
    { "ZPOS",           Fitted::kAlways,            -0.2,   0.1, Wear::kTorch,         -0.3,  1 },
    { "CRGS",           Fitted::kAlways,            1.05, 0.004, Wear::kNone,           0.0,  2 },
    { "MUGS",           Fitted::kAlways,            0.10, 0.003, Wear::kNone,           0.0,  2 },
    { "OPGS",           Fitted::kOptionGas,         10.0,   0.1, Wear::kNone,           0.0,  1 },
    { "EXT1",           Fitted::kPlainLens,          3.0,  0.05, Wear::kCones,         -1.5,  1 },
    { "EXT2",           Fitted::kPlainLens,       -140.0,   0.6, Wear::kCones,        -25.0,  0 },
    { "EIN1",           Fitted::kPlainLens,       -100.0,   0.6, Wear::kNone,           0.0,  0 },
    { "EIN2",           Fitted::kPlainLens,          5.0,   0.4, Wear::kNone,           0.0,  0 },
    { "VRNB",           Fitted::kPlainLens,        -40.0,   0.5, Wear::kNone,           0.0,  0 },
    { "VRNP",           Fitted::kPlainLens,          3.2,  0.05, Wear::kNone,           0.0,  1 },
    { "VRNN",           Fitted::kPlainLens,         -2.8,  0.05, Wear::kNone,           0.0,  1 },
    { "QPFO",           Fitted::kPlainLens,          3.5,  0.05, Wear::kNone,           0.0,  1 },
    { "PLBI",           Fitted::kPlainLens,        -42.0,   0.4, Wear::kNone,           0.0,  1 },
    { "POBI",           Fitted::kAlways,            -3.0,  0.05, Wear::kNone,           0.0,  1 },
    { "DSCR",           Fitted::kAlways,             4.5,   0.2, Wear::kNone,           0.0,  1 },
    { "ANHV",           Fitted::kAlways,          1712.0,   3.0, Wear::kMultiplier,   560.0,  0 },
    { "PLHV",           Fitted::kAlways,          1148.0,   3.0, Wear::kMultiplier,   520.0,  0 },
    { "OEXT",           Fitted::kLumarin,            2.5,  0.05, Wear::kCones,         -1.4,  1 },
    { "OIN1",           Fitted::kLumarin,          -95.0,   0.6, Wear::kNone,           0.0,  0 },
    { "OIN2",           Fitted::kLumarin,           12.0,   0.4, Wear::kNone,           0.0,  1 },
    { "OCEN",           Fitted::kLumarin,          -35.0,   0.5, Wear::kNone,           0.0,  0 },
    { "OCEX",           Fitted::kLumarin,          -40.0,   0.4, Wear::kNone,           0.0,  0 },
    { "OPLB",           Fitted::kLumarin,          -46.0,   0.4, Wear::kNone,           0.0,  0 },
    { "LPRF",           Fitted::kCell,             118.0,   1.0, Wear::kNone,           0.0,  1 },
    { "LPBS",           Fitted::kCell,             -17.0,   0.3, Wear::kNone,           0.0,  1 },
    { "CLH2",           Fitted::kCell,               5.0,  0.05, Wear::kNone,           0.0,  1 },
    { "CLHE",           Fitted::kCell,               4.5,  0.05, Wear::kNone,           0.0,  1 },
    { "CLOP",           Fitted::kCellOptionGas,     10.0,   0.1, Wear::kNone,           0.0,  0 },
    { "PEX1",           Fitted::kTrzCs,              0.8,  0.05, Wear::kCones,         -0.6,  1 },
    { "PEX2",           Fitted::kTrzCs,           -160.0,   0.6, Wear::kCones,        -22.0,  1 },
    { "PVRB",           Fitted::kTrzCs,            -85.0,   0.6, Wear::kNone,           0.0,  0 },
    { "PVRG",           Fitted::kTrzCs,              7.5,   0.1, Wear::kNone,           0.0,  1 },
    { "PCEN",           Fitted::kTrzCs,            -50.0,   0.5, Wear::kNone,           0.0,  0 },
    { "PQPF",           Fitted::kTrzCs,              4.0,   0.3, Wear::kNone,           0.0,  0 },
    { "PCEX",           Fitted::kTrzCs,            -60.0,   0.5, Wear::kNone,           0.0,  0 },
    { "GEX1",           Fitted::kTrzCe,              0.5,  0.05, Wear::kCones,         -0.6,  1 },
    { "GEX2",           Fitted::kTrzCe,           -195.0,   0.6, Wear::kCones,        -22.0,  1 },
    { "GOSB",           Fitted::kTrzCe,            -90.0,   0.6, Wear::kNone,           0.0,  0 },
    { "GOST",           Fitted::kTrzCe,              9.2,   0.1, Wear::kNone,           0.0,  1 },
    { "GCEN",           Fitted::kTrzCe,            -48.0,   0.5, Wear::kNone,           0.0,  0 },
    { "GQPF",           Fitted::kTrzCe,              3.0,   0.3, Wear::kNone,           0.0,  0 },
    { "GCEX",           Fitted::kTrzCe,            -58.0,   0.5, Wear::kNone,           0.0,  0 },
    { "AMGA",           Fitted::kAlways,           128.0,   0.6, Wear::kNone,           0.0,  0 },
    { "AMOF",           Fitted::kAlways,           126.0,   0.6, Wear::kNone,           0.0,  0 },
    { "AXGA",           Fitted::kAlways,          0.9996, 2e-04, Wear::kNone,           0.0,  4 },
    { "AXOF",           Fitted::kAlways,            0.02,  0.02, Wear::kNone,           0.0,  2 },
});
// clang-format on

}  // namespace logbook::host
