// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/History.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string_view>

#include "base/Files.h"
#include "base/Profile.h"
#include "host/Disk.h"
#include "host/Quantity.h"
#include "host/Wear.h"

namespace logbook::host {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::minutes;

constexpr int kLogsOfADay = 256;
constexpr std::chrono::hours kEndOfWork{17};

// The moments of the logs, the last one on the day of "until". A day has mostly one log, sometimes
// two or three, and days without any lie between.
std::vector<LocalTime> MakeCalendar(const History& history, int first_number) {
  const std::uint64_t seed = history.instrument.seed;
  std::vector<LocalTime> times(static_cast<std::size_t>(history.logs));
  LocalTime day_end = floor<days>(history.until) + kEndOfWork;
  LocalTime time =
      std::max(history.until - minutes(Pick(seed, first_number, kCalendarQuantity, -1, 60)),
               LocalTime(floor<days>(history.until)));
  for (int i = history.logs; i-- > 0;) {
    times[static_cast<std::size_t>(i)] = time;
    const int number = first_number + i;
    const int gap = Pick(seed, number, kCalendarQuantity, 0, 10);
    const LocalTime earlier = time - minutes(40 + Pick(seed, number, kCalendarQuantity, 1, 90));
    if (gap == 0 && floor<days>(earlier) == floor<days>(time)) {
      time = earlier;
    } else {
      day_end -= days(gap == 0 ? 1 : gap);
      time = day_end - minutes(Pick(seed, number, kCalendarQuantity, 2, 400));
    }
  }
  return times;
}

// The first name of the time's day that nothing bears.
std::string FreeName(const Machine& machine, const std::string& log_root, LocalTime time) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::string base = FolderDate(time);
  for (int n = 0; n < kLogsOfADay; ++n) {
    std::string name = base + kDigits[static_cast<std::size_t>(n / 16)] +
                       kDigits[static_cast<std::size_t>(n % 16)];
    if (!Exists(machine, log_root + name)) return name;
  }
  throw std::runtime_error("the day " + base + " has 256 logs already");
}

std::string TickText(int log_number) {
  std::string text = "[Maintenance]\r\n";
  int item = 0;
  for (const bool done : JobsDoneAt(log_number)) {
    text += "Item" + std::to_string(item++) + (done ? "=1\r\n" : "=0\r\n");
  }
  return text;
}

// As a recording leaves it: the logbook's date, the host's options, the operator's ticks.
std::string DescriptorText(const LogMoment& moment) {
  std::string text = "[LogFile]\r\nDate=" + LogFileDate(moment.time) + "\r\n[OPTION]\r\n";
  for (const auto& [key, value] : OptionSection(moment.instrument.build)) {
    text.append(key).append("=").append(value).append("\r\n");
  }
  return text + TickText(moment.log_number);
}

void MakeLog(const Machine& machine, const std::string& folder, const LogMoment& moment,
             const std::vector<Damage>& damages) {
  PutFolder(machine, folder);
  PutFile(machine, folder + "\\logfile.ini", DescriptorText(moment));
  WriteSnapshot(machine, folder, MakeSnapshot(moment), damages);
  const std::string comment = CommentAt(moment.log_number, machine.code_page->Number());
  PutFile(machine, folder + "\\comment.txt", machine.code_page->FromUtf8(comment + "\r\n"));
}

void RememberLastRecord(const Workstation& workstation, const std::string& folder, int log_number) {
  const std::string profile = workstation.exe_path + "logbook.ini";
  const Machine& machine = workstation.machine;
  int item = 0;
  for (const bool done : JobsDoneAt(log_number)) {
    WritePrivateProfileString(machine, "Maintenance", "Item" + std::to_string(item++),
                              done ? "1" : "0", profile);
  }
  WritePrivateProfileString(machine, "LogBook", "LastFile", folder + "\\", profile);
}

}  // namespace

std::vector<std::string> MakeHistory(const Workstation& workstation, const History& history) {
  const Machine& machine = workstation.machine;
  const std::string log_root = workstation.inst_path + "maintain\\";
  PutFolder(machine, log_root);
  int number = LogCountIn(machine, log_root);
  std::vector<std::string> names;
  for (const LocalTime time : MakeCalendar(history, number)) {
    names.push_back(FreeName(machine, log_root, time));
    const LogMoment moment{history.instrument, number++, time, history.least_log_bytes};
    MakeLog(machine, log_root + names.back(), moment, history.damages);
  }
  if (!names.empty()) RememberLastRecord(workstation, log_root + names.back(), number - 1);
  return names;
}

}  // namespace logbook::host
