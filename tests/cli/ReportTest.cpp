// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// "logbookctl report": the bytes of every report, and what it writes.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "LogbookctlRun.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::Everything;
using test::Outcome;
using test::Quoted;
using test::Read;

constexpr const char* kFolder = "C:\\QUOREX\\maintain\\26111500";
const std::string kBuild = "trz-ce+security+new_rf+qptype+afc+sc+opgs+colopgs";

// What each kind prints, and the file that the viewer writes.
const std::pair<const char*, const char*> kReports[] = {
    {"analog", "analog.rpt"}, {"meter", "meter.rpt"}, {"sys", "Sys.rpt"},
    {"bitout", "bitout.rpt"}, {"bitin", "bitin.rpt"}, {"mainte", "mainte.rpt"},
    {"tunebin", "tune.bin"}};
const std::pair<const char*, const char*> kHostTexts[] = {{"tune", "tune.rpt"},
                                                          {"acq", "acqlog.txt"},
                                                          {"seq", "sequence.log"},
                                                          {"chain", "chnseq.log"},
                                                          {"err", "errlog.txt"}};

class ReportOfALog : public testing::Test {
 protected:
  ReportOfALog() {
    for (const auto& entry :
         fs::directory_iterator(fs::path(TEST_DATA_DIR) / "snapshots" / kBuild)) {
      disk.Put(InLog(entry.path().filename().string()), Read(entry.path()));
    }
  }

  static std::string InLog(const std::string& file) { return std::string(kFolder) + "\\" + file; }
  Outcome Report(const std::string& kind, const std::string& options = "") {
    return test::RunLogbookctl(disk.home(),
                               "report " + kind + " " + Quoted(kFolder) + " " + options);
  }
  static std::string Golden(const std::string& report) {
    return Read(fs::path(TEST_DATA_DIR) / "reports" / kBuild / report);
  }

  test::TestMachine disk;
};

TEST_F(ReportOfALog, PrintsTheBytesOfTheReportFileAndWritesNothing) {
  const auto before = Everything(disk.home());
  for (const auto& [kind, file] : kReports) {
    const Outcome outcome = Report(kind);
    EXPECT_EQ(outcome.status, 0) << kind;
    EXPECT_EQ(outcome.out, Golden(file)) << kind;
    EXPECT_EQ(outcome.err, "") << kind;
  }
  EXPECT_EQ(Everything(disk.home()), before);
}

TEST_F(ReportOfALog, PrintsTheHostsTextsAsThePaneShowsThem) {
  const auto before = Everything(disk.home());
  for (const auto& [kind, file] : kHostTexts) {
    const Outcome outcome = Report(kind);
    EXPECT_EQ(outcome.status, 0) << kind;
    EXPECT_EQ(outcome.out, disk.Get(InLog(file))) << kind;
    EXPECT_FALSE(outcome.out.empty()) << kind;
  }
  EXPECT_EQ(Report("err", "--ce").out, disk.Get(InLog("ceerrlog.txt")));
  EXPECT_EQ(Everything(disk.home()), before);
}

TEST_F(ReportOfALog, WithWriteLeavesTheFileThatTheViewerLeaves) {
  for (const auto& [kind, file] : kReports) {
    const Outcome outcome = Report(kind, "--write");
    EXPECT_EQ(outcome.status, 0) << kind;
    EXPECT_EQ(disk.Get(InLog(file)), outcome.out) << kind;
    EXPECT_EQ(disk.Get(InLog(file)), Golden(file)) << kind;
  }
}

TEST_F(ReportOfALog, WithWriteTheTuneReportLeavesTheExtractAndOtherTextsLeaveNothing) {
  EXPECT_EQ(Report("tune", "--write").out, disk.Get(InLog("tune.rpt")));
  EXPECT_EQ(disk.Get(InLog("tune.bin")), Golden("tune.bin"));
  const auto before = Everything(disk.home());
  for (const char* kind : {"acq", "seq", "chain", "err"})
    EXPECT_EQ(Report(kind, "--write").status, 0);
  EXPECT_EQ(Everything(disk.home()), before);
}

TEST_F(ReportOfALog, ALongLogIsPrintedUpToTheLimitAndTheMessageGoesToStandardError) {
  std::string log;
  while (log.size() < 65536) log += "a line of fourteen\r\n";
  disk.Put(InLog("acqlog.txt"), log);
  const Outcome outcome = Report("acq");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, log.substr(0, 65535 / 20 * 20));
  EXPECT_TRUE(outcome.err.starts_with(std::string("logbookctl: report acq ") + kFolder +
                                      ": Log files contains over 64KB text."))
      << outcome.err;
}

TEST_F(ReportOfALog, AMissingSnapshotGivesOneEmptyLine) {
  fs::remove(disk.Native(InLog("aall.txt")));
  EXPECT_EQ(Report("analog").out, "\r\n");
  fs::remove(disk.Native(InLog("acqlog.txt")));
  EXPECT_EQ(Report("acq").out, "");
}

TEST_F(ReportOfALog, AReportThatCannotBeMadeIsTheRunTimeErrorThatTheViewerPassesOver) {
  disk.Put(InLog("bout.txt"), "1,2,3\r\n");
  const Outcome outcome = Report("bitout", "--write");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, std::string("logbookctl: report bitout ") + kFolder +
                             ": run-time error 62: Input past end of file\n");
  EXPECT_FALSE(disk.Has(InLog("bitout.rpt")));
}

TEST_F(ReportOfALog, AllOfThemArePrintedOneBehindTheOtherAndWithWriteLeftInTheirFiles) {
  std::string together;
  for (const auto& [kind, file] : kReports) together += Golden(file);
  const auto before = Everything(disk.home());
  EXPECT_EQ(Report("all").out, together);
  EXPECT_EQ(Everything(disk.home()), before);
  EXPECT_EQ(Report("all", "--write").out, together);
  for (const auto& [kind, file] : kReports) EXPECT_EQ(disk.Get(InLog(file)), Golden(file)) << file;
}

TEST_F(ReportOfALog, OfAllOneThatCannotBeMadeIsToldAndTheOthersAreWritten) {
  disk.Put(InLog("bout.txt"), "1,2,3\r\n");
  for (const char* options : {"", "--write"}) {
    const Outcome outcome = Report("all", options);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, std::string("logbookctl: report all ") + kFolder +
                               ": run-time error 62: Input past end of file\n");
  }
  EXPECT_FALSE(disk.Has(InLog("bitout.rpt")));
  EXPECT_EQ(disk.Get(InLog("tune.bin")), Golden("tune.bin"));
  EXPECT_EQ(disk.Get(InLog("analog.rpt")), Golden("analog.rpt"));
}

TEST_F(ReportOfALog, TakesTheFolderAsANativePathToo) {
  const Outcome outcome =
      test::RunLogbookctl(disk.home(), "report meter " + Quoted(disk.Native(kFolder) + "/"));
  EXPECT_EQ(outcome.out, Golden("meter.rpt"));
}

TEST_F(ReportOfALog, TheCodePageDecidesOverTheBytes) {
  const std::string report = Report("sys", "--code-page 932").out;
  EXPECT_NE(report.find("Stanby Mode\x81\x69Reaction Mode)/Timeout"), std::string::npos);
}

TEST_F(ReportOfALog, AFolderThatIsMissingAndWrongUseAreTold) {
  EXPECT_EQ(test::RunLogbookctl(disk.home(), "report meter 'C:\\none'").status, 1);
  EXPECT_EQ(Report("meters").status, 2);
  EXPECT_EQ(test::RunLogbookctl(disk.home(), "report meter").status, 2);
}

}  // namespace
}  // namespace logbook
