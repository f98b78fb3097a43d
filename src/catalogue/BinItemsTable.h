// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The input signals of bin.txt (docs/file-formats.md): label0 is what a clear bit reads, label1 a
// set one. "word" counts the 16-bit words of the file from 0; "string" is the label in the string
// table.
#pragma once

#include <array>

#include "catalogue/CatalogueRows.h"

namespace logbook {

// clang-format off
//   row string label                                  label0        label1          word    mask group
inline constexpr auto kBinRows = std::to_array<BitItemRow>({
    { 0,  3100, "XYZ Stage Satus",                     "Busy",       "Ready",          1, 0x1000,     1 },
    { 1,  3101, "X-Axis Start Limit SW",               "Not Detect", "Detect",         2, 0x0001,     1 },
    { 2,  3102, "X-Axis End Limit SW",                 "Not Detect", "Detect",         2, 0x0002,     1 },
    { 3,  3103, "Y-Axis Start Limit SW",               "Not Detect", "Detect",         2, 0x0004,     1 },
    { 4,  3104, "Y-Axis End Limit SW",                 "Not Detect", "Detect",         2, 0x0008,     1 },
    { 5,  3105, "Z-Axis Origin",                       "Not Detect", "Detect",         2, 0x0010,     1 },
    { 6,  3106, "X-Axis Initialize Error",             "Normal",     "Error",          3, 0x0100,     1 },
    { 7,  3107, "Y-Axis Initialize Error",             "Normal",     "Error",          3, 0x0200,     1 },
    { 8,  3108, "Z-Axis Initialize Error",             "Normal",     "Error",          3, 0x0400,     1 },
    { 9,  3109, "XYZ Error",                           "Normal",     "Error",          3, 0x0800,     1 },
    {10,  3110, "XYZ Stage Tracking Status",           "Lost",       "Tracking",       3, 0x1000,     1 },
    {11,  3111, "Isolation Valve Pos 1 SW",            "Not Detect", "Detect",         5, 0x4000,     2 },
    {12,  3112, "Isolation Valve Pos 2 SW",            "Not Detect", "Detect",         5, 0x8000,     2 },
    {13,  3113, "Isolation Valve Status",              "Close",      "Open",           6, 0x0010,     2 },
    {14,  3114, "Isolation Valve Ready",               "Busy",       "Ready",          6, 0x0020,     2 },
    {15,  3115, "Isolation Valve Error",               "Normal",     "Error",          7, 0x2000,     2 },
    {16,  3116, "Turbo Pump Fan Status",               "Normal",     "Error",          5, 0x0020,     2 },
    {17,  3117, "Rough Pump Start",                    "Off",        "Start",          5, 0x0100,     2 },
    {18,  3118, "QP Fan Status",                       "Normal",     "Error",          8, 0x1000,     3 },
    {19,  3119, "Plasma",                              "Off",        "On",             5, 0x2000,     4 },
    {20,  3120, "Emergency Plasma OFF Status",         "Normal",     "Off",            7, 0x1000,     4 },
    {21,  3121, "Plasma Shutdown Error",               "Normal",     "Error",          7, 0x4000,     4 },
    {22,  3122, "Shunt Cap Limit Pos A",               "Not Detect", "Detect",         1, 0x0004,     4 },
    {23,  3123, "Shunt Cap Limit Pos B",               "Not Detect", "Detect",         1, 0x0008,     4 },
    {24,  3124, "Series Cap Limit Pos A",              "Not Detect", "Detect",         1, 0x0010,     4 },
    {25,  3125, "Series Cap Limit Pos B",              "Not Detect", "Detect",         1, 0x0020,     4 },
    {26,  3126, "QP Feedback Status",                  "Normal",     "Error",          8, 0x2000,     3 },
    {27,  3127, "RF Output Status",                    "Balance",    "Unbalance",     10, 0x0100,     4 },
    {28,  3128, "RF Directional Coupler Status",       "Normal",     "Error",         10, 0x0400,     4 },
    {29,  3129, "RF Fan 1 Status",                     "Normal",     "Error",         10, 0x2000,     4 },
    {30,  3130, "RF Fan 2 Status",                     "Normal",     "Error",         10, 0x4000,     4 },
    {31,  3131, "RF FET ID Error",                     "Normal",     "Error",         10, 0x0001,     4 },
    {32,  3132, "RF Local 12V Error",                  "Normal",     "Error",         10, 0x0002,     4 },
    {33,  3133, "RF FET Temp Error",                   "Normal",     "Error",         10, 0x0004,     4 },
    {34,  3134, "RF FET VD Error",                     "Normal",     "Error",         10, 0x0008,     4 },
    {35,  3135, "RF Unbalance Error",                  "Normal",     "Error",         10, 0x0010,     4 },
    {36,  3136, "RF Directional Coupler Error",        "Normal",     "Error",         10, 0x0020,     4 },
    {37,  3137, "RF FAN Error",                        "Normal",     "Error",         10, 0x0040,     4 },
    {38,  3138, "HV Power Supply Status",              "Off",        "On",            11, 0x0100,     5 },
    {39,  3139, "EM Analog Gate Status",               "Open",       "Close",         11, 0x0200,     5 },
    {40,  3140, "EM Pulse Gate Status",                "Open",       "Close",         11, 0x0400,     5 },
    {41,  3141, "Cover Status",                        "Close",      "Open",           5, 0x0040,     6 },
    {42,  3142, "Shutdown SW",                         "Off",        "On",             5, 0x0080,     6 },
    {43,  3143, "Shutdown Mode SW",                    "Off",        "On",             5, 0x1000,     6 },
    {44,  3144, "Small Cover Status",                  "Close",      "Open",           6, 0x0200,     6 },
    {45,  3145, "Mainboard FAN Status",                "Normal",     "Error",          1, 0x0200,     7 },
    {46,  3146, "Rotary Pump Breaker",                 "Normal",     "Off",            5, 0x0001,     8 },
    {47,  3147, "Power Line 2 Status",                 "Normal",     "Error",          5, 0x0002,     8 },
    {48,  3148, "Power Line 3 Status",                 "Normal",     "Error",          5, 0x0004,     8 },
    {49,  3149, "Power Line 4 Status",                 "Normal",     "Error",          5, 0x0008,     8 },
    {50,  3150, "Power Line 5 Status",                 "Normal",     "Error",          5, 0x0010,     8 },
    {51,  3151, "IF Valve Status",                     "Close",      "Open",           6, 0x0008,     2 },
    {52,  3152, "IF Valve Error",                      "Normal",     "Error",          7, 0x0800,     2 },
    {53,  3153, "Plasma Sensor",                       "Off",        "On",             6, 0x0040,     4 },
    {54,  3154, "Lumarin Feedback Status",             "Normal",     "Error",         12, 0x0100,     9 },
    {55,  3155, "Lumarin ID Status",                   "Normal",     "Error",         12, 0x0200,     9 },
    {56,  3156, "S24V/48V Shutdown Error(Cover Open)", "Not Detect", "Detect",         7, 0x8000,     6 },
    {57,  3157, "24V Power Supply Status",             "Normal",     "Error",          7, 0x0400,     8 },
    {58,  3158, "RF Reflected Power Status",           "Normal",     "Error",         10, 0x0200,     4 },
    {59,  3159, "RF Voltage Error Status",             "Over Limit", "Under Limit",   10, 0x0800,     4 },
    {60,  3160, "RF Power Control Cable",              "Connected",  "Disconnected",  10, 0x1000,     4 },
    {61,  3161, "RF 48V Power Supply Error",           "Not Detect", "Detect",        10, 0x0080,     4 },
    {62,  3162, "RF Unbalanse Sensor",                 "Connected",  "Disconnected",  10, 0x0100,     4 },  // replaces row 27 only
    {63,  3163, "RF Feedback Error",                   "Not Detect", "Detect",        10, 0x0002,     4 },  // replaces row 32 only
    {64,  3164, "RF Cable Connection Error",           "Not Detect", "Detect",        10, 0x0020,     4 },  // replaces row 36 only
});
// clang-format on

static_assert(kBinRows.size() == 65);
static_assert(RowsAreDense(kBinRows), "row numbers are file format: append only");
static_assert(StringsExist(kBinRows));
static_assert(GroupsAreWithin(kBinRows, 1, 9));
static_assert(MasksAreSingleBits(kBinRows));
static_assert(StateLabelsAreKnown(kBinRows));

}  // namespace logbook
