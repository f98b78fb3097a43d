// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/LogEditor.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "records/LogFolder.h"
#include "support/DiskCalls.h"
#include "support/FixedWidthBox.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::FixedWidthBox;
using test::TestWorkstation;

// A workstation with a new log and the editor loaded on it.
struct Editing : TestWorkstation {
  explicit Editing(int code_page = 1252) : TestWorkstation(code_page) {
    state.LogPath = GetNewFileName(state, services);
  }
  void Load() { LoadLogEditor(state, editor, comment); }
  std::string InNewLog(const std::string& file) { return state.LogPath + file; }

  LogEditor editor;
  FixedWidthBox comment{disk.machine(), 80};
};

std::string MaintenanceSection(const std::string& ticks) {
  std::string section = "[Maintenance]\r\n";
  for (std::size_t i = 0; i < ticks.size(); ++i)
    section += "Item" + std::to_string(i) + "=" + ticks[i] + "\r\n";
  return section;
}

TEST(LogEditor, LoadSetsCaptionsAndFonts) {
  Editing editing;
  editing.Load();
  const LogEditor& editor = editing.editor;
  EXPECT_EQ(editor.Window.Caption, "Logbook Editor:" + editing.state.LogPath);
  EXPECT_EQ(editor.Frame1.Caption, "Maintenance Records");
  EXPECT_EQ(editor.Label1.Caption, "Comment:");
  EXPECT_EQ(editor.cmdOK.Caption, "OK");
  EXPECT_EQ(editor.cmdCancel.Caption, "Cancel");
  EXPECT_EQ(editor.cmdHelp.Caption, "Help");
  EXPECT_EQ(editor.Check1[0].Caption, "Check Drain Vessel");
  EXPECT_EQ(editor.Check1[17].Caption, "Change EM");
  EXPECT_EQ(editor.Check1[3].TextFont.Name, "Arial");
  EXPECT_EQ(editor.txtComment.TextFont.Name, "Fixedsys");
  EXPECT_EQ(editor.txtComment.TextFont.Size, 9);
}

TEST(LogEditor, TickBoxesStandInThreeColumnsOfSix) {
  const LogEditor editor;
  EXPECT_EQ(editor.Check1[0].Place.Left, 240);
  EXPECT_EQ(editor.Check1[5].Place.Top, 2040);
  EXPECT_EQ(editor.Check1[6].Place.Left, 3480);
  EXPECT_EQ(editor.Check1[6].Place.Top, 240);
  EXPECT_EQ(editor.Check1[6].Place.Width, 2895);
  EXPECT_EQ(editor.Check1[17].Place.Left, 6480);
  EXPECT_EQ(editor.Check1[17].Place.Width, 3015);
}

TEST(LogEditor, OKStoresTicksLastFileAndComment) {
  Editing editing;
  editing.Load();
  editing.editor.Ticked[2] = editing.editor.Ticked[9] = true;
  editing.comment.SetText("torch changed");
  LogEditorOK(editing.state, editing.editor, editing.comment);
  EXPECT_TRUE(editing.editor.Unloaded);
  const std::string section = MaintenanceSection("001000000100000000");
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("logfile.ini")),
            "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n" + section);
  EXPECT_EQ(editing.disk.Get(editing.state.IniFile),
            section + "[LogBook]\r\nLastFile=" + editing.state.LogPath + "\r\n");
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("comment.txt")), "torch changed\r\n");
}

TEST(LogEditor, OKReplacesEachFileOnce) {
  Editing editing;
  editing.Load();
  const test::DiskCalls calls;
  LogEditorOK(editing.state, editing.editor, editing.comment);
  std::vector<std::string> replacements;
  for (const std::string& call : test::DiskCalls::Calls()) {
    if (call.starts_with("rename ")) replacements.push_back(call);
  }
  EXPECT_EQ(replacements, (std::vector<std::string>{"rename logfile.ini", "rename logbook.ini",
                                                    "rename comment.txt"}));
  EXPECT_EQ(test::DiskCalls::Count("fsync "), 6) << "each file and its folder";
}

TEST(LogEditor, OnlyTheNumberOneTicksABox) {
  Editing editing;
  const std::pair<const char*, bool> cases[] = {{"1", true},   {"0", false},   {"2", false},
                                                {"-1", false}, {"0.5", false}, {"10", false},
                                                {"x", false},  {" 1x", true},  {"1.0", true}};
  for (const auto& [value, ticked] : cases) {
    editing.disk.Put(editing.state.IniFile, "[Maintenance]\r\nItem4=" + std::string(value));
    editing.Load();
    EXPECT_EQ(editing.editor.Ticked[4], ticked) << value;
  }
}

TEST(LogEditor, TheFirstAndTheLastBoxHaveTheirKeysAndNoFurtherKeyCounts) {
  Editing editing;
  editing.disk.Put(editing.state.IniFile, "[Maintenance]\r\nItem0=1\r\nItem17=1\r\nItem18=1\r\n");
  editing.Load();
  for (std::size_t i = 0; i < LogEditor::kChecks; ++i)
    EXPECT_EQ(editing.editor.Ticked[i], i == 0 || i == 17) << i;
}

TEST(LogEditor, TicksAndLastFileAreStoredBeforeTheComment) {
  Editing editing;
  editing.Load();
  editing.editor.Ticked[2] = true;
  editing.disk.MakeFolders(editing.InNewLog("comment.txt"));
  EXPECT_THROW(LogEditorOK(editing.state, editing.editor, editing.comment), RunTimeError);
  const std::string section = MaintenanceSection("001000000000000000");
  EXPECT_EQ(editing.disk.Get(editing.state.IniFile),
            section + "[LogBook]\r\nLastFile=" + editing.state.LogPath + "\r\n");
  EXPECT_TRUE(editing.disk.Get(editing.InNewLog("logfile.ini")).ends_with(section));
}

TEST(LogEditor, CommentThatEndsInATypedLineEndKeepsItAndGetsOneMore) {
  Editing editing;
  editing.Load();
  editing.comment.SetText("torch\r\n");
  LogEditorOK(editing.state, editing.editor, editing.comment);
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("comment.txt")), "torch\r\n\r\n");
}

TEST(LogEditor, NextEditorOpensWithTheTicksOfTheLastRecord) {
  Editing editing;
  editing.Load();
  editing.editor.Ticked[2] = editing.editor.Ticked[9] = true;
  LogEditorOK(editing.state, editing.editor, editing.comment);
  LogEditor next;
  LoadLogEditor(editing.state, next, editing.comment);
  for (std::size_t i = 0; i < next.Ticked.size(); ++i)
    EXPECT_EQ(next.Ticked[i], i == 2 || i == 9) << i;
}

TEST(LogEditor, RecordWithoutTickAndCommentIsAccepted) {
  Editing editing;
  editing.Load();
  LogEditorOK(editing.state, editing.editor, editing.comment);
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("comment.txt")), "\r\n");
}

TEST(LogEditor, LongCommentKeepsTheLinesOfTheBox) {
  Editing editing;
  editing.Load();
  editing.comment.SetText(std::string(100, 'x'));
  LogEditorOK(editing.state, editing.editor, editing.comment);
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("comment.txt")),
            std::string(80, 'x') + "\r\n" + std::string(20, 'x') + "\r\n");
}

TEST(LogEditor, CommentIsWrittenInTheCodePage) {
  Editing editing(932);
  editing.Load();
  editing.comment.SetText("清掃");
  LogEditorOK(editing.state, editing.editor, editing.comment);
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("comment.txt")), "\x90\xb4\x91\x7c\r\n");
}

TEST(LogEditor, CommentThatCannotBeWrittenIsARunTimeError) {
  Editing editing;
  editing.Load();
  editing.disk.MakeFolders(editing.InNewLog("comment.txt"));
  EXPECT_THROW(LogEditorOK(editing.state, editing.editor, editing.comment), RunTimeError);
  EXPECT_FALSE(editing.editor.Unloaded);
}

TEST(LogEditor, CancelLeavesNoFolderAndTouchesNoTicks) {
  Editing editing;
  editing.disk.Put(editing.InNewLog("aall.txt"), "1,2,3");
  editing.disk.Put(editing.state.IniFile, "[Maintenance]\r\nItem1=1\r\n");
  editing.Load();
  editing.editor.Ticked[5] = true;
  LogEditorCancel(editing.state, editing.services, editing.editor);
  EXPECT_TRUE(editing.editor.Unloaded);
  EXPECT_FALSE(editing.disk.Has(editing.state.LogPath));
  EXPECT_EQ(editing.disk.Get(editing.state.IniFile), "[Maintenance]\r\nItem1=1\r\n");
  EXPECT_TRUE(editing.messages.shown.empty());
}

TEST(LogEditor, CancelWithAReadOnlyFileNamesTheRootAndStaysOpen) {
  Editing editing;
  const std::string file = editing.InNewLog("aall.txt");
  editing.disk.Put(file, "1");
  std::filesystem::permissions(editing.disk.Native(file), std::filesystem::perms::owner_read);
  editing.Load();
  LogEditorCancel(editing.state, editing.services, editing.editor);
  EXPECT_FALSE(editing.editor.Unloaded);
  ASSERT_EQ(editing.messages.shown.size(), 1u);
  EXPECT_EQ(editing.messages.shown[0].Text,
            std::string("Can not delete logfile:") + TestWorkstation::kLogRoot + " !");
  EXPECT_EQ(editing.messages.shown[0].Icon, MessageIcon::kExclamation);
  EXPECT_TRUE(editing.disk.Has(file));
  EXPECT_FALSE(editing.disk.Has(editing.InNewLog("logfile.ini")));
}

TEST(LogEditor, CancelTouchesNothingBehindALinkInTheFoldersPlace) {
  Editing editing;
  editing.Load();
  const std::string folder = editing.disk.Native("C:\\QUOREX\\inst1\\maintain\\26111500");
  editing.disk.Put("C:\\elsewhere\\aall.txt", "kept");
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory_symlink(editing.disk.Native("C:\\elsewhere"), folder);
  LogEditorCancel(editing.state, editing.services, editing.editor);
  EXPECT_FALSE(editing.editor.Unloaded);
  EXPECT_EQ(editing.messages.shown.size(), 1u);
  EXPECT_EQ(editing.disk.Get("C:\\elsewhere\\aall.txt"), "kept");
  EXPECT_TRUE(std::filesystem::is_symlink(folder));
}

TEST(LogEditor, AutoRecConfirmsItselfInsideTheLoadWithTheRememberedTicks) {
  Editing editing;
  editing.state.AutoRec = true;
  editing.disk.Put(editing.state.IniFile, MaintenanceSection("010000000000000000"));
  editing.Load();
  EXPECT_TRUE(editing.editor.Unloaded);
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("comment.txt")),
            "Automatically logged on Tune Report generation.\r\n");
  EXPECT_EQ(editing.disk.Get(editing.InNewLog("logfile.ini")),
            "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n" + MaintenanceSection("010000000000000000"));
}

TEST(LogEditor, LoadReadsNoKeyOfTheLogItself) {
  Editing editing;
  editing.disk.Put(editing.InNewLog("logfile.ini"), MaintenanceSection("111111111111111111"));
  editing.Load();
  for (const bool ticked : editing.editor.Ticked) EXPECT_FALSE(ticked);
}

}  // namespace
}  // namespace logbook
