// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the value reports say for an instrument, written down a second time and in another way: the
// product walks tables of conditions, this model names rows and sections. It takes nothing from the
// product but the catalogues and the pictures of numbers.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "catalogue/ItemRecord.h"

namespace logbook::test {

struct Instrument {
  int LENS = 0, LENS2 = 0, LENS3 = 0;
  int STYLEB = 0, NEW_RF = 0, QPTYPE = 0, AFC = 0;
  int SC = 0, OPGS = 0, COLOPGS = 0;
};

// The texts of the reports on a machine of code page 1252, lines ended by CR LF. In the files of
// numbers row n holds the number n, also the row of the stamp.
std::string AnalogModel(const Catalogues& catalogues, const Instrument& instrument);
std::string MeterModel(const Catalogues& catalogues, const Instrument& instrument);
std::string SysModel(const Catalogues& catalogues, const Instrument& instrument);
std::string BitOutModel(const Catalogues& catalogues, const Instrument& instrument,
                        const std::array<std::uint16_t, 16>& words);
std::string BitInModel(const Catalogues& catalogues, const Instrument& instrument,
                       const std::array<std::uint16_t, 16>& words);

// True if a row of the tune report has a value on the instrument, given that its file has all
// variables and both flags are set.
bool TuneRowApplies(const TuneItemRecord& row, const Instrument& instrument);

}  // namespace logbook::test
