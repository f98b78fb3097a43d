// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "placement/LogbookGen.h"

#include <array>
#include <string_view>

#include "placement/Arrangement.h"
#include "text/CSVMan.h"

namespace logbook {

namespace {

constexpr int kMargin = 120;
constexpr int kGap = 120;
constexpr int kWideGap = 360;  // parts cmdHelp and cmdExit from the working commands
constexpr std::size_t kLines = 9;

// Third and fourth number of a list: width and height.
Size SizeInLine(const std::string& line) {
  std::array<std::string, 201> fields;
  SplitFields(line, fields, ",");
  return {WholeNumber(fields[2]), WholeNumber(fields[3])};
}

void SetSize(Control& control, Size size) {
  control.Place.Width = size.Width;
  control.Place.Height = size.Height;
}

}  // namespace

void ArrangeMainWindow(AppState& state, Services& services) {
  ArrangeMainWindow(state, services,
                    LoadResText(state.machine, "IDRES_LOGBOOK_ARRANGE", "LOGBOOK_RES"));
}

void ArrangeMainWindow(AppState& state, Services& services, const std::string& text) {
  std::array<std::string, 201> lines;
  SplitFields(text, lines, std::string_view("\0", 1));
  std::array<Size, kLines> sizes;
  for (std::size_t i = 0; i < kLines; ++i) sizes[i] = SizeInLine(lines[i]);

  MainWindow& window = state.frmMain;
  SetSize(window.Window, sizes[0]);
  window.Inner = services.forms.SetMainSize(sizes[0]);
  window.ListView1.Place = {kMargin, kMargin, sizes[1].Width, sizes[1].Height};

  Control& help = window.cmdHelp;
  SetSize(help, sizes[2]);
  help.Place.Left = window.Inner.Width - kMargin - help.Place.Width;
  help.Place.Top = window.Inner.Height - kMargin - help.Place.Height;

  const std::array<Control*, 6> leftwards = {&window.cmdExit,   &window.cmdArchive,
                                             &window.cmdPrint,  &window.cmdBrowse,
                                             &window.cmdDelete, &window.cmdRecord};
  int right_neighbour = help.Place.Left;
  for (std::size_t i = 0; i < leftwards.size(); ++i) {
    Control& button = *leftwards[i];
    SetSize(button, sizes[i + 3]);
    const int gap = &button == &window.cmdArchive ? kWideGap : kGap;
    button.Place.Left = right_neighbour - gap - button.Place.Width;
    button.Place.Top = help.Place.Top;
    right_neighbour = button.Place.Left;
  }
}

}  // namespace logbook
