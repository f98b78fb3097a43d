// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ContentServerClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "UploadStation.h"
#include "upload/ECMSub.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class ContentServerClientTest : public testing::Test {
 protected:
  ContentServerClientTest() { station.Configure({{"Url", "file:///C:/share"}}); }

  // Stages a file without submitting it; the name of the staging folder.
  std::string Stage(const std::string& name) {
    station.disk.Put("C:\\data\\" + name, "bytes");
    StageUploadFile(station.state, station.real, folder, "LOGBK", 1, "C:\\data\\" + name, "why");
    return folder;
  }
  void ExpectRefusal(const std::string& name, const std::string& reason) {
    message.clear();
    EXPECT_FALSE(station.client.EcmSubmit(name, message));
    EXPECT_THAT(message, HasSubstr(reason));
    EXPECT_TRUE(station.TheOutbox().IsEmpty());
  }

  UploadStation station{UploadStation::Agent::kStartedByTest};
  std::string folder;
  std::string message;
};

TEST_F(ContentServerClientTest, AnAddressInTheConfigurationEnablesIt) {
  EXPECT_TRUE(station.client.EcmEnabled(message));
  station.Configure({{"User", "me"}});
  EXPECT_FALSE(station.client.EcmEnabled(message));
  EXPECT_EQ(message, "This workstation is not connected to a content server.");
  ExpectRefusal("x", "not connected");
}

TEST_F(ContentServerClientTest, AStagedFolderIsTakenOverIntoTheOutbox) {
  Stage("a.txt");
  EXPECT_TRUE(station.client.EcmSubmit(folder, message)) << message;
  EXPECT_THAT(station.TheOutbox().Waiting(), SizeIs(1));
  EXPECT_FALSE(fs::exists(station.Area() + "/" + folder));
  EXPECT_FALSE(fs::exists(station.Area() + "/" + folder + ".xml"));
}

TEST_F(ContentServerClientTest, AFolderThatDoesNotExistIsRefused) {
  ExpectRefusal("2611_LOGBK", "no staging folder 2611_LOGBK");
  ExpectRefusal("", "no staging folder");
  ExpectRefusal("..\\outbox", "no staging folder");
}

TEST_F(ContentServerClientTest, AFolderWithoutADescriptorIsRefusedAndStays) {
  Stage("a.txt");
  fs::remove(station.Area() + "/" + folder + ".xml");
  ExpectRefusal(folder, "cannot be taken over");
  EXPECT_TRUE(fs::exists(station.Area() + "/" + folder + "/a.txt"));
}

TEST_F(ContentServerClientTest, AFileThatTheDescriptorNamesAndTheFolderLacksIsAReasonToRefuse) {
  Stage("a.txt");
  Stage("b.txt");
  fs::remove(station.Area() + "/" + folder + "/b.txt");
  ExpectRefusal(folder, "b.txt is missing");
}

TEST_F(ContentServerClientTest, AFileThatTheDescriptorDoesNotNameIsAReasonToRefuse) {
  Stage("a.txt");
  fs::copy_file(station.Area() + "/" + folder + "/a.txt", station.Area() + "/" + folder + "/b.txt");
  ExpectRefusal(folder, "does not name the file b.txt");
}

TEST_F(ContentServerClientTest, AFolderInTheStagingFolderIsAReasonToRefuse) {
  Stage("a.txt");
  fs::create_directory(station.Area() + "/" + folder + "/sub");
  ExpectRefusal(folder, "sub, which is no file");
}

TEST_F(ContentServerClientTest, ARepeatedNameInTheDescriptorIsOneFile) {
  for (const char* name : {"a.txt", "b.txt", "a.txt"}) Stage(name);
  EXPECT_TRUE(station.client.EcmSubmit(folder, message)) << message;
}

TEST_F(ContentServerClientTest, AMissingAgentLosesNothingAndIsToldOnceARun) {
  ContentServerClient client(station.state, "/nowhere/ecm-agent");
  for (const bool accepted : {false, true, true}) {
    folder.clear();
    Stage("a.txt");
    std::string words;
    EXPECT_EQ(client.EcmSubmit(folder, words), accepted);
    message += words;
  }
  EXPECT_EQ(message,
            "The files wait in the outbox, but the program that sends them cannot be started: "
            "/nowhere/ecm-agent.");
  EXPECT_THAT(station.TheOutbox().Waiting(), SizeIs(3));
}

TEST_F(ContentServerClientTest, AnAgentThatIsMissingAtTheStartIsToldAtTheFirstEvent) {
  ContentServerClient client(station.state, "/nowhere/ecm-agent");
  Stage("a.txt");
  ASSERT_TRUE(station.client.EcmSubmit(folder, message));
  client.Resume();
  folder.clear();
  Stage("b.txt");
  EXPECT_FALSE(client.EcmSubmit(folder, message));
}

TEST(ContentServerClientStart, AnEventStartsTheAgentWhichBringsTheFilesAndEnds) {
  UploadStation station(UploadStation::Agent::kStartedByClient);
  station.disk.MakeFolders("C:\\share");
  station.Configure({{"Url", "file:///C:/share"}});
  station.Record();
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_TRUE(station.WaitUntilEmpty()) << station.Status();
  EXPECT_THAT(
      RunProgram("find " + Quoted(station.disk.Native("C:\\share")) + " -name '*.qkvzip'").output,
      HasSubstr("26111500.qkvzip"));
}

TEST(ContentServerClientStart, AStartOfTheLogbookResumesWhatWasLeft) {
  UploadStation station(UploadStation::Agent::kStartedByClient);
  station.Configure({{"Url", "file:///C:/share"}});
  {
    ContentServerClient without_agent(station.state, "/bin/true");
    station.disk.Put("C:\\data\\a.txt", "a");
    std::string folder, message;
    StageUploadFile(station.state, station.real, folder, "LOGBK", 1, "C:\\data\\a.txt", "why");
    ASSERT_TRUE(without_agent.EcmSubmit(folder, message)) << message;
  }
  EXPECT_FALSE(station.TheOutbox().IsEmpty());
  station.disk.MakeFolders("C:\\share");
  station.client.Resume();
  EXPECT_TRUE(station.WaitUntilEmpty()) << station.Status();
}

}  // namespace
}  // namespace logbook::test
