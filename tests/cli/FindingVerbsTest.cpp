// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The verbs find and show, as a user calls them.

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "LogbookctlRun.h"
#include "RandomLogs.h"
#include "support/RootPortrait.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::Outcome;
using test::Quoted;
using test::RandomLogs;
using testing::HasSubstr;

class FindingVerbs : public testing::Test {
 protected:
  FindingVerbs() : folders_(logs_.Add(5)) {
    logs_.disk().Put(RandomLogs::PathOf(folders_[1], "comment.txt"), "=SUM of cones\r\nmore\r\n");
    logs_.disk().Put(RandomLogs::PathOf(folders_[3], "comment.txt"), "cones again\r\n");
    logs_.disk().Put(RandomLogs::PathOf(folders_[3], "auser.txt"), "17.5\r\n");
  }

  Outcome Run(const std::string& arguments) {
    return test::RunLogbookctl(logs_.disk().home(), arguments,
                               "XDG_CACHE_HOME=" + Quoted(scratch_.home() + "/cache"));
  }
  Outcome Find(const std::string& arguments) {
    return Run("find --log-root " + Quoted(logs_.NativeRoot()) + " " + arguments);
  }

  RandomLogs logs_{41};
  std::vector<std::string> folders_;
  test::TestMachine scratch_;
};

// A home without a workstation, and the demonstration's logs in a folder of the user.
class DemonstrationRoot : public testing::Test {
 protected:
  DemonstrationRoot() { names_ = logs_.Add(2); }

  void PutDemonstration(const std::string& folder) {
    std::filesystem::create_directories(folder);
    std::filesystem::copy(logs_.disk().home(), folder, std::filesystem::copy_options::recursive);
  }
  Outcome Find(const std::string& variables = "") {
    return test::RunLogbookctl(
        user_.home() + "/nothing", "find ''",
        "env -C " + Quoted(user_.home()) + " HOME=" + Quoted(user_.home()) +
            " XDG_DATA_HOME= XDG_CACHE_HOME= LOGBOOK_ROOT= LOGBOOK_DEMO= " + variables);
  }

  RandomLogs logs_{11};
  test::TestMachine user_;
  std::vector<std::string> names_;
};

TEST_F(DemonstrationRoot, TheOneInTheUsersDataFolderIsFoundAndTold) {
  EXPECT_EQ(Find().status, 1);
  PutDemonstration(user_.home() + "/.local/share/quorex-logbook-demonstration");
  const Outcome found = Find();
  EXPECT_EQ(found.status, 0) << found.err;
  EXPECT_THAT(found.out, HasSubstr(names_.at(0)));
  EXPECT_THAT(found.err, HasSubstr("the logs are those of the demonstration in " + user_.home() +
                                   "/.local/share/quorex-logbook-demonstration\n"));
}

TEST_F(DemonstrationRoot, TheOneOfTheWorkingFolderGoesBeforeAndIsTold) {
  PutDemonstration(user_.home() + "/.local/share/quorex-logbook-demonstration");
  PutDemonstration(user_.home() + "/demo");
  EXPECT_THAT(Find().err, HasSubstr("the logs are those of the demonstration in demo\n"));
}

TEST_F(DemonstrationRoot, OneThatAVariableNamesIsTheOnlyOneAndNotTold) {
  PutDemonstration(user_.home() + "/demo");
  PutDemonstration(user_.home() + "/named");
  const Outcome found = Find("LOGBOOK_DEMO=named");
  EXPECT_EQ(found.status, 0);
  EXPECT_EQ(found.err, "");
  EXPECT_EQ(Find("LOGBOOK_DEMO=elsewhere").status, 1);
}

TEST_F(FindingVerbs, FoundLogsAreATableTheNewestFirst) {
  const Outcome outcome = Find("cones --columns log,comment");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  const std::size_t newer = outcome.out.find(folders_[3]);
  ASSERT_NE(newer, std::string::npos);
  EXPECT_LT(newer, outcome.out.find(folders_[1]));
  EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 3);
}

TEST_F(FindingVerbs, LimitSaysHowManyThereAre) {
  const Outcome outcome = Find("--limit 2 --sort log:asc --columns log");
  EXPECT_NE(outcome.out.find(folders_[0]), std::string::npos);
  EXPECT_EQ(outcome.out.find(folders_[2]), std::string::npos);
  EXPECT_EQ(outcome.err, "logbookctl: find: 2 of 5 logs shown\n");
}

TEST_F(FindingVerbs, LimitIsAtLeastOne) {
  for (const char* wrong : {"-1", "0", "many"}) {
    const Outcome outcome = Find(std::string("--limit ") + wrong);
    EXPECT_EQ(outcome.status, 2) << wrong;
    EXPECT_EQ(outcome.out, "") << wrong;
    EXPECT_NE(outcome.err.find("expected a whole number of 1 or more"), std::string::npos)
        << outcome.err;
  }
}

TEST_F(FindingVerbs, ALabelIsNoFormulaInCsvEither) {
  EXPECT_TRUE(Find("--csv --columns analog:22").out.starts_with("'+5V(Press gauge) (V)\r\n"));
  const Outcome trend = Run("trend analog:22 --csv - --log-root " + Quoted(logs_.NativeRoot()));
  EXPECT_NE(trend.out.find(",analog,22,'+5V(Press gauge),V,"), std::string::npos) << trend.err;
}

TEST_F(FindingVerbs, AMissingNameIsToldWithWhatWasExpected) {
  for (const char* arguments : {"--columns ''", "--columns date,,log", "--sort ''"}) {
    const Outcome outcome = Find(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_NE(outcome.err.find("find: a name is missing: expected a label"), std::string::npos)
        << outcome.err;
  }
}

TEST_F(FindingVerbs, AnOrderThatIsNoneIsToldWithWhatWasExpected) {
  for (const char* key : {"date", "meter:0", "log"}) {
    const Outcome outcome = Find(std::string("--sort ") + key + ":up");
    EXPECT_EQ(outcome.status, 2) << key;
    EXPECT_EQ(outcome.err, std::string("logbookctl: find: \"up\" is no order: expected \"") + key +
                               ":asc\" or \"" + key + ":desc\"\n");
  }
}

TEST_F(FindingVerbs, WithoutAScanTheIndexAnswersAsItStandsAndSaysSo) {
  const Outcome first = Find("--no-scan --columns log");
  EXPECT_NE(first.err.find("has no whole index yet"), std::string::npos) << first.err;
  EXPECT_EQ(std::count(first.out.begin(), first.out.end(), '\n'), 6);
  fs::remove_all(logs_.NativeRoot() + "/" + folders_[2]);
  const Outcome behind = Find("--no-scan --columns log");
  EXPECT_EQ(behind.out, first.out);
  EXPECT_NE(behind.err.find(" as of 20"), std::string::npos) << behind.err;
  EXPECT_NE(Find("--columns log").out, first.out);
  const Outcome after = Find("--no-scan --columns log");
  EXPECT_EQ(after.out.find(folders_[2]), std::string::npos);
  EXPECT_EQ(after.status, 0);
  // Without the file of the index there is nothing to answer from.
  for (const auto& entry : fs::recursive_directory_iterator(scratch_.home() + "/cache")) {
    if (entry.path().extension() == ".db") fs::remove(entry.path());
  }
  EXPECT_EQ(Find("--no-scan --columns log").out, after.out);
}

TEST_F(FindingVerbs, CsvHoldsNoFormulas) {
  const Outcome outcome = Find("sum --csv --columns log,comment");
  EXPECT_EQ(outcome.out, "Log,Comment\r\n" + folders_[1] + ",'=SUM of cones\r\n");
}

TEST_F(FindingVerbs, JsonHoldsValuesWithTheirStates) {
  const Outcome outcome = Find("--json --columns meter:0,meter:4 '\"cones again\"'");
  const json found = json::parse(outcome.out);
  EXPECT_EQ(found["count"], 1);
  EXPECT_EQ(found["logs"][0]["log"], folders_[3]);
  EXPECT_EQ(found["logs"][0]["comment"], "cones again");
  EXPECT_EQ(found["logs"][0]["values"][0]["value"], 17.5);
  EXPECT_EQ(found["logs"][0]["values"][0]["state"], "ok");
  EXPECT_EQ(found["logs"][0]["values"][1]["state"], "short");
  EXPECT_TRUE(found["logs"][0]["values"][1]["value"].is_null());
}

TEST_F(FindingVerbs, WrongQueryIsMarkedAndLabelsAreOffered) {
  const Outcome outcome = Find("tune:Oxyde");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("character 6: no label of catalogue tune begins with \"Oxyde\""),
            std::string::npos);
  EXPECT_NE(outcome.err.find("\n       ^\n"), std::string::npos);
  EXPECT_NE(outcome.err.find("near: \"Oxide\""), std::string::npos);
}

TEST_F(FindingVerbs, SeveralRootsAreOneAnswer) {
  RandomLogs other(42);
  const std::vector<std::string> more = other.Add(2);
  other.disk().Put(RandomLogs::PathOf(more[1], "comment.txt"), "cones there\r\n");
  const Outcome outcome = Find("cones --json --log-root " + Quoted(other.NativeRoot()));
  const json found = json::parse(outcome.out);
  EXPECT_EQ(found["count"], 3);
  EXPECT_EQ(found["logs"][0]["log"], folders_[3]);
  EXPECT_EQ(found["logs"].back()["log"] == more[1] || found["logs"][1]["log"] == more[1], true);
}

TEST_F(FindingVerbs, NothingBelowTheRootChanges) {
  const auto before = test::RootPortrait(logs_.NativeRoot());
  Find("cones --json");
  EXPECT_EQ(Find("'tune:0>1' --csv --sort meter:0").err, "");
  Run("show " + folders_[0] + " --log-root " + Quoted(logs_.NativeRoot()));
  EXPECT_EQ(test::RootPortrait(logs_.NativeRoot()), before);
}

TEST_F(FindingVerbs, ShowPrintsARowOrTheWholeLog) {
  const std::string root = " --log-root " + Quoted(logs_.NativeRoot());
  const Outcome row = Run("show " + folders_[3] + " meter:0 --json" + root);
  const json shown = json::parse(row.out);
  EXPECT_EQ(shown["values"].size(), 1U);
  EXPECT_EQ(shown["values"][0]["text"], "18");
  const json whole = json::parse(Run("show " + folders_[3] + " --json" + root).out);
  EXPECT_EQ(whole["values"].size(), 775U);
  const Outcome text = Run("show " + folders_[3] + " meter" + root);
  EXPECT_NE(text.out.find("Comment:  cones again\n"), std::string::npos);
  EXPECT_NE(text.out.find("(short)"), std::string::npos);
  EXPECT_EQ(Run("show 00000000" + root).status, 1);
}

TEST_F(FindingVerbs, ShowTellsOptionsAsTheyAreAndWhatThereIsNone) {
  logs_.disk().Put(RandomLogs::PathOf(folders_[0], "logfile.ini"),
                   "[LogFile]\r\nDate=01/05/2024 08:00:00\r\n[OPTION]\r\nLENS=1\r\nAFC=2.5\r\n");
  fs::remove(logs_.NativeRoot() + "/" + folders_[0] + "/comment.txt");
  const std::string root = " --log-root " + Quoted(logs_.NativeRoot());
  const Outcome text = Run("show " + folders_[0] + " meter:0" + root);
  EXPECT_NE(text.out.find("\nOptions:  LENS AFC=2.5\nTicks:    none\nComment:  none\n"),
            std::string::npos)
      << text.out;
}

}  // namespace
}  // namespace logbook
