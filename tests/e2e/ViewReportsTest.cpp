// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Every entry of the viewer's menu, by mouse and by keyboard, in both modes: the pane shows what
// the report file holds and what logbookctl prints.

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

struct Entry {
  const char* menu;     // drop-down that holds it; empty for a command on the bar
  const char* caption;  // without the ampersand
  std::vector<const char*> keys;
  const char* kind;  // of "logbookctl report"
  const char* file;  // report file that the view writes; empty for the host's texts
  bool ce_only;
};

const std::vector<Entry>& Entries() {
  static const std::vector<Entry> entries = {
      {"", "Tune", {"alt+t"}, "tune", "", false},
      {"Logs", "View ACQ Log", {"alt+l", "a"}, "acq", "", false},
      {"Logs", "View Sequence Log", {"alt+l", "s"}, "seq", "", false},
      {"Logs", "View Chained Seq Log", {"alt+l", "c"}, "chain", "", false},
      {"Logs", "View Error Log", {"alt+l", "e"}, "err", "", false},
      {"", "View Maintenance Records", {"alt+m"}, "mainte", "mainte.rpt", false},
      {"", "View Meter Values", {"alt+v"}, "meter", "meter.rpt", false},
      {"", "View Analog Values", {"alt+a"}, "analog", "analog.rpt", true},
      {"View Bit Values", "View Bit Output Values", {"alt+b", "o"}, "bitout", "bitout.rpt", true},
      {"View Bit Values", "View Bit Input Values", {"alt+b", "i"}, "bitin", "bitin.rpt", true},
      {"", "View System Parameters", {"alt+s"}, "sys", "Sys.rpt", true},
  };
  return entries;
}

std::string WithLineFeeds(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c != '\r') result += c;
  }
  return result;
}

class ViewReportsTest : public ReadableProgram {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (!IsSkipped()) work().RunHost({"fill", "--logs", "2", "--until", "2026-06-30"});
  }

  void OpenViewer() {
    log_ = work().Logs().front();
    desktop().DoubleClickScreen(Row(log_).place.Middle());
    reader().WaitFor("menu item", "Tune");
  }

  void ByMouse(const Entry& entry) {
    if (*entry.menu != '\0')
      desktop().ClickScreen(reader().WaitFor("menu item", entry.menu).place.Middle());
    desktop().ClickScreen(reader().WaitFor("menu item", entry.caption).place.Middle());
  }

  void ByKeyboard(const Entry& entry) {
    for (const char* key : entry.keys) desktop().Key(key);
  }

  // What logbookctl prints; it must be what the report file holds.
  std::string Printed(const Entry& entry) {
    const std::string printed =
        RunCommand({LOGBOOKCTL_PROGRAM, "report", entry.kind, kLogRoot + log_}, work().Variables(),
                   desktop().NewFile(entry.kind))
            .output;
    EXPECT_FALSE(printed.empty()) << entry.kind;
    return printed;
  }

  void ExpectShown(const Entry& entry) {
    const std::string printed = Printed(entry);
    std::string pane = WithLineFeeds(printed);
    if (*entry.file != '\0') pane.pop_back();  // the file has one line end more
    WaitFor(std::string("the pane to show ") + entry.caption, [&] {
      for (const Readable& thing : reader().Read()) {
        if (thing.role == "text" && thing.text == pane) return true;
      }
      return false;
    });
    if (*entry.file != '\0') {
      EXPECT_EQ(work().machine().Get(kLogRoot + log_ + "\\" + entry.file), printed) << entry.kind;
    }
  }

  void WalkTheMenu(bool ce) {
    OpenViewer();
    for (const auto open : {&ViewReportsTest::ByMouse, &ViewReportsTest::ByKeyboard}) {
      for (const Entry& entry : Entries()) {
        if (entry.ce_only && !ce) continue;
        (this->*open)(entry);
        ExpectShown(entry);
      }
    }
  }

  std::string log_;
};

TEST_F(ViewReportsTest, EveryEntryShowsItsReportInNormalMode) {
  work().StartHostWithLogbook();
  WalkTheMenu(false);
}

TEST_F(ViewReportsTest, EveryEntryShowsItsReportInCEMode) {
  work().StartHostWithLogbook({"--ce"});
  WalkTheMenu(true);
}

}  // namespace
}  // namespace logbook::e2e
