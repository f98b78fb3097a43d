// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>

namespace logbook {
namespace {

std::time_t SecondsOf(const LocalTime& time) {
  std::tm parts{};
  parts.tm_year = time.Year - 1900;
  parts.tm_mon = time.Month - 1;
  parts.tm_mday = time.Day;
  parts.tm_hour = time.Hour;
  parts.tm_min = time.Minute;
  parts.tm_sec = time.Second;
  parts.tm_isdst = -1;
  return std::mktime(&parts);
}

// Not std::time, which lags by up to a tick of the system.
std::time_t Now() {
  return std::chrono::system_clock::to_time_t(
      std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
}

TEST(QtClock, TellsTheLocalTime) {
  const std::time_t before = Now();
  const std::time_t told = SecondsOf(QtClock().Now());
  const std::time_t after = Now();
  EXPECT_GE(told, before);
  EXPECT_LE(told, after);
}

}  // namespace
}  // namespace logbook
