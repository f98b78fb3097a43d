// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The output signals of bout.txt (docs/file-formats.md): label0 is what a clear bit reads, label1 a
// set one. "word" counts the 16-bit words of the file from 0; "string" is the label in the string
// table.
#pragma once

#include <array>

#include "catalogue/CatalogueRows.h"

namespace logbook {

// clang-format off
//   row string label                                   label0      label1       word    mask group
inline constexpr auto kBoutRows = std::to_array<BitItemRow>({
    { 0,  3000, "Start XYZ Stage Movement",             "Off",      "Start",       2, 0x0020,     1 },
    { 1,  3001, "Stop XYZ Stage Movement",              "Off",      "Stop",        1, 0x0004,     1 },
    { 2,  3002, "Abort XYZ Stage Movement",             "Off",      "Abort",       1, 0x0002,     1 },
    { 3,  3003, "Reset XYZ Motor",                      "Off",      "Reset",       2, 0x0008,     1 },
    { 4,  3004, "Force Clear XYZ Stage",                "Off",      "Clear",       1, 0x8000,     1 },
    { 5,  3005, "XYZ Motor",                            "Disable",  "Enable",      2, 0x0800,     1 },
    { 6,  3006, "XYZ Motor Rotation",                   "Backward", "Forward",     2, 0x2000,     1 },
    { 7,  3007, "XYZ Stage Limitter",                   "Enable",   "Ignore",      2, 0x0010,     1 },
    { 8,  3008, "X Axis",                               "Off",      "Select",      2, 0x4000,     1 },
    { 9,  3009, "Y Axis",                               "Off",      "Select",      2, 0x8000,     1 },
    {10,  3010, "Z Axis",                               "Off",      "Select",      2, 0x0001,     1 },
    {11,  3011, "Ar Gas Valve",                         "Close",    "Open",        3, 0x0100,     2 },
    {12,  3012, "Carrier GAS Valve",                    "Close",    "Open",        3, 0x0200,     2 },
    {13,  3013, "Makeup Gas Valve",                     "Close",    "Open",        3, 0x0400,     2 },
    {14,  3014, "Option Gas Valve",                     "Close",    "Open",        3, 0x0800,     2 },
    {15,  3015, "Vent Gas Supply Valve",                "Close",    "Open",        3, 0x1000,     2 },
    {16,  3016, "Nebulizer Pump Rotation",              "Forward",  "Backward",    3, 0x0001,     3 },
    {17,  3017, "Nebulizer Pump Motor",                 "Disable",  "Enable",      3, 0x0008,     3 },
    {18,  3018, "Sample Pump Rotation",                 "Forward",  "Backward",    3, 0x0004,     3 },
    {19,  3019, "Sample Pump Motor",                    "Disable",  "Enable",      3, 0x0020,     3 },
    {20,  3020, "S24V",                                 "Off",      "On",          5, 0x0400,     4 },
    {21,  3021, "Vacuum Valve (Backing)",               "Close",    "Open",        6, 0x0100,     4 },
    {22,  3022, "Vacuum Valve (IF)",                    "Close",    "Open",        6, 0x0200,     4 },
    {23,  3023, "Purge Gas Valve",                      "Close",    "Open",        6, 0x0400,     4 },
    {24,  3024, "Isolation Valve",                      "Close",    "Open",        5, 0x1000,     4 },
    {25,  3025, "Isolation Valve Motor",                "Inactive", "Active",      6, 0x0010,     4 },
    {26,  3026, "Isolation Valve Cluth",                "Disable",  "Enable",      6, 0x0020,     4 },
    {27,  3027, "Isolation Valve Cluch Voltage",        "Low(15V)", "High(24V)",   6, 0x0040,     4 },
    {28,  3028, "Isolation Valve Manual Control",       "Auto",     "Enable",      5, 0x2000,     4 },
    {29,  3029, "S75V Control",                         "Disable",  "Enable",      6, 0x0080,     4 },
    {30,  3030, "Turbo Pump (Analyzer)",                "Off",      "On",          6, 0x0800,     4 },
    {31,  3031, "Turbo Pump (IF)",                      "Off",      "On",          6, 0x1000,     4 },
    {32,  3032, "Penning Gage",                         "Off",      "On",          6, 0x2000,     4 },
    {33,  3033, "Rotary Pump (Backing)",                "Off",      "On",          6, 0x4000,     4 },
    {34,  3034, "Rotary Pump (IF)",                     "Off",      "On",          6, 0x8000,     4 },
    {35,  3035, "Water Valve",                          "Close",    "Open",        6, 0x0002,     5 },
    {36,  3036, "Q-Pole Fan",                           "Off",      "On",          7, 0x0200,     6 },
    {37,  3037, "Cleaer Q-Pole Bias",                   "Off",      "Clear",       7, 0x0400,     6 },
    {38,  3038, "Q-Pole Temp Control",                  "Disable",  "Enable",      7, 0x0002,     6 },
    {39,  3039, "Series CAP Manual Control",            "Auto",     "Enable",      1, 0x0100,     7 },
    {40,  3040, "Igniter",                              "Off",      "On",          1, 0x0800,     7 },
    {41,  3041, "RF Fan",                               "Off",      "On",          8, 0x0400,     7 },
    {42,  3042, "RF",                                   "Off",      "On",          9, 0x1000,     7 },
    {43,  3043, "RF OSC",                               "Off",      "On",          9, 0x0800,     7 },
    {44,  3044, "RF Bias",                              "Off",      "On",          8, 0x1000,     7 },  // same bit as row 54
    {45,  3045, "Lens High Voltage",                    "Disable",  "Enable",     10, 0x0100,     8 },
    {46,  3046, "Green LED",                            "Off",      "On",          6, 0x0004,     9 },
    {47,  3047, "Red LED",                              "Off",      "On",          6, 0x0008,     9 },
    {48,  3048, "Speed Down Turbo Pump",                "Off",      "On",          5, 0x0010,     4 },
    {49,  3049, "Lumarin Feedback Control",             "Off",      "On",         11, 0x0400,    10 },
    {50,  3050, "Lumarin Test Mode",                    "Off",      "On",         11, 0x0200,    10 },
    {51,  3051, "Lumarin RF",                           "Disable",  "Enable",     11, 0x2000,    10 },
    {52,  3052, "Reaction Cell Valve",                  "Close",    "Open",        6, 0x0001,    10 },
    {53,  3053, "Reaction Cell Bypass Valve",           "Close",    "Open",       12, 0x0100,    10 },
    {54,  3054, "PWM Threshold Voltage Manual Setting", "Off",      "On",          8, 0x1000,     7 },  // replaces row 44 only
    {55,  3055, "Turbo Pump",                           "Off",      "On",          6, 0x0800,    11 },
    {56,  3056, "Turbo Pump FAN",                       "Off",      "On",          6, 0x0001,    11 },
    {57,  3057, "Stop Valve",                           "Close",    "Open",       12, 0x0400,    10 },
});
// clang-format on

static_assert(kBoutRows.size() == 58);
static_assert(RowsAreDense(kBoutRows), "row numbers are file format: append only");
static_assert(StringsExist(kBoutRows));
static_assert(GroupsAreWithin(kBoutRows, 1, 11));
static_assert(MasksAreSingleBits(kBoutRows));
static_assert(StateLabelsAreKnown(kBoutRows));

}  // namespace logbook
