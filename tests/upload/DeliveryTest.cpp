// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Delivery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "FailingDisk.h"
#include "UploadStation.h"
#include "base/RunTimeError.h"
#include "upload/ECMSub.h"
#include "upload/FolderStore.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A server in memory that records its calls and fails on demand.
class TestStore : public ContentStore {
 public:
  void MakeRoot() override {}
  void MakeFolder(const std::string& path) override { calls.push_back("MakeFolder " + path); }
  std::optional<Digest> DigestOf(const std::string& path, std::uint64_t) override {
    const auto file = files.find(path);
    return file == files.end() ? std::nullopt : std::optional(file->second);
  }
  void Put(const std::string& path, native::Reader& file) override {
    calls.push_back("Put " + path);
    if (path.find(fails_at) != std::string::npos && !fails_at.empty())
      throw DeliveryError(DeliveryError::Reach::kThisSubmission, "no");
    files[path] = DigestOfFile(file, path);
    if (spoils) files[path].sha256[0] ^= 1;
  }
  void Move(const std::string& from, const std::string& to) override {
    calls.push_back("Move " + to);
    files[to] = files.at(from);
    files.erase(from);
  }

  std::map<std::string, Digest> files;
  std::vector<std::string> calls;
  std::string fails_at;
  bool spoils = false;
};

class DeliveryTest : public testing::Test {
 protected:
  DeliveryTest() : outbox(disk.Native("C:\\area")) {
    disk.Put("C:\\area\\outbox\\one\\files\\a.txt", "a");
    disk.Put("C:\\area\\outbox\\one\\files\\b.txt", "b");
    disk.Put("C:\\area\\outbox\\one\\upload.xml", "<Upload/>");
  }

  TestMachine disk;
  Outbox outbox;
  TestStore store;
};

TEST_F(DeliveryTest, FilesGoUnderATemporaryNameAndTheDescriptorLast) {
  Deliver(outbox, store, "one");
  EXPECT_THAT(store.calls, ElementsAre("MakeFolder one", "Put one/a.txt.part", "Move one/a.txt",
                                       "Put one/b.txt.part", "Move one/b.txt", "Put one.xml.part",
                                       "Move one.xml"));
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
}

TEST_F(DeliveryTest, WhatHasArrivedIsNotSentAgain) {
  store.files["one/a.txt"] = DigestOfFile(outbox.FileOf("one", "a.txt"));
  store.files["one.xml"] = DigestOfFile(outbox.DescriptorOf("one"));
  Deliver(outbox, store, "one");
  EXPECT_THAT(store.calls, ElementsAre("MakeFolder one", "Put one/b.txt.part", "Move one/b.txt"));
}

TEST_F(DeliveryTest, AFileThatTheServerSpoilsIsNotMovedIntoPlace) {
  store.spoils = true;
  EXPECT_THROW(Deliver(outbox, store, "one"), DeliveryError);
  EXPECT_THAT(store.calls, ElementsAre("MakeFolder one", "Put one/a.txt.part"));
  EXPECT_FALSE(outbox.IsEmpty());
}

TEST_F(DeliveryTest, AnotherFileOfTheSameNameIsNotOverwritten) {
  store.files["one/a.txt"] = Digest{.size = 1, .sha256 = "other"};
  EXPECT_THROW(Deliver(outbox, store, "one"), DeliveryError);
  EXPECT_EQ(store.files["one/a.txt"].sha256, "other");
  EXPECT_FALSE(outbox.IsEmpty());
}

TEST_F(DeliveryTest, AFailureKeepsTheDescriptorBackAndTheOutboxFull) {
  store.fails_at = "b.txt";
  EXPECT_THROW(Deliver(outbox, store, "one"), DeliveryError);
  EXPECT_THAT(outbox.FilesOf("one"), ElementsAre("a.txt", "b.txt"));
  EXPECT_EQ(store.files.count("one.xml"), 0u);
  store.fails_at.clear();
  Deliver(outbox, store, "one");
  EXPECT_EQ(std::count(store.calls.begin(), store.calls.end(), "Put one/a.txt.part"), 1);
  EXPECT_THAT(outbox.Waiting(), IsEmpty());
}

TEST_F(DeliveryTest, ATemporaryNameNeverIsTheNameOfAFile) {
  disk.Put("C:\\area\\outbox\\one\\files\\a.txt.part", "part");
  Deliver(outbox, store, "one");
  EXPECT_EQ(store.files.size(), 4u);
  EXPECT_EQ(store.files.at("one/a.txt.part").size, 4u);
}

TEST_F(DeliveryTest, FilesThatCannotBeListedAreNotTakenForDeliveredOnes) {
  fs::remove_all(disk.Native("C:\\area\\outbox\\one\\files"));
  disk.Put("C:\\area\\outbox\\one\\files", "a file where the folder should be");
  EXPECT_THROW(Deliver(outbox, store, "one"), RunTimeError);
  EXPECT_THAT(store.calls, IsEmpty());
  EXPECT_THAT(outbox.Waiting(), ElementsAre("one"));
}

TEST_F(DeliveryTest, ADescriptorThatIsALinkIsNotSent) {
  disk.Put("C:\\secret.txt", "secret");
  fs::remove(outbox.DescriptorOf("one"));
  fs::create_symlink(disk.Native("C:\\secret.txt"), outbox.DescriptorOf("one"));
  EXPECT_THROW(Deliver(outbox, store, "one"), DeliveryError);
  EXPECT_FALSE(store.files.contains("one.xml.part"));
  EXPECT_THAT(outbox.Waiting(), ElementsAre("one"));
}

TEST_F(DeliveryTest, ASubmissionWithoutFilesIsNotSentAndNotDeleted) {
  fs::remove_all(disk.Native("C:\\area\\outbox\\one\\files"));
  disk.MakeFolders("C:\\area\\outbox\\one\\files");
  EXPECT_THROW(Deliver(outbox, store, "one"), DeliveryError);
  EXPECT_THAT(store.calls, IsEmpty());
  EXPECT_THAT(outbox.Waiting(), ElementsAre("one"));
}

// Brings "one" to a shared folder, in as many tries as it takes.
void DeliverToFolder(Outbox& outbox, const std::string& share) {
  outbox.Recover();
  FolderStore store(share, "a/b");
  store.MakeRoot();
  for (const std::string& submission : outbox.Waiting()) Deliver(outbox, store, submission);
  outbox.ClearDelivered();
}

TEST_F(DeliveryTest, AnAgentThatDiesAtAnyMomentLosesNothingAndLeavesEachFileOnceAndWhole) {
  int call = 0;
  for (bool died = true; died;) {
    const std::string home = "C:\\" + std::to_string(++call);
    const std::string submission = home + "\\area\\outbox\\one\\";
    disk.Put(submission + "files\\a.txt", "a");
    disk.Put(submission + "files\\b.txt", "b");
    disk.Put(submission + "upload.xml", "<Upload/>");
    const std::string share = disk.Native(home + "\\share");
    fs::create_directory(share);
    Outbox box(disk.Native(home + "\\area"));
    died = DiesAtCall(call, [&] { DeliverToFolder(box, share); });
    DeliverToFolder(box, share);
    SCOPED_TRACE("call " + std::to_string(call));
    EXPECT_TRUE(box.IsEmpty());
    EXPECT_EQ(
        RunProgram("cd " + Quoted(share) + " && find . -type f | sort | xargs tail -n 1").output,
        "==> ./a/b/one.xml <==\n<Upload/>\n==> ./a/b/one/a.txt <==\na\n"
        "==> ./a/b/one/b.txt <==\nb");
  }
  EXPECT_GT(call, 15);
}

TEST_F(DeliveryTest, AShareHasEverythingOnItsDiskBeforeTheLocalCopyGoes) {
  fs::remove(outbox.FileOf("one", "b.txt"));
  const std::string share = disk.Native("C:\\share");
  fs::create_directory(share);
  std::vector<std::string> calls;
  {
    const FailingDisk disk_calls(FailingDisk::Manner::kFail, 0);
    DeliverToFolder(outbox, share);
    calls = FailingDisk::Calls();
  }
  const std::string root = share + "/a/b";
  const std::string one = disk.Native("C:\\area\\outbox\\one");
  calls.resize(14);  // the deletion follows
  EXPECT_THAT(calls,
              ElementsAre("mkdir " + share + "/a", "fsync " + share, "mkdir " + root,
                          "fsync " + share + "/a", "mkdir " + root + "/one", "fsync " + root,  //
                          "fsync " + root + "/one/a.txt.part",
                          "rename " + root + "/one/a.txt.part " + root + "/one/a.txt",
                          "fsync " + root + "/one",  //
                          "fsync " + root + "/one.xml.part",
                          "rename " + root + "/one.xml.part " + root + "/one.xml", "fsync " + root,
                          "rename " + one + " " + one + ".done",
                          "fsync " + disk.Native("C:\\area\\outbox")));
}

TEST_F(DeliveryTest, AShareThatFailsAtAnyMomentLosesNothingAndLeavesEachFileOnceAndWhole) {
  int call = 0;
  for (bool failed = true; failed;) {
    const std::string home = "C:\\" + std::to_string(++call);
    disk.Put(home + "\\area\\outbox\\one\\files\\a.txt", "a");
    disk.Put(home + "\\area\\outbox\\one\\upload.xml", "<Upload/>");
    const std::string share = disk.Native(home + "\\share");
    fs::create_directory(share);
    Outbox box(disk.Native(home + "\\area"));
    SCOPED_TRACE("call " + std::to_string(call));
    {
      const FailingDisk failing(FailingDisk::Manner::kFail, call);
      try {
        DeliverToFolder(box, share);
      } catch (const std::runtime_error&) {
        EXPECT_FALSE(box.IsEmpty());
      }
      failed = FailingDisk::HasFailed();
    }
    DeliverToFolder(box, share);
    EXPECT_TRUE(box.IsEmpty());
    EXPECT_EQ(RunProgram("cd " + Quoted(share) + " && find . -type f | sort").output,
              "./a/b/one.xml\n./a/b/one/a.txt\n");
  }
}

TEST(NextPause, PausesDoubleUpToTheLongest) {
  using std::chrono::milliseconds;
  const ServerSettings settings{.retry_pause = milliseconds(5000),
                                .longest_pause = milliseconds(18000)};
  std::vector<milliseconds::rep> pauses;
  milliseconds pause{0};
  for (int failure = 0; failure < 4; ++failure) {
    pause = NextPause(pause, settings);
    pauses.push_back(pause.count());
  }
  EXPECT_THAT(pauses, ElementsAre(5000, 10000, 18000, 18000));
}

TEST(NextPause, TheLongestPauseIsTheLimitOfTheDoubledOne) {
  using std::chrono::milliseconds;
  const ServerSettings settings{.longest_pause = milliseconds(18000)};
  EXPECT_EQ(NextPause(milliseconds(8999), settings), milliseconds(17998));
  EXPECT_EQ(NextPause(milliseconds(9000), settings), milliseconds(18000));
  EXPECT_EQ(NextPause(milliseconds(9001), settings), milliseconds(18000));
}

// A shared folder as the server.
class SharedFolderTest : public testing::Test {
 protected:
  SharedFolderTest() { station.Configure({{"Url", "file:///C:/share"}, {"Folder", "a/b"}}); }

  UploadStation station{UploadStation::Agent::kStartedByTest};
};

TEST_F(SharedFolderTest, FilesAndDescriptorArriveBelowTheConfiguredFolder) {
  station.disk.MakeFolders("C:\\share");
  station.Submit("é.pdf", "bytes");
  const std::string submission = station.TheOutbox().Waiting().at(0);
  EXPECT_EQ(station.RunAgent().status, 0);
  EXPECT_EQ(station.disk.Get("C:\\share\\a\\b\\" + submission + "\\é.pdf"), "bytes");
  EXPECT_THAT(station.disk.Get("C:\\share\\a\\b\\" + submission + ".xml"), HasSubstr("é.pdf"));
  EXPECT_TRUE(station.TheOutbox().IsEmpty());
}

TEST_F(SharedFolderTest, AShareThatIsNotMountedIsNotMadeAndTheStatusSaysSo) {
  station.Submit("a.pdf", "bytes");
  EXPECT_EQ(station.RunAgent("--once").status, 1);
  EXPECT_FALSE(station.disk.Has("C:\\share"));
  const ProgramResult status = station.RunAgent("--status");
  EXPECT_EQ(status.status, 1);
  EXPECT_THAT(status.output, HasSubstr("Waiting: 1\n"));
  EXPECT_THAT(status.output, HasSubstr("a.pdf"));
  EXPECT_THAT(status.output, HasSubstr("Tries: 1, the last on "));
  EXPECT_THAT(status.output, HasSubstr("share is not there."));
}

TEST_F(SharedFolderTest, AnEmptyOutboxIsAnEmptyStatus) {
  const ProgramResult status = station.RunAgent("--status");
  EXPECT_EQ(status.status, 0);
  EXPECT_EQ(status.output, "Content server: file:///C:/share\nOutbox: " + station.Area() +
                               "/outbox\nAgent: not running\nWaiting: 0\n");
}

TEST_F(SharedFolderTest, TheStatusListsWhatStaysInTheStagingArea) {
  station.disk.Put("C:\\data\\a.pdf", "bytes");
  std::string folder;
  ASSERT_EQ(
      StageUploadFile(station.state, station.real, folder, "LOGBK", 4711, "C:\\data\\a.pdf", "why"),
      0);
  const ProgramResult status = station.RunAgent("--status");
  EXPECT_EQ(status.status, 0) << "nothing waits";
  EXPECT_THAT(status.output, HasSubstr("\nIn the staging area: 1\n\n" + folder +
                                       "\n  Files: a.pdf\n  Was not handed over"));
}

TEST_F(SharedFolderTest, AHomeThatDoesNotExistIsTold) {
  for (const char* options : {"--status", "--once", ""}) {
    const ProgramResult run = RunProgram(Quoted(ECM_AGENT) + " --home /no/such/home " + options);
    EXPECT_EQ(run.status, 1) << options;
    EXPECT_THAT(run.output, testing::ContainsRegex("/no/such/home,? (which )?does not exist"))
        << options;
  }
  EXPECT_THAT(RunProgram(Quoted(ECM_AGENT) + " --home /no/such/home --status").output,
              HasSubstr("\nOutbox: /no/such/home/"));
}

TEST_F(SharedFolderTest, NothingThatMovesATerminalStandsInTheStatus) {
  station.Submit("a.pdf", "bytes");
  const std::string submission = station.TheOutbox().Waiting().at(0);
  station.TheOutbox().SetNote(submission, {.tries = 1, .last_try = 1, .reason = "no\x1B]0;x\x07!"});
  EXPECT_THAT(station.Status(), testing::Not(HasSubstr("\x1B")));
  EXPECT_THAT(station.Status(), HasSubstr("no ]0;x !"));
}

TEST_F(SharedFolderTest, LinksInTheOutboxDoNotLeadOutOfIt) {
  station.disk.MakeFolders("C:\\share");
  station.disk.Put("C:\\tree\\secret.txt", "secret");
  station.Submit("a.pdf", "bytes");
  const std::string submission = station.TheOutbox().Waiting().at(0);
  const std::string files = station.Area() + "/outbox/" + submission + "/files/";
  fs::create_symlink(station.disk.Native("C:\\tree\\secret.txt"), files + "secret.txt");
  fs::create_symlink(station.disk.Native("C:\\tree"), files + "tree");
  fs::create_symlink("a.pdf", files + "same.pdf");
  EXPECT_EQ(station.RunAgent("--once").status, 0) << station.Status();
  EXPECT_EQ(RunProgram("cd " + Quoted(station.disk.Native("C:\\share\\a\\b\\" + submission)) +
                       " && ls -1 && cat same.pdf")
                .output,
            "a.pdf\nsame.pdf\nbytes");
  EXPECT_TRUE(station.disk.Has("C:\\tree\\secret.txt"));
}

TEST_F(SharedFolderTest, WrongUseOfTheAgentHasStatusTwo) {
  for (const char* options : {"--dance", "status", "--home"})
    EXPECT_EQ(station.RunAgent(options).status, 2) << options;
  EXPECT_EQ(station.RunAgent("--help").status, 0);
}

TEST_F(SharedFolderTest, ADamagedNoteDoesNotHideTheStatus) {
  station.Submit("a.pdf", "bytes");
  const std::string note =
      station.Area() + "/outbox/" + station.TheOutbox().Waiting().at(0) + "/note";
  for (const char* bytes : {"", "x", "7", "7 9223372036854775807\nreason\n", "7 1\n"}) {
    std::ofstream(note) << bytes;
    const ProgramResult status = station.RunAgent("--status");
    EXPECT_EQ(status.status, 1) << bytes;
    EXPECT_THAT(status.output, HasSubstr("a.pdf\n  Tries: ")) << bytes;
  }
}

TEST_F(SharedFolderTest, OneAgentAtATime) {
  station.Submit("a.pdf", "bytes");  // the share is missing, so the first agent goes on trying
  const pid_t first = station.StartAgent();
  ASSERT_TRUE(station.WaitForATry());
  EXPECT_THAT(station.Status(), HasSubstr("Agent: at work"));
  EXPECT_EQ(station.RunAgent().status, 0) << "the second one leaves the work to the first";
  station.disk.MakeFolders("C:\\share");
  EXPECT_TRUE(station.WaitUntilEmpty());
  int status = 0;
  EXPECT_EQ(waitpid(first, &status, 0), first);
  EXPECT_EQ(status, 0);
}

TEST_F(SharedFolderTest, WhatComesDuringAPauseIsTriedAtOnce) {
  station.disk.Put("C:\\QUOREX\\qrxexe\\arecm.cfg",
                   "[Content Server]\r\nUrl=file:///C:/share\r\nRetryPause=3600000\r\n"
                   "LongestPause=3600000\r\n");
  station.Submit("a.pdf", "bytes");
  const pid_t agent = station.StartAgent();
  ASSERT_TRUE(station.WaitForATry());
  station.disk.MakeFolders("C:\\share");
  ++station.clock.now.Second;
  station.Submit("b.pdf", "bytes");
  EXPECT_TRUE(station.WaitUntilEmpty());
  EXPECT_EQ(waitpid(agent, nullptr, 0), agent);
}

TEST_F(SharedFolderTest, ADamagedSubmissionDoesNotHoldUpTheOthers) {
  station.disk.MakeFolders("C:\\share");
  station.Submit("a.pdf", "bytes");
  const std::string damaged = station.TheOutbox().Waiting().at(0);
  fs::remove(station.TheOutbox().DescriptorOf(damaged));
  ++station.clock.now.Second;
  station.Submit("b.pdf", "bytes");
  EXPECT_EQ(station.RunAgent("--once").status, 1);
  EXPECT_THAT(station.TheOutbox().Waiting(), ElementsAre(damaged));
  EXPECT_THAT(station.Status(), HasSubstr("cannot be read"));
}

TEST_F(SharedFolderTest, AShareThatCannotBeLookedIntoIsToldAndTheAgentGoesOn) {
  fs::create_symlink("share", station.disk.Native("C:\\share"));  // leads to itself
  station.Submit("a.pdf", "bytes");
  EXPECT_EQ(station.RunAgent("--once").status, 1);
  EXPECT_THAT(station.Status(), HasSubstr("share is not there."));
}

TEST_F(SharedFolderTest, ANameThatTheShareRefusesDoesNotHoldUpTheOthers) {
  station.disk.MakeFolders("C:\\share");
  station.Submit(std::string(251, 'n') + ".pdf", "bytes");  // no room for the temporary ending
  const std::string refused = station.TheOutbox().Waiting().at(0);
  ++station.clock.now.Second;
  station.Submit("b.pdf", "bytes");
  EXPECT_EQ(station.RunAgent("--once").status, 1);
  EXPECT_THAT(station.TheOutbox().Waiting(), ElementsAre(refused));
  EXPECT_THAT(station.Status(), HasSubstr("The shared folder refuses "));
}

TEST_F(SharedFolderTest, WhatWasNotTakenOverToTheEndIsInTheStatusAndGoesWithTheNextAgent) {
  station.disk.MakeFolders("C:\\share");
  station.Submit("a.pdf", "bytes");
  const std::string path = station.Area() + "/outbox/" + station.TheOutbox().Waiting().at(0);
  fs::rename(path, path + ".new");
  const ProgramResult status = station.RunAgent("--status");
  EXPECT_EQ(status.status, 1);
  EXPECT_THAT(status.output, HasSubstr("Waiting: 1\n"));
  EXPECT_THAT(status.output, HasSubstr(".new\n  Was not taken over to the end"));
  EXPECT_EQ(station.RunAgent().status, 0);
  EXPECT_EQ(station.RunAgent("--status").status, 0);
}

TEST_F(SharedFolderTest, AnOutboxThatCannotBeReadIsNotAnEmptyOne) {
  station.disk.Put("C:\\Norvane.Quorex.ECM\\outbox", "a file where the folder should be");
  for (const char* options : {"--status", "--once"}) {
    const ProgramResult run = station.RunAgent(std::string(options) + " 2>&1");
    EXPECT_EQ(run.status, 1) << options;
    EXPECT_THAT(run.output, HasSubstr("ecm-agent: the outbox in ")) << options;
  }
}

TEST_F(SharedFolderTest, WithoutAnAddressTheAgentLeavesTheOutboxAlone) {
  station.Submit("a.pdf", "bytes");
  station.Configure({{"Folder", "a"}});
  EXPECT_EQ(station.RunAgent().status, 1);
  EXPECT_FALSE(station.TheOutbox().IsEmpty());
  EXPECT_THAT(station.Status(), HasSubstr("Content server: none"));
}

}  // namespace
}  // namespace logbook::test
