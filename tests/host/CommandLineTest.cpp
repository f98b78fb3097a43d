// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The commands of the real program that need no bus.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <string>
#include <vector>

#include "host/HostBus.h"
#include "host/Workstation.h"
#include "support/TestMachine.h"

namespace logbook::host {
namespace {

class CommandLine : public ::testing::Test {
 protected:
  test::ProgramResult Run(const std::vector<std::string>& words) {
    QStringList arguments;
    for (const std::string& word : words) arguments << QString::fromStdString(word);
    return test::RunProgram(QStringLiteral(QUOREX_HOST_PATH), arguments, home_.home());
  }

  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  test::TestMachine home_;
};

TEST_F(CommandLine, HelpTellsTheCommandsAndTheirOptions) {
  const auto help = Run({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const std::string command : {"init", "fill", "snapshot", "run"}) {
    EXPECT_NE(help.out.find(command), std::string::npos) << command;
    EXPECT_EQ(Run({command, "--help"}).status, 0);
  }
  for (const std::string option : {"--slow", "--busy", "--dead", "--deaf", "--broken", "--build"}) {
    EXPECT_NE(Run({"run", "--help"}).out.find(option), std::string::npos) << option;
  }
}

TEST_F(CommandLine, WrongUseHasStatusTwo) {
  const std::vector<std::vector<std::string>> cases = {
      {},
      {"dance"},
      {"run"},
      {"fill"},
      {"fill", "--logs", "0"},
      {"fill", "--logs", "3", "--until", "yesterday"},
      {"fill", "--logs", "3", "--broken", "slightly"},
      {"init", "--build", "turbo"},
      {"init", "--code-page", "437"},
      {"snapshot"},
      {"run", "--id", "A", "--dead", "--deaf"},
      {"run", "--id", "A", "--slow", "-1"},
  };
  for (const auto& words : cases) {
    const auto result = Run(words);
    EXPECT_EQ(result.status, 2) << ::testing::PrintToString(words);
    EXPECT_FALSE(result.err.empty()) << ::testing::PrintToString(words);
  }
}

TEST_F(CommandLine, InitMakesTheWorkstationInTheHomeOfTheEnvironment) {
  EXPECT_EQ(Run({"init", "--code-page", "950", "--build", "lumarin"}).status, 0);
  const Workstation workstation = OpenWorkstation(home_.home());
  EXPECT_EQ(workstation.machine.code_page->Number(), 950);
  EXPECT_EQ(BuildName(InstrumentOf(workstation).build), "lumarin");
}

TEST_F(CommandLine, FillMakesWorkstationAndLogsAtOnce) {
  const auto result = Run({"fill", "--logs", "4", "--until", "2026-11-15", "--build", "plain"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(result.out.find("4 logs"), std::string::npos) << result.out;
  EXPECT_EQ(LogCountIn(home_, "C:\\QUOREX\\inst1\\maintain"), 4);
}

TEST_F(CommandLine, FillWithoutABuildTakesTheWorkstationsOrTheDemonstrationBuild) {
  EXPECT_EQ(Run({"fill", "--logs", "1"}).status, 0);
  EXPECT_EQ(InstrumentOf(OpenWorkstation(home_.home())).build, ParseBuild(kDemonstrationBuild));
  test::TestMachine other;
  EXPECT_EQ(Run({"init", "--home", other.home(), "--build", "trz-cs"}).status, 0);
  const auto filled = Run({"fill", "--home", other.home(), "--logs", "1", "--until", "2026-11-15"});
  EXPECT_EQ(filled.status, 0);
  EXPECT_NE(other.Get("C:\\QUOREX\\inst1\\maintain\\26111500\\logfile.ini")
                .find("LENS=1\r\nLENS2=1\r\nLENS3=0\r\n"),
            std::string::npos);
}

TEST_F(CommandLine, SnapshotTakesANativeFolderOrAPathText) {
  const std::vector<std::string> rest = {"--log-number", "3",      "--date",
                                         "2026-11-15",   "--seed", "5"};
  for (const std::string& folder : {home_.home() + "/native", std::string("C:\\log")}) {
    std::vector<std::string> words = {"snapshot", "--folder", folder};
    words.insert(words.end(), rest.begin(), rest.end());
    EXPECT_EQ(Run(words).status, 0) << folder;
  }
  const std::string native = home_.home() + "/native/";
  for (const SnapshotFile& file : MakeSnapshot({})) {
    EXPECT_EQ(home_.Get(native + file.name), home_.Get("C:\\log\\" + file.name)) << file.name;
  }
  EXPECT_NE(home_.Get("C:\\log\\logfile.ini").find("[OPTION]"), std::string::npos);
}

TEST_F(CommandLine, WithoutAHomeNothingIsInvented) {
  for (const std::vector<std::string>& words : {std::vector<std::string>{"init"},
                                                {"fill", "--logs", "1"},
                                                {"snapshot", "--folder", "C:\\log"}}) {
    std::vector<std::string> all = words;
    all.insert(all.end(), {"--home", ""});
    const auto result = Run(all);
    EXPECT_EQ(result.status, 1) << words[0];
    EXPECT_NE(result.err.find("there is no home"), std::string::npos) << result.err;
  }
  EXPECT_FALSE(home_.Has("C:\\log"));
}

TEST_F(CommandLine, FailuresHaveStatusOneAndASentence) {
  home_.Put(home_.home() + "/file", "");
  const auto result = Run({"snapshot", "--folder", home_.home() + "/file"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("cannot make the folder"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace logbook::host
