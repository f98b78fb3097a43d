// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ServerSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/TestMachine.h"
#include "upload/ContentStore.h"

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(ServerSettings, WithoutAFileThereIsNoServer) {
  const TestMachine disk;
  const ServerSettings settings = ReadServerSettings(disk, "C:\\arecm.cfg");
  EXPECT_FALSE(settings.Enabled());
  EXPECT_EQ(settings.retry_pause.count(), 5000);
  EXPECT_EQ(settings.longest_pause.count(), 900000);
  EXPECT_EQ(settings.answer_timeout.count(), 120000);
}

TEST(ServerSettings, AllKeysAreReadInTheCodePage) {
  const TestMachine disk;
  disk.Put("C:\\arecm.cfg",
           "[content server]\r\nURL=https://server/dav\r\nUser=m\xFCller\r\n"
           "PasswordFile=C:\\pw\r\nCaFile=/etc/ca.pem\r\nFolder=a/b\r\nRetryPause=7\r\n"
           "LongestPause=70\r\nAnswerTimeout=700\r\n");
  const ServerSettings settings = ReadServerSettings(disk, "C:\\arecm.cfg");
  EXPECT_EQ(settings.url, "https://server/dav");
  EXPECT_EQ(settings.user, "müller");
  EXPECT_EQ(settings.password_file, "C:\\pw");
  EXPECT_EQ(settings.ca_file, "/etc/ca.pem");
  EXPECT_EQ(settings.folder, "a/b");
  EXPECT_EQ(settings.retry_pause.count(), 7);
  EXPECT_EQ(settings.longest_pause.count(), 70);
  EXPECT_EQ(settings.answer_timeout.count(), 700);
}

TEST(ServerSettings, APauseOfZeroOrNoNumberIsTheDefault) {
  const TestMachine disk;
  disk.Put("C:\\arecm.cfg", "[Content Server]\r\nRetryPause=0\r\nLongestPause=x\r\n");
  const ServerSettings settings = ReadServerSettings(disk, "C:\\arecm.cfg");
  EXPECT_EQ(settings.retry_pause.count(), 5000);
  EXPECT_EQ(settings.longest_pause.count(), 900000);
}

TEST(ServerSettings, ThePasswordIsTheFirstLineOfItsFile) {
  const TestMachine disk;
  disk.Put("C:\\pw", "secret \r\nsecond line\r\n");
  chmod(disk.Native("C:\\pw").c_str(), 0600);
  EXPECT_EQ(ReadPassword(disk, {.password_file = "C:\\pw"}), "secret ");
  EXPECT_EQ(ReadPassword(disk, {}), "");
}

TEST(ServerSettings, APasswordThatEveryUserCanReadIsRefused) {
  const TestMachine disk;
  disk.Put("C:\\pw", "secret");
  chmod(disk.Native("C:\\pw").c_str(), 0644);
  try {
    ReadPassword(disk, {.password_file = "C:\\pw"});
    FAIL();
  } catch (const DeliveryError& error) {
    EXPECT_THAT(error.what(), HasSubstr("C:\\pw can be read by every user"));
  }
  EXPECT_THROW(ReadPassword(disk, {.password_file = "C:\\missing"}), DeliveryError);
}

TEST(ServerSettings, AFolderIsTakenApartAndCannotLeadUpwards) {
  EXPECT_THAT(FolderComponents("a/b\\c"), ElementsAre("a", "b", "c"));
  EXPECT_THAT(FolderComponents("/../a//./b/"), ElementsAre("a", "b"));
  EXPECT_THAT(FolderComponents(""), ElementsAre());
}

// Why this password file is refused.
std::string RefusalOf(const TestMachine& disk, const std::string& file) {
  try {
    ReadPassword(disk, {.password_file = file});
    return "(none)";
  } catch (const DeliveryError& error) {
    return error.what();
  }
}

TEST(ServerSettings, WhatIsNoPasswordFileIsRefusedInWordsAndNotWaitedFor) {
  const TestMachine disk;
  disk.MakeFolders("C:\\folder");
  ASSERT_EQ(mkfifo(disk.Native("C:\\pipe").c_str(), 0600), 0);
  disk.Put("C:\\empty", "");
  disk.Put("C:\\long", std::string(4097, 'x'));
  for (const char* name : {"empty", "long"})
    chmod(disk.Native(std::string("C:\\") + name).c_str(), 0600);
  EXPECT_THAT(RefusalOf(disk, "C:\\folder"),
              HasSubstr("C:\\folder is a folder; set PasswordFile to a file"));
  EXPECT_THAT(RefusalOf(disk, "C:\\pipe"), HasSubstr("C:\\pipe is a pipe or a device; set"));
  EXPECT_THAT(RefusalOf(disk, "/dev/zero"), HasSubstr("is a pipe or a device"));
  EXPECT_THAT(RefusalOf(disk, "C:\\none"), HasSubstr("is missing"));
  EXPECT_THAT(RefusalOf(disk, "C:\\empty"), HasSubstr("is empty"));
  EXPECT_THAT(RefusalOf(disk, "C:\\long"), HasSubstr("too long"));
}

TEST(ServerSettings, APasswordHasUpTo4096Bytes) {
  const TestMachine disk;
  for (const char* end : {"", "\n", "\nsecond line"}) {
    disk.Put("C:\\pw", std::string(4096, 'x') + end);
    chmod(disk.Native("C:\\pw").c_str(), 0600);
    EXPECT_EQ(ReadPassword(disk, {.password_file = "C:\\pw"}), std::string(4096, 'x'));
  }
}

}  // namespace
}  // namespace logbook::test
