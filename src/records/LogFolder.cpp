// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/LogFolder.h"

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "resources/ResourceText.h"
#include "text/TextParts.h"

namespace logbook {

namespace {

constexpr int kLogsPerDay = 256;
constexpr int kDayFullMessage = 224;

std::string RunningNumber(int number) {
  constexpr const char* kHexadecimal = "0123456789ABCDEF";
  return {kHexadecimal[number / 16], kHexadecimal[number % 16]};
}

}  // namespace

std::string DateText(const LocalTime& time) {
  return LastDigits(time.Month, 2) + "/" + LastDigits(time.Day, 2) + "/" +
         LastDigits(time.Year, 4) + " " + LastDigits(time.Hour, 2) + ":" +
         LastDigits(time.Minute, 2) + ":" + LastDigits(time.Second, 2);
}

std::string GetNewFileName(AppState& state, Services& services) {
  const LocalTime now = services.clock.Now();
  const std::string base =
      LastDigits(now.Year, 2) + LastDigits(now.Month, 2) + LastDigits(now.Day, 2);
  for (int number = 0; number < kLogsPerDay; ++number) {
    const std::string folder = state.LogRoot + base + RunningNumber(number);
    if (NameIsTaken(state.machine, folder)) continue;
    MakeFolder(state.machine, folder);
    if (!WritePrivateProfileString(state.machine, "LogFile", "Date", DateText(now),
                                   ExactFolder(folder) + "logfile.ini"))
      throw RunTimeError(ErrorNumber::kPathFileAccess);
    return folder + "\\";
  }
  services.messages.Show({.Text = ResourceText(kDayFullMessage)});
  return {};
}

}  // namespace logbook
