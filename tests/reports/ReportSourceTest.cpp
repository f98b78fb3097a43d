// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/ReportSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/DiskCalls.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::DiskCalls;
using test::TestMachine;

constexpr const char* kFolder = "C:\\log\\";
constexpr const char* kIni = "C:\\log\\LogFile.INI";

TEST(ReportSourceTest, TheDescriptorIsReadOnceForAllThatAsk) {
  const TestMachine machine;
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  const DiskCalls calls;
  ReportSource log(machine, kFolder);
  EXPECT_EQ(log.Options().LENS, 1);
  EXPECT_EQ(log.Descriptor(), "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kIni, "[OPTION]\r\nLENS=2\r\n");
  EXPECT_EQ(log.Options().LENS, 1) << "a job sees one state of it";
  EXPECT_EQ(DiskCalls::Count("read " + machine.Native(kIni)), 1);
  EXPECT_EQ(ReportSource(machine, kFolder).Options().LENS, 2) << "the next one sees the change";
}

TEST(ReportSourceTest, ADescriptorThatIsMissingUnreadableOrTooLargeHasNoOptions) {
  const TestMachine machine;
  EXPECT_EQ(ReportSource(machine, kFolder).Options().LENS, 0) << "no folder";
  machine.MakeFolders("C:\\log");
  EXPECT_EQ(ReportSource(machine, kFolder).Options().LENS, 0) << "no file";
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n" + std::string(100'000, ';'));
  EXPECT_EQ(ReportSource(machine, kFolder).Options().LENS, 1) << "a long one";
  fs::resize_file(machine.Native(kIni), (16u << 20) + 1);
  EXPECT_EQ(ReportSource(machine, kFolder).Options().LENS, 0) << "too large for a profile";
  fs::remove(machine.Native(kIni));
  machine.MakeFolders(kIni);
  EXPECT_EQ(ReportSource(machine, kFolder).Options().LENS, 0) << "a folder";
}

TEST(ReportSourceTest, ASnapshotIsOpenedWhateverItsSizeAndHoweverItIsReached) {
  const TestMachine machine;
  ReportSource log(machine, kFolder);
  EXPECT_FALSE(log.OpenSnapshot("aall.txt"));
  machine.Put("C:\\log\\AALL.TXT", "1.5,2\r\n");
  machine.Put("C:\\log\\sys.txt", "7" + std::string(100'000, ' ') + ",8\r\n");
  machine.Put("C:\\real.txt", "9,10\r\n");
  fs::create_symlink(machine.Native("C:\\real.txt"), machine.Native("C:\\log\\auser.txt"));
  ReportSource there(machine, kFolder);
  const std::tuple<const char*, double, double> files[] = {
      {"aall.txt", 1.5, 2}, {"sys.txt", 7, 8}, {"auser.txt", 9, 10}};
  for (const auto& [name, first, second] : files) {
    auto reader = there.OpenSnapshot(name);
    ASSERT_TRUE(reader) << name;
    EXPECT_EQ(reader->ReadNumber(), first) << name;
    EXPECT_EQ(reader->ReadNumber(), second) << name;
    EXPECT_TRUE(reader->AtEnd()) << name;
  }
  EXPECT_FALSE(there.OpenSnapshot("bin.txt"));
}

}  // namespace
}  // namespace logbook
