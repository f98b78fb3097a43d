// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/LogView.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "base/RunTimeError.h"
#include "support/Viewing.h"
#include "viewer/ReportPrinting.h"

namespace logbook {
namespace {

using test::Viewing;

TEST(LogView, ControlsStandAtTheirPlaces) {
  LogView view;
  const auto place = [](const Control& control) {
    const Rect& rect = control.Place;
    return std::vector<int>{rect.Left, rect.Top, rect.Width, rect.Height};
  };
  EXPECT_EQ(place(view.Window), (std::vector<int>{0, 0, 11460, 7110}));
  EXPECT_EQ(place(view.txtReport), (std::vector<int>{120, 120, 11175, 4215}));
  EXPECT_EQ(place(view.txtComment), (std::vector<int>{120, 4560, 11175, 1815}));
  EXPECT_EQ(place(view.cmdPrint), (std::vector<int>{2520, 6600, 1095, 375}));
  EXPECT_EQ(place(view.cmdExit), (std::vector<int>{5040, 6600, 1095, 375}));
  EXPECT_EQ(place(view.cmdHelp), (std::vector<int>{7440, 6600, 975, 375}));
  EXPECT_EQ(place(view.F1Report), (std::vector<int>{3240, 4320, 465, 285}));
  EXPECT_FALSE(view.F1Report.Visible);
}

TEST(LogView, TheFolderOfTheLogEndsInABackslash) {
  Viewing viewing;
  EXPECT_EQ(viewing.view.LogFolderPath, "C:\\QUOREX\\inst1\\maintain\\26111500\\");
}

TEST(LogView, AnIndexOutsideTheListOfLogsIsAnError) {
  for (const std::int16_t index : {-1, 257}) {
    Viewing viewing;
    viewing.state.CurrentLog = index;
    try {
      LoadLogView(viewing.state, viewing.view);
      ADD_FAILURE() << index;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kSubscriptOutOfRange);
    }
  }
}

TEST(LogView, AnotherLogThatDiffersInCaseIsNotTakenForOneThatHasVanished) {
  Viewing viewing;
  viewing.disk.Put(Viewing::InLog("pump", "comment.txt"), "another\r\n");
  viewing.disk.Put(Viewing::InLog("pump", "errlog.txt"), "another\r\n");
  viewing.disk.Put(Viewing::InLog("pump", "auser.txt"), "1\r\n");
  viewing.state.FileList[1].Name = "Pump";
  LogView view;
  LoadLogView(viewing.state, view);
  EXPECT_EQ(view.CommentText, "");
  ViewErrLog(viewing.state, viewing.services, view);
  EXPECT_EQ(view.ReportText, "");
  ViewMeter(viewing.state, view);
  EXPECT_FALSE(viewing.disk.Has(Viewing::InLog("pump", "meter.rpt")));
}

TEST(LogView, LoadSetsCaptionsFromTheStringTable) {
  Viewing viewing;
  const LogView& view = viewing.view;
  const std::pair<const std::string*, const char*> captions[] = {
      {&view.Window.Caption, "Logbook Viewer"},
      {&view.cmdPrint.Caption, "Print"},
      {&view.cmdExit.Caption, "Exit"},
      {&view.cmdHelp.Caption, "Help"},
      {&view.mnuTune.Caption, "&Tune"},
      {&view.mnuLog.Caption, "&Logs"},
      {&view.mnuACQlog.Caption, "View &ACQ Log"},
      {&view.mnuSeqlog.Caption, "View &Sequence Log"},
      {&view.mnuChainlog.Caption, "View &Chained Seq Log"},
      {&view.mnuErrLog.Caption, "View &Error Log"},
      {&view.mnuCeErrLog.Caption, "View CE E&rror Log"},
      {&view.mnuMainte.Caption, "View &Maintenance Records"},
      {&view.mnuMeter.Caption, "View Meter &Values"},
      {&view.mnuAna.Caption, "View &Analog Values"},
      {&view.mnuBit.Caption, "View &Bit Values"},
      {&view.mnuBout.Caption, "View Bit &Output Values"},
      {&view.mnuBin.Caption, "View Bit &Input Values"},
      {&view.mnuSYS.Caption, "View &System Parameters"}};
  for (const auto& [caption, text] : captions) EXPECT_EQ(*caption, text);
}

TEST(LogView, ThePanesHaveTheFixedPitchFontAndAllElseTheFontOfForms) {
  Viewing viewing;
  const LogView& view = viewing.view;
  for (const Control* control : {&view.Window, &view.cmdPrint, &view.cmdExit, &view.cmdHelp}) {
    EXPECT_EQ(control->TextFont.Name, "Arial") << control->Name;
    EXPECT_EQ(control->TextFont.Size, 8) << control->Name;
  }
  for (const Control* pane : {&view.txtReport, &view.txtComment}) {
    EXPECT_EQ(pane->TextFont.Name, "Fixedsys") << pane->Name;
    EXPECT_EQ(pane->TextFont.Size, 9) << pane->Name;
  }
}

TEST(LogView, TheLastControlOfTheFormKeepsItsFont) {
  Viewing viewing;
  EXPECT_EQ(viewing.view.F1Report.TextFont.Name, "");
}

TEST(LogView, WithoutCeTheMenuBarShowsTuneLogsMaintenanceRecordsAndMeterValues) {
  Viewing viewing;
  const LogView& view = viewing.view;
  for (const MenuEntry* entry :
       {&view.mnuTune, &view.mnuLog, &view.mnuMainte, &view.mnuMeter, &view.mnuACQlog,
        &view.mnuSeqlog, &view.mnuChainlog, &view.mnuErrLog})
    EXPECT_TRUE(entry->Visible) << entry->Name;
  for (const MenuEntry* entry : {&view.mnuAna, &view.mnuBit, &view.mnuSYS, &view.mnuCeErrLog})
    EXPECT_FALSE(entry->Visible) << entry->Name;
}

TEST(LogView, WithCeAllMenusAreVisibleButTheCeErrorLog) {
  Viewing viewing;
  viewing.state.CEMode = true;
  LoadLogView(viewing.state, viewing.view);
  const LogView& view = viewing.view;
  for (const MenuEntry* entry :
       {&view.mnuTune, &view.mnuLog, &view.mnuMainte, &view.mnuMeter, &view.mnuAna, &view.mnuBit,
        &view.mnuBout, &view.mnuBin, &view.mnuSYS})
    EXPECT_TRUE(entry->Visible) << entry->Name;
  EXPECT_FALSE(view.mnuCeErrLog.Visible);
}

TEST(LogView, ChangeModeHidesTheCeMenusAgain) {
  Viewing viewing;
  viewing.state.CEMode = true;
  viewing.view.mnuCeErrLog.Visible = true;
  ChangeMode(viewing.state, viewing.view);
  EXPECT_TRUE(viewing.view.mnuSYS.Visible);
  EXPECT_FALSE(viewing.view.mnuCeErrLog.Visible);
  viewing.state.CEMode = false;
  ChangeMode(viewing.state, viewing.view);
  EXPECT_FALSE(viewing.view.mnuAna.Visible);
  EXPECT_FALSE(viewing.view.mnuBit.Visible);
  EXPECT_FALSE(viewing.view.mnuSYS.Visible);
}

TEST(LogView, TheCommentIsShownLineByLineWithoutALimit) {
  Viewing viewing(932);
  viewing.Put("comment.txt", "torch\nchanged \x8A\xBF\r\n" + std::string(100000, 'x'));
  LoadLogView(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.CommentText,
            "torch\r\nchanged \xE6\xBC\xA2\r\n" + std::string(100000, 'x') + "\r\n");
}

TEST(LogView, ALogWithoutCommentOpensWithAnEmptyPaneAndNoMessage) {
  Viewing viewing;
  viewing.view.CommentText = "older";
  LoadLogView(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.CommentText, "");
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(LogView, AWindowJustOpenedShowsNoReportAndHasWrittenNothing) {
  Viewing viewing;
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_EQ(viewing.state.ViewMode, 0);
  for (const char* file :
       {"analog.rpt", "meter.rpt", "Sys.rpt", "bitout.rpt", "bitin.rpt", "mainte.rpt", "tune.bin"})
    EXPECT_FALSE(viewing.Has(file)) << file;
}

TEST(LogView, EachMenuCommandSetsItsViewMode) {
  Viewing viewing;
  const std::pair<MenuEntry LogView::*, int> modes[] = {
      {&LogView::mnuTune, 1},     {&LogView::mnuACQlog, 2}, {&LogView::mnuSeqlog, 3},
      {&LogView::mnuChainlog, 4}, {&LogView::mnuErrLog, 5}, {&LogView::mnuMainte, 6},
      {&LogView::mnuMeter, 7},    {&LogView::mnuAna, 8},    {&LogView::mnuBout, 9},
      {&LogView::mnuBin, 10},     {&LogView::mnuSYS, 11}};
  for (const auto& [entry, mode] : modes) {
    viewing.Choose(entry);
    EXPECT_EQ(viewing.state.ViewMode, mode);
  }
}

TEST(LogView, EveryMenuCommandHasItsCaptionAndWhatItShowsHasANameWhenPrinted) {
  Viewing viewing;
  for (const ViewCommand& command : kViewCommands) {
    const MenuEntry& entry = viewing.view.*command.Entry;
    EXPECT_NE(entry.Caption, "") << entry.Name;
    viewing.state.ViewMode = 0;
    viewing.Choose(command.Entry);
    // The host prints the tune report; for the CE error log what stood before is printed.
    if (viewing.state.ViewMode <= 1) continue;
    viewing.view.Sheet.SetSheetName("");
    InitReport(viewing.state, viewing.view);
    EXPECT_NE(viewing.view.Sheet.SheetName(), "") << entry.Name;
  }
}

TEST(LogView, TheCeErrorLogLeavesTheViewModeAsItWas) {
  for (std::int16_t mode = 0; mode <= 11; ++mode) {
    Viewing viewing;
    viewing.Put("ceerrlog.txt", "ce\r\n");
    viewing.state.ViewMode = mode;
    viewing.Choose(&LogView::mnuCeErrLog);
    EXPECT_EQ(viewing.view.ReportText, "ce\r\n");
    EXPECT_EQ(viewing.state.ViewMode, mode);
  }
}

TEST(LogView, TheViewModeIsSetAfterTheViewRoutineAndNotBefore) {
  Viewing viewing;
  viewing.Put("acqlog.txt", std::string(70000, 'x'));
  viewing.state.ViewMode = 7;
  viewing.Put("errlog.txt", "e\r\n");
  viewing.disk.MakeFolders(Viewing::File("sequence.log"));
  EXPECT_THROW(viewing.Choose(&LogView::mnuSeqlog), RunTimeError);
  EXPECT_EQ(viewing.state.ViewMode, 7);
}

TEST(LogView, ACommandClearsThePaneAndShowsTheNewReport) {
  Viewing viewing;
  viewing.Put("acqlog.txt", "acquisition\r\n");
  viewing.Choose(&LogView::mnuACQlog);
  EXPECT_EQ(viewing.view.ReportText, "acquisition\r\n");
  viewing.Choose(&LogView::mnuSeqlog);
  EXPECT_EQ(viewing.view.ReportText, "");
}

TEST(LogView, ExitSetsTheViewModeToZeroAndUnloads) {
  Viewing viewing;
  viewing.Choose(&LogView::mnuMeter);
  LogViewExit(viewing.state, viewing.view);
  EXPECT_TRUE(viewing.view.Unloaded);
  EXPECT_EQ(viewing.state.ViewMode, 0);
}

TEST(LogView, AStaleViewModeOutlivesTheNextLoad) {
  Viewing viewing;
  viewing.Choose(&LogView::mnuMeter);  // and then the close box, which changes nothing
  LogView next;
  LoadLogView(viewing.state, next);
  EXPECT_EQ(viewing.state.ViewMode, 7);
  EXPECT_EQ(next.ReportText, "");
}

}  // namespace
}  // namespace logbook
