// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The running logs of the workstation as they stand at a log: acquisitions, sequences, chained
// sequences and errors before that moment. All texts are UTF-8 with CR LF.
#pragma once

#include <cstddef>
#include <string>

#include "host/Calendar.h"
#include "host/Instrument.h"

namespace logbook::host {

struct LogMoment {
  Instrument instrument;
  int log_number = 0;
  LocalTime time;
  // The running logs grow until they have at least so many bytes.
  std::size_t least_log_bytes = 0;
};

std::string AcquisitionLog(const LogMoment& moment);    // acqlog.txt
std::string SequenceLog(const LogMoment& moment);       // sequence.log
std::string ChainSequenceLog(const LogMoment& moment);  // chnseq.log
std::string ErrorLog(const LogMoment& moment);          // errlog.txt
std::string CeErrorLog(const LogMoment& moment);        // ceerrlog.txt

}  // namespace logbook::host
