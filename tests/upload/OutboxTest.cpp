// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Outbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "FailingDisk.h"
#include "base/PrivateFolder.h"
#include "base/RunTimeError.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

void Remove(Outbox& outbox, const std::string& submission) {
  outbox.MarkDelivered(submission);
  outbox.ClearDelivered();
}

class OutboxTest : public testing::Test {
 protected:
  OutboxTest() : outbox(disk.Native("C:\\area")) { disk.MakeFolders("C:\\area"); }

  void Stage(const std::string& name, const std::string& area = "C:\\area\\") {
    disk.Put(area + name + "\\a.txt", "a of " + name);
    disk.Put(area + name + "\\b.txt", "b of " + name);
    disk.Put(area + name + ".xml", "<Upload/>");
  }
  // The staging folder "one" stands in the area as it was staged, and nothing else is on its way.
  void ExpectStaged(const std::string& area, const Outbox& box) {
    for (const char* file : {"one\\a.txt", "one\\b.txt", "one.xml"})
      EXPECT_TRUE(disk.Has(area + file)) << file;
    EXPECT_TRUE(box.IsEmpty());
  }
  // It waits as a whole, and once.
  void ExpectWaiting(const std::string& area, const Outbox& box) {
    ASSERT_THAT(box.Waiting(), SizeIs(1));
    EXPECT_THAT(box.FilesOf(box.Waiting()[0]), ElementsAre("a.txt", "b.txt"));
    EXPECT_TRUE(fs::exists(box.DescriptorOf(box.Waiting()[0])));
    EXPECT_FALSE(disk.Has(area + "one"));
    EXPECT_FALSE(disk.Has(area + "one.xml"));
  }

  TestMachine disk;
  Outbox outbox;
};

TEST_F(OutboxTest, WhatIsTakenOverLeavesTheAreaAndWaits) {
  Stage("one");
  outbox.TakeOver("one");
  ASSERT_THAT(outbox.Waiting(), ElementsAre(MatchesRegex("one-0000-[0-9a-f]{8}")));
  const std::string submission = outbox.Waiting()[0];
  EXPECT_THAT(outbox.FilesOf(submission), ElementsAre("a.txt", "b.txt"));
  EXPECT_TRUE(fs::exists(outbox.DescriptorOf(submission)));
  EXPECT_FALSE(disk.Has("C:\\area\\one"));
  EXPECT_FALSE(disk.Has("C:\\area\\one.xml"));
  EXPECT_FALSE(outbox.IsEmpty());
}

TEST_F(OutboxTest, TwoEventsOfOneSecondDoNotMeet) {
  Stage("one");
  outbox.TakeOver("one");
  Stage("one");
  outbox.TakeOver("one");
  EXPECT_THAT(outbox.Waiting(), SizeIs(2));
}

TEST_F(OutboxTest, SubmissionsWaitInTheOrderOfTheirNames) {
  for (const char* name : {"260102", "260101", "260103"}) {
    Stage(name);
    outbox.TakeOver(name);
  }
  EXPECT_THAT(outbox.Waiting(),
              ElementsAre(testing::StartsWith("260101"), testing::StartsWith("260102"),
                          testing::StartsWith("260103")));
}

TEST_F(OutboxTest, EventsOfOneSecondWaitInTheirOrder) {
  std::vector<std::string> in_order;
  for (int event = 0; event < 12; ++event) {
    Stage("one");
    disk.Put("C:\\area\\one\\event" + std::to_string(event), "");
    outbox.TakeOver("one");
    in_order.push_back("event" + std::to_string(event));
  }
  std::vector<std::string> waiting;
  for (const std::string& submission : outbox.Waiting())
    waiting.push_back(outbox.FilesOf(submission).back());
  EXPECT_EQ(waiting, in_order);
}

TEST_F(OutboxTest, TheNumberGoesOnBehindWhatWaitsAndCountsOneStagingNameAlone) {
  for (const char* name : {"one-0007-0123abcd", "one-0009-0123abcd.new", "one-0123abcd",
                           "one-00x8-", "one-", "one-two-0042-0123abcd", "other-0050-0123abcd"})
    disk.MakeFolders(std::string("C:\\area\\outbox\\") + name);
  Stage("one");
  outbox.TakeOver("one");
  EXPECT_THAT(outbox.Waiting(), testing::Contains(MatchesRegex("one-0010-[0-9a-f]{8}")));
}

TEST_F(OutboxTest, AMissingDescriptorLeavesTheFolderInTheArea) {
  Stage("one");
  fs::remove(disk.Native("C:\\area\\one.xml"));
  EXPECT_THROW(outbox.TakeOver("one"), RunTimeError);
  EXPECT_TRUE(disk.Has("C:\\area\\one\\a.txt"));
  EXPECT_TRUE(outbox.IsEmpty());
}

TEST_F(OutboxTest, ATakingOverCutShortBeforeTheFolderIsForgotten) {
  Stage("one");
  disk.MakeFolders("C:\\area\\outbox\\one-0123abcd.new");
  EXPECT_FALSE(outbox.IsEmpty());
  outbox.Recover();
  EXPECT_TRUE(outbox.IsEmpty());
  EXPECT_TRUE(disk.Has("C:\\area\\one\\a.txt"));
}

TEST_F(OutboxTest, ATakingOverCutShortBeforeTheDescriptorIsFinished) {
  Stage("one");
  disk.MakeFolders("C:\\area\\outbox\\one-0123abcd.new");
  fs::rename(disk.Native("C:\\area\\one"),
             disk.Native("C:\\area\\outbox\\one-0123abcd.new\\files"));
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
  outbox.Recover();
  EXPECT_THAT(outbox.Waiting(), ElementsAre("one-0123abcd"));
  EXPECT_TRUE(fs::exists(outbox.DescriptorOf("one-0123abcd")));
  EXPECT_FALSE(disk.Has("C:\\area\\one.xml"));
}

TEST_F(OutboxTest, ANumberedTakingOverCutShortBeforeTheDescriptorIsFinished) {
  for (const char* name : {"one", "one-1234"}) {
    Stage(name);
    const std::string taken = std::string(name) + "-0001-0123abcd";
    disk.MakeFolders("C:\\area\\outbox\\" + taken + ".new");
    fs::rename(disk.Native(std::string("C:\\area\\") + name),
               disk.Native("C:\\area\\outbox\\" + taken + ".new\\files"));
    outbox.Recover();
    EXPECT_TRUE(fs::exists(outbox.DescriptorOf(taken))) << name;
  }
}

TEST_F(OutboxTest, ATakingOverCutShortBeforeItsLastRenameIsFinished) {
  disk.Put("C:\\area\\outbox\\one-0123abcd.new\\files\\a.txt", "a");
  disk.Put("C:\\area\\outbox\\one-0123abcd.new\\upload.xml", "<Upload/>");
  outbox.Recover();
  EXPECT_THAT(outbox.Waiting(), ElementsAre("one-0123abcd"));
}

TEST_F(OutboxTest, WhatCannotBeRecoveredStays) {
  disk.Put("C:\\area\\outbox\\one-0123abcd.new\\files\\a.txt", "a");
  outbox.Recover();  // there is no descriptor anywhere
  EXPECT_TRUE(disk.Has("C:\\area\\outbox\\one-0123abcd.new\\files\\a.txt"));
}

TEST_F(OutboxTest, AProcessThatDiesAtAnyMomentOfATakingOverLosesNothing) {
  int call = 0;
  for (bool died = true; died;) {
    const std::string area = "C:\\area" + std::to_string(++call) + "\\";
    Stage("one", area);
    died = DiesAtCall(call, [&] { Outbox(disk.Native(area)).TakeOver("one"); });
    Outbox box(disk.Native(area));
    box.Recover();
    SCOPED_TRACE("call " + std::to_string(call));
    if (box.Waiting().empty()) {
      EXPECT_TRUE(died);
      ExpectStaged(area, box);
    } else {
      ExpectWaiting(area, box);
    }
  }
  EXPECT_GT(call, 10) << "a folder, five files and folders up to the disk, three renames";
}

TEST_F(OutboxTest, ADiskThatFailsAtAnyMomentOfATakingOverLeavesFolderAndDescriptorInTheArea) {
  int call = 0;
  for (bool failed = true; failed;) {
    const std::string area = "C:\\area" + std::to_string(++call) + "\\";
    Stage("one", area);
    Outbox box(disk.Native(area));
    SCOPED_TRACE("call " + std::to_string(call));
    const FailingDisk failing(FailingDisk::Manner::kFail, call);
    try {
      box.TakeOver("one");
      ExpectWaiting(area, box);
    } catch (const RunTimeError&) {
      ExpectStaged(area, box);
    }
    failed = FailingDisk::HasFailed();
  }
  EXPECT_GT(call, 10);
}

TEST_F(OutboxTest, ANewAreaIsBroughtToTheDiskWithItsName) {
  const FailingDisk disk_calls(FailingDisk::Manner::kFail, 0);
  MakePrivateFolder(disk, "C:\\new");
  MakePrivateFolder(disk, "C:\\new");
  const std::string drive = disk.Native("C:");
  EXPECT_THAT(FailingDisk::Calls(),
              ElementsAre("mkdir " + drive + "/new", "fsync " + drive, "mkdir " + drive + "/new"));
}

TEST_F(OutboxTest, BytesAndNamesAreBroughtToTheDiskBeforeWhatRestsOnThem) {
  Stage("one");
  std::vector<std::string> calls;
  {
    const FailingDisk disk_calls(FailingDisk::Manner::kFail, 0);
    outbox.TakeOver("one");
    calls = FailingDisk::Calls();
  }
  const std::string area = disk.Native("C:\\area");
  const std::string taken = area + "/outbox/" + outbox.Waiting().at(0);
  const std::string unfinished = taken + ".new";
  EXPECT_THAT(calls, ElementsAre("mkdir " + area + "/outbox", "fsync " + area + "/one/a.txt",
                                 "fsync " + area + "/one/b.txt", "fsync " + area + "/one",
                                 "fsync " + area + "/one.xml", "mkdir " + unfinished,
                                 "rename " + area + "/one " + unfinished + "/files",
                                 "rename " + area + "/one.xml " + unfinished + "/upload.xml",
                                 "fsync " + unfinished, "fsync " + area + "/outbox",
                                 "fsync " + area, "rename " + unfinished + " " + taken));
}

TEST_F(OutboxTest, WhatIsTakenOverIsOnTheDiskBeforeItWaits) {
  // The last call is the rename that makes it wait; a failure there is told and given back.
  Stage("one");
  int calls = 1;
  while (DiesAtCall(calls, [&] {
    Outbox box(disk.Native("C:\\area"));
    box.TakeOver("one");
    _exit(box.Waiting().size() == 1 ? 0 : 1);
  })) {
    EXPECT_THAT(outbox.Waiting(), IsEmpty()) << "call " << calls;
    outbox.Recover();
    if (!outbox.IsEmpty()) {
      Remove(outbox, outbox.Waiting()[0]);
      Stage("one");
    }
    ++calls;
  }
  EXPECT_THAT(outbox.Waiting(), SizeIs(1));
}

TEST_F(OutboxTest, FilesThatCannotBeListedAreAnErrorAndNotAnEmptyList) {
  disk.Put("C:\\area\\outbox\\one-0123abcd\\files", "a file where the folder should be");
  EXPECT_THROW(outbox.FilesOf("one-0123abcd"), RunTimeError);
  EXPECT_THROW(outbox.FilesOf("two-0123abcd"), RunTimeError);
}

TEST_F(OutboxTest, AnOutboxThatCannotBeReadIsAnErrorAndNotAnEmptyOne) {
  disk.Put("C:\\area\\outbox", "a file where the folder should be");
  EXPECT_THROW(outbox.Waiting(), RunTimeError);
  EXPECT_THROW(outbox.IsEmpty(), RunTimeError);
  EXPECT_THROW(outbox.Recover(), RunTimeError);
}

TEST_F(OutboxTest, ALinkToAFileOfTheSubmissionIsThatFileAndOtherLinksAreNotThere) {
  disk.Put("C:\\area\\outbox\\one\\files\\a.txt", "a");
  disk.Put("C:\\area\\outbox\\one\\upload.xml", "<Upload/>");
  disk.Put("C:\\area\\outbox\\two\\files\\b.txt", "b");
  disk.Put("C:\\tree\\secret.txt", "secret");
  const auto link = [&](const fs::path& target, const std::string& place) {
    fs::create_symlink(target, disk.Native("C:\\area\\outbox\\" + place));
  };
  link("a.txt", "one\\files\\same.txt");
  link("../../two/files/b.txt", "one\\files\\other.txt");
  link("../upload.xml", "one\\files\\descriptor.xml");
  link(disk.Native("C:\\tree\\secret.txt"), "one\\files\\secret.txt");
  link(disk.Native("C:\\tree"), "one\\files\\tree");
  link("nowhere", "one\\files\\loose.txt");
  EXPECT_THAT(outbox.FilesOf("one"), ElementsAre("a.txt", "same.txt"));
  EXPECT_EQ(outbox.FileOf("one", "same.txt"),
            fs::canonical(outbox.FileOf("one", "a.txt")).string());
  link("two", "linked");
  link(disk.Native("C:\\tree"), "linked.new");
  disk.MakeFolders("C:\\area\\outbox\\three");
  link(disk.Native("C:\\tree"), "three\\files");
  EXPECT_THAT(outbox.Waiting(), ElementsAre("one", "three", "two"));
  EXPECT_THROW(outbox.FilesOf("linked"), RunTimeError);
  EXPECT_THROW(outbox.FilesOf("three"), RunTimeError);
  outbox.Recover();
  EXPECT_TRUE(disk.Has("C:\\tree\\secret.txt"));
}

TEST_F(OutboxTest, WhatLiesStagedIsListedWithoutTheDescriptorsOfFolders) {
  EXPECT_THAT(Outbox(disk.Native("C:\\none")).Staged(), IsEmpty());
  Stage("one");
  Stage("two");
  outbox.TakeOver("one");
  disk.Put("C:\\area\\three.xml", "<Upload/>");
  disk.Put("C:\\area\\two.xml.AbC123", "<?xml");
  EXPECT_THAT(outbox.Staged(), ElementsAre("three.xml", "two", "two.xml.AbC123"));
  EXPECT_THAT(outbox.StagedFilesOf("two"), ElementsAre("a.txt", "b.txt"));
  EXPECT_THAT(outbox.StagedFilesOf("three.xml"), IsEmpty());
}

TEST_F(OutboxTest, OtherUsersCannotLookIntoTheOutbox) {
  Stage("one");
  outbox.TakeOver("one");
  const std::string folder = disk.Native("C:\\area\\outbox");
  for (const std::string& path : {folder, folder + "/" + outbox.Waiting()[0]}) {
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u) << path;
  }
}

TEST_F(OutboxTest, ADeletionThatDiesAtAnyMomentIsFinishedOrNotBegun) {
  int call = 0;
  for (bool died = true; died;) {
    const std::string area = "C:\\area" + std::to_string(++call) + "\\";
    Stage("one", area);
    Outbox box(disk.Native(area));
    box.TakeOver("one");
    died = DiesAtCall(call, [&] { Remove(box, box.Waiting()[0]); });
    box.Recover();
    SCOPED_TRACE("call " + std::to_string(call));
    if (!box.IsEmpty()) ExpectWaiting(area, box);
  }
}

TEST_F(OutboxTest, ADeletionCutShortIsFinished) {
  disk.Put("C:\\area\\outbox\\one-0123abcd.done\\files\\a.txt", "a");
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
  outbox.Recover();
  EXPECT_FALSE(disk.Has("C:\\area\\outbox\\one-0123abcd.done"));
}

TEST_F(OutboxTest, WhatIsMarkedIsDeletedTogetherOnceTheNamesAreOnTheDisk) {
  for (const char* name : {"one", "two", "three"}) {
    Stage(name);
    outbox.TakeOver(name);
  }
  const FailingDisk disk_calls(FailingDisk::Manner::kFail, 0);
  const std::vector<std::string> waiting = outbox.Waiting();
  for (const std::string& submission : waiting) outbox.MarkDelivered(submission);
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
  EXPECT_FALSE(outbox.IsEmpty());
  outbox.ClearDelivered();
  EXPECT_TRUE(outbox.IsEmpty());
  std::vector<std::string> calls = FailingDisk::Calls();
  calls.resize(4);
  const std::string folder = disk.Native("C:\\area\\outbox");
  for (std::size_t i = 0; i < waiting.size(); ++i)
    EXPECT_EQ(calls[i],
              "rename " + folder + "/" + waiting[i] + " " + folder + "/" + waiting[i] + ".done");
  EXPECT_EQ(calls[3], "fsync " + folder);
}

TEST_F(OutboxTest, WhatCannotBeBroughtToTheDiskAsDeliveredIsNotDeletedYet) {
  Stage("one");
  outbox.TakeOver("one");
  outbox.MarkDelivered(outbox.Waiting().at(0));
  {
    const FailingDisk failing(FailingDisk::Manner::kFail, 1);
    outbox.ClearDelivered();
    EXPECT_TRUE(FailingDisk::HasFailed());
  }
  EXPECT_FALSE(outbox.IsEmpty());
  outbox.ClearDelivered();
  EXPECT_TRUE(outbox.IsEmpty());
}

TEST_F(OutboxTest, ADeliveredSubmissionIsGone) {
  Stage("one");
  outbox.TakeOver("one");
  Remove(outbox, outbox.Waiting()[0]);
  EXPECT_TRUE(outbox.IsEmpty());
}

TEST_F(OutboxTest, ANoteIsKeptOnOneLine) {
  Stage("one");
  outbox.TakeOver("one");
  const std::string submission = outbox.Waiting()[0];
  EXPECT_EQ(outbox.NoteOf(submission).tries, 0);
  outbox.SetNote(submission, {.tries = 3, .last_try = 1794719399, .reason = "two\nlines"});
  EXPECT_EQ(outbox.NoteOf(submission).tries, 3);
  EXPECT_EQ(outbox.NoteOf(submission).last_try, 1794719399);
  EXPECT_EQ(outbox.NoteOf(submission).reason, "two lines");
  EXPECT_THAT(outbox.FilesOf(submission), ElementsAre("a.txt", "b.txt"));
}

TEST_F(OutboxTest, WithoutAnOutboxNothingWaits) {
  EXPECT_TRUE(outbox.IsEmpty());
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
  outbox.Recover();
}

}  // namespace
}  // namespace logbook::test
