// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The tune of the simulated instrument as the host writes it: the four macro variable files
// (assignments, one a line: docs/file-formats.md) and the finished report tune.rpt. All texts are
// UTF-8 with CR LF.
#pragma once

#include <string>

#include "host/Calendar.h"
#include "host/Instrument.h"

namespace logbook::host {

std::string SenseMacro(const Instrument& instrument, int log_number);  // SENSEVAR.MAC
std::string OtherMacro(const Instrument& instrument, int log_number);  // OTHERVAR.MAC
std::string ResoMacro(const Instrument& instrument, int log_number);   // RESOVAR.MAC
std::string ParamMacro(const Instrument& instrument, int log_number);  // PARAMVAR.MAC

std::string TuneReport(const Instrument& instrument, int log_number, LocalTime time);  // tune.rpt

}  // namespace logbook::host
