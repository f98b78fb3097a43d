// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Uploads to a server that does not behave: each failure has words that say what to do, none lasts
// for ever, and none keeps the other submissions back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

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

constexpr char kTooLong[] = "The answer of the content server to MKCOL ";

TEST_F(OddServerTest, APageHasAtMostAMegabyte) {
  constexpr std::size_t kMost = 1024 * 1024;
  const auto reason = [this](std::size_t size) {
    return ReasonOf("MKCOL", "HTTP/1.1 500 Odd\r\nContent-Length: " + std::to_string(size) +
                                 "\r\n\r\n" + std::string(size, 'x'));
  };
  EXPECT_THAT(reason(kMost - 1), Not(HasSubstr(kTooLong)));
  EXPECT_THAT(reason(kMost), Not(HasSubstr(kTooLong)));
  EXPECT_THAT(reason(kMost + 1), HasSubstr(kTooLong));
}

TEST_F(OddServerTest, TheHeadOfAnAnswerHasAtMost256Kilobytes) {
  constexpr std::size_t kMost = 256 * 1024;
  const auto reason = [this](std::size_t size) {
    std::string head = "HTTP/1.1 500 Odd\r\nContent-Length: 0\r\n";
    while (head.size() + 1000 < size) head += "X: " + std::string(495, 'x') + "\r\n";
    head += "Y: " + std::string(size - head.size() - 7, 'y') + "\r\n\r\n";
    EXPECT_EQ(head.size(), size);
    return ReasonOf("MKCOL", head);
  };
  EXPECT_THAT(reason(kMost - 1), Not(HasSubstr(kTooLong)));
  EXPECT_THAT(reason(kMost), Not(HasSubstr(kTooLong)));
  EXPECT_THAT(reason(kMost + 1), HasSubstr(kTooLong));
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

struct Misbehaviour {
  const char* name;
  const char* method;
  std::string answer;
  const char* words;
};

std::string Answer(const std::string& head, const std::string& body = {}) {
  return "HTTP/1.1 " + head + "\r\n\r\n" + body;
}

const char* const kEntities =
    "<!DOCTYPE a [<!ENTITY b \"xxxxxxxxxx\"><!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;\">"
    "<!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;\">]><multistatus xmlns=\"DAV:\">&d;</multistatus>";

std::vector<Misbehaviour> Misbehaviours() {
  return {
      {"HTTP/0.9", "MKCOL", "<html>It works!</html>", "is no web server"},
      {"status that is no number", "MKCOL", "HTTP/1.1 abc Odd\r\n\r\n", "is no web server"},
      {"status beyond all known", "PUT", OddServer::Status(999), "999"},
      {"success of another kind", "MKCOL", OddServer::Status(200), "200"},
      {"entities that grow", "MKCOL", Answer("207 Multi", kEntities), "207"},
      {"entities in place of the file", "GET", Answer("207 Multi", kEntities), "207"},
      {"other protocol", "MKCOL", Answer("101 Switching\r\nUpgrade: odd"),
       "broke off its answer to MKCOL"},
      {"length below zero", "GET", Answer("200 OK\r\nContent-Length: -1", "bytes"),
       "Invalid Content-Length"},
      {"two lengths", "GET", Answer("200 OK\r\nContent-Length: 5\r\nContent-Length: 6", "bytes"),
       "broke off its answer to GET"},
      {"length that is not kept", "GET", Answer("200 OK\r\nContent-Length: 999999999999", "bytes"),
       "broke off its answer to GET"},
      {"broken chunk", "GET", Answer("200 OK\r\nTransfer-Encoding: chunked", "zz\r\nbytes"),
       "broke off its answer to GET"},
      {"chunk of all memory", "GET",
       Answer("200 OK\r\nTransfer-Encoding: chunked", "ffffffffffffffff\r\nbytes"),
       "broke off its answer to GET"},
      {"compressed unasked", "GET",
       Answer("200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 5", "\x1f\x8b\x08\x01\x01"),
       "holds another file of the name"},
      {"other bytes of the same size", "GET", Answer("200 OK\r\nContent-Length: 5", "BYTES"),
       "holds another file of the name"},
      {"fewer bytes", "GET", Answer("200 OK\r\nContent-Length: 4", "byte"),
       "holds another file of the name"},
      {"part of the file", "GET", Answer("206 Partial\r\nContent-Length: 2", "by"), "206"},
      {"no content", "GET", Answer("204 No Content"), "204"},
      {"stored without storing", "PUT", OddServer::Status(201), "as it was sent"},
      {"moved to itself", "MKCOL", OddServer::Status(301, "Location: /\r\n"), "(301)"},
      {"upload sent elsewhere", "PUT", OddServer::Status(307, "Location: http://elsewhere/\r\n"),
       "http://elsewhere/"},
      {"password asked for ever", "MKCOL",
       OddServer::Status(401, "WWW-Authenticate: Basic realm=\"odd\"\r\n"),
       "does not accept user name and password"},
      {"head line of a megabyte", "MKCOL",
       Answer("201 Created\r\nX-Odd: " + std::string(1 << 20, 'x')),
       "The answer of the content server to MKCOL "},
      {"NUL in the head", "MKCOL", Answer(std::string("201 Cre\0ated\r\nX: \0", 18)),
       "is no web server"},
      {"cookies", "PUT",
       [] {
         std::string lines;
         for (int i = 0; i < 20000; ++i) lines += "Set-Cookie: c" + std::to_string(i) + "=x\r\n";
         return OddServer::Status(500, lines);
       }(),
       "The answer of the content server to PUT "},
      {"signs for the terminal", "MKCOL",
       OddServer::Status(302, "Location: http://elsewhere/\x1B[2J\x1B]0;odd\x07\r\n"), "(302)"},
      {"nothing at all", "MOVE", "", "broke off its answer to MOVE"},
  };
}

TEST_F(OddServerTest, NoMisbehaviourLosesAnythingOrReachesTheTerminal) {
  for (const Misbehaviour& odd : Misbehaviours()) {
    SCOPED_TRACE(odd.name);
    const std::string reason = ReasonOf(odd.method, odd.answer);
    EXPECT_THAT(reason, HasSubstr(odd.words));
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\n'; };
    EXPECT_TRUE(std::ranges::none_of(reason, is_control)) << reason;
    const std::vector<std::string> waiting = station.TheOutbox().Waiting();
    ASSERT_EQ(waiting.size(), 1u);
    EXPECT_EQ(station.TheOutbox().NoteOf(waiting[0]).reason.empty(), false);
  }
  const OddServer server([](int, const Request&) { return false; });
  Connect(server);
  EXPECT_EQ(station.RunAgent("--once").status, 0) << station.Status();
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
