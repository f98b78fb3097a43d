// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Looking at logs with the real programs: a column of the list is chosen, a log is viewed.

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

class ReadLogsTest : public ReadableProgram {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (!IsSkipped()) work().RunHost({"fill", "--logs", "3", "--until", "2026-06-30"});
  }

  std::string Get(const std::string& path) { return work().machine().Get(path); }
  std::string HeaderLine() {
    const std::string list = Get(kLogRoot + std::string("listlog.csv"));
    return list.substr(0, list.find("\r\n"));
  }
};

TEST_F(ReadLogsTest, ClickOnAHeaderLetsTheUserChooseWhatTheColumnShows) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  const std::string before = HeaderLine();
  main.ClickHeader(2);
  main.ClickHeader(3);
  const WindowId chooser = desktop().WaitForWindow("Change List Item");
  desktop().TakePicture(chooser, PictureFolder() + "/chooser.png");
  EXPECT_EQ(desktop().PlaceOf(chooser).width, 5190 / 15);
  EXPECT_EQ(desktop().PlaceOf(chooser).height, 5130 / 15);
  desktop().Click(chooser, {(120 + 240 + 300) / 15, (120 + 720 + 187) / 15});  // Meter Value
  desktop().Click(chooser, {(120 + 300) / 15, 1920 / 15 + 8});                 // its first row
  desktop().Click(chooser, {(480 + 487) / 15, (4560 + 187) / 15});             // OK
  desktop().WaitUntilGone(chooser);
  WaitFor("the new column", [&] { return HeaderLine() != before; });
  const std::string profile = Get(kExePath + std::string("logbook.ini"));
  EXPECT_NE(profile.find("[Header3]\r\nCat=Meter\r\nItem=0\r\n"), std::string::npos) << profile;
}

TEST_F(ReadLogsTest, DoubleClickViewsALogAndAMenuCommandShowsAndWritesAReport) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  const std::string log = work().Logs().front();
  const Point row = Row(log).place.Middle();
  desktop().DoubleClickScreen(row);
  const std::string ini = Get(kLogRoot + log + "\\logfile.ini");
  const std::size_t date = ini.find("Date=") + 5;
  const WindowId viewer =
      desktop().WaitForWindow("Logbook Viewer:" + ini.substr(date, ini.find("\r\n", date) - date));
  EXPECT_EQ(desktop().PlaceOf(viewer).width, 11460 / 15);
  desktop().Key("alt+v");
  const std::string report = kLogRoot + log + "\\meter.rpt";
  WaitFor("the report file", [&] { return work().machine().Has(report); });
  const std::string first_line = Get(report).substr(0, Get(report).find("\r\n"));
  WaitFor("the report pane to show the report", [&] {
    for (const Readable& thing : reader().Read()) {
      if (thing.role == "text" && thing.text.find(first_line) != std::string::npos) return true;
    }
    return false;
  });
  desktop().TakePicture(viewer, PictureFolder() + "/viewer.png");
  desktop().Key("Escape");
  desktop().WaitUntilGone(viewer);
  WaitForButton("Record Log");
}

}  // namespace
}  // namespace logbook::e2e
