// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "SampleReadings.h"
#include "insight/CheckText.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;

using nlohmann::json;
using test::AllCatalogues;
using test::RandomLogs;

std::string Repeated(int fields, const std::string& field) {
  std::string text;
  for (int i = 0; i < fields; ++i) text += field + "\r\n";
  return text;
}

// A log that has nothing to find; files can be replaced and removed.
class SoundLog {
 public:
  SoundLog() {
    files.Root = "/srv/logs";
    files.Folder = "26010100";
    Put("logfile.ini",
        "[LogFile]\r\nDate=01/01/2026 08:00:00\r\n[OPTION]\r\n[Maintenance]\r\nItem0=0\r\n");
    Put("comment.txt", "\r\n");
    Put("auser.txt", Repeated(29, "1"));
    Put("aall.txt", Repeated(215, "1"));
    Put("sys.txt", Repeated(83, "1") + "\"a, b\"\r\n" + Repeated(161, "1"));
    Put("bout.txt", Repeated(16, "0"));
    Put("bin.txt", Repeated(16, "0"));
    for (const char* name : {"SENSEVAR.MAC", "OTHERVA2.MAC", "RESOVAR.MAC", "PARAMVAR.MAC"}) {
      Put(name, "XPOS=1\r\n");
    }
  }

  SoundLog& Put(const std::string& name, std::string bytes) {
    Remove(name);
    const std::uint64_t size = bytes.size();
    files.Files.push_back({name, LogFile::Kind::kFile, std::move(bytes), size});
    std::sort(files.Files.begin(), files.Files.end(),
              [](const LogFile& a, const LogFile& b) { return a.Name < b.Name; });
    return *this;
  }

  SoundLog& Remove(const std::string& name) {
    std::erase_if(files.Files, [&](const LogFile& file) { return file.Name == name; });
    return *this;
  }

  std::vector<std::string> Codes(const std::vector<EntryFacts>& entries = {},
                                 int code_page = 1252) const {
    std::vector<std::string> codes;
    for (const Finding& finding : Findings(entries, code_page)) codes.emplace_back(finding.code);
    return codes;
  }

  std::vector<Finding> Findings(const std::vector<EntryFacts>& entries = {},
                                int code_page = 1252) const {
    const CodePage& page = *CodePage::Find(code_page);
    return CheckLog(page, files, ReadLog(page, AllCatalogues(), files), entries);
  }

  LogFiles files;
};

using Codes = std::vector<std::string>;

TEST(Check, ASoundLogHasNoFinding) {
  EXPECT_EQ(SoundLog().Codes(), Codes{});
}

TEST(Check, ARecordThatWasNeverConfirmedIsOneFinding) {
  SoundLog log;
  log.files.Files.clear();
  log.Put("logfile.ini", "[LogFile]\r\nDate=01/01/2026 08:00:00\r\n");
  EXPECT_EQ(log.Codes(), Codes{"unfinished"});
}

TEST(Check, DatesAreThereAndPossible) {
  const std::string rest = "[Maintenance]\r\nItem0=0\r\n";
  EXPECT_EQ(SoundLog().Put("logfile.ini", rest).Codes(), Codes{"date-missing"});
  for (const char* date : {"13/01/2026 08:00:00", "02/29/2026 08:00:00", "1/1/2026 08:00:00",
                           "01/01/2026 24:00:00", "yesterday"}) {
    const SoundLog log =
        SoundLog().Put("logfile.ini", "[LogFile]\r\nDate=" + std::string(date) + "\r\n" + rest);
    ASSERT_EQ(log.Codes(), Codes{"date-impossible"}) << date;
    EXPECT_EQ(log.Findings().at(0).detail, date);
  }
}

TEST(Check, CommentsAreThereAndNotEmpty) {
  EXPECT_EQ(SoundLog().Remove("comment.txt").Codes(), Codes{"comment-missing"});
  EXPECT_EQ(SoundLog().Put("comment.txt", "").Codes(), Codes{"comment-empty"});
}

TEST(Check, SnapshotsHaveJustTheirFields) {
  EXPECT_EQ(SoundLog().Remove("auser.txt").Codes(), Codes{"snapshot-missing"});
  const SoundLog shorter = SoundLog().Put("aall.txt", Repeated(214, "1"));
  EXPECT_EQ(shorter.Findings(),
            (std::vector<Finding>{{"snapshot-short", "26010100", "aall.txt: 214 fields of 215"}}));
  EXPECT_EQ(SoundLog().Put("auser.txt", "").Codes(), Codes{"snapshot-short"});
  EXPECT_EQ(SoundLog().Put("auser.txt", Repeated(30, "1")).Codes(), Codes{"snapshot-long"});
  EXPECT_EQ(SoundLog().Put("sys.txt", Repeated(246, "1")).Codes(), Codes{"snapshot-long"});
  EXPECT_EQ(SoundLog().Put("bin.txt", Repeated(15, "FF")).Codes(), Codes{"snapshot-short"});
  EXPECT_EQ(SoundLog()
                .Put("auser.txt",
                     "1 2 3 4 5 6 7 8 9 10,11,12,13,14,15,16,17,18,19,20,"
                     "21,22,23,24,25,26,27,28,29\r\n")
                .Codes(),
            Codes{});
}

TEST(Check, AMacroFileMayHaveItsSecondName) {
  EXPECT_EQ(SoundLog().Remove("SENSEVAR.MAC").Put("senseva2.mac", "").Codes(), Codes{});
  const SoundLog log = SoundLog().Remove("RESOVAR.MAC");
  ASSERT_EQ(log.Codes(), Codes{"macro-missing"});
  EXPECT_EQ(log.Findings().at(0).detail, "resovar.mac");
}

TEST(Check, WhatBlocksADeletionIsTold) {
  SoundLog log;
  log.files.Files.push_back({"z.dat", LogFile::Kind::kRefused, {}, 0});
  const std::vector<EntryFacts> entries = {
      {".hidden", false, true},        {".logbook-new~", false, false},
      {".logbook-new~1", true, false}, {".logbook-new~old", false, false},
      {"comment.txt", false, true},    {"sub", true, false},
      {"z.dat", false, false}};
  EXPECT_EQ(log.Codes(entries), (Codes{"file-hidden", "file-read-only", "sub-folder", "file-hidden",
                                       "file-read-only", "sub-folder", "file-unreadable"}));
}

TEST(Check, AnOddNameIsTold) {
  for (const char* name : {"backup", "2601010g", "26023000"}) {
    SoundLog log;
    log.files.Folder = name;
    EXPECT_EQ(log.Codes(), Codes{"odd-name"}) << name;
  }
}

TEST(Check, TextsAreInTheCodePage) {
  EXPECT_EQ(SoundLog().Put("comment.txt", "5 \xB5L\r\n").Codes(), Codes{});
  EXPECT_EQ(SoundLog().Put("comment.txt", "5 \xC2\xB5L\r\n").Codes(), Codes{"text-foreign"});
  EXPECT_EQ(SoundLog().Put("acqlog.txt", "a\x81z\r\n").Codes(), Codes{"text-foreign"});
  EXPECT_EQ(SoundLog().Put("comment.txt", "\x83\x5C\r\n").Codes({}, 932), Codes{});
  EXPECT_EQ(SoundLog().Put("comment.txt", "\x83\xFF\r\n").Codes({}, 932), Codes{"text-foreign"});
}

RootFacts RootWith(int logs, LocalDay last) {
  RootFacts facts;
  for (int i = 0; i < logs; ++i) {
    facts.logs.push_back({std::to_string(i), LocalTime(last - std::chrono::days(i))});
  }
  return facts;
}

LocalDay Day(std::string_view text) {
  return ParseDay(text).value();
}

TEST(Check, AListThatIsFullOrSoonWillBeIsTold) {
  const LocalDay today = Day("2026-06-30");
  EXPECT_TRUE(CheckRoot(RootWith(100, today), today).empty());
  const auto soon = CheckRoot(RootWith(200, today), today);
  ASSERT_EQ(soon.size(), 1U);
  EXPECT_EQ(soon[0].code, "list-overflow");
  EXPECT_EQ(soon[0].detail, "200 logs, 90 in 90 days: full on 2026-08-25");
  EXPECT_TRUE(CheckRoot(RootWith(200, today - std::chrono::days(90)), today).empty())
      << "nothing has been recorded of late";
  const auto full = CheckRoot(RootWith(256, today), today);
  EXPECT_EQ(full.at(0).code, "list-overflow");
  EXPECT_EQ(full.at(0).detail, "256 logs: full today, the next one will not be shown");
  EXPECT_EQ(CheckRoot(RootWith(257, today), today).at(0).code, "list-full");
  EXPECT_EQ(CheckRoot(RootWith(300, today), today).at(0).detail, "300 logs, 44 of them not shown");
}

TEST(Check, DatesThatStandTwiceAreTold) {
  RootFacts facts = RootWith(3, Day("2026-06-30"));
  facts.logs[2].date = facts.logs[0].date;
  facts.logs.push_back({"x", {}});
  facts.logs.push_back({"y", {}});
  const auto findings = CheckRoot(facts, Day("2026-06-30"));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].code, "date-double");
  EXPECT_EQ(findings[0].detail, "2026-06-30T00:00:00: 0, 2");
}

TEST(Check, PackagesAndOldStagingAreTold) {
  RootFacts facts;
  facts.files = {"26010100.qkvzip", "listlog.csv"};
  facts.staged = {"260101080000123_LOGBK", "260101080000123_LOGBK.xml", "260102080000123_LOGBK",
                  "outbox", "x_LOGBK"};
  const auto findings = CheckRoot(facts, Day("2026-01-02"));
  ASSERT_EQ(findings.size(), 3U);
  EXPECT_EQ(findings[0], (Finding{"package-left", "", "26010100.qkvzip"}));
  EXPECT_EQ(findings[1], (Finding{"staging-left", "", "260101080000123_LOGBK"}));
  EXPECT_EQ(findings[2], (Finding{"staging-left", "", "260101080000123_LOGBK.xml"}));
}

TEST(Check, ARootOfTheHostHasNoFindingAndEachDamageOne) {
  RandomLogs logs(51);
  const std::string log = logs.Add(3).front();
  const LocalDay today = Day("2024-01-20");
  const auto found = [&] {
    std::multiset<std::string> codes;
    for (const Finding& finding :
         CheckLogRoot(logs.machine(), AllCatalogues(), RandomLogs::kRoot, today)) {
      codes.emplace(finding.code);
    }
    return codes;
  };
  EXPECT_EQ(found(), std::multiset<std::string>{});
  logs.disk().Put(RandomLogs::PathOf(log, ".note"), "x");
  logs.disk().MakeFolders(RandomLogs::PathOf(log, "more"));
  fs::permissions(logs.NativeRoot() + "/" + log + "/comment.txt", fs::perms::owner_read);
  logs.disk().Put(std::string(RandomLogs::kRoot) + log + ".qkvzip", "x");
  logs.disk().MakeFolders("C:\\Norvane.Quorex.ECM\\240101080000123_LOGBK");
  EXPECT_EQ(found(), (std::multiset<std::string>{"file-hidden", "file-read-only", "package-left",
                                                 "staging-left", "sub-folder"}));
}

TEST(Check, EveryCodeHasItsWords) {
  std::set<std::string_view> codes;
  for (const FindingKind& kind : kFindingKinds) {
    EXPECT_TRUE(codes.insert(kind.code).second) << kind.code;
    EXPECT_EQ(FindKind(kind.code), &kind);
    EXPECT_FALSE(kind.meaning.empty() || kind.meaning.ends_with('.'));
    EXPECT_FALSE(kind.action.empty() || kind.action.ends_with('.'));
  }
  EXPECT_EQ(FindKind("nothing"), nullptr);
}

TEST(Check, ThePaperNamesEveryCode) {
  std::ifstream in(TEST_DATA_DIR "/../../docs/insight.md");
  const std::string paper{std::istreambuf_iterator<char>(in), {}};
  for (const FindingKind& kind : kFindingKinds) {
    EXPECT_NE(paper.find("`" + std::string(kind.code) + "`"), std::string::npos) << kind.code;
  }
}

TEST(Check, FindingsAreToldByCode) {
  const RootFindings root = {"/srv/logs",
                             {{"package-left", "", "26010100.qkvzip"},
                              {"comment-empty", "26010100", ""},
                              {"snapshot-short", "26010100", "aall.txt: 1 fields of 215"},
                              {"comment-empty", "26010101", ""}}};
  EXPECT_EQ(FindingsText(root),
            "comment-empty: comment.txt has no byte, which ends the logbook with a run-time error; "
            "put a line end into it, or delete it.\n"
            "  26010100\n"
            "  26010101\n"
            "snapshot-short: a snapshot file ends before its last row; the list shows 0 for what "
            "lacks; do not trust the zeros of this log.\n"
            "  26010100: aall.txt: 1 fields of 215\n"
            "package-left: a package that an upload left behind; delete it when the server has the "
            "log.\n"
            "  log root: 26010100.qkvzip\n");
  EXPECT_EQ(FindingsText({"/srv/logs", {}}), "no finding\n");
  const json document = json::parse(FindingsJson({root}));
  EXPECT_EQ(document.at("roots").at(0).at("root"), "/srv/logs");
  const json& findings = document.at("roots").at(0).at("findings");
  ASSERT_EQ(findings.size(), 4U);
  EXPECT_TRUE(findings[0].at("log").is_null());
  EXPECT_EQ(findings[1].at("code"), "comment-empty");
  EXPECT_EQ(findings[1].at("action"), "put a line end into it, or delete it");
}

}  // namespace
}  // namespace logbook::insight
