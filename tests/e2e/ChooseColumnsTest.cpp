// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The user chooses what the columns show, by mouse, in both modes; cells, profile and listlog.csv
// follow.

#include <sstream>

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

// What is chosen for a column: a category by its option's caption, an entry by its text.
struct Choice {
  int column;
  const char* option;
  const char* entry;
  const char* profile;  // keys as they stand in the column's section
  const char* header;
};

class ChooseColumnsTest : public ReadableProgram {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (!IsSkipped()) work().RunHost({"fill", "--logs", "3", "--until", "2026-06-30"});
  }

  std::string Get(const std::string& path) { return work().machine().Get(path); }
  std::string List() { return Get(kLogRoot + std::string("listlog.csv")); }

  // Field of a line of listlog.csv, both counted from 0.
  std::string Field(std::size_t line, int field) {
    std::istringstream lines(List());
    std::string text;
    for (std::size_t i = 0; i <= line; ++i) std::getline(lines, text);
    std::istringstream fields(text);
    for (int i = 0; i <= field; ++i) std::getline(fields, text, ',');
    return text;
  }

  void Choose(MainPage& main, const Choice& choice) {
    main.ClickHeader(choice.column);
    const WindowId chooser = desktop().WaitForWindow("Change List Item");
    desktop().ClickScreen(reader().WaitFor("radio button", choice.option).place.Middle());
    desktop().ClickScreen(reader().WaitFor("list item", choice.entry).place.Middle());
    desktop().Click(chooser, {(480 + 487) / 15, (4560 + 187) / 15});  // OK
    desktop().WaitUntilGone(chooser);
    WaitFor("the column's header", [&] { return Field(0, choice.column - 1) == choice.header; });
  }

  // The cells of the column on the screen, in the list file and as logbookctl reckons them.
  void ExpectCells(const Choice& choice, bool ce) {
    std::vector<std::string> command = {
        LOGBOOKCTL_PROGRAM, "list",  "--log-root",
        kLogRoot,           "--ini", std::string(kExePath) + "logbook.ini"};
    if (ce) command.push_back("--ce");
    EXPECT_EQ(RunCommand(command, work().Variables(), desktop().NewFile("list")).output, List());
    for (std::size_t log = 1; log <= work().Logs().size(); ++log) {
      const std::string cell = Field(log, choice.column - 1);
      EXPECT_FALSE(cell.empty()) << choice.entry << " of log " << log;
      reader().WaitFor("tree item", cell);
    }
  }

  void ExpectProfile(const Choice& choice, const std::string& section) {
    const std::string profile = Get(kExePath + std::string("logbook.ini"));
    const std::string wanted =
        "[" + section + std::to_string(choice.column) + "]\r\n" + choice.profile;
    EXPECT_NE(profile.find(wanted), std::string::npos) << wanted << "\nnot in\n" << profile;
  }
};

constexpr Choice kTune = {3, "Tune Report", "Mass2(Sense)", "Cat=Tune\r\nItem=1\r\n",
                          "Mass2(Sense) (m/z)"};
constexpr Choice kMeter = {5, "Meter Value", "Exhaust Temp", "Cat=Meter\r\nItem=1\r\n",
                           "Exhaust Temp (degC)"};
constexpr Choice kAnalog = {8, "Analog Value", "15V(+)", "Cat=Analog\r\nItem=2\r\n", "15V(+) (V)"};

TEST_F(ChooseColumnsTest, TuneAndMeterColumnsAreChosenByMouseInNormalMode) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  for (const Choice& choice : {kTune, kMeter}) {
    Choose(main, choice);
    ExpectProfile(choice, "Header");
    ExpectCells(choice, false);
  }
}

TEST_F(ChooseColumnsTest, ColumnsOfAllCategoriesAreChosenByMouseInCEMode) {
  work().StartHostWithLogbook({"--ce"});
  MainPage main(desktop());
  for (const Choice& choice : {kTune, kMeter, kAnalog}) {
    Choose(main, choice);
    ExpectProfile(choice, "Header_CE");
    ExpectCells(choice, true);
  }
}

}  // namespace
}  // namespace logbook::e2e
