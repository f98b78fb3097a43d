// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The script ./run with programs that are built already.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

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

// Makes a folder with a host that does all but this command.
std::string HostThatFailsAt(const std::string& command, const std::string& folder) {
  fs::create_directories(folder);
  std::ofstream(folder + "/quorex-host") << "#!/bin/sh\n[ \"$1\" != " + command +
                                                " ] || exit 1\nexec '" QUOREX_HOST_PROGRAM
                                                "' \"$@\"\n";
  fs::permissions(folder + "/quorex-host", fs::perms::owner_all);
  return folder;
}

TEST_F(RunScriptTest, FreshThatFailsLeavesTheOldDemonstrationAsItIs) {
  ASSERT_EQ(Run({"--autorec"}, BareVariables()).status, 0);
  const auto before = FilesBelow(Demo());
  ASSERT_GT(before.size(), 100u);

  const auto typo = Run({"--fresh", "--build", "lumarni"}, BareVariables());
  EXPECT_EQ(typo.status, 1) << typo.output;
  EXPECT_TRUE(Holds(typo.output, "unknown lens family \"lumarni\"")) << typo.output;
  EXPECT_FALSE(Holds(typo.output, "Making the demonstration")) << typo.output;
  EXPECT_EQ(FilesBelow(Demo()), before);

  Environment broken = BareVariables();
  broken["LOGBOOK_BIN"] = HostThatFailsAt("fill", desktop().Folder() + "/broken");
  const auto fill = Run({"--fresh"}, broken);
  EXPECT_EQ(fill.status, 1) << fill.output;
  EXPECT_TRUE(Holds(fill.output, "could not be made")) << fill.output;
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
    EXPECT_EQ(result.status, 1) << result.output;
    EXPECT_TRUE(Holds(result.output, "--build wants the name of an instrument")) << result.output;
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
