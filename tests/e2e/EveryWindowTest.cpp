// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Every window, with each report in the viewer, measured on the screen: in the usual colours, in
// dark ones and in those of high contrast, and on a screen with twice the dots. What can be used
// can be read, boxes and fields can be seen, and nothing leaves its window or the screen.

#include <set>

#include "Pages.h"
#include "Painted.h"
#include "ViewerPage.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using Colours = DesktopKind::Colours;

struct Look {
  const char* name;
  DesktopKind kind;
};

const Look kLooks[] = {
    {"Usual", {}},
    {"Dark", {.colours = Colours::kDark}},
    {"HighContrast", {.colours = Colours::kHighContrast}},
    {"TwiceTheDots", {.dots_per_inch = 192}},
    {"TwiceTheDotsInHighContrast", {.dots_per_inch = 192, .colours = Colours::kHighContrast}}};

// Of a box and its ground; the usual style's own edges are paler.
constexpr double kEdge = 3, kUsualEdge = 1.5;
constexpr int kEdgeWidth = 3;  // pixels of buttons that are not under their words
constexpr int kBox = 18;       // pixels from the left of a tick box or a round one to its words

Place Common(const Place& a, const Place& b) {
  const int left = std::max(a.x, b.x), top = std::max(a.y, b.y);
  const int right = std::min(a.x + a.width, b.x + b.width);
  const int bottom = std::min(a.y + a.height, b.y + b.height);
  return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

bool Holds(const Place& outer, const Place& inner) {
  return Common(outer, inner) == inner;
}

Place Within(const Place& place, int edge) {
  return {place.x + edge, place.y + edge, place.width - 2 * edge, place.height - 2 * edge};
}

class EveryWindowTest : public ReadableProgram, public testing::WithParamInterface<Look> {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (IsSkipped()) return;
    work().RunHost({"fill", "--logs", "4", "--until", "2026-06-30"});
    work().StartHostWithLogbook({"--ce"});
    main_ = desktop().WaitForWindow(kMainTitle);
  }
  DesktopKind Kind() const override { return GetParam().kind; }

  // Where a thing is on the screen, in its dots.
  Place OnScreen(Place place) {
    const int scale = desktop().Scale();
    return {place.x * scale, place.y * scale, place.width * scale, place.height * scale};
  }

  void Measure(const std::string& name, WindowId window);
  void MeasureThing(const std::string& what, const Readable& thing, const Place& shown,
                    const QImage& screen);
  void WaitForReport(const std::string& kind, const std::string& log);
  void MeasureChooser();
  void MeasureViewer();
  void MeasureEditor();
  void MeasureHelpAndDialogs();
  // Presses a button of the main window by its access.
  void Press(const std::string& caption) {
    WaitForButton(caption);
    desktop().ClickScreen(OnScreen(reader().WaitFor("push button", caption).place).Middle());
  }
  // Closes the window that is on top of the main one.
  void Leave(WindowId window) {
    desktop().Key("Escape");
    desktop().WaitUntilGone(window);
  }

  WindowId main_ = 0;
  int measured_ = 0;
};

void EveryWindowTest::MeasureThing(const std::string& what, const Readable& thing,
                                   const Place& shown, const QImage& screen) {
  static const std::set<std::string> kWithWords = {
      "push button", "check box", "radio button",       "label", "list item", "tree item",
      "menu item",   "combo box", "table column header"};
  static const std::set<std::string> kBoxes = {"check box", "radio button"};
  const bool has_words = kWithWords.contains(thing.role) && !thing.name.empty();
  if (has_words && thing.enabled) {
    ++measured_;
    const bool has_edge = thing.role == "push button" || thing.role == "combo box";
    const Painted words =
        ColoursAt(screen, has_edge ? Within(shown, kEdgeWidth * desktop().Scale()) : shown);
    EXPECT_GE(words.contrast(), kReadable) << what << ": " << words.text.name().toStdString()
                                           << " on " << words.ground.name().toStdString();
  }
  if (!kBoxes.contains(thing.role)) return;
  const bool is_usual = Kind().colours == Colours::kUsual;
  const Place box = {shown.x, shown.y, kBox * desktop().Scale(), shown.height};
  EXPECT_GE(ColoursAt(screen, box).contrast(), is_usual ? kUsualEdge : kEdge)
      << "the box of " << what;
}

void EveryWindowTest::Measure(const std::string& name, WindowId window) {
  const Place inner = desktop().PlaceOf(window);
  EXPECT_TRUE(Holds(desktop().Screen(), inner)) << name << " leaves the screen";
  std::vector<Readable> things;
  WaitFor("the things in " + name, [&] {
    things = reader().ReadActive();
    return things.size() > 1;
  });
  const QImage screen = ScreenPicture(desktop());
  desktop().TakePicture(window, PictureFolder() + "/" + GetParam().name + "-" + name + ".png");
  // Places are told in the toolkit's pixels, which may begin between two of theirs.
  const int odd = desktop().Scale() - 1;
  const Place room = {inner.x - odd, inner.y - odd, inner.width + 2 * odd, inner.height + 2 * odd};
  Place viewport = inner;
  for (std::size_t i = 1; i < things.size(); ++i) {
    const Readable& thing = things[i];
    const std::string what = name + ", " + thing.role + " \"" + thing.name + "\"";
    const Place place = OnScreen(thing.place);
    if (place.width <= 0 || place.height <= 0) continue;
    const bool is_entry = thing.role.ends_with(" item") || thing.role.ends_with("header");
    if (!is_entry) {
      EXPECT_TRUE(Holds(room, place)) << what << " leaves its window";
      viewport = place;
    }
    const Place shown = Common(place, viewport);
    if (shown.height < place.height) continue;  // further down in its list
    MeasureThing(what, thing, shown, screen);
  }
}

void EveryWindowTest::MeasureChooser() {
  desktop().Key("alt+3");
  const WindowId chooser = desktop().WaitForWindow("Change List Item");
  Measure("chooser", chooser);
  Leave(chooser);
}

void EveryWindowTest::WaitForReport(const std::string& kind, const std::string& log) {
  std::string printed = RunCommand({LOGBOOKCTL_PROGRAM, "report", kind, kLogRoot + log},
                                   work().Variables(), desktop().NewFile(kind))
                            .output;
  std::erase(printed, '\r');
  WaitFor("the report " + kind, [&] {
    const std::string shown = reader().WaitFor("text", "Report").text;
    return shown == printed || shown + '\n' == printed;  // files have one line end more
  });
}

void EveryWindowTest::MeasureViewer() {
  desktop().Key("End");
  desktop().Key("Return");
  const std::string log = work().Logs().back();
  const ViewerPage viewer(desktop(), DateOf(work(), log));
  const std::pair<const char*, std::vector<std::string>> reports[] = {
      {"tune", {"alt+t"}},       {"acq", {"alt+l", "a"}}, {"seq", {"alt+l", "s"}},
      {"chain", {"alt+l", "c"}}, {"err", {"alt+l", "e"}}, {"mainte", {"alt+m"}},
      {"meter", {"alt+v"}},      {"analog", {"alt+a"}},   {"bitout", {"alt+b", "o"}},
      {"bitin", {"alt+b", "i"}}, {"sys", {"alt+s"}}};
  for (const auto& [kind, keys] : reports) {
    for (const std::string& key : keys) desktop().Key(key);
    WaitForReport(kind, log);
    Measure(std::string("report-") + kind, viewer.window());
    const Readable pane = reader().WaitFor("text", "Report");
    if (pane.text.empty()) continue;
    const QImage screen = ScreenPicture(desktop());
    EXPECT_GE(ColoursAt(screen, OnScreen(pane.place)).contrast(), kReadable) << kind;
  }
  Leave(viewer.window());
}

void EveryWindowTest::MeasureEditor() {
  const std::size_t before = work().Logs().size();
  Press("Record Log");
  WaitFor("a new log folder", [&] { return work().Logs().size() > before; });
  const WindowId editor = desktop().WaitForWindow("Logbook Editor:" + std::string(kLogRoot) +
                                                  work().Logs().back() + "\\");
  Measure("editor", editor);
  Leave(editor);
  WaitForButton("Record Log");
}

void EveryWindowTest::MeasureHelpAndDialogs() {
  desktop().Key("F1");
  const WindowId help = desktop().WaitForWindow("Maintenance LogBook Manual");
  Measure("help", help);
  Leave(help);
  desktop().Key("Home");
  Press("Delete Log");
  const WindowId box = desktop().WaitForWindow(kMainTitle, main_);
  Measure("message", box);
  Leave(box);
  Press("Archive...");
  const WindowId save = desktop().WaitForWindow("Enter the archive filename");
  Measure("save", save);
  Leave(save);
}

TEST_P(EveryWindowTest, CanBeReadAndStandsWholeOnTheScreen) {
  Measure("main", main_);
  MeasureChooser();
  MeasureViewer();
  MeasureHelpAndDialogs();
  MeasureEditor();
  EXPECT_GT(measured_, 100) << "words that were looked at";
}

INSTANTIATE_TEST_SUITE_P(Looks, EveryWindowTest, testing::ValuesIn(kLooks),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace logbook::e2e
