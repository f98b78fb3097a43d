// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Where the windows come up, to the pixel, under a window manager that leaves all places to the
// program, with panels that take a part of the screen. Each window is opened many times while the
// program is held now and then, so that it learns late and all at once what has become of its
// window. LOGBOOK_OPENINGS says how many times.

#include <signal.h>

#include <algorithm>
#include <cstdlib>

#include "ViewerPage.h"
#include "WindowServer.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

constexpr int kUsualOpenings = 10;

int Openings() {
  const char* number = std::getenv("LOGBOOK_OPENINGS");
  return number == nullptr ? kUsualOpenings : std::atoi(number);
}

class PlacementTest : public WholeProgram {
 protected:
  DesktopKind Kind() const override { return {.manager = DesktopKind::Manager::kTakesWishes}; }

  void SetUp() override {
    WholeProgram::SetUp();
    if (IsSkipped()) return;
    server_ = std::make_unique<WindowServer>(desktop());
    work().RunHost({"fill", "--logs", "2", "--until", "2026-06-30"});
    work().StartHost();
    Start();
  }
  void TearDown() override {
    WholeProgram::TearDown();
    main_.reset();
    logbook_.reset();
    server_.reset();
  }

  // Starts the program, held at some moment of its start.
  void Start(int opening = 0) {
    main_.reset();
    // The windows of a new program may bear the numbers of those that an ended one had.
    WaitFor("the desktop to be empty", [this] { return server().Managed().empty(); });
    const Known before = Know();
    logbook_ = work().StartLogbook({kHostId});
    HoldDuring(opening, before);
    main_ = std::make_unique<MainPage>(desktop());
  }

  // Waits until the window stands in the middle and, asked again after a while, stays there.
  void ExpectInTheMiddle(WindowId window, const std::string& what) {
    Place outer;
    const auto is_in_the_middle = [&] {
      outer = server().Outer(window);
      return outer != Place() && outer == desktop().Middle(outer);
    };
    try {
      WaitFor("the middle", is_in_the_middle);
    } catch (const TimeOut&) {
      const Place middle = desktop().Middle(outer);
      FAIL() << what << " stands at " << outer.x << ", " << outer.y << " and not at " << middle.x
             << ", " << middle.y << " with its size of " << outer.width << " x " << outer.height;
    }
    EXPECT_TRUE(NeverHolds([&] { return !is_in_the_middle(); }, std::chrono::milliseconds(20)))
        << what << " has moved on";
  }

  // The windows before an opening.
  struct Known {
    std::vector<WindowId> first_level, managed;
  };
  Known Know() const { return {server_->FirstLevel(), server_->Managed()}; }

  // How long the program is held at an opening: 0.2 to 0.6 s, spread over the openings.
  static std::chrono::milliseconds HoldOf(int opening) {
    constexpr int kShortest = 200, kSpread = 401, kStep = 41;
    return std::chrono::milliseconds(kShortest + opening * kStep % kSpread);
  }

  // Holds the program so long from the moment when this is true.
  void HoldFrom(std::chrono::milliseconds hold, const std::function<bool()>& moment) {
    const auto end = std::chrono::steady_clock::now() + kLimit;
    while (!moment()) {
      if (std::chrono::steady_clock::now() > end) throw TimeOut("a window to hold the program at");
    }
    logbook_->Signal(SIGSTOP);
    NeverHolds([] { return false; }, hold);
    logbook_->Signal(SIGCONT);
  }

  // The window that has the keyboard; none if that is told of one that has gone.
  std::vector<WindowId> ManagedWithKeyboard() {
    const std::vector<WindowId> managed = server().Managed();
    const auto active = std::find(managed.begin(), managed.end(), server().Active());
    return active == managed.end() ? std::vector<WindowId>() : std::vector<WindowId>{*active};
  }

  // Holds the program, from opening to opening at another moment: when a window has been made, has
  // got its frame, has got the keyboard, some milliseconds after the click, or not at all.
  void HoldDuring(int opening, const Known& before) {
    constexpr int kMoments = 5, kStep = 3, kLongest = 80;
    const auto is_new = [](const std::vector<WindowId>& now, const std::vector<WindowId>& then) {
      return std::any_of(now.begin(), now.end(), [&](WindowId id) {
        return id != 0 && std::find(then.begin(), then.end(), id) == then.end();
      });
    };
    const auto hold = HoldOf(opening);
    const auto later = std::chrono::steady_clock::now() +
                       std::chrono::milliseconds(opening / kMoments * kStep % kLongest);
    switch (opening % kMoments) {
      case 1:
        return HoldFrom(hold, [&] { return is_new(server().FirstLevel(), before.first_level); });
      case 2:
        return HoldFrom(hold, [&] { return is_new(server().Managed(), before.managed); });
      case 3:
        return HoldFrom(hold, [&] { return is_new(ManagedWithKeyboard(), before.managed); });
      case 4:
        return HoldFrom(hold, [&] { return std::chrono::steady_clock::now() >= later; });
      default:
        return;
    }
  }

  // Opens a dialog again and again and expects it in the middle. `open` does what opens it and
  // returns the title that it will have; Escape closes it.
  void OpenAgainAndAgain(const std::function<std::string()>& open) {
    for (int opening = 0; opening < Openings() && !HasFailure(); ++opening) {
      const Known before = Know();
      const std::string title = open();
      HoldDuring(opening, before);
      const WindowId window = desktop().WaitForWindow(title);
      ExpectInTheMiddle(window, "opening " + std::to_string(opening) + " of " + title);
      desktop().Key("Escape");
      desktop().WaitUntilGone(window);
    }
  }

  WindowServer& server() { return *server_; }
  MainPage& main() { return *main_; }
  ChildProcess& logbook() { return *logbook_; }

 private:
  std::unique_ptr<WindowServer> server_;
  std::unique_ptr<ChildProcess> logbook_;
  std::unique_ptr<MainPage> main_;
};

TEST_F(PlacementTest, MainWindowHasItsSizeWithTheFrameAndStandsInTheMiddle) {
  for (int opening = 0; opening < Openings() && !HasFailure(); ++opening) {
    if (opening > 0) Start(opening);
    ExpectInTheMiddle(main().window(), "the main window");
    const Place outer = server().Outer(main().window());
    EXPECT_EQ(outer.width, 11145 / 15);
    EXPECT_EQ(outer.height, 6825 / 15);
    main().Press(MainPage::Button::kExit);
    EXPECT_EQ(logbook().WaitForEnd(), 0);
  }
}

TEST_F(PlacementTest, ChooserStandsInTheMiddleWheneverItOpens) {
  // Two quick clicks on one header would be a double click.
  int column = 0;
  OpenAgainAndAgain([&] {
    main().ClickHeader(3 + column++ % 6);
    return "Change List Item";
  });
}

TEST_F(PlacementTest, ViewerStandsInTheMiddleWheneverItOpens) {
  const std::string title = "Logbook Viewer:" + DateOf(work(), work().Logs().front());
  OpenAgainAndAgain([&] {
    main().ClickFirstRow();
    main().Press(MainPage::Button::kBrowse);
    return title;
  });
}

TEST_F(PlacementTest, EditorStandsInTheMiddleWheneverItOpens) {
  OpenAgainAndAgain(
      [&] { return "Logbook Editor:" + (kLogRoot + PressRecord(work(), main())) + "\\"; });
}

}  // namespace
}  // namespace logbook::e2e
