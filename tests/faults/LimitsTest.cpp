// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Limits of docs/reliability.md that no test of a room holds: what is one below, at and one above
// each of them.

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "base/Files.h"
#include "base/Profile.h"
#include "loglist/LogList.h"
#include "support/Errors.h"
#include "support/TestServices.h"

namespace logbook::test {
namespace {

std::string ResultOf(const std::function<void()>& call) {
  const auto number = NumberRaisedBy(call);
  return number ? "error " + std::to_string(*number) : "done";
}

// A profile of so many bytes: the value at its end.
std::string ReadProfile(std::size_t size) {
  const TestMachine disk;
  const std::string end = "\r\n[Header3]\r\nCat=Meter\r\n";
  disk.Put("C:\\logbook.ini", ";" + std::string(size - end.size() - 1, 'x') + end);
  return GetPrivateProfileString(disk, "Header3", "Cat", "none", 260, "C:\\logbook.ini");
}

std::string WriteProfile(std::size_t size) {
  const TestMachine disk;
  disk.Put("C:\\logbook.ini", "[A]\r\nKey=1\r\n;" + std::string(size - 13, 'x'));
  const bool done = WritePrivateProfileString(disk, "A", "Key", "2", "C:\\logbook.ini");
  return done ? "done" : "refused";
}

// A file with a name of so many bytes.
std::string WriteName(std::size_t size) {
  const TestMachine disk;
  return ResultOf([&] { WriteFile(disk, "C:\\" + std::string(size, 'n'), "bytes"); });
}

// A log root with so many logs: the rows of the list.
std::string ListLogs(std::size_t count) {
  TestWorkstation station;
  for (std::size_t i = 0; i < count; ++i)
    station.disk.MakeFolders(TestWorkstation::InLog("log" + std::to_string(1000 + i), ""));
  RebuildList(station.state, station.messages);
  return std::to_string(station.state.ListView1.Rows.size()) + " rows, " +
         std::to_string(station.messages.shown.size()) + " messages";
}

struct Limit {
  const char* name;
  std::size_t at;
  std::string (*run)(std::size_t);
  const char* below;
  const char* there;
  const char* above;
};

const Limit kLimits[] = {
    {"ProfileRead", kLargestProfile, ReadProfile, "Meter", "Meter", "none"},
    {"ProfileWritten", kLargestProfile, WriteProfile, "done", "done", "refused"},
    {"FileName", 255, WriteName, "done", "done", "error 57"},
    {"Logs", 256, ListLogs, "255 rows, 0 messages", "256 rows, 1 messages", "256 rows, 1 messages"},
};

class LimitTest : public ::testing::TestWithParam<Limit> {};

TEST_P(LimitTest, HoldsOneBelowAtAndOneAbove) {
  const Limit& limit = GetParam();
  EXPECT_EQ(limit.run(limit.at - 1), limit.below);
  EXPECT_EQ(limit.run(limit.at), limit.there);
  EXPECT_EQ(limit.run(limit.at + 1), limit.above);
}

INSTANTIATE_TEST_SUITE_P(Limits, LimitTest, ::testing::ValuesIn(kLimits),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace logbook::test
