// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/ecm/Outbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/RunTimeError.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class OutboxTest : public testing::Test {
 protected:
  OutboxTest() : outbox(disk.Native("C:\\area")) { disk.MakeFolders("C:\\area"); }

  void Stage(const std::string& name) {
    disk.Put("C:\\area\\" + name + "\\a.txt", "a of " + name);
    disk.Put("C:\\area\\" + name + "\\b.txt", "b of " + name);
    disk.Put("C:\\area\\" + name + ".xml", "<Upload/>");
  }

  TestMachine disk;
  Outbox outbox;
};

TEST_F(OutboxTest, WhatIsTakenOverLeavesTheAreaAndWaits) {
  Stage("one");
  outbox.TakeOver("one");
  ASSERT_THAT(outbox.Waiting(), ElementsAre(MatchesRegex("one-[0-9a-f]{8}")));
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

TEST_F(OutboxTest, ADeletionCutShortIsFinished) {
  disk.Put("C:\\area\\outbox\\one-0123abcd.done\\files\\a.txt", "a");
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
  outbox.Recover();
  EXPECT_FALSE(disk.Has("C:\\area\\outbox\\one-0123abcd.done"));
}

TEST_F(OutboxTest, ADeliveredSubmissionIsGone) {
  Stage("one");
  outbox.TakeOver("one");
  outbox.Remove(outbox.Waiting()[0]);
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

TEST_F(OutboxTest, ALockIsHeldByOneAtATime) {
  const std::string path = disk.Native("C:\\area\\lock");
  {
    const FileLock first(path, FileLock::Patience::kTry);
    EXPECT_TRUE(first.IsHeld());
    EXPECT_FALSE(FileLock(path, FileLock::Patience::kTry).IsHeld());
  }
  EXPECT_TRUE(FileLock(path, FileLock::Patience::kTry).IsHeld());
}

}  // namespace
}  // namespace logbook::test
