// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmMain.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "FormsWorkstation.h"
#include "loglist/LogList.h"
#include "placement/LogbookGen.h"
#include "qt/Twips.h"
#include "shell/StartUp.h"

namespace logbook {
namespace {

using test::FormsWorkstation;
using test::ProcessEnded;

// A shown main window with three logs; viewer and chooser are recorded, not shown.
class frmMainTest : public testing::Test {
 protected:
  frmMainTest() {
    w.MakeLog("26111500", "11/15/2026 05:09:59", "first, with a comma");
    w.MakeLog("26111501", "11/15/2026 06:00:00");
    w.MakeLog("26111502", "11/15/2026 07:00:00", "third");
    SetMainFonts(w.state);
    SetMainCaptions(w.state);
    Init_FileList(w.state, w.services);
    ArrangeMainWindow(w.state, w.real);
    w.window.Update();
    w.window.show();
    QApplication::setActiveWindow(&w.window);
  }

  std::string Cell(int row, int column) {
    return list->model()->index(row, column).data().toString().toStdString();
  }
  void ClickRow(int row, Qt::KeyboardModifiers modifiers = {}) {
    const QRect cell = list->visualRect(list->model()->index(row, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, cell.center());
  }
  std::vector<bool> SelectedInState() {
    std::vector<bool> selected;
    for (const ListRow& row : w.state.ListView1.Rows) selected.push_back(row.Selected);
    return selected;
  }
  FormsWorkstation w;
  QTreeView* list = w.Find<QTreeView>("ListView1");
};

TEST_F(frmMainTest, ShowsRowsAndHeadersOfTheList) {
  ASSERT_EQ(list->model()->rowCount(), 3);
  EXPECT_EQ(list->model()->columnCount(), 9);
  EXPECT_EQ(Cell(0, 0), "11/15/2026 05:09:59");
  EXPECT_EQ(Cell(0, 1), "26111500");
  EXPECT_EQ(Cell(0, 8), "first, with a comma");
  EXPECT_EQ(Cell(2, 8), "third");
  const auto header = [&](int column) {
    return list->model()->headerData(column - 1, Qt::Horizontal).toString().toStdString();
  };
  EXPECT_EQ(header(1), "Date Logged");
  EXPECT_EQ(header(2), "Logbook Folder");
  EXPECT_EQ(header(3), "Item 1");
  EXPECT_EQ(header(8), "Item 6");
  EXPECT_EQ(header(9), "Comment");
}

TEST_F(frmMainTest, ColumnsHaveTheirWidths) {
  const int widths[] = {120, 67, 40, 40, 40, 40, 40, 40, 107};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(list->columnWidth(i), widths[i]) << i;
}

TEST_F(frmMainTest, TheInnerSizeIsTheArrangementsSizeWithoutTheFrame) {
  EXPECT_EQ(w.state.frmMain.Inner.Width, TwipsOf(w.window.width()));
  EXPECT_EQ(w.state.frmMain.Inner.Height, TwipsOf(w.window.height()));
  EXPECT_LT(w.state.frmMain.Inner.Width, 11145);
  EXPECT_LT(w.state.frmMain.Inner.Height, 6825);
  EXPECT_EQ(w.window.minimumSize(), w.window.maximumSize());
}

TEST_F(frmMainTest, AClickSelectsARowAndMakesItCurrent) {
  ClickRow(1);
  EXPECT_EQ(SelectedInState(), (std::vector<bool>{false, true, false}));
  EXPECT_EQ(w.state.ListView1.CurrentRow, 2);
}

TEST_F(frmMainTest, SeveralRowsCanBeSelected) {
  ClickRow(0);
  ClickRow(2, Qt::ControlModifier);
  EXPECT_EQ(SelectedInState(), (std::vector<bool>{true, false, true}));
  ClickRow(0);
  ClickRow(2, Qt::ShiftModifier);
  EXPECT_EQ(SelectedInState(), (std::vector<bool>{true, true, true}));
  ClickRow(1, Qt::ControlModifier);
  EXPECT_EQ(SelectedInState(), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(w.state.ListView1.CurrentRow, 2);
}

TEST_F(frmMainTest, TheWindowShowsTheSelectionOfTheState) {
  w.state.ListView1.Row(1).Selected = true;
  w.state.ListView1.Row(3).Selected = true;
  w.state.ListView1.CurrentRow = 3;
  w.window.Update();
  EXPECT_TRUE(list->selectionModel()->isRowSelected(0));
  EXPECT_FALSE(list->selectionModel()->isRowSelected(1));
  EXPECT_TRUE(list->selectionModel()->isRowSelected(2));
  EXPECT_EQ(list->currentIndex().row(), 2);
  EXPECT_EQ(SelectedInState(), (std::vector<bool>{true, false, true}));
}

TEST_F(frmMainTest, AListThatIsBeingRebuiltCanBePainted) {
  w.state.ListView1.Clear();
  list->grab();
  EXPECT_EQ(list->model()->rowCount(), 3);
  w.window.Update();
  EXPECT_EQ(list->model()->rowCount(), 0);
  EXPECT_EQ(w.state.ListView1.CurrentRow, 0);
}

TEST_F(frmMainTest, TheHeaderIsNoSortButtonAndRowsCannotBeEdited) {
  EXPECT_FALSE(list->isSortingEnabled());
  EXPECT_EQ(list->editTriggers(), QAbstractItemView::NoEditTriggers);
  EXPECT_FALSE(list->header()->sectionsMovable());
  EXPECT_TRUE(list->header()->sectionsClickable());
}

TEST_F(frmMainTest, ADisabledCommandIsShownDisabled) {
  w.state.frmMain.cmdDelete.Enabled = false;
  w.window.Update();
  EXPECT_FALSE(w.Find<QPushButton>("cmdDelete")->isEnabled());
  w.state.frmMain.cmdDelete.Enabled = true;
  w.window.Update();
  EXPECT_TRUE(w.Find<QPushButton>("cmdDelete")->isEnabled());
}

TEST_F(frmMainTest, ExitEndsTheRunThroughTheHandshake) {
  w.cell.on_written = [&](const std::string& text) {
    EXPECT_EQ(text, "9");
    w.cell.text = "0";
  };
  try {
    w.Find<QPushButton>("cmdExit")->click();
    FAIL() << "the process did not end";
  } catch (const ProcessEnded& end) {
    EXPECT_EQ(end.status, 0);
  }
  EXPECT_EQ(w.cell.written, std::vector<std::string>{"9"});
}

TEST_F(frmMainTest, ClosingTheWindowDoesWhatExitDoes) {
  w.cell.on_written = [&](const std::string&) { w.cell.text = "0"; };
  EXPECT_THROW(w.window.close(), ProcessEnded);
  EXPECT_EQ(w.cell.written, std::vector<std::string>{"9"});
}

TEST_F(frmMainTest, AWindowThatIsNotAvailableTakesNoInputAndStaysOpen) {
  w.state.frmMain.Available = false;
  w.window.Update();
  EXPECT_FALSE(w.window.isEnabled());
  EXPECT_FALSE(w.window.close());
  EXPECT_TRUE(w.window.isVisible());
  QTest::mouseClick(w.Find<QPushButton>("cmdExit"), Qt::LeftButton);
  EXPECT_TRUE(w.cell.written.empty());
}

TEST_F(frmMainTest, ASecondClickOnExitAndTheCloseBoxDoNothingWhileTheRunEnds) {
  auto* exit = w.Find<QPushButton>("cmdExit");
  w.cell.text = "1";
  w.events.on_deliver = [&](int delivery) {
    QTest::mouseClick(exit, Qt::LeftButton);
    EXPECT_FALSE(w.window.close());
    EXPECT_EQ(w.events.delivered, delivery);  // no wait within the wait
    if (delivery == 3 || w.cell.text == "9") w.cell.text = "0";
  };
  EXPECT_THROW(exit->click(), ProcessEnded);
  EXPECT_EQ(w.cell.written, std::vector<std::string>{"9"});
}

TEST_F(frmMainTest, ClosingTheWindowDuringARecordingWaitsForTheHostAndEndsTheRun) {
  w.events.on_deliver = [&](int delivery) {
    if (delivery == 1) w.window.close();
    if (delivery == 4 || w.cell.text == "9") w.cell.text = "0";
  };
  EXPECT_THROW(w.Find<QPushButton>("cmdRecord")->click(), ProcessEnded);
  EXPECT_EQ(w.cell.written, (std::vector<std::string>{"1", "9"}));
  EXPECT_TRUE(w.window.isVisible());
  EXPECT_FALSE(w.window.isEnabled());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(frmMainTest, ARecordingThatIsCancelledLeavesTheRowsAsTheyWere) {
  w.cell.on_written = [&](const std::string&) { w.cell.text = "0"; };
  test::WhenModal("frmLogEditor", [](QWidget* form) {
    FormsWorkstation::FindIn<QPushButton>(form, "cmdCancel")->click();
  });
  w.Find<QPushButton>("cmdRecord")->click();
  EXPECT_EQ(list->model()->rowCount(), 3);
  EXPECT_TRUE(w.Find<QPushButton>("cmdRecord")->isEnabled());
  EXPECT_TRUE(list->isEnabled());
}

TEST_F(frmMainTest, NoRowIsSelectedOrCurrentAfterARebuild) {
  ClickRow(1);
  Init_FileList(w.state, w.real);
  EXPECT_FALSE(list->selectionModel()->hasSelection());
  EXPECT_FALSE(list->currentIndex().isValid());
  EXPECT_EQ(SelectedInState(), (std::vector<bool>{false, false, false}));
  ClickRow(1);
  w.MakeLog("26111503", "11/15/2026 08:00:00");
  Init_FileList(w.state, w.real);
  EXPECT_EQ(list->model()->rowCount(), 4);
  EXPECT_FALSE(list->selectionModel()->hasSelection());
  EXPECT_FALSE(list->currentIndex().isValid());
  EXPECT_EQ(w.state.ListView1.CurrentRow, 0);
}

TEST_F(frmMainTest, AListOf256RowsIsShownWholeAndItsLastRowCanBeChosen) {
  for (int i = 0; i < 300; ++i) w.MakeLog("log" + std::to_string(1000 + i), "d");
  Init_FileList(w.state, w.real);
  EXPECT_EQ(w.messages.shown.size(), 1u);
  EXPECT_EQ(list->model()->rowCount(), 256);
  list->setFocus();
  QTest::keyClick(list, Qt::Key_Home);
  QTest::keyClick(list, Qt::Key_End);
  EXPECT_EQ(w.state.ListView1.CurrentRow, 256);
  EXPECT_TRUE(w.state.ListView1.Row(256).Selected);
}

TEST_F(frmMainTest, DeleteAsksAndRemovesTheSelectedLogs) {
  w.messages.answers = {MessageAnswer::kYes};
  ClickRow(1);
  QTest::mouseClick(w.Find<QPushButton>("cmdDelete"), Qt::LeftButton);
  EXPECT_EQ(w.messages.shown.size(), 1u);
  EXPECT_FALSE(w.disk.Has(w.InLog("26111501", "logfile.ini")));
  ASSERT_EQ(list->model()->rowCount(), 2);
  EXPECT_EQ(Cell(1, 1), "26111502");
}

TEST_F(frmMainTest, EnterAndSpacePressTheButtonThatHasTheFocus) {
  auto* button = w.Find<QPushButton>("cmdDelete");
  list->selectAll();
  button->setFocus();
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    w.messages.shown.clear();
    QTest::keyClick(button, key);
    EXPECT_EQ(w.messages.shown.size(), 1u) << key;
  }
}

TEST_F(frmMainTest, ARunTimeErrorOfAHandlerIsReportedAndEndsTheProcess) {
  w.state.LogRoot = "C:\\gone\\";
  try {
    w.Find<QPushButton>("cmdRecord")->click();
    FAIL() << "the process did not end";
  } catch (const ProcessEnded& end) {
    EXPECT_EQ(end.status, 1);
  }
  ASSERT_EQ(w.messages.shown.size(), 1u);
  EXPECT_EQ(w.messages.shown[0].Icon, MessageIcon::kCritical);
}

TEST_F(frmMainTest, ASecondKeyStrokeOnRecordDoesNotReachExit) {
  auto* record = w.Find<QPushButton>("cmdRecord");
  record->setFocus();
  w.events.on_deliver = [&](int) {
    EXPECT_EQ(w.window.focusWidget(), nullptr);
    QWidget* reached = w.window.focusWidget() != nullptr ? w.window.focusWidget() : &w.window;
    QTest::keyClick(reached, Qt::Key_Space);
    QTest::keyClick(reached, Qt::Key_Return);
    w.cell.text = "0";
  };
  test::WhenModal("frmLogEditor", [](QWidget* form) {
    FormsWorkstation::FindIn<QPushButton>(form, "cmdOK")->click();
  });
  record->click();
  EXPECT_EQ(w.cell.written, std::vector<std::string>{"1"});
  EXPECT_EQ(w.window.focusWidget(), record);
  EXPECT_EQ(list->model()->rowCount(), 4);
}

// Rows and headers open other windows; those are recorded instead of shown.
class frmMainOpening : public testing::Test {
 protected:
  frmMainOpening() {
    w.MakeLog("26111500", "11/15/2026 05:09:59");
    w.MakeLog("26111501", "11/15/2026 06:00:00");
    Init_FileList(w.state, w.services);
    w.forms.calls.clear();
    w.state.frmMain.ListView1.Place = {120, 120, 10815, 5535};
    w.main.Update();
    w.main.resize(743, 430);
    w.main.show();
    QApplication::setActiveWindow(&w.main);
    list->setFocus();
  }

  // The forms are the recording ones; the window under test shows the same state.
  struct Workstation : FormsWorkstation {
    frmMain main{state, services};
  } w;
  QTreeView* list = FormsWorkstation::FindIn<QTreeView>(&w.main, "ListView1");
};

TEST_F(frmMainOpening, ADoubleClickViewsTheLog) {
  const QRect cell = list->visualRect(list->model()->index(1, 2));
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, cell.center());
  QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(w.state.CurrentLog, 2);
  EXPECT_EQ(w.forms.calls,
            std::vector<std::string>{"ShowLogView Logbook Viewer:11/15/2026 06:00:00"});
}

TEST_F(frmMainOpening, EnterInTheListViewsTheCurrentRow) {
  QTest::keyClick(list, Qt::Key_Home);
  QTest::keyClick(list, Qt::Key_Down);
  QTest::keyClick(list, Qt::Key_Return);
  QTest::keyClick(list, Qt::Key_Enter);
  EXPECT_EQ(w.state.CurrentLog, 2);
  EXPECT_EQ(w.forms.calls.size(), 2u);
}

TEST_F(frmMainOpening, HomeEndAndEnterSelectARowThatHasTheFocusAlone) {
  const std::pair<Qt::Key, int> cases[] = {
      {Qt::Key_Home, 0}, {Qt::Key_End, 1}, {Qt::Key_Return, 0}, {Qt::Key_Enter, 1}};
  for (const auto& [key, row] : cases) {
    list->clearSelection();
    list->selectionModel()->setCurrentIndex(list->model()->index(row, 0),
                                            QItemSelectionModel::NoUpdate);
    ASSERT_FALSE(w.state.ListView1.Row(row + 1).Selected) << key;
    w.forms.calls.clear();
    QTest::keyClick(list, key);
    EXPECT_TRUE(w.state.ListView1.Row(row + 1).Selected) << key;
    EXPECT_EQ(w.state.ListView1.CurrentRow, row + 1) << key;
    const bool views = key == Qt::Key_Return || key == Qt::Key_Enter;
    EXPECT_EQ(w.forms.calls.size(), views ? 1u : 0u) << key;
  }
}

TEST_F(frmMainOpening, EnterSelectsNoFurtherRowWhereItsOwnIsSelected) {
  list->selectAll();
  QTest::keyClick(list, Qt::Key_Return);
  EXPECT_TRUE(w.state.ListView1.Row(1).Selected);
  EXPECT_TRUE(w.state.ListView1.Row(2).Selected);
}

TEST_F(frmMainOpening, NoRowLooksChosenWhileNoneIs) {
  list->clearFocus();
  list->clearSelection();
  list->selectionModel()->clearCurrentIndex();
  const QImage plain = list->viewport()->grab().toImage();
  list->setFocus(Qt::TabFocusReason);
  QTest::keyClick(list, Qt::Key_Down, Qt::ControlModifier);
  ASSERT_TRUE(list->hasFocus());
  ASSERT_TRUE(list->currentIndex().isValid());
  ASSERT_FALSE(list->selectionModel()->hasSelection());
  EXPECT_EQ(list->viewport()->grab().toImage(), plain);
  QTest::keyClick(list, Qt::Key_Home);
  EXPECT_NE(list->viewport()->grab().toImage(), plain);
}

TEST_F(frmMainOpening, NothingHappensWithoutASelectedRow) {
  const QPoint below(10, list->viewport()->height() - 5);
  QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, below);
  list->clearSelection();
  FormsWorkstation::FindIn<QPushButton>(&w.main, "cmdBrowse")->click();
  EXPECT_TRUE(w.forms.calls.empty());
}

TEST_F(frmMainOpening, AClickOnAHeaderOpensTheChooserForColumnsThreeToEight) {
  QHeaderView* header = list->header();
  for (int column = 1; column <= 9; ++column) {
    w.forms.calls.clear();
    const int x = header->sectionViewportPosition(column - 1) + header->sectionSize(column - 1) / 2;
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, header->height() / 2));
    const bool opens = column >= 3 && column <= 8;
    EXPECT_EQ(std::count(w.forms.calls.begin(), w.forms.calls.end(), "ShowChangeItem"), opens)
        << column;
    if (opens) {
      EXPECT_EQ(w.state.ChangeColumn, column);
    }
  }
}

TEST_F(frmMainOpening, AltAndANumberStandForAClickOnTheHeader) {
  for (int number = 1; number <= 9; ++number) {
    w.forms.calls.clear();
    QTest::keyClick(&w.main, static_cast<Qt::Key>(Qt::Key_0 + number), Qt::AltModifier);
    const bool opens = number >= 3 && number <= 8;
    EXPECT_EQ(std::count(w.forms.calls.begin(), w.forms.calls.end(), "ShowChangeItem"), opens)
        << number;
    if (opens) {
      EXPECT_EQ(w.state.ChangeColumn, number);
    }
  }
}

TEST_F(frmMainOpening, ADisabledListOpensNothing) {
  w.state.frmMain.ListView1.Enabled = false;
  w.main.Update();
  QTest::keyClick(&w.main, Qt::Key_3, Qt::AltModifier);
  QTest::keyClick(&w.main, Qt::Key_Return);
  EXPECT_TRUE(w.forms.calls.empty());
}

}  // namespace
}  // namespace logbook
