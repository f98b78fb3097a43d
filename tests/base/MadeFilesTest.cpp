// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Several files of one folder in one go: each as WriteMadeFile writes it.

#include "base/MadeFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/TemporaryName.h"
#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

std::vector<std::string> NamesIn(const TestMachine& machine, const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(machine.Native(folder)))
    names.push_back(entry.path().filename().string());
  return names;
}

TEST(MadeFilesTest, EachIsMadeOrReplacedUnderTheNameThatTheDiskHas) {
  const TestMachine machine;
  machine.Put("C:\\log\\SYS.RPT", "old");
  machine.Put("C:\\log\\meter.rpt", "the same");
  {
    MadeFiles files(machine, "C:\\LOG\\");
    files.Write("Sys.rpt", "new");
    files.Write("meter.rpt", "the same");
    files.Write("analog.rpt", "made");
    files.Write("ANALOG.RPT", "made again");
  }
  EXPECT_THAT(NamesIn(machine, "C:\\log"),
              testing::UnorderedElementsAre("SYS.RPT", "meter.rpt", "analog.rpt"));
  EXPECT_EQ(machine.Get("C:\\log\\SYS.RPT"), "new");
  EXPECT_EQ(machine.Get("C:\\log\\meter.rpt"), "the same");
  EXPECT_EQ(machine.Get("C:\\log\\analog.rpt"), "made again");
}

TEST(MadeFilesTest, OfSeveralSpellingsTheExactOneIsTakenAndElseTheFirstByItsBytes) {
  const TestMachine machine;
  for (const char* name : {"a.rpt", "A.rpt", "A.RPT"})
    machine.Put("C:\\log\\" + std::string(name), "old");
  if (NamesIn(machine, "C:\\log").size() < 3) GTEST_SKIP() << "the disk knows no case";
  MadeFiles(machine, "C:\\log\\").Write("a.rpt", "exact");
  EXPECT_EQ(machine.Get("C:\\log\\a.rpt"), "exact");
  MadeFiles(machine, "C:\\log\\").Write("a.RPT", "first");
  EXPECT_EQ(machine.Get("C:\\log\\A.RPT"), "first");
  EXPECT_EQ(machine.Get("C:\\log\\A.rpt"), "old");
}

TEST(MadeFilesTest, ForAllOfThemTheFolderIsListedAndItsWritersAreWaitedForOnce) {
  const TestMachine machine;
  machine.MakeFolders("C:\\log");
  const DiskCalls calls;
  {
    MadeFiles files(machine, "C:\\log\\");
    for (const char* name : {"a.rpt", "b.rpt", "c.rpt", "C.RPT"}) files.Write(name, name);
  }
  const std::string folder = machine.Native("C:\\log");
  EXPECT_EQ(DiskCalls::Count("rename "), 4);
  EXPECT_EQ(DiskCalls::Count("list "), 1);
  EXPECT_EQ(DiskCalls::Count("fsync "), 0);
  const std::vector<std::string>& all = DiskCalls::Calls();
  EXPECT_EQ(std::count(all.begin(), all.end(), "try " + folder), 1);
  // Files that have their bytes already need no list.
  MadeFiles(machine, "C:\\log\\").Write("a.rpt", "a.rpt");
  EXPECT_EQ(DiskCalls::Count("rename "), 4);
  EXPECT_EQ(DiskCalls::Count("list "), 1);
}

TEST(MadeFilesTest, ALinkIsFollowedAlsoWithinTheFolderWithoutWaitingForItself) {
  const TestMachine machine;
  machine.Put("C:\\log\\real.rpt", "old");
  machine.MakeFolders("C:\\other");
  fs::create_symlink("real.rpt", machine.Native("C:\\log\\a.rpt"));
  fs::create_symlink("../other/b", machine.Native("C:\\log\\b.rpt"));
  const DiskCalls calls;
  {
    MadeFiles files(machine, "C:\\log\\");
    files.Write("a.rpt", "new");
    files.Write("B.RPT", "made");
    files.Write("c.rpt", "behind");
  }
  EXPECT_EQ(DiskCalls::Count("wait "), 0);
  EXPECT_TRUE(fs::is_symlink(machine.Native("C:\\log\\a.rpt")));
  EXPECT_EQ(machine.Get("C:\\log\\real.rpt"), "new");
  EXPECT_EQ(machine.Get("C:\\other\\b"), "made");
  EXPECT_EQ(machine.Get("C:\\log\\c.rpt"), "behind");
}

TEST(MadeFilesTest, AFailureLeavesTheFileAndHindersNoOther) {
  const TestMachine machine;
  machine.Put("C:\\log\\a.rpt", "old");
  fs::permissions(machine.Native("C:\\log\\a.rpt"), fs::perms::owner_read);
  machine.MakeFolders("C:\\log\\b.rpt");
  MadeFiles files(machine, "C:\\log\\");
  EXPECT_EQ(ErrorOf([&] { files.Write("a.rpt", "new"); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files.Write("b.rpt", "new"); }), ErrorNumber::kPathFileAccess);
  files.Write("c.rpt", "new");
  EXPECT_EQ(machine.Get("C:\\log\\a.rpt"), "old");
  EXPECT_EQ(machine.Get("C:\\log\\c.rpt"), "new");
}

TEST(MadeFilesTest, AFolderThatIsMissingOrNoneIsRefused) {
  const TestMachine machine;
  machine.Put("C:\\file", "x");
  for (const char* folder : {"C:\\none\\", "C:\\file\\", "Q:\\"})
    EXPECT_EQ(ErrorOf([&] { MadeFiles(machine, folder); }), ErrorNumber::kPathNotFound) << folder;
  EXPECT_EQ(ErrorOf([&] { MadeFiles(machine, ""); }), ErrorNumber::kPathFileAccess);
}

TEST(MadeFilesTest, WhatKilledWritersLeftIsGoneAfterTheFirstWriting) {
  const TestMachine machine;
  const std::string left = "C:\\log\\" + std::string(kTemporaryName);
  machine.Put(left, "half a fi");
  machine.Put(left + "4711", "half a fi");
  MadeFiles(machine, "C:\\log\\").Write("a.rpt", "whole");
  EXPECT_THAT(NamesIn(machine, "C:\\log"), testing::ElementsAre("a.rpt"));
}

}  // namespace
}  // namespace logbook::test
