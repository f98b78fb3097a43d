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

// A file whose whole native path has so many bytes, and what can be read of it.
std::string WritePath(std::size_t size) {
  constexpr std::size_t kFolder = 100;
  const TestMachine disk;
  std::string path = "C:\\";
  std::size_t left = size - disk.Native(path).size();
  for (; left > 2 * kFolder; left -= kFolder) path += std::string(kFolder - 1, 'd') + "\\";
  disk.MakeFolders(path);
  path += std::string(left, 'n');
  const std::string written = ResultOf([&] { WriteFile(disk, path, "bytes"); });
  std::string bytes;
  const std::string read = ResultOf([&] { bytes = ReadFile(disk, path); });
  return written + ", " + (read == "done" ? bytes : read);
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
    {"WholePath", 4095, WritePath, "done, bytes", "done, bytes", "done, error 57"},
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
