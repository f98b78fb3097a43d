// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A walk through every window with the keyboard, as a user without a mouse and with a screen reader
// takes it: what has the keyboard, in which order, under which role and name, and what the program
// tells of it without being asked. The printer has no dialog of its own.

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "Pages.h"
#include "ViewerPage.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;

using Stops = std::vector<std::string>;

constexpr int kTooMany = 60;  // stops in one window

std::string StopText(const Readable& thing) {
  return thing.role + " " + thing.name;
}

// What can be used; of radio buttons the keyboard stops at the chosen one alone.
bool CanBeUsed(const Readable& thing) {
  static const std::set<std::string> kRoles = {"push button", "check box", "list", "tree",
                                               "combo box"};
  if (!thing.enabled) return false;
  return kRoles.contains(thing.role) || (thing.role == "radio button" && thing.checked);
}

class KeyboardWalkTest : public ReadableProgram {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (IsSkipped()) return;
    reader().Listen();
    work().RunHost({"fill", "--logs", "3", "--until", "2026-06-30"});
    work().StartHostWithLogbook();
    main_ = std::make_unique<MainPage>(desktop());
  }

  const MainPage& main() const { return *main_; }

  // Waits until something that is told to have the keyboard says so itself.
  Readable WaitForFocus(const std::string& why) {
    Readable stop;
    WaitFor("something to have the keyboard " + why, [&] {
      stop = reader().Focused();
      return stop.focused;
    });
    return stop;
  }
  // Presses a key that moves the keyboard, and returns what has it then.
  Readable KeyTo(const std::string& key) {
    reader().Forget();
    desktop().Key(key);
    return WaitForFocus("after " + key);
  }

  // Presses a key and waits until this has the keyboard, which may pass other things on its way.
  void ExpectKeyLeadsTo(const std::string& key, const std::string& stop) {
    reader().Forget();
    desktop().Key(key);
    WaitFor("\"" + stop + "\" to have the keyboard after " + key, [&] {
      const Readable thing = reader().Focused();
      return thing.focused && StopText(thing) == stop;
    });
  }

  // The stops from the next one on until it comes again.
  Stops Walk(const std::string& key) {
    Stops stops = {StopText(KeyTo(key))};
    for (int step = 0; step < kTooMany; ++step) {
      const std::string stop = StopText(KeyTo(key));
      if (stop == stops.front()) break;
      stops.push_back(stop);
    }
    return stops;
  }

  // Walks a whole window, there and back, and returns the way there. Its own name, the names of its
  // things and that all of them are reached is held on the way.
  Stops WalkWindow(const std::string& title) {
    const Stops there = Walk("Tab");
    Stops back = Walk("shift+Tab");
    // Both ends stand at their first stop again.
    std::reverse(back.begin(), back.end());
    std::rotate(back.begin(), std::find(back.begin(), back.end(), there.front()), back.end());
    EXPECT_EQ(back, there) << "the way back in " << title;
    const std::vector<Readable> things = reader().ReadActive();
    if (things.empty()) throw TimeOut("the window " + title);
    EXPECT_EQ(things.front().name, title);
    for (const Readable& thing : things) {
      if (!CanBeUsed(thing)) continue;
      EXPECT_NE(thing.name, "") << "a " << thing.role << " in " << title;
      EXPECT_THAT(there, Contains(StopText(thing))) << title;
    }
    return there;
  }

  bool WasTold(const std::string& what, int value) {
    return std::any_of(reader().Heard().begin(), reader().Heard().end(),
                       [&](const Told& told) { return told.what == what && told.value == value; });
  }
  // Presses a key that changes a state of what has the keyboard.
  void ExpectTold(const std::string& key, const std::string& what, int value) {
    reader().Forget();
    desktop().Key(key);
    WaitFor("\"" + what + "\" to be told after " + key, [&] { return WasTold(what, value); });
  }

  // Presses the Tab key until this has the keyboard.
  void TabTo(const std::string& stop) {
    for (int step = 0; step < kTooMany; ++step) {
      if (StopText(KeyTo("Tab")) == stop) return;
    }
    throw TimeOut("the keyboard to come to " + stop);
  }
  // Presses the button of the main window that has this caption, with keys alone.
  void PressByKey(const std::string& caption) {
    TabTo("push button " + caption);
    desktop().Key("space");
  }

 private:
  std::unique_ptr<MainPage> main_;
};

TEST_F(KeyboardWalkTest, MainWindow) {
  EXPECT_THAT(WalkWindow(kMainTitle),
              ElementsAre("push button Record Log", "push button View Log",
                          "push button Delete Log", "push button Print List", "push button Exit",
                          "push button Help", "push button Archive...", "tree Maintenance logs"));
  TabTo("tree Maintenance logs");
  ExpectTold("Home", "selected", 1);
  const Readable row = KeyTo("Down");
  EXPECT_EQ(row.role, "tree item");
  EXPECT_EQ(row.name, DateOf(work(), work().Logs().at(1)));
  EXPECT_TRUE(row.selected);
}

TEST_F(KeyboardWalkTest, ColumnChooser) {
  desktop().Key("alt+3");
  const WindowId window = desktop().WaitForWindow("Change List Item");
  EXPECT_EQ(StopText(WaitForFocus("in the new window")), "push button OK");
  EXPECT_THAT(WalkWindow("Change List Item"),
              ElementsAre("radio button Tune Report", "list Items", "push button Cancel",
                          "push button Help", "push button OK"));
  TabTo("radio button Tune Report");
  ExpectTold("Down", "checked", 1);
  const Readable radio = WaitForFocus("after Down");
  EXPECT_EQ(StopText(radio), "radio button Meter Value");
  EXPECT_TRUE(radio.checked);
  reader().Forget();
  desktop().Key("Escape");
  desktop().WaitUntilGone(window);
  EXPECT_EQ(WaitForFocus("in the main window").name, "Maintenance logs") << "back where it was";
}

TEST_F(KeyboardWalkTest, RecordEditor) {
  const std::size_t before = work().Logs().size();
  PressByKey("Record Log");
  WaitFor("a new log folder", [&] { return work().Logs().size() > before; });
  const std::string title = "Logbook Editor:" + std::string(kLogRoot) + work().Logs().back() + "\\";
  const WindowId window = desktop().WaitForWindow(title);
  EXPECT_EQ(StopText(WaitForFocus("in the new window")), "check box Check Drain Vessel");
  const Stops stops = WalkWindow(title);
  ASSERT_EQ(stops.size(), 18u + 4u);
  EXPECT_EQ(stops.at(0), "check box Clean Cones");
  EXPECT_EQ(stops.at(16), "check box Change EM");
  EXPECT_EQ(Stops(stops.begin() + 17, stops.end()),
            (Stops{"text Comment", "push button OK", "push button Cancel", "push button Help",
                   "check box Check Drain Vessel"}));
  TabTo("check box Clean Cones");
  ExpectTold("space", "checked", 1);
  ExpectTold("space", "checked", 0);
  reader().Forget();
  desktop().Key("Escape");
  desktop().WaitUntilGone(window);
  WaitForButton("Record Log");
  EXPECT_EQ(StopText(WaitForFocus("in the main window")), "push button Record Log");
}

TEST_F(KeyboardWalkTest, ViewerAndItsMenus) {
  desktop().Key("Home");
  desktop().Key("Return");
  const ViewerPage viewer(desktop(), DateOf(work(), work().Logs().front()));
  EXPECT_THAT(WalkWindow(viewer.title()),
              ElementsAre("text Comment", "push button Print", "push button Exit",
                          "push button Help", "text Report"));
  ExpectKeyLeadsTo("alt+l", "menu item View ACQ Log");
  ExpectKeyLeadsTo("Down", "menu item View Sequence Log");
  ExpectKeyLeadsTo("Right", "menu item View Maintenance Records");
  KeyTo("Escape");
  reader().Forget();
  desktop().Key("Escape");
  desktop().WaitUntilGone(viewer.window());
  EXPECT_EQ(WaitForFocus("in the main window").name, "Maintenance logs");
}

TEST_F(KeyboardWalkTest, Help) {
  desktop().Key("F1");
  const std::string title = "Maintenance LogBook Manual";
  const WindowId window = desktop().WaitForWindow(title);
  EXPECT_EQ(StopText(WaitForFocus("in the new window")), "push button Back");
  const Stops way = {"push button Contents", "text Find on this page:", "tree Contents"};
  for (const std::string& stop : way) EXPECT_EQ(StopText(KeyTo("Tab")), stop);
  EXPECT_EQ(StopText(KeyTo("shift+Tab")), way.at(1));
  EXPECT_EQ(StopText(KeyTo("shift+Tab")), way.at(0));
  EXPECT_EQ(StopText(KeyTo("shift+Tab")), "push button Back");
  for (const std::string& stop : way) EXPECT_EQ(StopText(KeyTo("Tab")), stop);
  EXPECT_EQ(StopText(KeyTo("Tab")), "label Page") << "from there on, the links of the page";
  for (const Readable& thing : reader().ReadActive()) {
    if (CanBeUsed(thing) || thing.role == "text") {
      EXPECT_NE(thing.name, "") << thing.role;
    }
    if (thing.role == "column header") {
      EXPECT_EQ(thing.name, "Contents");
    }
  }
  desktop().Key("Escape");
  desktop().WaitUntilGone(window);
}

TEST_F(KeyboardWalkTest, MessageBox) {
  desktop().Key("Down");
  PressByKey("Delete Log");
  const WindowId box = desktop().WaitForWindow(kMainTitle, main().window());
  EXPECT_EQ(StopText(WaitForFocus("in the box")), "push button Yes");
  std::vector<std::string> told;
  for (const Readable& thing : reader().ReadActive()) told.push_back(StopText(thing));
  EXPECT_THAT(told, IsSupersetOf({"alert message Maintenance LogBook", "label Delete Logfiles ?"}));
  EXPECT_THAT(WalkWindow(kMainTitle), ElementsAre("push button No", "push button Yes"));
  reader().Forget();
  desktop().Key("Escape");
  desktop().WaitUntilGone(box);
  EXPECT_EQ(StopText(WaitForFocus("in the main window")), "push button Delete Log");
  EXPECT_EQ(work().Logs().size(), 3u);
}

TEST_F(KeyboardWalkTest, SaveDialog) {
  desktop().Key("Down");
  PressByKey("Archive...");
  const WindowId dialog = desktop().WaitForWindow("Enter the archive filename");
  EXPECT_EQ(StopText(WaitForFocus("in the dialog")), "text File name:");
  const Stops stops = Walk("Tab");
  for (const std::string& stop : stops) EXPECT_FALSE(stop.ends_with(' ')) << stop << "has no name";
  EXPECT_THAT(stops, IsSupersetOf({"push button Save", "push button Cancel", "tree Files",
                                   "text File name:", "push button Parent Directory"}));
  desktop().Key("Escape");
  desktop().WaitUntilGone(dialog);
}

}  // namespace
}  // namespace logbook::e2e
