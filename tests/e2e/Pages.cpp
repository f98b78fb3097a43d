// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include <algorithm>
#include <array>

#include "Workplace.h"

namespace logbook::e2e {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kMargin = 120;

// Height of the list's headers in pixels, which follows from their font.
constexpr int kHeaderHeight = 17;

Point Pixels(int left, int top) {
  return {left / kTwipsPerPixel, top / kTwipsPerPixel};
}

}  // namespace

MainPage::MainPage(Desktop& desktop)
    : desktop_(desktop),
      window_(desktop.WaitForWindow(kMainTitle)),
      place_(desktop.PlaceOf(window_)) {}

Place MainPage::PlaceOf(Button button) const {
  // From the right: each stands to the left of the one before it.
  struct Row {
    Button button;
    int width, gap;
  };
  constexpr std::array<Row, 7> kRows = {{{Button::kHelp, 900, kMargin},
                                         {Button::kExit, 900, kMargin},
                                         {Button::kArchive, 1000, 3 * kMargin},
                                         {Button::kPrint, 1000, kMargin},
                                         {Button::kBrowse, 1400, kMargin},
                                         {Button::kDelete, 1400, kMargin},
                                         {Button::kRecord, 1400, kMargin}}};
  constexpr int kHeight = 330;
  int left = place_.width * kTwipsPerPixel;
  const int top = place_.height * kTwipsPerPixel - kMargin - kHeight;
  int width = 0;
  for (const Row& row : kRows) {
    left -= row.gap + row.width;
    width = row.width;
    if (row.button == button) break;
  }
  const Point corner = Pixels(left, top), size = Pixels(width, kHeight);
  return {corner.x, corner.y, size.x, size.y};
}

void MainPage::Press(Button button) {
  desktop_.Click(window_, PlaceOf(button).Middle());
}

void MainPage::ClickHeader(int column) {
  constexpr std::array<int, 9> kWidths = {1800, 1000, 600, 600, 600, 600, 600, 600, 1600};
  int left = kMargin;
  for (int i = 1; i < column; ++i) left += kWidths.at(static_cast<std::size_t>(i) - 1);
  const int width = kWidths.at(static_cast<std::size_t>(column) - 1);
  const Point middle = Pixels(left + width / 2, kMargin);
  desktop_.Click(window_, {middle.x, middle.y + kHeaderHeight / 2});
}

void MainPage::ClickFirstRow() {
  constexpr int kWithinTheRow = 8;
  const Point corner = Pixels(kMargin, kMargin);
  desktop_.Click(window_, {corner.x + kWithinTheRow, corner.y + kHeaderHeight + kWithinTheRow});
}

void MainPage::Close() {
  desktop_.Click(window_, {place_.width - 10, -10});
}

EditorPage::EditorPage(Desktop& desktop, const std::string& log_path)
    : desktop_(desktop),
      window_(desktop.WaitForWindow("Logbook Editor:" + log_path)),
      place_(desktop.PlaceOf(window_)) {}

void EditorPage::Tick(int index) {
  constexpr std::array<int, 3> kLefts = {240, 3480, 6480};
  constexpr std::array<int, 6> kTops = {240, 600, 960, 1320, 1680, 2040};
  constexpr int kFrameLeft = 240, kFrameTop = 120, kHeight = 375;
  const auto column = static_cast<std::size_t>(index / 6),
             row = static_cast<std::size_t>(index % 6);
  const Point left_middle =
      Pixels(kFrameLeft + kLefts.at(column), kFrameTop + kTops.at(row) + kHeight / 2);
  desktop_.Click(window_, {left_middle.x + 30, left_middle.y});
}

void EditorPage::ClickComment() {
  desktop_.Click(window_, Pixels(240 + 4000, 3000 + 900));
}

void EditorPage::PressOK() {
  desktop_.Click(window_, Pixels(2280 + 487, 5280 + 187));
}

void EditorPage::PressCancel() {
  desktop_.Click(window_, Pixels(4320 + 487, 5280 + 187));
}

MessagePage::MessagePage(Desktop& desktop, const MainPage& main)
    : desktop_(desktop), window_(desktop.WaitForWindow(kMainTitle, main.window())) {}

void MessagePage::Answer(const std::string& key) {
  desktop_.Key(key);
  desktop_.WaitUntilGone(window_);
}

void MessagePage::Yes() {
  Answer("alt+y");
}
void MessagePage::No() {
  Answer("alt+n");
}
void MessagePage::OK() {
  Answer("Return");
}

std::string PressRecord(Workplace& work, MainPage& main) {
  const std::vector<std::string> before = work.Logs();
  std::string name;
  main.Press(MainPage::Button::kRecord);
  WaitFor("a new log folder", [&] {
    for (const std::string& log : work.Logs()) {
      if (std::find(before.begin(), before.end(), log) == before.end()) name = log;
    }
    return !name.empty();
  });
  return name;
}

}  // namespace logbook::e2e
