// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Uploads to a server that does not behave: each failure has words that say what to do, none lasts
// for ever, and none keeps the other submissions back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "UploadStation.h"
#include "support/OddServer.h"

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Request = OddServer::Request;

class OddServerTest : public testing::Test {
 protected:
  OddServerTest() { station.Configure({{"Url", "http://127.0.0.1/"}}); }

  // How long an answer is waited for, in milliseconds. A server that behaves answers long before.
  static constexpr char kShortWait[] = "4000", kLongWait[] = "60000";

  void Connect(const OddServer& server, const char* answer_timeout = kLongWait) {
    station.Configure({{"Url", server.Url()}, {"AnswerTimeout", answer_timeout}});
  }
  // What the status says of a single submission that such a server has been sent once.
  std::string ReasonAt(const OddServer::Manner& manner) {
    const OddServer server(manner);
    Connect(server);
    if (station.TheOutbox().Waiting().empty()) station.Submit("a.pdf", "bytes");
    EXPECT_EQ(station.RunAgent("--once").status, 1);
    return station.Status();
  }
  // The same for a server that gives this answer to one method.
  std::string ReasonOf(const std::string& method, const std::string& answer) {
    return ReasonAt([=](int socket, const Request& request) {
      return request.method == method && OddServer::Write(socket, answer);
    });
  }

  UploadStation station{UploadStation::Agent::kStartedByTest};
};

TEST_F(OddServerTest, AServerThatBehavesGetsEverything) {
  const OddServer server([](int, const Request&) { return false; });
  Connect(server);
  station.Submit("a b.pdf", std::string(3000000, 'x'));
  EXPECT_EQ(station.RunAgent("--once").status, 0) << station.Status();
}

// The first submission meets the manner, the second one does not.
class OddServerWithTwoTest : public OddServerTest {
 protected:
  void ExpectSecondArrives(const OddServer::Manner& manner, const std::string& reason,
                           const char* answer_timeout = kLongWait) {
    station.Submit("first.pdf", "bytes");
    ++station.clock.now.Second;
    station.Submit("second.pdf", "bytes");
    const std::string first = station.TheOutbox().Waiting().at(0);
    const OddServer server([=](int socket, const Request& request) {
      return request.path.find(first) != std::string::npos && manner(socket, request);
    });
    Connect(server, answer_timeout);
    EXPECT_EQ(station.RunAgent("--once").status, 1);
    EXPECT_THAT(station.TheOutbox().Waiting(), ElementsAre(first));
    EXPECT_THAT(station.Status(), HasSubstr(reason));
  }
};

TEST_F(OddServerWithTwoTest, AnAnswerThatDripsIsGivenUp) {
  ExpectSecondArrives(
      [](int socket, const Request&) {
        OddServer::Write(socket, "HTTP/1.1 201 Created\r\nContent-Length: 100000\r\n\r\n");
        OddServer::WriteForEver(socket, "x", 10);
        return true;
      },
      "The content server does not come to an end of MKCOL ", kShortWait);
}

TEST_F(OddServerWithTwoTest, AnAnswerThatDoesNotComeIsGivenUp) {
  ExpectSecondArrives(
      [](int socket, const Request&) {
        OddServer::WriteForEver(socket, "", 10);
        return true;
      },
      "The content server does not come to an end of MKCOL ", kShortWait);
}

TEST_F(OddServerWithTwoTest, APageWithoutEndIsGivenUp) {
  ExpectSecondArrives(
      [](int socket, const Request& request) {
        if (request.method != "PUT") return false;
        OddServer::Write(socket, "HTTP/1.1 500 Odd\r\n\r\n");
        OddServer::WriteForEver(socket, std::string(65536, 'x'), 0);
        return true;
      },
      "The answer of the content server to PUT ");
}

TEST_F(OddServerWithTwoTest, AHeadWithoutEndIsGivenUp) {
  ExpectSecondArrives(
      [](int socket, const Request&) {
        OddServer::WriteForEver(socket, "HTTP/1.1 100 Continue\r\nX-More: yes\r\n\r\n", 0);
        return true;
      },
      "The answer of the content server to MKCOL ");
}

TEST_F(OddServerWithTwoTest, AFileWithoutEndIsNotTheOneThatWasSent) {
  ExpectSecondArrives(
      [](int socket, const Request& request) {
        if (request.method != "GET" || !request.path.ends_with(".part")) return false;
        OddServer::Write(socket, "HTTP/1.1 200 OK\r\n\r\n");
        OddServer::WriteForEver(socket, "bytes", 0);
        return true;
      },
      "first.pdf as it was sent.");
}

TEST_F(OddServerWithTwoTest, AnAnswerThatIsCutOffSaysSo) {
  ExpectSecondArrives(
      [](int socket, const Request& request) {
        return request.method == "GET" && request.path.ends_with(".part") &&
               OddServer::Write(socket, "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nby");
      },
      "The content server broke off its answer to GET ");
}

TEST_F(OddServerWithTwoTest, AConnectionThatEndsWithoutAnAnswerSaysSo) {
  ExpectSecondArrives([](int, const Request& request) { return request.method == "PUT"; },
                      "The content server broke off its answer to PUT ");
}

TEST_F(OddServerTest, ARedirectionIsNotFollowedAndItsTargetIsToldWithoutSecrets) {
  const std::string reason = ReasonOf(
      "MKCOL", OddServer::Status(302, "Location: https://u:p@elsewhere/dav/?token=secret\r\n"));
  EXPECT_THAT(reason,
              HasSubstr("The content server refers to another address (302), where nothing is "
                        "sent: https://elsewhere/dav/; set Url to it if that is right."));
}

TEST_F(OddServerTest, EachRefusalSaysWhatToDo) {
  const std::tuple<const char*, int, const char*> cases[] = {
      {"PUT", 403, "The content server does not allow PUT "},
      {"PUT", 404, "(404); look at Url and Folder."},
      {"PUT", 405, "(405); set Url to a folder of a WebDAV server."},
      {"MKCOL", 409, "(409); make it there, or look at Url and Folder."},
      {"MOVE", 412, "The content server holds another file of the name: MOVE "},
      {"PUT", 413, "The content server does not take files of this size: PUT "},
      {"PUT", 423, "Somebody has locked the place at the content server: PUT "},
      {"MOVE", 423, "(423); it goes on when the lock is taken off."},
      {"MOVE", 501, "(501); set Url to a folder of a WebDAV server."},
      {"GET", 503, "The content server failed to do GET "},
      {"PUT", 507, "The disk of the content server is full: PUT "}};
  for (const auto& [method, status, words] : cases)
    EXPECT_THAT(ReasonOf(method, OddServer::Status(status)), HasSubstr(words)) << status;
}

TEST_F(OddServerTest, WhatIsNoWebServerSaysSo) {
  EXPECT_THAT(ReasonOf("MKCOL", "SSH-2.0-odd\r\n"),
              HasSubstr("What answers at the address in Url is no web server: "));
}

TEST_F(OddServerTest, AFailureAtTheConfiguredFolderIsNotTriedForEachSubmission) {
  station.Submit("a.pdf", "bytes");
  ++station.clock.now.Second;
  station.Submit("b.pdf", "bytes");
  const OddServer server([](int socket, const Request& request) {
    return request.path == "/folder/" && OddServer::Write(socket, OddServer::Status(423));
  });
  station.Configure({{"Url", server.Url()}, {"Folder", "folder"}});
  EXPECT_EQ(station.RunAgent("--once").status, 1);
  const std::vector<std::string> waiting = station.TheOutbox().Waiting();
  ASSERT_EQ(waiting.size(), 2u);
  EXPECT_EQ(station.TheOutbox().NoteOf(waiting[0]).tries, 1);
  EXPECT_EQ(station.TheOutbox().NoteOf(waiting[1]).tries, 0);
}

TEST_F(OddServerTest, WhatComesWhileTheAgentSendsGoesThroughTheSameStore) {
  const std::string log = station.disk.Native("C:\\requests");
  const OddServer server([&, submitted = false](int, const Request& request) mutable {
    std::ofstream(log, std::ios::app) << request.method << ' ' << request.path << '\n';
    if (submitted || request.method != "PUT") return false;
    submitted = true;
    station.Submit("second.pdf", "bytes");
    return false;
  });
  station.Configure({{"Url", server.Url()}, {"Folder", "folder"}});
  station.Submit("first.pdf", "bytes");
  ++station.clock.now.Second;
  EXPECT_EQ(station.RunAgent().status, 0) << station.Status();
  const std::string requests = station.disk.Get("C:\\requests");
  EXPECT_THAT(requests, HasSubstr("second.pdf"));
  EXPECT_EQ(requests.find("MKCOL /folder/\n"), requests.rfind("MKCOL /folder/\n"));
}

TEST_F(OddServerTest, APasswordInTheAddressDoesNotGoIntoTheDestination) {
  const OddServer server([](int socket, const Request& request) {
    // The server looks a destination up by what stands behind the host.
    return request.path.find("p@") != std::string::npos &&
           OddServer::Write(socket, OddServer::Status(400));
  });
  std::string url = server.Url();
  station.Configure({{"Url", url.insert(url.find("//") + 2, "u:p@")}});
  station.Submit("a.pdf", "bytes");
  EXPECT_EQ(station.RunAgent("--once").status, 0) << station.Status();
}

}  // namespace
}  // namespace logbook::test
