// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the windows look like on a real screen: where they stand, and pictures of them.

#include <algorithm>
#include <cstdlib>

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

class WindowsTest : public ReadableProgram {
 protected:
  // The frame is the same left and right and adds a title on top, and the toolkit learns its true
  // size only after the first placement.
  bool IsInTheMiddle(WindowId window) {
    constexpr int kFrameAndTitle = 16;
    const Point middle = desktop().PlaceOf(window).Middle(), wanted = desktop().Screen().Middle();
    return std::abs(middle.x - wanted.x) <= kFrameAndTitle &&
           std::abs(middle.y - wanted.y) <= kFrameAndTitle;
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

TEST_F(WindowsTest, EditorMovedAwayReturnsToTheMiddleWhenItIsActivated) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  const std::string name = PressRecord(work(), main);
  EditorPage editor(desktop(), kLogRoot + name + "\\");
  desktop().Move(editor.window(), {5, 5});
  WaitFor("the editor to move", [&] { return desktop().PlaceOf(editor.window()).x < 20; });
  EXPECT_TRUE(SomeWindowIsActive());
  desktop().GoToDesktop(1);
  WaitFor("the editor to rest", [&] { return !SomeWindowIsActive(); });
  desktop().GoToDesktop(0);
  WaitFor("the editor to return", [&] { return IsInTheMiddle(editor.window()); });
}

}  // namespace
}  // namespace logbook::e2e
