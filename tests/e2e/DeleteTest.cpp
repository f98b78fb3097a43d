// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Deleting logs, and who may, with the real programs.

#include <sys/stat.h>

#include <cstdio>

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using Button = MainPage::Button;

class DeleteTest : public ReadableProgram {
 protected:
  void Start() {
    // No columns are chosen, so that the list holds dates, names and comments alone.
    std::remove(work().machine().Native(kExePath + std::string("logbook.ini")).c_str());
    work().PutPlainLogs(4);
    work().StartHostWithLogbook();
    main_ = std::make_unique<MainPage>(desktop());
  }

  // Waits for a message box with this text and gives the answer by its button.
  void Answer(const std::string& text, const std::string& button) {
    const MessagePage box(desktop(), *main_);
    EXPECT_EQ(reader().WaitFor("label", text).name, text);
    desktop().TakePicture(box.window(), PictureFolder() + "/message-" + button + ".png");
    desktop().ClickScreen(reader().WaitFor("push button", button).place.Middle());
    desktop().WaitUntilGone(box.window());
  }

  std::string List() { return work().machine().Get(kLogRoot + std::string("listlog.csv")); }

  MainPage& main() { return *main_; }

 private:
  std::unique_ptr<MainPage> main_;
};

std::string ListOf(const std::vector<int>& logs) {
  std::string text =
      "Date Logged,Logbook Folder,Item 1,Item 2,Item 3,Item 4,Item 5,Item 6,Comment\r\n";
  for (const int log : logs) {
    const std::string day = "0" + std::to_string(log);
    text +=
        "01/" + day + "/2026 08:30:00,2601" + day + "00,,,,,,,Log " + std::to_string(log) + "\r\n";
  }
  return text;
}

TEST_F(DeleteTest, AnswerNoChangesNothingAndAnswerYesRemovesTheSelectedLogs) {
  Start();
  const auto before = work().FilesIn("C:\\");
  ClickRow("26010200");
  ClickRow("26010400", "ctrl");
  main().Press(Button::kDelete);
  Answer("Delete Logfiles ?", "No");
  EXPECT_EQ(work().FilesIn("C:\\"), before);

  main().Press(Button::kDelete);
  Answer("Delete Logfiles ?", "Yes");
  WaitFor("the list to be rewritten", [&] { return List() == ListOf({1, 3}); });
  EXPECT_EQ(work().Logs(), (std::vector<std::string>{"26010100", "26010300"}));
}

TEST_F(DeleteTest, WithoutASelectedRowNothingIsAsked) {
  Start();
  main().Press(Button::kDelete);
  // Events are handled in order: when the row is selected, the click before it has been handled.
  ClickRow("26010100");
  WaitFor("the row to be selected", [&] { return Row("26010100").selected; });
  EXPECT_EQ(desktop().Windows(kMainTitle).size(), 1u);
}

TEST_F(DeleteTest, ReadOnlyFileKeepsItsLogAndTheMessageNamesTheFullFolder) {
  Start();
  const std::string file = kLogRoot + std::string("26010100\\logfile.ini");
  const std::string bytes = work().machine().Get(file);
  ASSERT_EQ(chmod(work().machine().Native(file).c_str(), 0444), 0);
  ClickRow("26010100");
  ClickRow("26010200", "ctrl");
  main().Press(Button::kDelete);
  Answer("Delete Logfiles ?", "Yes");
  Answer("Can not delete logfile:C:\\QUOREX\\inst1\\maintain\\26010100 !", "OK");
  WaitForButton("Record Log");
  WaitFor("the list to be rewritten", [&] { return List().find("26010200") == std::string::npos; });
  EXPECT_EQ(work().Logs(), (std::vector<std::string>{"26010100", "26010300", "26010400"}));
  EXPECT_EQ(work().FilesIn(kLogRoot + std::string("26010100")),
            (std::map<std::string, std::string>{{"logfile.ini", bytes}}));
  Row("26010100");
}

TEST_F(DeleteTest, UserWithoutTheRightMayDeleteAfterARecording) {
  std::remove(work().machine().Native(kExePath + std::string("acslvl.ist")).c_str());
  Start();
  WaitForButton("Delete Log", false);
  ClickRow("26010100");
  main().Press(Button::kDelete);
  // Had the click asked a question, the recording could not begin.
  const std::string name = PressRecord(work(), main());
  EditorPage editor(desktop(), kLogRoot + name + "\\");
  for (const char* caption : {"Record Log", "View Log", "Delete Log", "Print List", "Archive..."}) {
    WaitForButton(caption, false);
  }
  WaitForButton("Exit");
  editor.PressCancel();
  desktop().WaitUntilGone(editor.window());
  WaitForButton("Delete Log");
  ClickRow("26010100");
  main().Press(Button::kDelete);
  Answer("Delete Logfiles ?", "Yes");
  WaitFor("the log to go", [&] { return work().Logs().size() == 3; });
}

}  // namespace
}  // namespace logbook::e2e
