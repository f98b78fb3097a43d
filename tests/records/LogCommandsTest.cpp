// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/LogCommands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <vector>

#include "loglist/LogList.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::TestWorkstation;
using testing::ElementsAre;
using testing::IsEmpty;

// Three logs in the list.
struct Logs : TestWorkstation {
  Logs() {
    for (const char* name : {"26111500", "26111501", "26111502"})
      MakeLog(name, std::string("date of ") + name, "comment");
    Init_FileList(state, services);
    forms.calls.clear();
  }
  void Select(std::initializer_list<int> rows) {
    for (const int row : rows) state.ListView1.Row(row).Selected = true;
  }
  void MakeReadOnlyFile(const std::string& log) {
    const std::string file = InLog(log, "aall.txt");
    disk.Put(file, "1");
    std::filesystem::permissions(disk.Native(file), std::filesystem::perms::owner_read);
  }
};

TEST(cmdBrowse, OpensTheViewerOnTheSelectedCurrentRow) {
  Logs logs;
  logs.Select({2});
  logs.state.ListView1.CurrentRow = 2;
  cmdBrowse_Click(logs.state, logs.services);
  EXPECT_EQ(logs.state.CurrentLog, 2);
  EXPECT_EQ(logs.state.CurrentLogDate, "date of 26111501");
  EXPECT_EQ(logs.state.CurrentLogName, "26111501");
  EXPECT_THAT(logs.forms.calls, ElementsAre("ShowLogView Logbook Viewer:date of 26111501"));
}

TEST(cmdBrowse, OpensTheViewerOnTheFirstRowToo) {
  Logs logs;
  logs.Select({1});
  logs.state.ListView1.CurrentRow = 1;
  logs.forms.on_view = [&] { EXPECT_EQ(logs.state.CurrentLogName, "26111500"); };
  cmdBrowse_Click(logs.state, logs.services);
  EXPECT_THAT(logs.forms.calls, ElementsAre("ShowLogView Logbook Viewer:date of 26111500"));
}

TEST(cmdBrowse, NothingHappensWithoutACurrentRow) {
  Logs logs;
  logs.Select({1});
  logs.state.ListView1.CurrentRow = 0;
  cmdBrowse_Click(logs.state, logs.services);
  EXPECT_THAT(logs.forms.calls, IsEmpty());
}

TEST(cmdBrowse, NothingHappensWhenTheCurrentRowIsNotSelected) {
  Logs logs;
  logs.Select({1});
  logs.state.ListView1.CurrentRow = 2;
  cmdBrowse_Click(logs.state, logs.services);
  EXPECT_THAT(logs.forms.calls, IsEmpty());
}

TEST(cmdBrowse, NothingHappensWithAnEmptyList) {
  TestWorkstation station;
  cmdBrowse_Click(station.state, station.services);
  EXPECT_THAT(station.forms.calls, IsEmpty());
}

TEST(ColumnClick, FixedColumnsDoNothing) {
  Logs logs;
  for (const int column : {1, 2, 9}) ListView1_ColumnClick(logs.state, logs.services, column);
  EXPECT_THAT(logs.forms.calls, IsEmpty());
}

TEST(ColumnClick, ValueColumnsOpenTheChooserAndRebuildTheList) {
  for (int column = 3; column <= 8; ++column) {
    Logs logs;
    logs.MakeLog("26111503", "new");
    logs.forms.on_change_item = [&] { EXPECT_EQ(logs.state.ChangeColumn, column); };
    ListView1_ColumnClick(logs.state, logs.services, column);
    EXPECT_EQ(logs.state.ChangeColumn, column);
    EXPECT_THAT(logs.forms.calls, ElementsAre("ShowChangeItem", "UpdateMain"));
    EXPECT_EQ(logs.state.LogCount, 4);
  }
}

TEST(ColumnClick, VisibleChooserIsNotOpenedAgain) {
  Logs logs;
  logs.forms.change_item_visible = true;
  ListView1_ColumnClick(logs.state, logs.services, 3);
  EXPECT_THAT(logs.forms.calls, IsEmpty());
}

TEST(cmdDelete, WithoutASelectionNothingHappensAtAll) {
  Logs logs;
  cmdDelete_Click(logs.state, logs.services);
  EXPECT_THAT(logs.messages.shown, IsEmpty());
  EXPECT_THAT(logs.forms.calls, IsEmpty());
}

TEST(cmdDelete, AsksOnceWithYesAndNo) {
  Logs logs;
  logs.Select({1, 3});
  cmdDelete_Click(logs.state, logs.services);
  ASSERT_EQ(logs.messages.shown.size(), 1u);
  const Message& question = logs.messages.shown[0];
  EXPECT_EQ(question.Text, "Delete Logfiles ?");
  EXPECT_EQ(question.Buttons, MessageButtons::kYesNo);
  EXPECT_EQ(question.Icon, MessageIcon::kNone);
  EXPECT_FALSE(question.Title.has_value());
}

TEST(cmdDelete, AnswerNoChangesNothing) {
  Logs logs;
  logs.Select({1, 3});
  logs.messages.answers = {MessageAnswer::kNo};
  const auto before = logs.RootEntries();
  cmdDelete_Click(logs.state, logs.services);
  EXPECT_EQ(logs.RootEntries(), before);
  EXPECT_THAT(logs.forms.calls, IsEmpty());
}

TEST(cmdDelete, SelectedLogsAreGoneAfterOneQuestionAndOneRebuild) {
  Logs logs;
  logs.Select({1, 3});
  logs.messages.answers = {MessageAnswer::kYes};
  cmdDelete_Click(logs.state, logs.services);
  EXPECT_THAT(logs.RootEntries(), ElementsAre("26111501", "listlog.csv"));
  EXPECT_EQ(logs.messages.shown.size(), 1u);
  EXPECT_THAT(logs.forms.calls, ElementsAre("UpdateMain"));
  EXPECT_EQ(logs.state.ListView1.Rows.size(), 1u);
}

TEST(cmdDelete, AContentServerGetsTheListOnlyIfTheDeletionSucceeded) {
  for (const bool succeeds : {true, false}) {
    Logs logs;
    logs.ecm.enabled = true;
    if (!succeeds) logs.MakeReadOnlyFile("26111501");
    logs.Select({2});
    logs.messages.answers = {MessageAnswer::kYes};
    cmdDelete_Click(logs.state, logs.services);
    EXPECT_EQ(logs.ecm.calls.empty(), !succeeds);
  }
}

TEST(DeleteSelectedLogs, WithoutASelectionNothingIsDeletedAndNothingIsToBeTold) {
  Logs logs;
  EXPECT_FALSE(DeleteSelectedLogs(logs.state, logs.services));
  EXPECT_EQ(logs.state.LogCount, 3);
}

TEST(DeleteSelectedLogs, ReadOnlyFileKeepsItsFolderAndIsNamedInTheMessage) {
  Logs logs;
  logs.MakeReadOnlyFile("26111501");
  logs.Select({2});
  EXPECT_FALSE(DeleteSelectedLogs(logs.state, logs.services));
  ASSERT_EQ(logs.messages.shown.size(), 1u);
  EXPECT_EQ(logs.messages.shown[0].Text,
            std::string("Can not delete logfile:") + TestWorkstation::kLogRoot + "26111501 !");
  EXPECT_EQ(logs.messages.shown[0].Icon, MessageIcon::kExclamation);
  EXPECT_EQ(logs.state.LogCount, 3);
  EXPECT_TRUE(logs.disk.Has(TestWorkstation::InLog("26111501", "aall.txt")));
  EXPECT_FALSE(logs.disk.Has(TestWorkstation::InLog("26111501", "comment.txt")));
}

TEST(DeleteSelectedLogs, SubFolderAndHiddenFileKeepTheirLogToo) {
  Logs logs;
  logs.disk.MakeFolders(TestWorkstation::InLog("26111500", "sub"));
  logs.disk.Put(TestWorkstation::InLog("26111501", ".hidden"), "x");
  logs.Select({1, 2});
  EXPECT_FALSE(DeleteSelectedLogs(logs.state, logs.services));
  EXPECT_EQ(logs.messages.shown.size(), 2u);
  EXPECT_EQ(logs.state.LogCount, 3);
}

TEST(DeleteSelectedLogs, FolderWithANameBeyondTheCodePageIsListedAndDeleted) {
  Logs logs;
  logs.MakeLog("清掃 ß", "d", "comment");
  Init_FileList(logs.state, logs.services);
  ASSERT_EQ(logs.state.LogCount, 4);
  EXPECT_EQ(logs.state.ListView1.Row(4).SubItem(1), "清掃 ß");
  EXPECT_EQ(logs.state.ListView1.Row(4).SubItem(8), "comment");
  logs.Select({4});
  EXPECT_TRUE(DeleteSelectedLogs(logs.state, logs.services));
  EXPECT_THAT(logs.RootEntries(), ElementsAre("26111500", "26111501", "26111502", "listlog.csv"));
}

TEST(DeleteSelectedLogs, LinkToAFolderIsReportedAndNothingBehindItIsTouched) {
  Logs logs;
  logs.disk.Put("C:\\elsewhere\\aall.txt", "1");
  std::filesystem::create_directory_symlink(
      logs.disk.Native("C:\\elsewhere"),
      logs.disk.Native(std::string(TestWorkstation::kLogRoot) + "26111503"));
  Init_FileList(logs.state, logs.services);
  logs.Select({4});
  EXPECT_FALSE(DeleteSelectedLogs(logs.state, logs.services));
  ASSERT_EQ(logs.messages.shown.size(), 1u);
  EXPECT_EQ(logs.messages.shown[0].Text,
            std::string("Can not delete logfile:") + TestWorkstation::kLogRoot + "26111503 !");
  EXPECT_EQ(logs.state.LogCount, 4);
  EXPECT_EQ(logs.disk.Get("C:\\elsewhere\\aall.txt"), "1");
}

TEST(cmdDelete, FolderSwappedForALinkWhileTheQuestionStandsIsNotFollowed) {
  struct SwappingUser : MessageBoxes {
    MessageAnswer Show(const Message& message) override {
      texts.push_back(message.Text);
      if (message.Buttons != MessageButtons::kYesNo) return MessageAnswer::kOk;
      swap();
      return MessageAnswer::kYes;
    }
    std::function<void()> swap;
    std::vector<std::string> texts;
  } user;
  Logs logs;
  logs.disk.Put("C:\\elsewhere\\aall.txt", "1");
  const std::string log = logs.disk.Native(std::string(TestWorkstation::kLogRoot) + "26111501");
  user.swap = [&] {
    std::filesystem::remove_all(log);
    std::filesystem::create_directory_symlink(logs.disk.Native("C:\\elsewhere"), log);
  };
  Services services{logs.host, logs.cell,  logs.events,  user,       logs.clock, logs.process,
                    logs.ecm,  logs.forms, logs.windows, logs.print, logs.help,  logs.save};
  logs.Select({2});
  cmdDelete_Click(logs.state, services);
  EXPECT_THAT(user.texts,
              ElementsAre("Delete Logfiles ?", std::string("Can not delete logfile:") +
                                                   TestWorkstation::kLogRoot + "26111501 !"));
  EXPECT_EQ(logs.disk.Get("C:\\elsewhere\\aall.txt"), "1");
  EXPECT_TRUE(std::filesystem::is_symlink(log));
}

TEST(DeleteSelectedLogs, LinksInALogGoWithItAndTheirTargetsStay) {
  Logs logs;
  logs.disk.Put("C:\\elsewhere\\aall.txt", "1");
  const auto link = [&](const char* name) {
    return logs.disk.Native(TestWorkstation::InLog("26111501", name));
  };
  std::filesystem::create_directory_symlink(logs.disk.Native("C:\\elsewhere"), link("folder"));
  std::filesystem::create_symlink(logs.disk.Native("C:\\elsewhere\\aall.txt"), link("aall.txt"));
  logs.Select({2});
  EXPECT_TRUE(DeleteSelectedLogs(logs.state, logs.services));
  EXPECT_THAT(logs.RootEntries(), ElementsAre("26111500", "26111502", "listlog.csv"));
  EXPECT_EQ(logs.disk.Get("C:\\elsewhere\\aall.txt"), "1");
}

TEST(DeleteSelectedLogs, AnotherLogThatDiffersInCaseIsNotTakenForOneThatHasVanished) {
  Logs logs;
  logs.MakeLog("Pump", "d", "comment");
  Init_FileList(logs.state, logs.services);
  const std::string root = logs.disk.Native(TestWorkstation::kLogRoot);
  std::filesystem::rename(root + "Pump", root + "pump");
  logs.Select({4});
  EXPECT_FALSE(DeleteSelectedLogs(logs.state, logs.services));
  EXPECT_EQ(logs.messages.shown.size(), 1u);
  EXPECT_EQ(logs.disk.Get(TestWorkstation::InLog("pump", "comment.txt")), "comment\r\n");
}

TEST(DeleteSelectedLogs, ResultIsThatOfTheLastSelectedRow) {
  Logs middle_fails;
  middle_fails.MakeReadOnlyFile("26111501");
  middle_fails.Select({1, 2, 3});
  EXPECT_TRUE(DeleteSelectedLogs(middle_fails.state, middle_fails.services));
  EXPECT_EQ(middle_fails.messages.shown.size(), 1u);

  Logs last_fails;
  last_fails.MakeReadOnlyFile("26111502");
  last_fails.Select({1, 2, 3});
  EXPECT_FALSE(DeleteSelectedLogs(last_fails.state, last_fails.services));
}

TEST(DeleteSelectedLogs, ListIsRebuiltAlsoWhenAllFailed) {
  Logs logs;
  logs.MakeReadOnlyFile("26111500");
  logs.Select({1});
  DeleteSelectedLogs(logs.state, logs.services);
  EXPECT_THAT(logs.forms.calls, ElementsAre("UpdateMain"));
}

}  // namespace
}  // namespace logbook
