// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ECMSub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>

#include "VanishingFile.h"
#include "base/Files.h"
#include "base/Profile.h"
#include "loglist/LogList.h"
#include "records/LogCommands.h"
#include "records/Recording.h"
#include "support/RunProgram.h"
#include "support/TestServices.h"
#include "upload/ArCmmn.h"
#include "upload/UploadDescriptor.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kArea = "C:\\Norvane.Quorex.ECM\\";
constexpr const char* kName = "2611150509594711_LOGBK";  // clock and handle of the test workstation
constexpr const char* kKey = "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";

class ECMSubTest : public testing::Test {
 protected:
  ECMSubTest() {
    station.state.AppPath = "C:\\QUOREX\\qrxexe";
    station.ecm.enabled = true;
    station.cell.on_written = [this](const std::string& text) {
      if (text == "1") station.cell.text = "0";
    };
  }

  void Registry(const std::vector<std::pair<std::string, std::string>>& values) {
    std::string text = std::string("Windows Registry Editor Version 5.00\r\n\r\n") +
                       "[HKEY_LOCAL_MACHINE\\" + kKey + "]\r\n";
    for (const auto& [name, value] : values) {
      text += "\"" + name + "\"=\"";
      for (const char byte : value)
        text += byte == '\\' ? std::string("\\\\") : std::string(1, byte);
      text += "\"\r\n";
    }
    station.disk.Put("C:\\..\\..\\machine.reg", text);
  }
  int Stage(std::string& folder, const std::string& file, const std::string& reason = "why") {
    return StageUploadFile(station.state, station.services, folder, "LOGBK", 4711, file, reason);
  }
  std::string DescriptorPath(const std::string& name = kName) { return kArea + name + ".xml"; }
  std::vector<UploadFile> Descriptor() {
    return ReadUploadDescriptor(station.disk, DescriptorPath());
  }
  std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const FolderEntry& entry : ScanFolder(station.disk, folder)) names.push_back(entry.name);
    return names;
  }
  // Message number, icon and title of the only message.
  void ExpectMessage(const std::string& text, const std::string& title) {
    ASSERT_EQ(station.messages.shown.size(), 1u);
    EXPECT_EQ(station.messages.shown[0].Text, text);
    EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kCritical);
    EXPECT_EQ(station.messages.shown[0].Buttons, MessageButtons::kOk);
    EXPECT_EQ(station.messages.shown[0].Title, title);
  }
  void Record() { cmdRecord_Click(station.state, station.services); }
  static constexpr const char* kLog = "26111500";
  std::string Root(const std::string& name) { return TestWorkstation::kLogRoot + name; }

  TestWorkstation station;
};

// Recording.

TEST_F(ECMSubTest, RecordingGivesOneStagingFolderWithTwoFilesAndTheirDescriptor) {
  Record();
  EXPECT_THAT(NamesIn(std::string(kArea) + kName), ElementsAre("26111500.qkvzip", "listlog.csv"));
  const std::string reason = "Maintenance Log has been recorded.";
  const std::string source = "C:\\QUOREX\\inst1\\maintain";
  EXPECT_THAT(Descriptor(),
              ElementsAre(UploadFile{"26111500.qkvzip", source, "maintain", reason, ""},
                          UploadFile{"listlog.csv", source, "maintain", reason, ""}));
  EXPECT_EQ(station.ecm.calls.back(), std::string("EcmSubmit ") + kName);
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

TEST_F(ECMSubTest, ThePackageHoldsTheLogFolderAndLeavesLogRoot) {
  Record();
  EXPECT_FALSE(station.disk.Has(Root("26111500.qkvzip")));
  const std::string package = station.disk.Native(std::string(kArea) + kName + "\\26111500.qkvzip");
  EXPECT_EQ(RunProgram("unzip -Z1 " + Quoted(package)).output, "26111500/\n26111500/logfile.ini\n");
  EXPECT_EQ(station.disk.Get(std::string(kArea) + kName + "\\listlog.csv"),
            station.disk.Get(Root("listlog.csv")));
}

TEST_F(ECMSubTest, ACancelledEditorLeavesNoPackageAndNoStagingFolder) {
  station.forms.on_editor = [this](const std::optional<std::string>&) {
    fs::remove_all(station.disk.Native(Root(kLog)));
  };
  Record();
  EXPECT_THAT(station.RootEntries(), ElementsAre("listlog.csv"));
  EXPECT_FALSE(station.disk.Has(kArea));
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_TRUE(station.state.frmMain.cmdRecord.Enabled);
}

TEST_F(ECMSubTest, AFolderThatDiffersInCaseFromACancelledRecordIsNotUploaded) {
  for (int i = 0; i < 10; ++i) station.MakeLog("2611150" + std::to_string(i), "date");
  station.forms.on_editor = [this](const std::optional<std::string>&) {
    fs::rename(station.disk.Native(Root("2611150A")), station.disk.Native(Root("2611150a")));
  };
  Record();
  EXPECT_FALSE(station.disk.Has(kArea));
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

TEST_F(ECMSubTest, WithoutAContentServerARecordingStagesNothingSilently) {
  station.ecm.enabled = false;
  Record();
  EXPECT_FALSE(station.disk.Has(kArea));
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled"));
}

TEST_F(ECMSubTest, APackageThatCannotBeMadeIsMessage1401) {
  station.disk.MakeFolders(Root("26111500.qkvzip"));
  Record();
  ExpectMessage("Could not upload a maintenance log file to the storage server.", "Logbook Editor");
  EXPECT_FALSE(station.disk.Has(kArea));
}

TEST_F(ECMSubTest, APackageThatDisappearsIsMessage1403) {
  station.forms.on_editor = [](const std::optional<std::string>&) {
    LetTheNextRenamedFileVanish();
  };
  Record();
  EXPECT_FALSE(AFileIsToVanish());
  ExpectMessage("Could not fine archived file.", "Logbook Editor");
  EXPECT_FALSE(station.disk.Has(kArea));
  EXPECT_TRUE(station.state.frmMain.cmdRecord.Enabled);
}

TEST_F(ECMSubTest, AMissingListIsMessage1402AndThePackageStays) {
  // A folder of that name is no list, and keeps the rebuild from writing one.
  station.disk.MakeFolders(Root("listlog.csv"));
  Record();
  ExpectMessage("Could not find list file.", "Logbook Editor");
  EXPECT_TRUE(station.disk.Has(Root("26111500.qkvzip")));
}

TEST_F(ECMSubTest, AMissingPackageIsToldBeforeAMissingList) {
  station.disk.MakeFolders(Root("listlog.csv"));
  station.forms.on_editor = [](const std::optional<std::string>&) {
    LetTheNextRenamedFileVanish();
  };
  Record();
  ExpectMessage("Could not fine archived file.", "Logbook Editor");
}

TEST_F(ECMSubTest, AStagingFolderThatCannotBeMadeIsMessage1401AndThePackageStays) {
  station.disk.Put("C:\\Norvane.Quorex.ECM", "a file where the area should be");
  Record();
  ExpectMessage("Could not upload a maintenance log file to the storage server.", "Logbook Editor");
  EXPECT_TRUE(station.disk.Has(Root("26111500.qkvzip")));
  EXPECT_TRUE(station.state.frmMain.cmdRecord.Enabled);
}

TEST_F(ECMSubTest, ACopyThatFailsIsMessage1401AndTheLogbookGoesOn) {
  station.disk.MakeFolders(std::string(kArea) + kName + "\\listlog.csv");
  Record();
  ExpectMessage("Could not upload a maintenance log file to the storage server.", "Logbook Editor");
  EXPECT_TRUE(station.disk.Has(Root("26111500.qkvzip")));
  EXPECT_TRUE(station.state.frmMain.cmdRecord.Enabled);
}

TEST_F(ECMSubTest, ARefusalShowsTheClientsOwnText) {
  station.ecm.accepts = false;
  station.ecm.refusal = "The outbox is full.";
  Record();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "The outbox is full.");
  EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kExclamation);
  EXPECT_EQ(station.messages.shown[0].Title, "Logbook Editor");
}

// Deletion.

class ECMSubDeletionTest : public ECMSubTest {
 protected:
  ECMSubDeletionTest() {
    for (const char* name : {"26111500", "26111501", "26111502"}) station.MakeLog(name, "date");
    Init_FileList(station.state, station.services);
    station.messages.answers = {MessageAnswer::kYes};
  }
  void Delete(std::initializer_list<int> rows) {
    for (const int row : rows) station.state.ListView1.Row(row).Selected = true;
    cmdDelete_Click(station.state, station.services);
  }
  void KeepLog(const std::string& name) { station.disk.MakeFolders(Root(name) + "\\folder"); }
};

TEST_F(ECMSubDeletionTest, AfterADeletionTheListAloneIsUploaded) {
  Delete({1, 2});
  EXPECT_THAT(NamesIn(std::string(kArea) + kName), ElementsAre("listlog.csv"));
  EXPECT_THAT(Descriptor(),
              ElementsAre(UploadFile{"listlog.csv", "C:\\QUOREX\\inst1\\maintain", "maintain",
                                     "Maintenance Log has been deleted.", ""}));
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled", std::string("EcmSubmit ") + kName));
}

TEST_F(ECMSubDeletionTest, AFailureAtTheLastSelectedLogSkipsTheUpload) {
  KeepLog("26111501");
  Delete({1, 2});
  EXPECT_FALSE(station.disk.Has(kArea));
  EXPECT_THAT(station.ecm.calls, IsEmpty());
}

TEST_F(ECMSubDeletionTest, AFailureAtAnEarlierLogDoesNotStopTheUpload) {
  KeepLog("26111501");
  Delete({1, 2, 3});
  EXPECT_THAT(NamesIn(std::string(kArea) + kName), ElementsAre("listlog.csv"));
}

TEST_F(ECMSubDeletionTest, AMissingListAfterADeletionIsMessage1402) {
  fs::remove(station.disk.Native(Root("listlog.csv")));
  station.disk.MakeFolders(Root("listlog.csv\\x"));
  Delete({1});
  ASSERT_EQ(station.messages.shown.size(), 2u);  // the question stands before it
  EXPECT_EQ(station.messages.shown[1].Text, "Could not find list file.");
  EXPECT_EQ(station.messages.shown[1].Icon, MessageIcon::kCritical);
  EXPECT_EQ(station.messages.shown[1].Title, "Logbook Editor");
}

TEST_F(ECMSubDeletionTest, WithoutAContentServerADeletionStagesNothingSilently) {
  station.ecm.enabled = false;
  Delete({1});
  EXPECT_FALSE(station.disk.Has(kArea));
  EXPECT_EQ(station.messages.shown.size(), 1u);
}

TEST_F(ECMSubDeletionTest, ARefusalAfterADeletionShowsTheClientsOwnText) {
  station.ecm.accepts = false;
  station.ecm.refusal = "No.";
  Delete({1});
  ASSERT_EQ(station.messages.shown.size(), 2u);
  EXPECT_EQ(station.messages.shown[1].Text, "No.");
  EXPECT_EQ(station.messages.shown[1].Icon, MessageIcon::kExclamation);
  EXPECT_EQ(station.messages.shown[1].Title, "Logbook Editor");
}

// Printing.

TEST_F(ECMSubTest, APrintImageIsStagedAndSubmitted) {
  station.disk.Put("C:\\QUOREX\\PDF\\Logbook_List.pdf", "%PDF");
  UploadPrintImage(station.state, station.services, "C:\\QUOREX\\PDF\\Logbook_List.pdf");
  EXPECT_THAT(Descriptor(), ElementsAre(UploadFile{"Logbook_List.pdf", "C:\\QUOREX\\PDF", "PDF",
                                                   "Maintenance LogBook has been printed.", ""}));
  EXPECT_EQ(station.disk.Get(std::string(kArea) + kName + "\\Logbook_List.pdf"), "%PDF");
  EXPECT_EQ(station.ecm.calls.back(), std::string("EcmSubmit ") + kName);
}

TEST_F(ECMSubTest, AnEmptyPathMeansThatNoPrintImageComes) {
  UploadPrintImage(station.state, station.services, "");
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled"));
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_THAT(station.clock.sleeps, IsEmpty());
}

TEST_F(ECMSubTest, WithoutAContentServerNobodyWaitsForAPrintImage) {
  station.ecm.enabled = false;
  UploadPrintImage(station.state, station.services, "C:\\a.pdf");
  EXPECT_THAT(station.clock.sleeps, IsEmpty());
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

TEST_F(ECMSubTest, APrintImageThatDoesNotComeIsMessage1399) {
  UploadPrintImage(station.state, station.services, "C:\\a.pdf");
  ExpectMessage("Could not find a print image file.", "Maintenance LogBook");
}

TEST_F(ECMSubTest, APrintImageThatCannotBeStagedIsMessage1400) {
  station.disk.Put("C:\\a.pdf", "%PDF");
  station.disk.Put("C:\\Norvane.Quorex.ECM", "a file where the area should be");
  UploadPrintImage(station.state, station.services, "C:\\a.pdf");
  ExpectMessage("Could not upload a print image file to the storage server.",
                "Maintenance LogBook");
}

TEST_F(ECMSubTest, ARefusedPrintImageShowsTheClientsOwnText) {
  station.disk.Put("C:\\a.pdf", "%PDF");
  station.ecm.accepts = false;
  station.ecm.refusal = "No.";
  UploadPrintImage(station.state, station.services, "C:\\a.pdf");
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "No.");
  EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kExclamation);
  EXPECT_EQ(station.messages.shown[0].Title, "Maintenance LogBook");
}

// The wait for the print image. Sleeps lie between two looks: one fewer than looks.

TEST_F(ECMSubTest, TheDefaultTimeIsSixHundredLooks) {
  EXPECT_FALSE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
  EXPECT_THAT(station.clock.sleeps, testing::AllOf(testing::SizeIs(599), testing::Each(100)));
}

TEST_F(ECMSubTest, AFileThatComesBeforeTheLastLookIsSeenAndOneBehindItIsNot) {
  for (const std::size_t sleep : {598u, 599u, 600u}) {
    station.clock.sleeps.clear();
    std::filesystem::remove(station.disk.Native("C:\\a.pdf"));
    station.clock.on_sleep = [&] {
      if (station.clock.sleeps.size() == sleep) station.disk.Put("C:\\a.pdf", "");
    };
    EXPECT_EQ(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"), sleep < 600)
        << sleep;
  }
}

TEST_F(ECMSubTest, ATimeOfFiftyAllowsExactlyOneLook) {
  station.disk.Put("C:\\QUOREX\\qrxexe\\arecm.cfg", "[Upload PDF]\r\nGenerate Timeout=50\r\n");
  EXPECT_FALSE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
  EXPECT_THAT(station.clock.sleeps, IsEmpty());
  station.disk.Put("C:\\a.pdf", "");
  EXPECT_TRUE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
}

TEST_F(ECMSubTest, TheTimeIsReadAsAWholeNumberAndAnEmptyOneIsTheDefault) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"100", 0}, {"101", 1}, {"200", 1}, {"201", 2}, {"0", 0}, {"-5", 0}, {"", 599}, {"x", 0}};
  for (const auto& [value, sleeps] : cases) {
    station.clock.sleeps.clear();
    station.disk.Put("C:\\QUOREX\\qrxexe\\arecm.cfg",
                     std::string("[Upload PDF]\r\nGenerate Timeout=") + value + "\r\n");
    EXPECT_FALSE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
    EXPECT_EQ(station.clock.sleeps.size(), sleeps) << value;
  }
}

TEST_F(ECMSubTest, ATimeThatNoNumberCanHoldWaitsUntilTheFileComes) {
  station.disk.Put("C:\\QUOREX\\qrxexe\\arecm.cfg", "[Upload PDF]\r\nGenerate Timeout=1E999\r\n");
  station.clock.on_sleep = [this] {
    if (station.clock.sleeps.size() == 1000) station.disk.Put("C:\\a.pdf", "");
  };
  EXPECT_TRUE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
}

TEST_F(ECMSubTest, AFileThatComesDuringTheWaitEndsIt) {
  station.clock.on_sleep = [this] {
    if (station.clock.sleeps.size() == 3) station.disk.Put("C:\\a.pdf", "");
  };
  EXPECT_TRUE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
  EXPECT_EQ(station.clock.sleeps.size(), 3u);
}

TEST_F(ECMSubTest, TheWindowsArePaintedBetweenTwoLooks) {
  int paintings = 0;
  station.events.on_paint = [&] { ++paintings; };
  station.clock.on_sleep = [this] {
    if (station.clock.sleeps.size() == 3) station.disk.Put("C:\\a.pdf", "");
  };
  EXPECT_TRUE(WaitForPrintImage(station.state, station.services, "C:\\a.pdf"));
  EXPECT_EQ(paintings, 3);
}

// Staging.

TEST_F(ECMSubTest, AStagingFolderIsNamedByTimeWindowAndPrefix) {
  station.clock.now = {2026, 1, 2, 3, 4, 5};
  std::string folder = "old";
  EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 99, "LOGBK"), 0);
  EXPECT_EQ(folder, "26010203040599_LOGBK");
  EXPECT_TRUE(FolderExists(station.disk, kArea + folder));
}

TEST_F(ECMSubTest, TheHourInTheNameIsThatOfATwentyFourHourClock) {
  for (const auto& [hour, name] : {std::pair{0, "26111500095999_LOGBK"},
                                   {12, "26111512095999_LOGBK"},
                                   {13, "26111513095999_LOGBK"},
                                   {23, "26111523095999_LOGBK"}}) {
    station.clock.now.Hour = hour;
    std::string folder;
    EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 99, "LOGBK"), 0);
    EXPECT_EQ(folder, name);
  }
}

TEST_F(ECMSubTest, TheFilesOfOneEventLieTogetherThoughTheClockMovesOn) {
  station.clock.on_now = [this] { ++station.clock.now.Second; };
  station.clock.now.Second = 10;
  Record();
  std::vector<std::string> folders;
  for (const std::string& name : NamesIn(kArea)) {
    if (!name.ends_with(".xml")) folders.push_back(name);
  }
  ASSERT_THAT(folders, testing::SizeIs(1));
  EXPECT_THAT(NamesIn(kArea + folders[0]), ElementsAre("26111500.qkvzip", "listlog.csv"));
  EXPECT_EQ(ReadUploadDescriptor(station.disk, DescriptorPath(folders[0])).size(), 2u);
  EXPECT_EQ(station.ecm.calls.back(), "EcmSubmit " + folders[0]);
}

TEST_F(ECMSubTest, AFolderThatCannotBeMadeGivesTwoAndAnEmptyName) {
  station.disk.Put(std::string(kArea) + kName, "taken by a file");
  std::string folder = "old";
  EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 4711, "LOGBK"), 2);
  EXPECT_EQ(folder, "");
}

TEST_F(ECMSubTest, AnAreaOfAnotherUserIsNoTemporaryArea) {
  station.disk.MakeFolders(kArea);
  if (chown(station.disk.Native(kArea).c_str(), 65534, 65534) != 0)
    GTEST_SKIP() << "only the administrator can give a folder away";
  std::string folder;
  EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 4711, "LOGBK"), 1);
  EXPECT_EQ(folder, "");
}

TEST_F(ECMSubTest, AnAreaThatSomebodyElsesLinkStandsForIsNoTemporaryArea) {
  station.disk.MakeFolders("C:\\private");
  fs::create_symlink("private", station.disk.Native("C:\\Norvane.Quorex.ECM"));
  if (lchown(station.disk.Native("C:\\Norvane.Quorex.ECM").c_str(), 65534, 65534) != 0)
    GTEST_SKIP() << "only the administrator can give a link away";
  chmod(station.disk.Native("C:\\private").c_str(), 0755);
  std::string folder;
  EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 4711, "LOGBK"), 1);
  struct stat status {};
  ASSERT_EQ(stat(station.disk.Native("C:\\private").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0755u);
}

TEST_F(ECMSubTest, AnAreaBehindALinkOfOurOwnIsUsed) {
  station.disk.MakeFolders("C:\\other disk");
  fs::create_symlink("other disk", station.disk.Native("C:\\Norvane.Quorex.ECM"));
  std::string folder;
  EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 4711, "LOGBK"), 0);
  EXPECT_TRUE(station.disk.Has("C:\\other disk\\" + folder));
}

TEST_F(ECMSubTest, OtherUsersCannotLookIntoTheAreaNorTheFolderNorTheDescriptor) {
  station.disk.MakeFolders(kArea);
  chmod(station.disk.Native(kArea).c_str(), 0777);
  station.disk.Put("C:\\data\\a.txt", "a");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\data\\a.txt"), 0);
  const auto mode = [&](const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(station.disk.Native(path).c_str(), &status), 0) << path;
    return status.st_mode & 0777;
  };
  EXPECT_EQ(mode(kArea), 0700u);
  EXPECT_EQ(mode(kArea + folder), 0700u);
  EXPECT_EQ(mode(DescriptorPath()), 0600u);
}

TEST_F(ECMSubTest, TheAreaIsHiddenFromFileManagersOnce) {
  std::string folder;
  MakeStagingFolder(station.state, station.services, folder, 1, "LOGBK");
  MakeStagingFolder(station.state, station.services, folder, 2, "LOGBK");
  EXPECT_EQ(station.disk.Get("C:\\.hidden"), "Norvane.Quorex.ECM\n");
}

TEST_F(ECMSubTest, AFileInADrivesRootComesFromTheDriveAndGoesToRoot) {
  station.disk.Put("C:\\x.pdf", "x");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\x.pdf"), 0);
  EXPECT_THAT(Descriptor(), ElementsAre(UploadFile{"x.pdf", "C:\\", "ROOT", "why", ""}));
}

TEST_F(ECMSubTest, SourceAndDestinationFollowTheFilesFolder) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"C:\\a\\x.pdf", "C:\\a", "a"},
      {"C:\\a\\b c\\x.pdf", "C:\\a\\b c", "b c"},
      {"C:x.pdf", "C:\\", "ROOT"},
      {"C:\\\\x.pdf", "C::", "ROOT"},  // the one way to the colon that is doubled
  };
  int second = 0;
  for (const auto& [file, source, destination] : cases) {
    station.clock.now.Second = second++;
    station.disk.Put(file[2] == '\\' ? file : "C:\\x.pdf", "x");
    std::string folder;
    ASSERT_EQ(Stage(folder, file), 0) << file;
    const auto entries = ReadUploadDescriptor(station.disk, DescriptorPath(folder));
    EXPECT_EQ(entries.at(0).Source, source) << file;
    EXPECT_EQ(entries.at(0).Destination, destination) << file;
  }
}

TEST_F(ECMSubTest, StagingTheOnlyFileAgainCopiesItAndLeavesTheDescriptorUnchanged) {
  station.disk.Put("C:\\data\\a.txt", "first");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\data\\a.txt"), 0);
  const std::string before = station.disk.Get(DescriptorPath());
  station.disk.Put("C:\\data\\A.TXT", "other spelling");
  fs::remove(station.disk.Native("C:\\data\\a.txt"));
  ASSERT_EQ(Stage(folder, "C:\\data\\A.TXT", "another reason"), 0);
  EXPECT_EQ(station.disk.Get(DescriptorPath()), before);
  EXPECT_EQ(station.disk.Get(kArea + folder + "\\a.txt"), "other spelling");
}

TEST_F(ECMSubTest, WithTwoEntriesARepeatedNameIsAddedAgain) {
  station.disk.Put("C:\\data\\a.txt", "a");
  station.disk.Put("C:\\data\\b.txt", "b");
  std::string folder;
  for (const char* file : {"C:\\data\\a.txt", "C:\\data\\b.txt", "C:\\data\\a.txt"})
    ASSERT_EQ(Stage(folder, file), 0);
  std::vector<std::string> names;
  for (const UploadFile& file : Descriptor()) names.push_back(file.Name);
  EXPECT_THAT(names, ElementsAre("a.txt", "b.txt", "a.txt"));
}

TEST_F(ECMSubTest, AMissingFileRaisesToTheCaller) {
  std::string folder;
  EXPECT_THROW(Stage(folder, "C:\\data\\missing.txt"), RunTimeError);
}

TEST_F(ECMSubTest, ADescriptorIsNotWrittenWithoutItsFiveTexts) {
  station.disk.MakeFolders(kArea);
  const std::array<std::string, 5> full = {kArea, kName, "C:\\a", "a", "a.txt"};
  for (std::size_t empty = 0; empty < full.size(); ++empty) {
    std::array<std::string, 5> texts = full;
    texts[empty].clear();
    WriteUploadDescriptor(station.state, texts[0], texts[1], texts[2], texts[3], texts[4], "why");
    EXPECT_THAT(NamesIn(kArea), IsEmpty());
  }
  WriteUploadDescriptor(station.state, full[0], full[1], full[2], full[3], full[4], "");
  EXPECT_THAT(Descriptor(), ElementsAre(UploadFile{"a.txt", "C:\\a", "a", "", ""}));
}

TEST_F(ECMSubTest, TheOwnerIsTheWorkstationsUserName) {
  station.disk.Put("C:\\data\\a.txt", "a");
  WritePrivateProfileString(station.disk, "PCS,1", "UserName", "Müller & Söhne",
                            "C:\\QUOREX\\qrxexe\\qrxgen.ist");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\data\\a.txt"), 0);
  EXPECT_EQ(Descriptor().at(0).Owner, "Müller & Söhne");
}

TEST_F(ECMSubTest, AnOwnerIsCutTo259Bytes) {
  station.disk.Put("C:\\data\\a.txt", "a");
  WritePrivateProfileString(station.disk, "pcs,1", "username", std::string(300, 'o'),
                            "C:\\QUOREX\\qrxexe\\qrxgen.ist");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\data\\a.txt"), 0);
  EXPECT_EQ(Descriptor().at(0).Owner, std::string(259, 'o'));
}

TEST_F(ECMSubTest, AnUnsetOwnerIsAnEmptyElement) {
  station.disk.Put("C:\\data\\a.txt", "a");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\data\\a.txt"), 0);
  EXPECT_THAT(station.disk.Get(DescriptorPath()), testing::HasSubstr("<Owner/>"));
  EXPECT_EQ(Descriptor().at(0).Owner, "");
}

TEST_F(ECMSubTest, AUserNameThatBeginsWithTheDefaultIsNoOwner) {
  station.disk.Put("C:\\data\\a.txt", "a");
  WritePrivateProfileString(station.disk, "pcs,1", "username", "NO_PARAMETER",
                            "C:\\QUOREX\\qrxexe\\qrxgen.ist");
  std::string folder;
  ASSERT_EQ(Stage(folder, "C:\\data\\a.txt"), 0);
  EXPECT_EQ(Descriptor().at(0).Owner, "");
}

// Where things are.

TEST_F(ECMSubTest, TheTemporaryAreaLiesOnTheApplicationsDrive) {
  station.state.AppPath = "D:\\QUOREX\\bin";
  EXPECT_EQ(GetEcmTempArea(station.state), "D:\\Norvane.Quorex.ECM\\");
}

TEST_F(ECMSubTest, AnApplicationWithoutADriveHasItsTemporaryAreaOnDriveC) {
  station.state.AppPath = "\\usr\\bin";
  EXPECT_EQ(GetEcmTempArea(station.state), "C:\\Norvane.Quorex.ECM\\");
}

TEST_F(ECMSubTest, AnApplicationBesideTheDrivesOfTheHomeHasItsTemporaryAreaOnDriveC) {
  station.state.AppPath = "\\\\?\\Z:\\programs";
  EXPECT_EQ(GetEcmTempArea(station.state), "C:\\Norvane.Quorex.ECM\\");
}

TEST_F(ECMSubTest, TheRegistrysAreaReplacesItWithAndWithoutTrailingBackslash) {
  for (const char* value : {"C:\\temp\\ecm", "C:\\temp\\ecm\\"}) {
    Registry({{"ECM_TEMP", value}});
    EXPECT_EQ(GetEcmTempArea(station.state), "C:\\temp\\ecm\\");
    station.disk.MakeFolders("C:\\temp");
    std::string folder;
    EXPECT_EQ(MakeStagingFolder(station.state, station.services, folder, 4711, "LOGBK"), 0);
    EXPECT_TRUE(FolderExists(station.disk, "C:\\temp\\ecm\\" + folder));
  }
}

TEST_F(ECMSubTest, ARegistryValueThatIsTooLongDoesNotCount) {
  const std::string area = "C:\\" + std::string(256, 'x') + "\\";  // 260 bytes
  Registry({{"ECM_TEMP", area}});
  EXPECT_EQ(GetEcmTempArea(station.state), area);
  Registry({{"ECM_TEMP", area + "y"}});
  EXPECT_EQ(GetEcmTempArea(station.state), kArea);
  const std::string path = "C:\\" + std::string(251, 'x') + "\\";  // 255 bytes
  Registry({{"Path", path}});
  EXPECT_EQ(GetInstallRoot(station.state), path);
  Registry({{"Path", path + "y"}});
  EXPECT_EQ(GetInstallRoot(station.state), "C:\\QUOREX\\");
}

TEST_F(ECMSubTest, AnEmptyRegistryValueLeavesTheTemporaryAreaWhereItIs) {
  Registry({{"ECM_TEMP", ""}});
  EXPECT_EQ(GetEcmTempArea(station.state), kArea);
}

TEST_F(ECMSubTest, TheInstallRootIsTheRegistrysPathElseTheFolderAboveTheApplications) {
  EXPECT_EQ(GetInstallRoot(station.state), "C:\\QUOREX\\");
  for (const auto& [path, root] : {std::pair{"C:\\a\\b\\", "C:\\a\\"},
                                   {"C:\\a", "C:\\"},
                                   {"\\usr\\bin", "\\usr\\"},
                                   {"C:\\a.b\\c.d", "C:\\a.b\\"}}) {
    station.state.AppPath = path;
    EXPECT_EQ(GetInstallRoot(station.state), root);
  }
  Registry({{"Path", "C:\\Quorex"}});
  EXPECT_EQ(GetInstallRoot(station.state), "C:\\Quorex\\");
}

TEST_F(ECMSubTest, APackageLiesBesideTheLogWithOrWithoutTrailingBackslash) {
  station.MakeLog("26111507", "date");
  for (const char* ending : {"", "\\"}) {
    std::string package;
    EXPECT_EQ(ZipLogFolder(station.state, Root("26111507") + ending, package), 0);
    EXPECT_EQ(package, Root("26111507.qkvzip"));
    EXPECT_TRUE(station.disk.Has(package));
  }
}

TEST_F(ECMSubTest, AnOldPackageIsReplacedAndNotAddedTo) {
  station.MakeLog("26111507", "date");
  station.disk.Put(Root("26111507\\old.txt"), "gone before the second package");
  std::string package;
  EXPECT_EQ(ZipLogFolder(station.state, Root("26111507"), package), 0);
  fs::remove(station.disk.Native(Root("26111507\\old.txt")));
  EXPECT_EQ(ZipLogFolder(station.state, Root("26111507"), package), 0);
  EXPECT_EQ(RunProgram("unzip -Z1 " + Quoted(station.disk.Native(package))).output,
            "26111507/\n26111507/logfile.ini\n");
}

TEST_F(ECMSubTest, TextHelpers) {
  EXPECT_TRUE(EndsWithBackslash("\\"));
  EXPECT_TRUE(EndsWithBackslash("a\\"));
  EXPECT_FALSE(EndsWithBackslash(""));
  EXPECT_FALSE(EndsWithBackslash("\\a"));
  EXPECT_EQ(TrimAtNul(std::string("ab\0cd\0", 6)), "ab");
  EXPECT_EQ(TrimAtNul("ab"), "");
  EXPECT_EQ(TrimAtNul(""), "");
  EXPECT_EQ(TrimAtNul(std::string("\0ab", 3)), "");
}

}  // namespace
}  // namespace logbook::test
