// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// "quorex-host demo" where another one runs already, and in the language that is set for the
// programs.

#include <filesystem>
#include <fstream>

#include "Pages.h"
#include "Workplace.h"

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

class DemonstrationTest : public WholeProgram {
 protected:
  std::string Demo() { return desktop().Folder() + "/demo"; }
  std::vector<std::string> Command(const std::vector<std::string>& options,
                                   const std::string& program = QUOREX_HOST_PROGRAM) {
    std::vector<std::string> command = {program, "demo", "--manual", MANUAL_DIR};
    command.insert(command.end(), options.begin(), options.end());
    return command;
  }
  Environment Variables(const std::string& demo) {
    Environment variables = desktop().Variables();
    variables["LOGBOOK_DEMO"] = demo;
    return variables;
  }
  CommandResult Run(const std::vector<std::string>& command, const std::string& demo) {
    return RunCommand(command, Variables(demo), desktop().NewFile("demo"));
  }
  // A folder with the programs, and this language set for them.
  std::string Programs(const std::string& language) {
    const std::string folder = desktop().Folder() + "/programs";
    fs::create_directory(folder);
    for (const std::string program : {LOGBOOK_PROGRAM, ECM_AGENT, QUOREX_HOST_PROGRAM})
      fs::copy_file(program, folder / fs::path(program).filename());
    SetLanguage(language);
    return folder;
  }
  void SetLanguage(const std::string& language) {
    std::ofstream(desktop().Folder() + "/programs/language.cfg")
        << "[Language]\r\nUse=" << language << "\r\n";
  }
};

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(DemonstrationTest, OneThatRunsIsNeitherThrownAwayNorStartedAgain) {
  ChildProcess first(Command({}), Variables(Demo()), desktop().NewFile("first"));
  const MainPage main(desktop());
  const std::string log_root = Demo() + "/drives/c/QUOREX/inst1/maintain";
  const fs::path log = *fs::directory_iterator(log_root);
  for (const std::vector<std::string>& options :
       std::vector<std::vector<std::string>>{{}, {"--fresh", "--yes"}, {"--autorec"}}) {
    const CommandResult second = Run(Command(options), Demo());
    EXPECT_EQ(second.status, 1) << second.output;
    EXPECT_EQ(second.output,
              "quorex-host: the demonstration in " + Demo() + " is running already\n");
  }
  const std::string other = desktop().Folder() + "/other";
  const CommandResult elsewhere = Run(Command({"--autorec"}), other);
  EXPECT_EQ(elsewhere.status, 1);
  EXPECT_EQ(elsewhere.output,
            "quorex-host: another host is running in this session as QUOREX; end its logbook "
            "first\n");
  EXPECT_FALSE(fs::exists(other));
  EXPECT_TRUE(fs::exists(log));
  MainPage(desktop()).Press(MainPage::Button::kExit);
  EXPECT_EQ(first.WaitForEnd(), 0) << first.Output();
  EXPECT_FALSE(fs::exists(Demo() + ".lock"));
}

TEST_F(DemonstrationTest, OfTwoAtOnceOneIsMadeWholeAndTheOtherSaysWhy) {
  ChildProcess first(Command({"--autorec"}), Variables(Demo()), desktop().NewFile("first"));
  ChildProcess second(Command({"--autorec"}), Variables(Demo()), desktop().NewFile("second"));
  const int one = first.WaitForEnd(), other = second.WaitForEnd();
  EXPECT_TRUE(one == 0 || other == 0) << first.Output() << second.Output();
  for (const auto& [status, said] :
       {std::pair(one, first.Output()), std::pair(other, second.Output())}) {
    EXPECT_TRUE(status == 0 || Holds(said, "is running already")) << said;
  }
  EXPECT_EQ(Run(Command({"--autorec"}), Demo()).status, 0) << "it can be used";
}

TEST_F(DemonstrationTest, ItSpeaksTheLanguageThatIsSetForItsProgramsNowAndLater) {
  const std::string program = Programs("de") + "/quorex-host";
  const CommandResult german = Run(Command({"--autorec"}, program), Demo());
  EXPECT_EQ(german.status, 0) << german.output;
  EXPECT_TRUE(Holds(german.output, "Aufgezeichnet am,")) << german.output;
  EXPECT_TRUE(Holds(german.output, "Z\u00e4hlmittel")) << german.output;
  SetLanguage("en");
  EXPECT_TRUE(Holds(Run(Command({"--autorec"}, program), Demo()).output, "Date Logged,"));
  SetLanguage("ja");
  const CommandResult kept = Run(Command({"--autorec", "--code-page", "932"}, program), Demo());
  EXPECT_EQ(kept.status, 1) << kept.output;
  EXPECT_TRUE(Holds(kept.output, "has code page 1252; --fresh makes a new one")) << kept.output;
  const CommandResult japanese =
      Run(Command({"--autorec", "--fresh", "--yes", "--code-page", "932"}, program), Demo());
  EXPECT_EQ(japanese.status, 0) << japanese.output;
  EXPECT_TRUE(Holds(japanese.output, "\u8a18\u9332\u65e5\u6642,")) << japanese.output;
}

}  // namespace
}  // namespace logbook::e2e
