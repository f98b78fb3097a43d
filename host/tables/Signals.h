// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The digital signals that are set while the instrument measures: the words of bout.txt and
// bin.txt. Signals that are never set then are not listed. Two signals may share a bit on different
// hardware.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "host/InstrumentBuild.h"

namespace logbook::host {

// At how many of the logs a signal is set.
enum class Habit { kAlways, kOften, kRarely };

struct SignalRow {
  std::string_view signal;
  Fitted fitted;  // hardware without which the bit is clear
  int word;       // 0 to 15
  std::uint16_t mask;
  Habit habit;
};

inline constexpr int kBitWords = 16;

// clang-format off
//    signal                       fitted                    word   mask  habit
inline constexpr auto kOutputSignals = std::to_array<SignalRow>({
    { "XYZ Motor",                 Fitted::kAlways,             2,  2048, Habit::kAlways },
    { "XYZ Motor Rotation",        Fitted::kAlways,             2,  8192, Habit::kOften },
    { "Ar Gas Valve",              Fitted::kAlways,             3,   256, Habit::kAlways },
    { "Carrier GAS Valve",         Fitted::kClassicFlow,        3,   512, Habit::kAlways },
    { "Makeup Gas Valve",          Fitted::kAlways,             3,  1024, Habit::kAlways },
    { "Option Gas Valve",          Fitted::kOptionGas,          3,  2048, Habit::kOften },
    { "Vent Gas Supply Valve",     Fitted::kClassicFlow,        3,  4096, Habit::kRarely },
    { "Nebulizer Pump Motor",      Fitted::kAlways,             3,     8, Habit::kAlways },
    { "Sample Pump Motor",         Fitted::kAlways,             3,    32, Habit::kOften },
    { "S24V",                      Fitted::kAlways,             5,  1024, Habit::kAlways },
    { "Isolation Valve",           Fitted::kAlways,             5,  4096, Habit::kAlways },
    { "Water Valve",               Fitted::kAlways,             6,     2, Habit::kAlways },
    { "Green LED",                 Fitted::kAlways,             6,     4, Habit::kAlways },
    { "Red LED",                   Fitted::kAlways,             6,     8, Habit::kRarely },
    { "Isolation Valve Clutch",    Fitted::kAlways,             6,    32, Habit::kAlways },
    { "S75V Control",              Fitted::kAlways,             6,   128, Habit::kAlways },
    { "Vacuum Valve (Backing)",    Fitted::kAlways,             6,   256, Habit::kAlways },
    { "Vacuum Valve (IF)",         Fitted::kAlways,             6,   512, Habit::kAlways },
    { "Turbo Pump (Analyzer)",     Fitted::kAlways,             6,  2048, Habit::kAlways },
    { "Turbo Pump (IF)",           Fitted::kSeparatePumps,      6,  4096, Habit::kAlways },
    { "Penning Gauge",             Fitted::kAlways,             6,  8192, Habit::kAlways },
    { "Rotary Pump (Backing)",     Fitted::kAlways,             6, 16384, Habit::kAlways },
    { "Rotary Pump (IF)",          Fitted::kSeparatePumps,      6, 32768, Habit::kAlways },
    { "Turbo Pump FAN",            Fitted::kStyleB,             6,     1, Habit::kAlways },
    { "Reaction Cell Valve",       Fitted::kCell,               6,     1, Habit::kOften },
    { "Q-Pole Temp Control",       Fitted::kAlways,             7,     2, Habit::kAlways },
    { "Q-Pole Fan",                Fitted::kAlways,             7,   512, Habit::kAlways },
    { "RF Fan",                    Fitted::kAlways,             8,  1024, Habit::kAlways },
    { "RF Bias",                   Fitted::kClassicRf,          8,  4096, Habit::kAlways },
    { "PWM Threshold Manual",      Fitted::kNewRf,              8,  4096, Habit::kRarely },
    { "RF OSC",                    Fitted::kAlways,             9,  2048, Habit::kAlways },
    { "RF",                        Fitted::kAlways,             9,  4096, Habit::kAlways },
    { "Lens High Voltage",         Fitted::kAlways,            10,   256, Habit::kAlways },
    { "Lumarin Feedback Control",  Fitted::kCell,              11,  1024, Habit::kAlways },
    { "Lumarin RF",                Fitted::kCell,              11,  8192, Habit::kAlways },
    { "Reaction Cell Bypass",      Fitted::kCell,              12,   256, Habit::kRarely },
    { "Stop Valve",                Fitted::kAfc,               12,  1024, Habit::kAlways },
});

//    signal                       fitted                    word   mask  habit
inline constexpr auto kInputSignals = std::to_array<SignalRow>({
    { "Shunt Cap Limit Pos A",     Fitted::kAlways,             1,     4, Habit::kRarely },
    { "Mainboard FAN Status",      Fitted::kAlways,             1,   512, Habit::kRarely },
    { "XYZ Stage Status",          Fitted::kAlways,             1,  4096, Habit::kAlways },
    { "Z-Axis Origin",             Fitted::kAlways,             2,    16, Habit::kOften },
    { "XYZ Stage Tracking",        Fitted::kAlways,             3,  4096, Habit::kAlways },
    { "Turbo Pump Fan Status",     Fitted::kSeparatePumps,      5,    32, Habit::kRarely },
    { "Rough Pump Start",          Fitted::kAlways,             5,   256, Habit::kAlways },
    { "Plasma",                    Fitted::kAlways,             5,  8192, Habit::kAlways },
    { "Isolation Valve Pos 1 SW",  Fitted::kAlways,             5, 16384, Habit::kAlways },
    { "IF Valve Status",           Fitted::kAlways,             6,     8, Habit::kAlways },
    { "Isolation Valve Status",    Fitted::kAlways,             6,    16, Habit::kAlways },
    { "Isolation Valve Ready",     Fitted::kAlways,             6,    32, Habit::kAlways },
    { "Plasma Sensor",             Fitted::kAlways,             6,    64, Habit::kAlways },
    { "QP Fan Status",             Fitted::kAlways,             8,  4096, Habit::kRarely },
    { "RF Unbalance Sensor",       Fitted::kNewRf,             10,   256, Habit::kRarely },
    { "RF Voltage Error Status",   Fitted::kNewRf,             10,  2048, Habit::kAlways },
    { "RF Fan 1 Status",           Fitted::kAlways,            10,  8192, Habit::kRarely },
    { "HV Power Supply Status",    Fitted::kAlways,            11,   256, Habit::kAlways },
    { "EM Analog Gate Status",     Fitted::kAlways,            11,   512, Habit::kOften },
    { "EM Pulse Gate Status",      Fitted::kAlways,            11,  1024, Habit::kOften },
    { "Lumarin Feedback Status",   Fitted::kCell,              12,   256, Habit::kRarely },
});
// clang-format on

}  // namespace logbook::host
