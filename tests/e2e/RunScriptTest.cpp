// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The script ./run with programs that are built already.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "Pages.h"
#include "Workplace.h"

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

class RunScriptTest : public WholeProgram {
 protected:
  std::string Demo() { return desktop().Folder() + "/demo"; }

  Environment Variables() {
    Environment variables = desktop().Variables();
    variables["LOGBOOK_DEMO"] = Demo();
    variables["LOGBOOK_BIN"] = fs::path(LOGBOOK_PROGRAM).parent_path().string();
    return variables;
  }

  // A terminal without a display and without a session bus.
  Environment BareVariables() {
    Environment variables = Variables();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM",
                             "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"}) {
      variables[name] = std::nullopt;
    }
    return variables;
  }

  CommandResult Run(std::vector<std::string> arguments, const Environment& variables) {
    arguments.insert(arguments.begin(), RUN_SCRIPT);
    return RunCommand(arguments, variables, desktop().NewFile("run"));
  }

  // The host's own command, with the programs and the manual as they lie in the tree.
  CommandResult Demonstrate(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(),
                     {QUOREX_HOST_PROGRAM, "demo", "--manual", SOURCE_FOLDER "/docs/manual"});
    return RunCommand(arguments, BareVariables(), desktop().NewFile("demo"));
  }

  // The same typed at a terminal, where somebody answers a question.
  CommandResult DemonstrateAtATerminal(const std::string& arguments, const std::string& answer) {
    const std::string command = "printf '" + answer +
                                "\\n' | script -qec '" QUOREX_HOST_PROGRAM
                                " demo --manual " SOURCE_FOLDER "/docs/manual " +
                                arguments + "' /dev/null";
    return RunCommand({"/bin/sh", "-c", command}, BareVariables(), desktop().NewFile("demo"));
  }

  // Every file below a folder with its bytes, links with their targets.
  static std::map<std::string, std::string> FilesBelow(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      std::string& content = files[entry.path().string()];
      if (entry.is_symlink()) {
        content = fs::read_symlink(entry.path()).string();
      } else if (entry.is_regular_file()) {
        std::ifstream in(entry.path(), std::ios::binary);
        content.assign(std::istreambuf_iterator<char>(in), {});
      }
    }
    return files;
  }

  long Logs() {
    const fs::path root = Demo() + "/drives/c/QUOREX/inst1/maintain";
    return std::count_if(fs::directory_iterator(root), fs::directory_iterator(),
                         [](const auto& entry) { return entry.is_directory(); });
  }

  // Files at the demonstration workstation's content server that bear this ending.
  long Arrived(const std::string& ending) {
    const std::string server = Demo() + "/content-server";
    return std::count_if(
        fs::recursive_directory_iterator(server), fs::recursive_directory_iterator(),
        [&](const auto& entry) { return entry.path().string().ends_with(ending); });
  }
};

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(RunScriptTest, WithoutADisplayItSaysSoAndMakesOneAutomaticRecord) {
  const auto first = Run({}, BareVariables());
  ASSERT_EQ(first.status, 0) << first.output;
  EXPECT_TRUE(Holds(first.output, "There is no display")) << first.output;
  EXPECT_TRUE(Holds(first.output, "Date Logged,Logbook Folder,")) << first.output;
  EXPECT_TRUE(Holds(first.output, "Automatically logged on Tune Report generation."));
  EXPECT_TRUE(Holds(first.output, "comment.txt")) << first.output;
  const auto list = first.output.find("The list of logs");
  std::istringstream lines(first.output.substr(list, first.output.find("\nNew log") - list));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
  const long logs = Logs();
  EXPECT_EQ(Arrived(".qkvzip"), 1) << first.output;
  EXPECT_EQ(Arrived("listlog.csv"), 1);
  EXPECT_EQ(Arrived(".xml"), 1);
  EXPECT_TRUE(Holds(first.output, ".qkvzip\n")) << first.output;
  EXPECT_GT(logs, 1) << "past logs and the new one";

  const auto second = Run({"--ce"}, BareVariables());
  ASSERT_EQ(second.status, 0) << second.output;
  EXPECT_EQ(Logs(), logs + 1) << "the workstation is kept";
  EXPECT_EQ(Arrived(".qkvzip"), 2) << second.output;

  const auto fresh = Run({"--fresh", "--build", "lumarin"}, BareVariables());
  ASSERT_EQ(fresh.status, 0) << fresh.output;
  EXPECT_EQ(Logs(), logs) << "the workstation is made anew";
}

TEST_F(RunScriptTest, FreshThatFailsLeavesTheOldDemonstrationAsItIs) {
  ASSERT_EQ(Run({"--autorec"}, BareVariables()).status, 0);
  const auto before = FilesBelow(Demo());
  ASSERT_GT(before.size(), 100u);

  const auto typo = Run({"--fresh", "--build", "lumarni"}, BareVariables());
  EXPECT_EQ(typo.status, 2) << typo.output;
  EXPECT_TRUE(Holds(typo.output, "unknown lens family \"lumarni\"")) << typo.output;
  EXPECT_FALSE(Holds(typo.output, "Making the demonstration")) << typo.output;
  EXPECT_EQ(FilesBelow(Demo()), before);

  // No file may grow beyond four kilobytes, which the past logs do.
  const auto fill =
      RunCommand({"/bin/bash", "-c", "trap '' XFSZ; ulimit -f 4; exec '" RUN_SCRIPT "' --fresh"},
                 BareVariables(), desktop().NewFile("run"));
  EXPECT_EQ(fill.status, 1) << fill.output;
  EXPECT_TRUE(Holds(fill.output, "cannot write " + Demo() + ".new/drives/c/")) << fill.output;
  EXPECT_EQ(FilesBelow(Demo()), before);
  EXPECT_FALSE(fs::exists(Demo() + ".new"));

  // A run that was ended between the two moves.
  const long logs = Logs();
  fs::rename(Demo(), Demo() + ".old");
  fs::copy(Demo() + ".old", Demo() + ".new",
           fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  ASSERT_EQ(Run({"--autorec"}, BareVariables()).status, 0);
  EXPECT_EQ(Logs(), logs + 1) << "the old one is back";
  EXPECT_FALSE(fs::exists(Demo() + ".new"));
  EXPECT_FALSE(fs::exists(Demo() + ".old"));
}

TEST_F(RunScriptTest, WrongNameMakesNoDemonstration) {
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--build", "plain+turbo"}, {"--build=", "--fresh"}}) {
    const auto result = Run(options, BareVariables());
    EXPECT_EQ(result.status, 2) << result.output;
    EXPECT_TRUE(Holds(result.output, "quorex-host: unknown ")) << result.output;
    EXPECT_FALSE(fs::exists(Demo()));
  }
}

TEST_F(RunScriptTest, FolderWithoutItsMarkerIsNeitherUsedNorDeleted) {
  fs::create_directories(Demo());
  std::ofstream(Demo() + "/letters.txt") << "mine";
  for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--fresh"}}) {
    const auto result = Run(options, BareVariables());
    EXPECT_EQ(result.status, 1) << result.output;
    EXPECT_TRUE(Holds(result.output, "is not a demonstration workstation")) << result.output;
    EXPECT_TRUE(fs::exists(Demo() + "/letters.txt"));
  }
}

TEST_F(RunScriptTest, FoldersBesideWithoutTheMarkerAreNeitherUsedNorDeleted) {
  for (const std::string beside : {".new", ".old"}) {
    fs::create_directories(Demo() + beside);
    std::ofstream(Demo() + beside + "/letters.txt") << "mine";
    const auto result = Run({}, BareVariables());
    EXPECT_EQ(result.status, 1) << result.output;
    EXPECT_TRUE(Holds(result.output, beside + " is not a demonstration workstation"));
    EXPECT_TRUE(fs::exists(Demo() + beside + "/letters.txt"));
    EXPECT_FALSE(fs::exists(Demo()));
    fs::remove_all(Demo() + beside);
  }
}

TEST_F(RunScriptTest, FreshAsksAtATerminalAndWantsAWordWhereNobodyCanAnswer) {
  ASSERT_EQ(Demonstrate({}).status, 0);
  const long logs = Logs();
  const std::string question =
      "Throw away the demonstration in " + Demo() + " with its " + std::to_string(logs) + " logs";

  const auto nobody = Demonstrate({"--fresh"});
  EXPECT_EQ(nobody.status, 1) << nobody.output;
  EXPECT_TRUE(Holds(nobody.output, "--yes agrees to that")) << nobody.output;
  const auto no = DemonstrateAtATerminal("--fresh", "no");
  EXPECT_EQ(no.status, 1) << no.output;
  EXPECT_TRUE(Holds(no.output, question + "?")) << no.output;
  EXPECT_EQ(Logs(), logs);

  const auto yes = DemonstrateAtATerminal("--fresh", "yes");
  EXPECT_EQ(yes.status, 0) << yes.output;
  EXPECT_TRUE(Holds(yes.output, "Making the demonstration workstation")) << yes.output;
  EXPECT_EQ(Logs(), logs) << "made anew, and one automatic record";
  const auto agreed = Demonstrate({"--fresh", "--yes"});
  EXPECT_EQ(agreed.status, 0) << agreed.output;
  EXPECT_FALSE(Holds(agreed.output, "Throw away")) << agreed.output;
  EXPECT_EQ(Logs(), logs);
}

TEST_F(RunScriptTest, DemonstrationLiesInTheUsersFolderForData) {
  Environment variables = BareVariables();
  variables["LOGBOOK_DEMO"] = std::nullopt;
  variables["XDG_DATA_HOME"] = desktop().Folder() + "/data";
  const auto result =
      RunCommand({QUOREX_HOST_PROGRAM, "demo", "--manual", SOURCE_FOLDER "/docs/manual"}, variables,
                 desktop().NewFile("demo"));
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_TRUE(fs::is_directory(desktop().Folder() +
                               "/data/quorex-logbook-demonstration/drives/c/QUOREX/inst1/maintain"))
      << result.output;
}

TEST_F(RunScriptTest, UnknownOptionAndHelp) {
  const auto unknown = Run({"--nonsense"}, BareVariables());
  EXPECT_EQ(unknown.status, 1);
  EXPECT_TRUE(Holds(unknown.output, "unknown option \"--nonsense\"")) << unknown.output;
  const auto help = Run({"--help"}, BareVariables());
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--fresh", "--ce", "--build", "--autorec", "LOGBOOK_DEMO"}) {
    EXPECT_TRUE(Holds(help.output, option)) << option;
  }
  std::istringstream lines(help.output);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
  EXPECT_FALSE(fs::exists(Demo()));
}

TEST_F(RunScriptTest, WithADisplayRecordAndPrintArriveAtTheContentServerAndExitEndsTheScript) {
  ChildProcess script({RUN_SCRIPT}, Variables(), desktop().NewFile("run"));
  MainPage main(desktop());
  EXPECT_TRUE(Holds(script.Output(), Demo() + "/content-server\n")) << script.Output();
  const std::string captured = "captured ";
  main.Press(MainPage::Button::kRecord);
  WaitFor("the snapshot", [&] { return Holds(script.Output(), captured); });
  std::string log_path = script.Output();
  log_path.erase(0, log_path.find(captured) + captured.size());
  EditorPage editor(desktop(), log_path.substr(0, log_path.find('\n')));
  editor.PressOK();
  desktop().WaitUntilGone(editor.window());
  WaitFor("the package to arrive", [&] { return Arrived(".xml") == 1; });
  EXPECT_EQ(Arrived(".qkvzip"), 1);
  main.Press(MainPage::Button::kPrint);
  WaitFor("the print image to arrive", [&] { return Arrived(".xml") == 2; });
  EXPECT_EQ(Arrived(".pdf"), 1);
  desktop().TakePicture(main.window(), PictureFolder() + "/run.png");
  main.Press(MainPage::Button::kExit);
  EXPECT_EQ(script.WaitForEnd(), 0) << script.Output();
}

}  // namespace
}  // namespace logbook::e2e
