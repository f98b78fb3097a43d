// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The script ./run with programs that are built already.

#include <algorithm>
#include <filesystem>
#include <fstream>

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

TEST_F(RunScriptTest, UnknownOptionAndHelp) {
  const auto unknown = Run({"--nonsense"}, BareVariables());
  EXPECT_EQ(unknown.status, 1);
  EXPECT_TRUE(Holds(unknown.output, "unknown option \"--nonsense\"")) << unknown.output;
  const auto help = Run({"--help"}, BareVariables());
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--fresh", "--ce", "--build", "--autorec", "LOGBOOK_DEMO"}) {
    EXPECT_TRUE(Holds(help.output, option)) << option;
  }
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
