// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One simulated instrument and its state at a log. The state follows from build, seed and log
// number alone: the same three give the same values on every machine.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/InstrumentBuild.h"
#include "host/tables/Signals.h"

namespace logbook::host {

struct Instrument {
  InstrumentBuild build;
  std::uint64_t seed = 1;
};

// The readings as texts with a decimal point, in the order of their files; a reading whose
// hardware is not fitted is "0".
std::vector<std::string> MeterFields(const Instrument& instrument, int log_number);   // 29
std::vector<std::string> AnalogFields(const Instrument& instrument, int log_number);  // 215

// The 245 system parameters, the same at every log; row 83 is a text between double quotes.
std::vector<std::string> SystemFields(const Instrument& instrument);

// The words of the digital outputs and inputs.
std::array<std::uint16_t, kBitWords> OutputWords(const Instrument& instrument, int log_number);
std::array<std::uint16_t, kBitWords> InputWords(const Instrument& instrument, int log_number);

// The name that the instrument bears in its tune files and reports. No part of it is the name of a
// tune variable.
std::string InstrumentName(const Instrument& instrument);

// A number with this many decimal places and a point, never "-0".
std::string FixedText(double value, int places);

}  // namespace logbook::host
