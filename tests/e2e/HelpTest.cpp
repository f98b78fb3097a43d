// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// "Help" of every window: the help window with its contents, and the viewer of ".chm" files.

#include <signal.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "ViewerPage.h"

namespace logbook::e2e {
namespace {

using Button = MainPage::Button;

constexpr char kManualTitle[] = "Maintenance LogBook Manual";
constexpr char kLog[] = "26010100";

class HelpTest : public ReadableProgram {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (!IsSkipped()) work().PutPlainLogs(1);
  }

  void InstallManual() { work().RunHost({"init", "--manual", MANUAL_DIR}); }

  // Waits until the help window shows the page that begins with this heading, and its entry in the
  // contents is marked.
  void WaitForTopic(const std::string& heading) {
    WaitFor("the page \"" + heading + "\" and its entry", [&] {
      bool is_shown = false, is_marked = false;
      for (const Readable& thing : reader().Read()) {
        if (thing.name == "Page" && thing.text.starts_with(heading + "\n")) is_shown = true;
        if (thing.role == "tree item" && thing.name == heading) is_marked = thing.selected;
      }
      return is_shown && is_marked;
    });
  }

  // The help window, with the keyboard. It goes aside so that the logbook's windows can be reached.
  WindowId WaitForHelp() {
    const WindowId help = desktop().WaitForWindow(kManualTitle);
    desktop().Move(help, {1090, 30});
    WaitFor("help to go aside", [&] { return desktop().PlaceOf(help).x > 1000; });
    return help;
  }

  // Opens the column chooser, runs the action on it, cancels it.
  template <typename Action>
  void WithChooser(MainPage& main, const Action& action) {
    main.ClickHeader(3);
    const WindowId chooser = desktop().WaitForWindow("Change List Item");
    desktop().Click(chooser, {(3720 + 487) / 15, (4560 + 187) / 15});  // Help
    action();
    desktop().Click(chooser, {(2160 + 487) / 15, (4560 + 187) / 15});  // Cancel
    desktop().WaitUntilGone(chooser);
  }
};

TEST_F(HelpTest, EveryWindowOpensItsTopicInTheOneHelpWindowAndItStaysUsableBesideDialogs) {
  InstallManual();
  work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(Button::kHelp);
  WaitForTopic("The main window");
  desktop().TakePicture(desktop().WaitForWindow(kManualTitle), PictureFolder() + "/help.png");
  const WindowId help = WaitForHelp();

  WithChooser(main, [&] { WaitForTopic("Choosing the columns"); });

  desktop().DoubleClickScreen(Row(kLog).place.Middle());
  ViewerPage viewer(desktop(), DateOf(work(), kLog));
  viewer.PressHelp();
  WaitForTopic("Reading a log");
  desktop().ClickScreen(reader().WaitFor("tree item", "Printing").place.Middle());
  WaitForTopic("Printing");
  viewer.PressExit();
  desktop().WaitUntilGone(viewer.window());

  const std::string name = PressRecord(work(), main);
  EditorPage editor(desktop(), kLogRoot + name + "\\");
  desktop().Click(editor.window(), {(6360 + 487) / 15, (5280 + 187) / 15});
  WaitForTopic("The record editor");
  EXPECT_EQ(desktop().Windows(kManualTitle), std::vector<WindowId>{help});

  desktop().WaitForWindow(kManualTitle);
  desktop().Key("Escape");
  desktop().WaitUntilGone(help);
  editor.PressCancel();
  desktop().WaitUntilGone(editor.window());
}

TEST_F(HelpTest, InCEModeViewerAndChooserHaveTopicsOfTheirOwn) {
  InstallManual();
  work().StartHostWithLogbook({"--ce"});
  MainPage main(desktop());
  main.Press(Button::kHelp);
  WaitForHelp();
  WaitForTopic("The main window");
  WithChooser(main, [&] { WaitForTopic("Columns in CE mode"); });
  desktop().DoubleClickScreen(Row(kLog).place.Middle());
  ViewerPage viewer(desktop(), DateOf(work(), kLog));
  viewer.PressHelp();
  WaitForTopic("Reading a log in CE mode");
}

TEST_F(HelpTest, F1OpensTheTopicOfTheWindowWithTheKeyboard) {
  InstallManual();
  work().StartHostWithLogbook();
  MainPage main(desktop());
  desktop().Key("F1");
  WaitForTopic("The main window");
  WaitForHelp();
  desktop().DoubleClickScreen(Row(kLog).place.Middle());
  const ViewerPage viewer(desktop(), DateOf(work(), kLog));
  desktop().Key("F1");
  WaitForTopic("Reading a log");
}

TEST_F(HelpTest, HelpClosesWithTheLogbook) {
  InstallManual();
  ChildProcess& host = work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(Button::kHelp);
  const WindowId help = WaitForHelp();
  main.Press(Button::kExit);
  desktop().WaitUntilGone(help);
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();
}

TEST_F(HelpTest, MissingHelpFileIsToldOnTopOfTheHelpWindow) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(Button::kHelp);
  reader().WaitFor("label",
                   "The help file C:\\QUOREX\\help\\quorex.chm is not there. This is the logbook's "
                   "own manual.");
}

// A ".chm" file, and a viewer along PATH that tells what it is started with.
class ChmHelpTest : public HelpTest {
 protected:
  void SetUp() override {
    HelpTest::SetUp();
    if (IsSkipped()) return;
    log_ = desktop().NewFile("viewer.log");
    const std::string folder = desktop().NewFile("bin"), viewer = folder + "/xchm";
    work().machine().Put(viewer,
                         "#!/bin/sh\necho \"$$ $*\" >> \"" + log_ + "\"\nexec sleep 3600\n");
    std::filesystem::permissions(viewer, std::filesystem::perms(0755));
    old_path_ = std::getenv("PATH");
    setenv("PATH", (folder + ":" + old_path_).c_str(), 1);
    work().machine().Put("C:\\QUOREX\\help\\quorex.chm", "ITSF");
  }
  void TearDown() override {
    HelpTest::TearDown();
    if (!old_path_.empty()) setenv("PATH", old_path_.c_str(), 1);
  }

  struct Start {
    pid_t process = 0;
    std::string arguments;
  };
  // The starts of the viewer so far; waits until there are as many.
  std::vector<Start> WaitForStarts(std::size_t count) {
    std::vector<Start> starts;
    WaitFor("the viewer to start", [&] {
      starts.clear();
      if (!work().machine().Has(log_)) return false;
      std::istringstream lines(work().machine().Get(log_));
      Start start;
      while (lines >> start.process && std::getline(lines >> std::ws, start.arguments))
        starts.push_back(start);
      return starts.size() >= count;
    });
    EXPECT_EQ(starts.size(), count);
    return starts;
  }
  static bool Runs(const Start& start) { return kill(start.process, 0) == 0; }

  std::string ArgumentsFor(int topic) {
    return "--contextid=" + std::to_string(topic) + " " +
           work().machine().Native("C:\\QUOREX\\help\\quorex.chm");
  }

 private:
  std::string log_, old_path_;
};

TEST_F(ChmHelpTest, ViewerStartsOnTheTopicAndAFreshOneTakesItsPlaceAtTheNextHelp) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(Button::kHelp);
  const Start first = WaitForStarts(1).at(0);
  EXPECT_EQ(first.arguments, ArgumentsFor(16700));
  EXPECT_TRUE(Runs(first));
  WithChooser(main, [&] {
    const Start second = WaitForStarts(2).at(1);
    EXPECT_EQ(second.arguments, ArgumentsFor(16704));
    EXPECT_TRUE(Runs(second));
    EXPECT_FALSE(Runs(first)) << "the viewer before it was closed first";
  });
}

TEST_F(ChmHelpTest, ViewerEndsWithTheLogbook) {
  ChildProcess& host = work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(Button::kHelp);
  const Start viewer = WaitForStarts(1).at(0);
  main.Press(Button::kExit);
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();
  EXPECT_FALSE(Runs(viewer));
}

}  // namespace
}  // namespace logbook::e2e
