// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Uploads to a real WebDAV server.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <thread>

#include "UploadStation.h"
#include "support/DavServer.h"
#include "upload/WebDavStore.h"

namespace logbook::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class WebDavTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasDavServer()) GTEST_SKIP() << "apache2 with mod_dav_fs is not installed";
    for (const char* proxy : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
      unsetenv(proxy);
  }

  void Connect(const DavServer& server, const std::string& password = DavServer::kPassword,
               const std::string& ca_file = {}) {
    station.Configure(server.Url(), DavServer::kUser, password, ca_file);
  }

  // Each submitted file is at the server once and whole, and nothing else is.
  void ExpectAllArrived(const DavServer& server) {
    EXPECT_TRUE(station.TheOutbox().IsEmpty()) << station.Status();
    std::vector<std::string> names;
    for (const auto& [path, bytes] : station.expected) {
      names.push_back(path);
      std::ifstream in(server.Root() + "/" + path, std::ios::binary);
      std::ostringstream copy;
      copy << in.rdbuf();
      const std::string arrived = copy.str();
      EXPECT_TRUE(arrived == bytes)
          << path << " holds " << arrived.size() << " bytes of " << bytes.size();
    }
    EXPECT_EQ(server.Files(), names);
  }

  // One round whose failure the status must explain; nothing may be lost by it.
  void ExpectReason(const std::string& reason) {
    const auto before = station.TheOutbox().Waiting();
    EXPECT_EQ(station.RunAgent("--once").status, 1);
    EXPECT_THAT(station.Status(), HasSubstr(reason));
    EXPECT_EQ(station.TheOutbox().Waiting(), before);
  }

  UploadStation station{UploadStation::Agent::kStartedByTest};
};

void RunTheFourEvents(UploadStation& station) {
  station.Record();
  station.PrintLogList();
  station.PrintErrorLog("26111500");
  station.Record();
  station.DeleteLog(1);
}

TEST_F(WebDavTest, RecordDeletionAndBothPrintImagesArrive) {
  DavServer server;
  server.Start();
  Connect(server);
  RunTheFourEvents(station);
  EXPECT_THAT(station.expected, SizeIs(3 + 2 + 2 + 3 + 2));
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
}

TEST_F(WebDavTest, TheyArriveOverHttpsWithAnAuthorityOfItsOwn) {
  DavServer server(DavServer::Scheme::kHttps);
  server.Start();
  Connect(server, DavServer::kPassword, server.CaFile());
  RunTheFourEvents(station);
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
}

// So many requests of a log: three files, each looked for, sent, read back and moved, and a folder.
constexpr int kRequestsOfARecord = 13;

class WebDavLogOnTest : public WebDavTest, public testing::WithParamInterface<DavServer::LogOn> {};

TEST_P(WebDavLogOnTest, NoRequestIsSentTwiceOnceTheServerHasAskedForAPassword) {
  DavServer server(DavServer::Scheme::kHttp, GetParam());
  server.Start();
  Connect(server);
  station.Record();
  station.Record();
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
  server.Stop();
  const std::vector<std::string> requests = server.Requests();
  const auto refused = std::count_if(requests.begin(), requests.end(), [](const std::string& line) {
    return line.ends_with(" 401");
  });
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(requests.size(), 1u + 2 + 2 * kRequestsOfARecord) << "and the two folders of Folder";
  EXPECT_EQ(server.Connections(), 1);
}

INSTANTIATE_TEST_SUITE_P(, WebDavLogOnTest,
                         testing::Values(DavServer::LogOn::kBasic, DavServer::LogOn::kDigest),
                         [](const auto& test) {
                           return test.param == DavServer::LogOn::kBasic ? "Basic" : "Digest";
                         });

TEST_F(WebDavTest, TheDescriptorIsTheLastToArrive) {
  DavServer server;
  server.Start();
  Connect(server);
  station.Record();
  station.RunAgent();
  server.Stop();
  std::string last_move;
  for (const std::string& line : server.Requests()) {
    if (line.starts_with("MOVE ")) last_move = line;
  }
  EXPECT_THAT(last_move, HasSubstr(".xml"));
}

TEST_F(WebDavTest, WhatHappensWhileTheServerIsDownArrivesWhenItIsBack) {
  DavServer server;
  Connect(server);
  RunTheFourEvents(station);
  EXPECT_THAT(station.messages.shown, SizeIs(1)) << "the question of the deletion and no failure";
  const pid_t agent = station.StartAgent();
  ASSERT_TRUE(station.WaitForATry());
  EXPECT_THAT(station.Status(), HasSubstr("The content server cannot be reached: "));
  server.Start();
  EXPECT_TRUE(station.WaitUntilEmpty()) << station.Status();
  EXPECT_EQ(waitpid(agent, nullptr, 0), agent);
  ExpectAllArrived(server);
}

TEST_F(WebDavTest, AnAgentKilledAtTwentyMomentsAndAServerThatComesAndGoesLoseNothing) {
  DavServer server;
  server.Start();
  Connect(server);
  std::mt19937 random(std::random_device{}());
  const auto number = [&](int below) {
    return std::uniform_int_distribution(0, below - 1)(random);
  };
  int events = 0;
  const auto submit = [&] {
    if (++station.clock.now.Second >= 60) {
      station.clock.now.Second = 0;
      ++station.clock.now.Minute;
    }
    std::string bytes(static_cast<std::size_t>(2000000 + number(2000000)), '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    station.Submit("image" + std::to_string(events++) + ".pdf", bytes);
  };
  for (int event = 0; event < 20; ++event) submit();
  RunTheFourEvents(station);
  // A moment counts if the agent was at work; a quick machine gets more work.
  int killed_at_work = 0;
  for (int moment = 0; killed_at_work < 20 && moment < 200; ++moment) {
    while (station.TheOutbox().Waiting().size() < 3) submit();
    if (moment % 5 == 3) server.Stop();
    const pid_t agent = station.StartAgent();
    std::this_thread::sleep_for(std::chrono::milliseconds(5 + number(120)));
    if (moment % 5 == 3) server.Start();
    kill(agent, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(agent, &status, 0), agent);
    killed_at_work += WIFSIGNALED(status) ? 1 : 0;
  }
  EXPECT_EQ(killed_at_work, 20);
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
  // No file was brought into place twice.
  server.Stop();
  std::map<std::string, int> moves;
  for (const std::string& line : server.Requests()) {
    if (line.starts_with("MOVE ") && line.ends_with(" 201")) ++moves[line];
  }
  EXPECT_EQ(moves.size(), station.expected.size());
  for (const auto& [line, count] : moves) EXPECT_EQ(count, 1) << line;
}

TEST_F(WebDavTest, ThePasswordStandsOnNoCommandLineNorInTheStatusNorInTheNotes) {
  DavServer server;  // not started: the agent waits
  Connect(server);
  station.Record();
  const pid_t agent = station.StartAgent();
  ASSERT_TRUE(station.WaitForATry());
  const std::string process = "/proc/" + std::to_string(agent);
  for (const std::string& told :
       {RunProgram("cat " + process + "/cmdline " + process + "/environ").output, station.Status(),
        RunProgram("cat " + Quoted(station.Area()) + "/outbox/*/note").output}) {
    EXPECT_THAT(told, Not(IsEmpty()));
    EXPECT_THAT(told, Not(HasSubstr(DavServer::kPassword)));
  }
  kill(agent, SIGKILL);
  EXPECT_EQ(waitpid(agent, nullptr, 0), agent);
}

TEST_F(WebDavTest, AWrongPasswordIsToldAndLosesNothing) {
  DavServer server;
  server.Start();
  Connect(server, "wrong");
  station.Record();
  ExpectReason("The content server does not accept user name and password (401).");
  EXPECT_THAT(server.Files(), IsEmpty());
  Connect(server);
  EXPECT_EQ(station.RunAgent().status, 0);
  ExpectAllArrived(server);
}

TEST_F(WebDavTest, AFullDiskIsToldAndLosesNothing) {
  DavServer server;
  if (!server.LimitDisk(1 << 20)) GTEST_SKIP() << "this user may not mount a disk";
  server.Start();
  Connect(server);
  station.Submit("big.pdf", std::string(3 << 20, 'x'));
  ++station.clock.now.Second;
  station.Submit("small.pdf", "small");
  const std::string big = station.TheOutbox().Waiting().at(0);
  EXPECT_EQ(station.RunAgent("--once").status, 1);
  EXPECT_THAT(station.Status(), HasSubstr("The disk of the content server is full: PUT " + big));
  EXPECT_THAT(station.Status(), HasSubstr("(507)"));
  EXPECT_THAT(station.TheOutbox().Waiting(), testing::ElementsAre(big)) << "the small one arrived";
  ASSERT_TRUE(server.LimitDisk(16 << 20));
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
}

TEST_F(WebDavTest, ACertificateOfAnUnknownAuthorityIsToldAndLosesNothing) {
  DavServer server(DavServer::Scheme::kHttps);
  server.Start();
  Connect(server);  // without the authority of its own
  station.Record();
  ExpectReason("The certificate of the content server cannot be trusted: ");
  EXPECT_THAT(server.Files(), IsEmpty());
  const DavServer other(DavServer::Scheme::kHttps);
  Connect(server, DavServer::kPassword, other.CaFile());
  ExpectReason("The certificate of the content server cannot be trusted: ");
  Connect(server, DavServer::kPassword, "/nowhere/ca.pem");
  ExpectReason("The certificate file /nowhere/ca.pem is missing.");
  Connect(server, DavServer::kPassword, server.CaFile());
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
}

TEST_F(WebDavTest, ACertificateOfAnotherHostIsRefused) {
  DavServer server(DavServer::Scheme::kHttps);
  server.Start();
  std::string url = server.Url();
  url.replace(url.find("127.0.0.1"), 9, "localhost");  // not in the certificate
  station.Configure(url, DavServer::kUser, DavServer::kPassword, server.CaFile());
  station.Record();
  ExpectReason("The certificate of the content server cannot be trusted: ");
}

TEST_F(WebDavTest, AFolderThatTheServerDoesNotLetUsWriteIsTold) {
  DavServer server;
  server.Start();
  station.Configure(server.Url() + "missing/", DavServer::kUser, DavServer::kPassword, {});
  station.Record();
  ExpectReason(
      "The folder above is missing at the content server: MKCOL maintenance (409); make it");
}

TEST_F(WebDavTest, AFileThatStandsAtTheServerIsNotOverwrittenByAMove) {
  DavServer server;
  server.Start();
  Connect(server);
  WebDavStore store({.url = server.Url(), .user = DavServer::kUser}, DavServer::kPassword, {});
  station.disk.Put("C:\\new", "new");
  station.disk.Put("C:\\old", "old");
  for (const auto& [path, file] : {std::pair{"a.part", "C:\\new"}, {"a", "C:\\old"}}) {
    native::Reader reader;
    ASSERT_FALSE(reader.Open(station.disk.Native(file), native::Links::kFollowed));
    store.Put(path, reader);
  }
  try {
    store.Move("a.part", "a");
    FAIL();
  } catch (const DeliveryError& error) {
    EXPECT_THAT(error.what(), HasSubstr("holds another file of the name: MOVE a (412)."));
  }
  EXPECT_EQ(store.DigestOf("a", 100), DigestOfFile(station.disk.Native("C:\\old")));
}

TEST_F(WebDavTest, NamesBeyondAsciiAndSignsOfAddressesArrive) {
  DavServer server;
  server.Start();
  Connect(server);
  station.Submit("100% Größe #1?測定;a=b&c+d.pdf", "bytes");
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  ExpectAllArrived(server);
}

TEST_F(WebDavTest, TheAgentOutlivesTheLogbookAndIsStartedByTheEvent) {
  DavServer server;
  server.Start();
  UploadStation started(UploadStation::Agent::kStartedByClient);
  started.Configure(server.Url(), DavServer::kUser, DavServer::kPassword, {});
  started.Record();
  EXPECT_TRUE(started.WaitUntilEmpty()) << started.Status();
  EXPECT_THAT(server.Files(), SizeIs(3));
}

}  // namespace
}  // namespace logbook::test
