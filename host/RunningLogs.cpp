// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/RunningLogs.h"

#include <array>
#include <chrono>
#include <functional>
#include <string_view>

#include "host/Quantity.h"
#include "host/Wear.h"

namespace logbook::host {
namespace {

using std::chrono::seconds;

constexpr auto kMethods = std::to_array<std::string_view>(
    {"TRACE.M", "WATER.M", "SOIL.M", "ACID.M", "SCAN.M", "ISOTOPE.M"});
constexpr auto kErrors = std::to_array<std::string_view>({
    "W0213 Water flow (RF) below warning limit.",
    "W0107 Exhaust temperature above warning limit.",
    "E0341 Plasma ignition timed out, retried.",
    "W0420 Ar gas tank pressure low.",
    "E0512 Autosampler does not answer.",
    "W0308 Reflected power above warning limit.",
});
constexpr auto kCeErrors = std::to_array<std::string_view>({
    "IFM  line 3 timeout, resent",
    "RFG  tracking error 0x0010 cleared",
    "QPD  feedback settled late",
    "LMP  ID reread",
    "VAC  gauge offset renewed",
});

// A log's lines, each some seconds after the one before, the last one shortly before the moment.
// The text of entry i is what "entry" makes of it.
std::string Lines(const LogMoment& moment, int count, int seconds_apart,
                  const std::function<std::string(int)>& entry) {
  std::string text;
  for (int i = 0; i < count || text.size() < moment.least_log_bytes; ++i) {
    // A log that has to be longer than usual goes on at the last entry's time.
    const int before = i < count ? (count - i) * seconds_apart : seconds_apart;
    text += StampText(moment.time - seconds(before)) + "  " + entry(i) + "\r\n";
  }
  return text;
}

int Choose(const LogMoment& moment, int log, int entry, std::size_t limit) {
  return Pick(moment.instrument.seed, moment.log_number, kLogTextQuantity, log * 100000 + entry,
              static_cast<int>(limit));
}

std::string SampleName(int log_number, int entry) {
  std::string number = std::to_string(entry + 1);
  number.insert(0, number.size() < 3 ? 3 - number.size() : 0, '0');
  return "L" + std::to_string(log_number) + "S" + number + ".D";
}

}  // namespace

std::string AcquisitionLog(const LogMoment& moment) {
  return "Acquisition Log\r\n" + Lines(moment, 24, 412, [&](int i) {
           const std::string_view method =
               kMethods[static_cast<std::size_t>(Choose(moment, 1, i, kMethods.size()))];
           return "Acquired " + SampleName(moment.log_number, i) + "  method " +
                  std::string(method) + "  3 repetitions";
         });
}

std::string SequenceLog(const LogMoment& moment) {
  return "Sequence Log\r\n" + Lines(moment, 18, 660, [&](int i) {
           return "Line " + std::to_string(i + 1) + "  vial " +
                  std::to_string(101 + Choose(moment, 2, i, 60)) + "  " +
                  SampleName(moment.log_number, i) + "  done";
         });
}

std::string ChainSequenceLog(const LogMoment& moment) {
  return "Chained Sequence Log\r\n" + Lines(moment, 4, 7200, [&](int i) {
           return "Sequence " + std::to_string(i + 1) + "  " +
                  std::to_string(8 + Choose(moment, 3, i, 20)) + " lines  finished";
         });
}

std::string ErrorLog(const LogMoment& moment) {
  const int count = 2 + Choose(moment, 4, -1, 5);
  return Lines(moment, count, 14000, [&](int i) {
    return std::string(kErrors[static_cast<std::size_t>(Choose(moment, 4, i, kErrors.size()))]);
  });
}

std::string CeErrorLog(const LogMoment& moment) {
  const int count = 3 + Choose(moment, 5, -1, 6);
  return Lines(moment, count, 9000, [&](int i) {
    return std::string(kCeErrors[static_cast<std::size_t>(Choose(moment, 5, i, kCeErrors.size()))]);
  });
}

}  // namespace logbook::host
