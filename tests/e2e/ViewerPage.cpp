// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ViewerPage.h"

#include <algorithm>

#include "base/Profile.h"

namespace logbook::e2e {
namespace {

constexpr int kTwipsPerPixel = 15;
// From the window's lower edge to the middle of its buttons.
constexpr int kButtonsAboveEdge = 7110 - (6600 + 375 / 2);

}  // namespace

ViewerPage::ViewerPage(Desktop& desktop, const std::string& date)
    : desktop_(desktop),
      title_("Logbook Viewer:" + date),
      window_(desktop.WaitForWindow(title_)),
      place_(desktop.PlaceOf(window_)) {}

void ViewerPage::Choose(const std::vector<std::string>& keys) {
  for (const std::string& key : keys) desktop_.Key(key);
}

void ViewerPage::Press(int left, int width) {
  desktop_.Click(window_, {(left + width / 2) / kTwipsPerPixel,
                           place_.height - kButtonsAboveEdge / kTwipsPerPixel});
}

void ViewerPage::PressPrint() {
  Press(2520, 1095);
}
void ViewerPage::PressExit() {
  Press(5040, 1095);
}
void ViewerPage::PressHelp() {
  Press(7440, 975);
}

void ViewerPage::WaitForReport(ScreenReader& reader, const std::string& begin) {
  WaitFor("the report that begins with \"" + begin + "\"", [&] {
    const auto things = reader.Read();
    return std::any_of(things.begin(), things.end(), [&](const Readable& thing) {
      return thing.role == "text" && thing.name == "Report" && thing.text.starts_with(begin);
    });
  });
}

std::string DateOf(const Workplace& work, const std::string& log) {
  constexpr std::size_t kSize = 512;
  return GetPrivateProfileString(work.machine(), "LogFile", "Date", "", kSize,
                                 kLogRoot + log + "\\logfile.ini");
}

}  // namespace logbook::e2e
