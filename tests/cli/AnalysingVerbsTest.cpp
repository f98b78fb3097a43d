// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The verbs that analyse a folder of logs, as a user calls them: trend, due, diff, export, check.
// What they reckon is tested beside the library; here it is what they are given, where it goes,
// what they say, and that nothing among the logs ever changes.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sstream>
#include <thread>
#include <tuple>

#include "LogbookctlRun.h"
#include "RandomLogs.h"
#include "SampleReadings.h"
#include "Verbs.h"
#include "base/Environment.h"
#include "base/FileLock.h"
#include "support/EnvironmentVariable.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using nlohmann::json;
using test::Outcome;
using test::Quoted;
using test::RandomLogs;

// Names, kinds, attributes, times and bytes of all that lies below a folder, and of itself.
std::string Portrait(const fs::path& folder) {
  std::set<std::string> lines;
  const auto add = [&](const fs::path& path) {
    const fs::file_status status = fs::symlink_status(path);
    std::ostringstream line;
    line << path << ' ' << static_cast<int>(status.type()) << ' '
         << static_cast<int>(status.permissions()) << ' '
         << fs::last_write_time(path).time_since_epoch().count();
    if (fs::is_regular_file(status)) line << test::Read(path);
    lines.insert(line.str());
  };
  add(folder);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) add(entry.path());
  std::string all;
  for (const std::string& line : lines) all += line + '\n';
  return all;
}

// What a thread says, for another one.
class HeardWords : public std::streambuf {
 public:
  bool Hold(const std::string& words) {
    const std::lock_guard lock(one_at_a_time_);
    return heard_.find(words) != std::string::npos;
  }

 protected:
  int_type overflow(int_type byte) override {
    const char letter = static_cast<char>(byte);
    xsputn(&letter, 1);
    return byte;
  }
  std::streamsize xsputn(const char* bytes, std::streamsize size) override {
    const std::lock_guard lock(one_at_a_time_);
    heard_.append(bytes, static_cast<std::size_t>(size));
    return size;
  }

 private:
  std::mutex one_at_a_time_;
  std::string heard_;
};

// A root of logs, and a folder elsewhere for what is written.
class AnalysingVerbs : public testing::Test {
 protected:
  AnalysingVerbs() : folders_(logs_.Add(6)), root_(logs_.NativeRoot()), away_(scratch_.home()) {}

  Outcome Run(const std::string& arguments, const std::string& variables = "") {
    return test::RunLogbookctl(logs_.disk().home(), arguments,
                               "XDG_CACHE_HOME=" + Quoted(away_ + "/cache") + " XDG_CONFIG_HOME=" +
                                   Quoted(away_ + "/config") + " " + variables);
  }

  Outcome OnRoot(const std::string& verb, const std::string& arguments) {
    return Run(verb + " --log-root " + Quoted(root_) + " " + arguments);
  }

  // A file elsewhere.
  std::string File(const std::string& name) const { return away_ + "/" + name; }
  std::string Put(const std::string& name, const std::string& text) const {
    std::ofstream(File(name), std::ios::binary) << text;
    return Quoted(File(name));
  }

  void PutIntoLog(const std::string& folder, const std::string& file, const std::string& bytes) {
    logs_.disk().Put(RandomLogs::PathOf(folder, file), bytes);
  }

  RandomLogs logs_{61};
  std::vector<std::string> folders_;
  std::string root_;
  test::TestMachine scratch_;
  std::string away_;
};

TEST_F(AnalysingVerbs, NothingBelowTheRootChanges) {
  logs_.AddDamaged(4);
  const std::string before = Portrait(root_);
  const std::string pair = folders_[0] + " " + folders_[1];
  const std::string intervals = Put("i.ini", "[Intervals]\nClean Cones=1 week\n");
  EXPECT_EQ(OnRoot("trend", "Oxide").status, 0);
  EXPECT_EQ(OnRoot("trend", "meter:4 bin:0 --json").status, 0);
  EXPECT_EQ(OnRoot("due", "").status, 0);
  EXPECT_EQ(OnRoot("check", "").status, 1);
  EXPECT_EQ(OnRoot("trend", "Oxide --svg " + File("t.svg") + " --html " + File("t.html") +
                                " --csv " + File("t.csv"))
                .status,
            0);
  EXPECT_EQ(OnRoot("due", "--intervals " + intervals + " --ics " + File("d.ics")).status, 0);
  EXPECT_EQ(OnRoot("diff", pair + " --html " + File("d.html")).status, 1);
  EXPECT_EQ(OnRoot("diff", folders_[0] + " --keep-baseline works").status, 0);
  EXPECT_EQ(OnRoot("diff", folders_[1] + " --baseline works").status, 1);
  for (const char* format : {"csv", "jsonl", "xlsx", "sqlite"}) {
    EXPECT_EQ(OnRoot("export", std::string("--where auto:no --format ") + format + " " +
                                   File(std::string("e.") + format))
                  .status,
              0);
  }
  EXPECT_EQ(Portrait(root_), before);
}

TEST_F(AnalysingVerbs, NoFileIsWrittenAmongTheLogs) {
  fs::create_directory_symlink(root_, File("link"));
  fs::create_symlink(root_ + "/" + folders_[0] + "/new", File("dangling"));
  const std::string before = Portrait(root_);
  for (const std::string& place :
       {root_ + "/x", root_ + "/" + folders_[0] + "/comment.txt", File("link") + "/x",
        root_ + "/../maintain/x", File("dangling")}) {
    for (const Outcome& outcome :
         {OnRoot("trend", "Oxide --svg " + place), OnRoot("trend", "Oxide --html " + place),
          OnRoot("trend", "Oxide --csv " + place), OnRoot("due", "--ics " + place),
          OnRoot("diff", folders_[0] + " " + folders_[1] + " --html " + place),
          OnRoot("export", "--format csv " + place)}) {
      EXPECT_NE(outcome.status, 0) << place;
      EXPECT_NE(outcome.err, "") << place;
    }
  }
  EXPECT_NE(OnRoot("export", "--format csv " + root_ + "/x").err.find("lies among the logs"),
            std::string::npos);
  EXPECT_EQ(Portrait(root_), before);
}

TEST_F(AnalysingVerbs, ExportReplacesFilesAloneAndTheFileBehindALink) {
  const std::string pipe = File("pipe"), real = File("real.csv"), part = File("real.csv.1.part~");
  ASSERT_EQ(std::system(("mkfifo " + Quoted(pipe)).c_str()), 0);
  EXPECT_NE(OnRoot("export", "--format csv " + pipe).status, 0);
  EXPECT_TRUE(fs::is_fifo(pipe));

  std::ofstream(real) << "old";
  std::ofstream(part) << "mine";
  fs::create_symlink("real.csv", File("link.csv"));
  EXPECT_EQ(OnRoot("export", "--format csv " + File("link.csv")).status, 0);
  EXPECT_TRUE(fs::is_symlink(File("link.csv")));
  EXPECT_GT(fs::file_size(real), 1000u);
  EXPECT_EQ(test::Read(part), "mine");
}

TEST_F(AnalysingVerbs, NoLogIsNamedByDotsOrNothing) {
  for (const char* name : {"''", ".", ".."}) {
    const Outcome outcome = OnRoot("diff", std::string(name) + " " + folders_[0]);
    EXPECT_EQ(outcome.status, 2) << name;
    EXPECT_NE(outcome.err.find("is no log"), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(OnRoot("diff", folders_[0] + " " + folders_[0] + "/").status, 0);
}

TEST_F(AnalysingVerbs, ARootThatStandsTwiceCountsOnce) {
  fs::create_directory_symlink(root_, File("again"));
  EXPECT_EQ(OnRoot("due", "--json --log-root " + File("again")).out, OnRoot("due", "--json").out);
}

TEST_F(AnalysingVerbs, TheRootComesFromTheOptionOrTheEnvironmentOrTheWorkstation) {
  const std::string expected = OnRoot("due", "--json").out;
  EXPECT_EQ(json::parse(expected).at("roots").at(0).at("root"), root_);
  EXPECT_EQ(Run("due --json").out, expected) << "the workstation of this home";
  const test::TestMachine other;
  fs::create_directory(other.home() + "/logs");
  const std::string variable = "LOGBOOK_ROOT=" + Quoted(other.home() + "/logs");
  EXPECT_EQ(json::parse(Run("due --json", variable).out).at("roots").at(0).at("root"),
            other.home() + "/logs");
  EXPECT_EQ(Run("due --json --log-root " + Quoted(root_), variable).out, expected);
  const Outcome none = test::RunLogbookctl(other.home(), "due");
  EXPECT_EQ(none.status, 1);
  EXPECT_NE(none.err.find("give --log-root DIR or set LOGBOOK_ROOT"), std::string::npos);
  const Outcome missing = Run("check --log-root /nowhere");
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(missing.err, "logbookctl: check /nowhere: run-time error 76: Path not found\n");
}

TEST_F(AnalysingVerbs, TrendHasTheValueOfEveryLog) {
  const json trend = json::parse(OnRoot("trend", "tune:63 --json").out).at("trends").at(0);
  const auto readings = test::ReadAll(logs_, folders_);
  ASSERT_EQ(trend.at("values").size(), readings.size());
  for (std::size_t i = 0; i < readings.size(); ++i) {
    const insight::RowId id = {insight::Catalogue::kTune, 63};
    EXPECT_EQ(trend.at("values").at(i).at("log"), folders_[i]);
    EXPECT_EQ(trend.at("values").at(i).at("value"), readings[i].At(id).Number);
    EXPECT_EQ(trend.at("values").at(i).at("text"),
              insight::PrintedText(test::AllCatalogues(), id, readings[i].At(id)));
  }
}

TEST_F(AnalysingVerbs, TrendTakesOnlyTheLogsOfAQuery) {
  PutIntoLog(folders_[2], "comment.txt", "marmalade\r\n");
  const json trend =
      json::parse(OnRoot("trend", "Oxide --json --where marmalade").out).at("trends").at(0);
  ASSERT_EQ(trend.at("values").size(), 1U);
  EXPECT_EQ(trend.at("values").at(0).at("log"), folders_[2]);
  const Outcome wrong = OnRoot("trend", "Oxide --where 'after:'");
  EXPECT_EQ(wrong.status, 2);
  EXPECT_NE(wrong.err.find('^'), std::string::npos) << "the place of the mistake";
}

TEST_F(AnalysingVerbs, TrendPrintsTheLimitsWithTheVerdict) {
  const std::string file = Put("l.ini", "[tune:63]\nReference=1000\nTolerance=10 %\nAction=200\n");
  const Outcome outcome = OnRoot("trend", "Oxide --limits " + file);
  EXPECT_NE(outcome.out.find("limits    reference 1000, tolerance 10 % (900 to 1100), action 200 "
                             "(800 to 1200)\n"),
            std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find(": act\n"), std::string::npos);
  fs::create_directories(File("config/quorex-logbook"));
  Put("config/quorex-logbook/limits.ini", "[Oxide]\nReference=1000\nAction=200\n");
  EXPECT_NE(OnRoot("trend", "Oxide").out.find("reference 1000, action 200"), std::string::npos);
  const Outcome wrong = OnRoot("trend", "Oxide --limits " + Put("w.ini",
                                                                "\n[Oxyde]\nReference=1\n"
                                                                "Action=1\n"));
  EXPECT_EQ(wrong.status, 1);
  EXPECT_NE(wrong.err.find("w.ini:2: "), std::string::npos) << wrong.err;
  EXPECT_NE(wrong.err.find("Oxide"), std::string::npos) << "what may have been meant";
}

TEST_F(AnalysingVerbs, TrendTellsWhatItCannotDraw) {
  for (const auto& [arguments, status, words] :
       {std::tuple("tune:62", 2, "is a text"), std::tuple("Oxyde", 2, "perhaps Oxide"),
        std::tuple("Oxide --rules 0", 2, "names no rules"),
        std::tuple("Oxide --mark 'Clean Spoons'", 2, "Clean"),
        std::tuple("Oxide --limits /nowhere", 1, "/nowhere")}) {
    const Outcome outcome = OnRoot("trend", arguments);
    EXPECT_EQ(outcome.status, status) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_NE(outcome.err.find(words), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(OnRoot("trend", "").status, 2);
}

TEST_F(AnalysingVerbs, TrendIsPlainWhereNobodyLooks) {
  const Outcome outcome = OnRoot("trend", "Oxide --rules 1-9");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.find('\x1B'), std::string::npos);
  EXPECT_NE(outcome.out.find("median"), std::string::npos);
  const std::string csv = OnRoot("trend", "Oxide --csv -").out;
  EXPECT_EQ(csv.substr(0, 9), "log,date,");
}

TEST_F(AnalysingVerbs, SeveralRootsAreTrendsOfTheirOwn) {
  RandomLogs other(62);
  other.Add(2);
  const json trends =
      json::parse(OnRoot("trend", "Oxide --json --log-root " + Quoted(other.NativeRoot())).out)
          .at("trends");
  ASSERT_EQ(trends.size(), 2U);
  EXPECT_EQ(trends.at(0).at("root"), root_);
  EXPECT_EQ(trends.at(1).at("values").size(), 2U);
}

TEST_F(AnalysingVerbs, DueUpdatesTheCalendarAndNeverDoublesIt) {
  PutIntoLog(folders_[0], "logfile.ini",
             "[LogFile]\r\nDate=01/05/2024 08:00:00\r\n[Maintenance]\r\nItem1=1\r\n");
  const auto write = [&](const std::string& interval) {
    const std::string intervals = Put("i.ini", "[Intervals]\nClean Cones=" + interval + "\n");
    EXPECT_EQ(OnRoot("due", "--intervals " + intervals + " --ics " + File("d.ics")).status, 0);
    return test::Read(File("d.ics"));
  };
  const auto count = [](const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + 1)) {
      ++found;
    }
    return found;
  };
  const std::string first = write("1 month");
  EXPECT_EQ(count(first, "BEGIN:VEVENT"), 1U) << first;
  EXPECT_EQ(write("1 month"), first);
  const std::string second = write("2 months");
  EXPECT_EQ(count(second, "BEGIN:VEVENT"), 1U);
  EXPECT_EQ(count(second, "SEQUENCE:1"), 1U);
  Put("d.ics", "no calendar");
  const std::string intervals = Quoted(File("i.ini"));
  const Outcome refused = OnRoot("due", "--intervals " + intervals + " --ics " + File("d.ics"));
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(test::Read(File("d.ics")), "no calendar");
}

TEST_F(AnalysingVerbs, DueReckonsForTheDayThatIsAsked) {
  PutIntoLog(folders_[0], "logfile.ini",
             "[LogFile]\r\nDate=02/28/2020 23:30:00\r\n[Maintenance]\r\nItem17=1\r\n");
  const std::string intervals = Put("i.ini", "[Intervals]\nChange EM=2 days\n");
  const json root =
      json::parse(OnRoot("due", "--json --today 2020-02-29 --intervals " + intervals).out)
          .at("roots")
          .at(0);
  EXPECT_EQ(root.at("today"), "2020-02-29");
  const json& item = root.at("items").at(17);
  EXPECT_EQ(item.at("certain").at("log"), folders_[0]);
  EXPECT_EQ(item.at("due"), "2020-03-01");
  EXPECT_EQ(item.at("days_left"), 1);
  EXPECT_EQ(item.at("state"), "soon");
  EXPECT_EQ(OnRoot("due", "--today 2020-02-30").status, 2);
  const Outcome wrong = OnRoot("due", "--intervals " + Put("w.ini", "[Intervals]\nX=1\n"));
  EXPECT_EQ(wrong.status, 1);
  EXPECT_NE(wrong.err.find("w.ini:2: there is no item \"X\""), std::string::npos) << wrong.err;
}

TEST_F(AnalysingVerbs, DiffEndsWithTheStatusOfDiff) {
  const Outcome equal = OnRoot("diff", folders_[0] + " " + folders_[0]);
  EXPECT_EQ(equal.status, 0);
  EXPECT_NE(equal.out.find("\nno difference\n"), std::string::npos);
  EXPECT_EQ(OnRoot("diff", folders_[0] + " " + folders_[1]).status, 1);
  for (const std::string& arguments :
       {folders_[0], folders_[0] + " none", std::string(),
        folders_[0] + " " + folders_[1] + " --tolerance x", folders_[0] + " --baseline none"}) {
    const Outcome trouble = OnRoot("diff", arguments);
    EXPECT_EQ(trouble.status, 2) << arguments;
    EXPECT_EQ(trouble.out, "") << arguments;
    EXPECT_NE(trouble.err, "") << arguments;
  }
}

TEST_F(AnalysingVerbs, DiffTakesPathsAndFolderNames) {
  const std::string path = root_ + "/" + folders_[0];
  EXPECT_EQ(Run("diff " + path + " " + path + "/").status, 0);
  EXPECT_EQ(OnRoot("diff", path + " " + folders_[1]).status, 1);
}

TEST_F(AnalysingVerbs, DiffGoesFromLogToLogOfASeries) {
  const json differences =
      json::parse(
          OnRoot("diff", folders_[0] + " " + folders_[1] + " " + folders_[2] + " --json").out)
          .at("differences");
  ASSERT_EQ(differences.size(), 2U);
  EXPECT_EQ(differences.at(1).at("old").at("log"), folders_[1]);
  EXPECT_EQ(differences.at(1).at("new").at("log"), folders_[2]);
}

TEST_F(AnalysingVerbs, DiffForgivesWhatATolerancesFileNames) {
  const auto rows = [&](const std::string& more) {
    std::set<std::string> found;
    const json document =
        json::parse(OnRoot("diff", folders_[0] + " " + folders_[1] + " --json " + more).out);
    for (const json& row : document.at("differences").at(0).at("values")) {
      found.insert(row.at("catalogue").get<std::string>() + ":" +
                   std::to_string(row.at("row").get<int>()));
    }
    return found;
  };
  const auto has = [](const std::set<std::string>& found, const std::string& start) {
    return std::any_of(found.begin(), found.end(),
                       [&](const std::string& each) { return each.starts_with(start); });
  };
  EXPECT_TRUE(rows("").contains("tune:63"));
  EXPECT_TRUE(has(rows(""), "meter:"));
  const std::string file = Put("t.ini", "[Tolerances]\nOxide=1000\nmeter=1e9\n");
  const std::set<std::string> fewer = rows("--tolerances " + file);
  EXPECT_FALSE(fewer.contains("tune:63"));
  EXPECT_FALSE(has(fewer, "meter:"));
  EXPECT_TRUE(has(fewer, "analog:"));
  const Outcome wrong = OnRoot("diff", folders_[0] + " " + folders_[1] + " --tolerances " +
                                           Put("w.ini", "[Tolerances]\nOxide=x\n"));
  EXPECT_EQ(wrong.status, 2);
  EXPECT_NE(wrong.err.find("w.ini:2: "), std::string::npos);
}

TEST_F(AnalysingVerbs, ABaselineOutlivesItsLog) {
  EXPECT_EQ(OnRoot("diff", folders_[0] + " --keep-baseline works").status, 0);
  fs::remove_all(root_ + "/" + folders_[0]);
  const Outcome outcome = OnRoot("diff", folders_[1] + " --baseline works");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("old  " + folders_[0]), std::string::npos);
  EXPECT_NE(Run("diff --baselines").out.find("works\t"), std::string::npos);
  EXPECT_EQ(Run("diff --drop-baseline works").status, 0);
  EXPECT_EQ(Run("diff --baselines").out, "");
}

TEST_F(AnalysingVerbs, ADamagedBaselineIsNamedAndDoesNotHideTheOthers) {
  for (const char* name : {"first", "second", "third"}) {
    EXPECT_EQ(OnRoot("diff", folders_[0] + " --keep-baseline " + name).status, 0);
  }
  Put("config/quorex-logbook/baselines/second.json", "{\"version\": 1, \"root");
  const Outcome outcome = Run("diff --baselines");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(outcome.out.starts_with("first\t")) << outcome.out;
  EXPECT_NE(outcome.out.find("\nthird\t"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.err.find("baseline \"second\" cannot be read: "), std::string::npos);
  EXPECT_NE(outcome.err.find("damaged"), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find("json.exception"), std::string::npos) << outcome.err;
}

TEST_F(AnalysingVerbs, NoOutputGoesIntoALogOfAnyRoot) {
  const std::string other = away_ + "/other/26010100";
  fs::create_directories(other);
  std::ofstream(other + "/LOGFILE.INI") << "[LogFile]\r\n";
  const auto before = test::Everything(other);
  for (const std::string& arguments :
       {"export --format csv " + Quoted(other + "/e.csv"),
        "trend Oxide --csv " + Quoted(other + "/t.csv"), "due --ics " + Quoted(other + "/d.ics"),
        "diff " + folders_[0] + " " + folders_[1] + " --html " + Quoted(other + "/d.html")}) {
    const Outcome outcome = Run(arguments + " --log-root " + Quoted(root_));
    EXPECT_NE(outcome.status, 0) << arguments;
    EXPECT_NE(outcome.err.find("lies among the logs"), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(test::Everything(other), before);
}

TEST_F(AnalysingVerbs, NothingThatATerminalObeysComesOutOfALog) {
  PutIntoLog(folders_[0], "comment.txt", "red \x1B[31m\x1B]0;title\x07 \x7F end\r\n");
  const std::string pair = folders_[0] + " " + folders_[1];
  for (const auto& [verb, arguments] : {std::pair<std::string, std::string>("find", "red"),
                                        {"show", folders_[0]},
                                        {"diff", pair}}) {
    const std::string out = OnRoot(verb, arguments).out;
    EXPECT_NE(out.find("red \\x1B[31m\\x1B]0;title\\x07 \\x7F end"), std::string::npos) << out;
    EXPECT_EQ(out.find_first_of("\x1B\x07\x7F"), std::string::npos) << verb;
  }
  const json kept = json::parse(OnRoot("find", "red --json").out);
  EXPECT_EQ(kept.at("logs").at(0).at("comment"), "red \x1B[31m\x1B]0;title\x07 \x7F end");
  const Outcome told = OnRoot("show", "'no\x1B[2Jlog'");
  EXPECT_EQ(told.err.find('\x1B'), std::string::npos) << told.err;
}

TEST_F(AnalysingVerbs, NoOutputGoesBelowTheUsualRootsEither) {
  const test::TestMachine other;
  const std::string named = other.home() + "/logs/26010100";
  fs::create_directories(named);
  const std::string variables = "LOGBOOK_ROOT=" + Quoted(other.home() + "/logs");
  // The root of the call is neither that of the variable nor that of the workstation.
  const std::string call = " --log-root " + Quoted(File("elsewhere"));
  fs::create_directories(File("elsewhere"));
  for (const std::string& target :
       {other.home() + "/logs/e.csv", named + "/e.csv", root_ + "/e.csv"}) {
    const Outcome outcome = Run("export --format csv " + Quoted(target) + call, variables);
    EXPECT_NE(outcome.status, 0) << target;
    EXPECT_FALSE(fs::exists(target)) << target;
  }
  const Outcome found =
      Run("find" + call, "XDG_CACHE_HOME=" + Quoted(other.home() + "/logs") + " " + variables);
  EXPECT_NE(found.err.find("the cache lies among the logs"), std::string::npos) << found.err;
  EXPECT_FALSE(fs::exists(other.home() + "/logs/quorex-logbook"));
}

TEST_F(AnalysingVerbs, WhatCannotBothBeDoneIsRefused) {
  const std::string pair = folders_[0] + " " + folders_[1] + " ";
  EXPECT_EQ(OnRoot("diff", folders_[0] + " --keep-baseline works").status, 0);
  for (const auto& [verb, arguments] : std::vector<std::pair<std::string, std::string>>{
           {"diff", pair + "--json --html -"},
           {"diff", folders_[0] + " --keep-baseline a --baseline works"},
           {"diff", folders_[0] + " --keep-baseline ''"},
           {"diff", folders_[0] + " --baselines"},
           {"diff", folders_[0] + " --drop-baseline works"},
           {"diff", "--baselines --json"},
           {"trend", "Oxide --json --csv -"},
           {"trend", "Oxide --svg - --html -"}}) {
    const Outcome outcome = OnRoot(verb, arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
  }
  EXPECT_TRUE(Run("diff --baselines").out.starts_with("works\t"));
}

TEST_F(AnalysingVerbs, ARowHasLimitsOnce) {
  const std::string file = Put("l.ini",
                               "[tune:63]\nReference=1\nAction=1\n"
                               "[Oxide]\nReference=2\nAction=1\n");
  const Outcome outcome = OnRoot("trend", "Oxide --limits " + file);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("l.ini:4: the row has limits already"), std::string::npos)
      << outcome.err;
}

TEST_F(AnalysingVerbs, AFolderThatIsNoLogIsToldAsThat) {
  fs::create_directories(File("nothing"));
  for (const std::string& arguments :
       {"show " + Quoted(File("nothing")),
        "diff " + Quoted(File("nothing")) + " " + Quoted(root_ + "/" + folders_[0])}) {
    const Outcome outcome = Run(arguments);
    EXPECT_NE(outcome.status, 0) << arguments;
    EXPECT_NE(outcome.err.find("holds no file of a log"), std::string::npos) << outcome.err;
  }
}

TEST_F(AnalysingVerbs, ANameWithALineEndForgesNoLine) {
  const std::string forged = "26\nlog root: sound";
  fs::copy(root_ + "/" + folders_[0], root_ + "/" + forged);
  for (const std::string& verb :
       {std::string("check"), std::string("find --columns log"), "show '" + forged + "'",
        "diff " + folders_[0] + " '" + forged + "'"}) {
    const std::string out = Run(verb + " --log-root " + Quoted(root_)).out;
    EXPECT_NE(out.find("log root: sound"), std::string::npos) << verb;
    EXPECT_EQ(out.find("\nlog root: sound"), std::string::npos) << out;
  }
}

TEST_F(AnalysingVerbs, ExportWritesTheSameToAFileAndToStandardOutput) {
  for (const char* format : {"csv", "jsonl"}) {
    for (const char* shape : {"long", "wide"}) {
      const std::string options = std::string("--format ") + format + " --shape " + shape + " ";
      Put("e", "an older file");
      EXPECT_EQ(OnRoot("export", options + File("e")).status, 0);
      const Outcome piped = OnRoot("export", options + "-");
      EXPECT_EQ(piped.status, 0);
      EXPECT_EQ(test::Read(File("e")), piped.out);
      EXPECT_FALSE(piped.out.empty());
    }
  }
}

TEST_F(AnalysingVerbs, ExportTakesOnlyTheLogsOfAQuery) {
  PutIntoLog(folders_[3], "comment.txt", "marmalade\r\n");
  const std::string out = OnRoot("export", "--format jsonl --shape wide --where marmalade -").out;
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1);
  EXPECT_EQ(json::parse(out).at("log"), folders_[3]);
}

TEST_F(AnalysingVerbs, AnExportThatFailsLeavesTheOlderFileAndNothingElse) {
  const std::string file = Put("e.csv", "an older file");
  EXPECT_EQ(OnRoot("export", "--format csv /nowhere/e.csv").status, 1);
  EXPECT_EQ(OnRoot("export", "--format xlsx -").status, 2);
  EXPECT_EQ(OnRoot("export", "--format sqlite " + Quoted(away_)).status, 1);
  EXPECT_EQ(OnRoot("export", "--format csv --where 'after:' " + file).status, 2);
  EXPECT_EQ(OnRoot("export", "--format none " + file).status, 2);
  EXPECT_EQ(test::Read(File("e.csv")), "an older file");
  EXPECT_FALSE(fs::exists(File("e.csv.part~")));
}

TEST_F(AnalysingVerbs, WhatAKilledExportHasLeftGoesWithTheNextOne) {
  const std::string file = File("killed.csv"), part = File("killed.csv.part~");
  std::ofstream(part) << "a half";
  EXPECT_EQ(OnRoot("export", "--format nothing " + file).status, 2);
  EXPECT_EQ(test::Read(part), "a half") << "only an export takes it away";
  EXPECT_EQ(OnRoot("export", "--format csv " + file).status, 0);
  EXPECT_FALSE(fs::exists(part));
  EXPECT_GT(fs::file_size(file), 1000u);
}

// The name of what is unfinished is one export's alone.
TEST_F(AnalysingVerbs, AnExportWaitsForAnotherOneAndSaysSo) {
  const test::EnvironmentVariable home("LOGBOOK_HOME", logs_.disk().home().c_str());
  const test::EnvironmentVariable cache("XDG_CACHE_HOME", (away_ + "/cache").c_str());
  const std::string folder = UserCacheFolder() + "/quorex-logbook";
  fs::create_directories(folder);
  std::optional<FileLock> another(std::in_place, folder + "/export.lock", FileLock::Patience::kTry);
  ASSERT_TRUE(another->IsHeld());
  const char* const typed = "C:\\e.csv";
  const std::string file = logs_.disk().Native(typed);
  logs_.disk().Put(typed, "an older file");
  const std::array words = {"logbookctl", "export", "--format", "csv", typed};
  HeardWords heard;
  std::atomic<int> status = -1;
  std::thread export_of_ours([&] {
    std::ostringstream out;
    std::ostream err(&heard);
    cli::Frame frame(out, err);
    cli::AddExport(frame);
    status = frame.Run(static_cast<int>(words.size()), words.data());
  });
  while (status == -1 && !heard.Hold("waits for another export")) std::this_thread::yield();
  EXPECT_EQ(status, -1);
  EXPECT_EQ(test::Read(file), "an older file");
  EXPECT_FALSE(fs::exists(file + ".part~"));
  another.reset();
  export_of_ours.join();
  EXPECT_EQ(status, 0);
  EXPECT_GT(fs::file_size(file), 1000u);
}

TEST_F(AnalysingVerbs, CheckEndsWithZeroOneOrTwo) {
  const Outcome sound = OnRoot("check", "--today 2024-01-20");
  EXPECT_EQ(sound.status, 0);
  EXPECT_EQ(sound.out, "no finding\n");
  PutIntoLog(folders_[0], "comment.txt", "");
  const Outcome found = OnRoot("check", "--today 2024-01-20");
  EXPECT_EQ(found.status, 1);
  EXPECT_EQ(found.out.substr(0, 14), "comment-empty:");
  const json document = json::parse(OnRoot("check", "--today 2024-01-20 --json").out);
  EXPECT_EQ(document.at("roots").at(0).at("findings").at(0).at("log"), folders_[0]);
}

}  // namespace
}  // namespace logbook
