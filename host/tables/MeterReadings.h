// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the instrument measures for auser.txt: 29 readings in the order of the file. "fresh" is
// the value with all wearing parts new, "noise" its largest scatter from log to log, "worn by" what
// is added when the part named under "wear" is due for change. A reading whose hardware is not
// fitted is 0. Units are those of the label's gauge: V, A, Pa, L/min, degC, %.
#pragma once

#include "host/tables/ReadingRow.h"

namespace logbook::host {

// clang-format off
//    row  label                          fitted                    fresh  noise  wear           worn by  notation               places
inline constexpr auto kMeterReadings = std::to_array<ReadingRow>({
    {   0, "Inlet Temp",                  Fitted::kAlways,           24.0,   0.4, Wear::kSeason,     3.0, Notation::kFixed,           1 },
    {   1, "Exhaust Temp",                Fitted::kAlways,           38.0,   0.6, Wear::kSeason,     3.0, Notation::kFixed,           1 },
    {   2, "Foward Power",                Fitted::kAlways,         1550.0,   2.0, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {   3, "Reflected Power",             Fitted::kAlways,            3.0,   1.2, Wear::kTorch,      6.0, Notation::kFixed,           1 },
    {   4, "Carrier Gas",                 Fitted::kAlways,           1.05, 0.004, Wear::kNone,       0.0, Notation::kFixed,           3 },
    {   5, "Mekeup Gas",                  Fitted::kAlways,            0.1, 0.003, Wear::kNone,       0.0, Notation::kFixed,           3 },
    {   6, "Option Gas",                  Fitted::kOptionGas,        10.0,   0.1, Wear::kNone,       0.0, Notation::kFixed,           2 },
    {   7, "Plasma Gas",                  Fitted::kAlways,           15.0,  0.02, Wear::kNone,       0.0, Notation::kFixed,           3 },
    {   8, "Aux Gas",                     Fitted::kAlways,            0.9, 0.004, Wear::kNone,       0.0, Notation::kFixed,           3 },
    {   9, "Argon Gas",                   Fitted::kAlways,          700.0,   6.0, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {  10, "Carrier Gas Press",           Fitted::kClassicFlow,     320.0,   3.0, Wear::kTubing,    18.0, Notation::kFixed,           1 },
    {  11, "OP Gas Press",                Fitted::kOptionGas,       150.0,   2.0, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {  12, "OP Gas Tank Press",           Fitted::kOptionGas,       400.0,   5.0, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {  13, "SC Temparature(L)",           Fitted::kSampleCooler,      2.0,   0.1, Wear::kNone,       0.0, Notation::kFixed,           2 },
    {  14, "Backing Press",               Fitted::kSeparatePumps,     2.9,  0.06, Wear::kOil,        1.1, Notation::kScientific,      3 },
    {  15, "IF Press",                    Fitted::kSeparatePumps,   265.0,   3.0, Wear::kOil,       40.0, Notation::kScientific,      3 },
    {  16, "Analyzer Press",              Fitted::kAlways,        0.00021, 4e-06, Wear::kCones,    6e-05, Notation::kScientific,      3 },
    {  17, "TPI Revolution",              Fitted::kSeparatePumps,   100.0,   0.3, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {  18, "TPA Revolution",              Fitted::kSeparatePumps,   100.0,   0.3, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {  19, "Water Temp",                  Fitted::kAlways,           19.0,   0.4, Wear::kSeason,     2.5, Notation::kFixed,           1 },
    {  20, "Water WC&IF",                 Fitted::kSeparatePumps,     4.2,  0.05, Wear::kFilter,    -0.9, Notation::kFixed,           2 },
    {  21, "Water RF&TP",                 Fitted::kSeparatePumps,     3.8,  0.05, Wear::kFilter,    -0.8, Notation::kFixed,           2 },
    {  22, "H2 Gas",                      Fitted::kCell,              5.0,  0.02, Wear::kNone,       0.0, Notation::kFixed,           3 },
    {  23, "He Gas",                      Fitted::kCell,              4.5,  0.02, Wear::kNone,       0.0, Notation::kFixed,           3 },
    {  24, "Optional Gas(Reaction Cell)", Fitted::kCellOptionGas,    10.0,   0.1, Wear::kNone,       0.0, Notation::kFixed,           2 },
    {  25, "IF/BK Press",                 Fitted::kStyleB,          275.0,   3.0, Wear::kOil,       40.0, Notation::kScientific,      3 },
    {  26, "TMP Revolution",              Fitted::kStyleB,          100.0,   0.3, Wear::kNone,       0.0, Notation::kFixed,           1 },
    {  27, "Water RF/WC/IF",              Fitted::kStyleB,            6.5,  0.06, Wear::kFilter,    -1.2, Notation::kFixed,           2 },
    {  28, "Carrier Gas(BP)",             Fitted::kAfc,             310.0,   2.0, Wear::kTubing,    18.0, Notation::kFixed,           2 },
});
// clang-format on
static_assert(kMeterReadings.size() == 29);
static_assert(RowsAreDense(kMeterReadings), "the position of a row is the format of the file");

}  // namespace logbook::host
