// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The meter catalogue: what the numbers of auser.txt mean (docs/file-formats.md). Row n is the
// (n+1)-th number of the file; "string" is the number of the label in the string table.
#pragma once

#include <array>

#include "catalogue/CatalogueRows.h"

namespace logbook {

// clang-format off
//   row string label                          unit      format     group
inline constexpr auto kMeterRows = std::to_array<ItemRow>({
    { 0,  2200, "Inlet Temp",                  "degC",   "0",           3 },
    { 1,  2201, "Exhaust Temp",                "degC",   "0",           3 },
    { 2,  2202, "Foward Power",                "W",      "0",           6 },  // so spelled
    { 3,  2203, "Reflected Power",             "W",      "0",           6 },
    { 4,  2204, "Carrier Gas",                 "L/min",  "0.00",        5 },
    { 5,  2205, "Mekeup Gas",                  "L/min",  "0.00",        5 },  // so spelled
    { 6,  2206, "Option Gas",                  "%",      "0.0",         5 },
    { 7,  2207, "Plasma Gas",                  "L/min",  "0.00",        5 },
    { 8,  2208, "Aux Gas",                     "L/min",  "0.00",        5 },
    { 9,  2209, "Argon Gas",                   "kPaG",   "0",           5 },
    {10,  2210, "Carrier Gas Press",           "kPaG",   "0",           5 },
    {11,  2211, "OP Gas Press",                "kPaG",   "0",           5 },
    {12,  2212, "OP Gas Tank Press",           "kPaG",   "0",           5 },
    {13,  2213, "SC Temparature(L)",           "degC",   "0.0",         4 },
    {14,  2214, "Backing Press",               "Pa",     "0.00e-#",     1 },
    {15,  2215, "IF Press",                    "Pa",     "0.00e-#",     1 },
    {16,  2216, "Analyzer Press",              "Pa",     "0.00e-#",     1 },
    {17,  2217, "TPI Revolution",              "%",      "0",           1 },
    {18,  2218, "TPA Revolution",              "%",      "0",           1 },
    {19,  2219, "Water Temp",                  "degC",   "0",           2 },
    {20,  2220, "Water WC&IF",                 "L/min",  "0.0",         2 },
    {21,  2221, "Water RF&TP",                 "L/min",  "0.0",         2 },
    {22,  2222, "H2 Gas",                      "mL/min", "0.00",        7 },
    {23,  2223, "He Gas",                      "mL/min", "0.00",        7 },
    {24,  2224, "Optional Gas(Reaction Cell)", "%",      "0.0",         7 },
    {25,  2225, "IF/BK Press",                 "Pa",     "0.00e-#",     8 },
    {26,  2226, "TMP Revolution",              "%",      "0",           8 },
    {27,  2227, "Water RF/WC/IF",              "L/min",  "0.0",         9 },
    {28,  2228, "Carrier Gas(BP)",             "kPaG",   "0.0",         5 },
});
// clang-format on

static_assert(kMeterRows.size() == 29);
static_assert(RowsAreDense(kMeterRows), "row numbers are file format: append only");
static_assert(StringsExist(kMeterRows));
static_assert(GroupsAreWithin(kMeterRows, 1, 9));
static_assert(FormatsAreKnown(kMeterRows));

}  // namespace logbook
