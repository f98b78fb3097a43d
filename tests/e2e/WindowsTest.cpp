// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the windows look like on a real screen, and pictures of them; and where they stand, under a
// window manager that puts dialogs into a corner and with panels that take a part of the screen.

#include <algorithm>
#include <cstdlib>
#include <set>

#include "Pages.h"
#include "WindowServer.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

class WindowsTest : public ReadableProgram {
 protected:
  DesktopKind Kind() const override { return {.manager = DesktopKind::Manager::kKnowsBetter}; }

  void SetUp() override {
    ReadableProgram::SetUp();
    if (!IsSkipped()) server_ = std::make_unique<WindowServer>(desktop());
  }

  WindowServer& server() { return *server_; }

  bool IsInTheMiddle(WindowId window) {
    const Place outer = server().Outer(window);
    return outer != Place() && outer == desktop().Middle(outer);
  }

  bool SomeWindowIsActive() {
    const auto things = reader().Read();
    return std::any_of(things.begin(), things.end(), [](const Readable& it) { return it.active; });
  }

  // Takes a picture and expects it to show more than a few colours.
  void Picture(WindowId window, const std::string& name) {
    const std::string file = PictureFolder() + "/" + name + ".png";
    desktop().TakePicture(window, file);
    const auto colours = RunCommand({"convert", file, "-format", "%k", "info:"}, work().Variables(),
                                    desktop().NewFile("convert"));
    EXPECT_GT(std::atoi(colours.output.c_str()), 10) << file;
  }

 private:
  std::unique_ptr<WindowServer> server_;
};

TEST_F(WindowsTest, MainWindowAndEditorStandInTheMiddleAndShowTheirControls) {
  work().RunHost({"fill", "--logs", "12", "--until", "2026-06-30"});
  work().StartHostWithLogbook();
  MainPage main(desktop());
  WaitFor("the main window in the middle", [&] { return IsInTheMiddle(main.window()); });
  // The buttons stand where their sizes in twips put them.
  const Place inner = desktop().PlaceOf(main.window());
  using Button = MainPage::Button;
  for (const auto& [button, caption] :
       {std::pair(Button::kRecord, "Record Log"), std::pair(Button::kDelete, "Delete Log"),
        std::pair(Button::kBrowse, "View Log"), std::pair(Button::kPrint, "Print List"),
        std::pair(Button::kArchive, "Archive..."), std::pair(Button::kExit, "Exit"),
        std::pair(Button::kHelp, "Help")}) {
    const Place wanted = main.PlaceOf(button),
                shown = reader().WaitFor("push button", caption).place;
    EXPECT_LE(std::abs(inner.x + wanted.x - shown.x), 1) << caption;
    EXPECT_LE(std::abs(inner.y + wanted.y - shown.y), 1) << caption;
    EXPECT_LE(std::abs(wanted.width - shown.width), 1) << caption;
    EXPECT_LE(std::abs(wanted.height - shown.height), 1) << caption;
  }
  Picture(main.window(), "main-window");

  const std::string name = PressRecord(work(), main);
  EditorPage editor(desktop(), kLogRoot + name + "\\");
  WaitFor("the editor in the middle", [&] { return IsInTheMiddle(editor.window()); });
  EXPECT_EQ(editor.place().width, 10080 / 15);
  EXPECT_EQ(editor.place().height, 5790 / 15);
  editor.Tick(2);
  editor.Tick(9);
  editor.ClickComment();
  desktop().Type("Cones and torch changed.");
  WaitFor("the tick", [&] { return reader().WaitFor("check box", "Change Torch").checked; });
  Picture(editor.window(), "editor");
}

TEST_F(WindowsTest, EditorHasNoEntryInTheTaskBarAndTheMainWindowHasOne) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  EXPECT_FALSE(server().HasState(main.window(), "_NET_WM_STATE_SKIP_TASKBAR"));
  const std::string name = PressRecord(work(), main);
  const EditorPage editor(desktop(), kLogRoot + name + "\\");
  EXPECT_TRUE(server().HasState(editor.window(), "_NET_WM_STATE_SKIP_TASKBAR"));
}

TEST_F(WindowsTest, MainWindowBringsItsIconWithoutAThemeInEverySize) {
  work().StartHostWithLogbook();
  const MainPage main(desktop());
  const std::vector<int> widths = server().IconWidths(main.window());
  EXPECT_EQ(std::set<int>(widths.begin(), widths.end()), (std::set<int>{16, 24, 32, 48, 64}));
}

TEST_F(WindowsTest, MainAndHelpWindowAreReadAsFramesWithTheirTitles) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  reader().WaitFor("frame", kMainTitle);
  main.Press(MainPage::Button::kHelp);
  WaitFor("the help window as a frame", [&] {
    const auto things = reader().Read();
    return std::count_if(things.begin(), things.end(),
                         [](const Readable& it) { return it.role == "frame"; }) == 2;
  });
}

TEST_F(WindowsTest, EditorMovedAwayReturnsToTheMiddleWhenItIsActivated) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  const std::string name = PressRecord(work(), main);
  EditorPage editor(desktop(), kLogRoot + name + "\\");
  WaitFor("the editor in the middle", [&] { return IsInTheMiddle(editor.window()); });
  desktop().Move(editor.window(), {5, 5});
  WaitFor("the editor to move", [&] { return !IsInTheMiddle(editor.window()); });
  EXPECT_TRUE(SomeWindowIsActive());
  desktop().GoToDesktop(1);
  WaitFor("the editor to rest", [&] { return !SomeWindowIsActive(); });
  desktop().GoToDesktop(0);
  WaitFor("the editor to return", [&] { return IsInTheMiddle(editor.window()); });
}

// A screen on which a pixel of the toolkit is one and a half dots.
class DenseScreenTest : public WholeProgram {
 protected:
  static constexpr double kScale = 1.5;

  DesktopKind Kind() const override {
    return {.manager = DesktopKind::Manager::kKnowsBetter, .dots_per_inch = 144};
  }

  static int Dots(int twips) { return static_cast<int>(twips / 15 * kScale); }

  // True if a line of a colour of its own runs between a box and what lies below it.
  bool HasLowerBorder(const Place& inner, int left, int top, int height) {
    constexpr int kInside = 20, kDown = 6;
    const int column = inner.x + Dots(left) + kInside, edge = inner.y + Dots(top + height);
    const std::string below = desktop().ColourAt({column, edge + kDown});
    for (int row = edge - 3; row <= edge + 1; ++row) {
      const std::string colour = desktop().ColourAt({column, row});
      if (colour != below && colour != "#FFFFFF") return true;
    }
    return false;
  }
};

TEST_F(DenseScreenTest, CommentBoxAndChoosersListHaveTheirLowerBorder) {
  work().RunHost({"fill", "--logs", "2", "--until", "2026-06-30"});
  work().StartHostWithLogbook();
  const WindowServer server(desktop());
  const auto is_in_the_middle = [&](WindowId window) {
    const Place outer = server.Outer(window), middle = desktop().Middle(outer);
    return std::abs(outer.x - middle.x) <= 1 && std::abs(outer.y - middle.y) <= 1;
  };
  const WindowId main = desktop().WaitForWindow(kMainTitle);
  WaitFor("the main window in the middle", [&] { return is_in_the_middle(main); });
  desktop().Key("alt+3");
  const WindowId chooser = desktop().WaitForWindow("Change List Item");
  EXPECT_EQ(server.Inner(chooser).width, Dots(5190));
  WaitFor("the chooser in the middle", [&] { return is_in_the_middle(chooser); });
  WaitFor("the list's border",
          [&] { return HasLowerBorder(server.Inner(chooser), 120, 1920, 2400); });
  desktop().Key("Escape");
  desktop().WaitUntilGone(chooser);
  const std::vector<std::string> before = work().Logs();
  desktop().Key("Tab");
  desktop().Key("space");
  WaitFor("a new log", [&] { return work().Logs().size() > before.size(); });
  const WindowId editor =
      desktop().WaitForWindow("Logbook Editor:" + (kLogRoot + work().Logs().back()) + "\\");
  WaitFor("the comment's border",
          [&] { return HasLowerBorder(server.Inner(editor), 240, 3000, 1800); });
}

}  // namespace
}  // namespace logbook::e2e
