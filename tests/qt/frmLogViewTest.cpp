// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmLogView.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QDialog>
#include <QFontDatabase>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <string>
#include <vector>

#include "FormsWorkstation.h"
#include "WaitLimit.h"
#include "qt/Twips.h"
#include "records/LogCommands.h"

namespace logbook {
namespace {

using test::FormsWorkstation;
using test::kWaitLimit;
using test::WhenModal;

constexpr const char* kLog = "26111500";
constexpr const char* kDate = "11/15/2026 05:09:59";

// A log whose viewer comes up modally, as the list opens it.
class frmLogViewTest : public testing::Test {
 protected:
  explicit frmLogViewTest(int code_page = 1252) : w(code_page) {
    FillCatalogues(w.state.catalogues);
    w.MakeLog(kLog, kDate, "torch changed");
    w.state.LogCount = 1;
    w.state.FileList[1].Name = kLog;
    w.state.FileList[1].Date = kDate;
    ListRow row;
    row.Text = kDate;
    row.SubItem(1) = kLog;
    w.state.ListView1.Rows.push_back(row);
  }

  void Put(const std::string& file, std::string_view bytes) {
    w.disk.Put(w.InLog(kLog, file), bytes);
  }

  // Opens the viewer and runs the action in it.
  void View(const std::function<void(QWidget*)>& action) {
    WhenModal("frmLogView", [&](QWidget* form) {
      action(form);
      if (form->isVisible()) Button(form, "cmdExit")->click();
    });
    BrowseLog(w.state, w.real, 1);
  }
  static QPushButton* Button(QWidget* form, const char* name) {
    return FormsWorkstation::FindIn<QPushButton>(form, name);
  }
  static QPlainTextEdit* Pane(QWidget* form, const char* name) {
    return FormsWorkstation::FindIn<QPlainTextEdit>(form, name);
  }
  static std::string TextOf(QWidget* form, const char* name) {
    return Pane(form, name)->toPlainText().toStdString();
  }
  static QAction* Entry(QWidget* form, const char* name) {
    auto* entry = form->findChild<QAction*>(QString::fromUtf8(name));
    if (entry == nullptr) throw std::runtime_error(std::string("no menu entry ") + name);
    return entry;
  }
  static std::vector<std::string> Visible(const QList<QAction*>& entries) {
    std::vector<std::string> names;
    for (const QAction* entry : entries) {
      if (entry->isVisible()) names.push_back(entry->objectName().toStdString());
    }
    return names;
  }

  FormsWorkstation w;
};

using Names = std::vector<std::string>;

TEST_F(frmLogViewTest, TheTitleNamesTheDateOfTheLog) {
  View([](QWidget* form) {
    EXPECT_EQ(form->windowTitle().toStdString(), std::string("Logbook Viewer:") + kDate);
  });
}

TEST_F(frmLogViewTest, OpensWithTheCommentAndNoReport) {
  View([](QWidget* form) {
    EXPECT_EQ(TextOf(form, "txtReport"), "");
    EXPECT_EQ(TextOf(form, "txtComment"), "torch changed\n");
  });
}

TEST_F(frmLogViewTest, TheClientAreaHasItsSizeBelowTheMenuBarAndCannotBeResized) {
  View([](QWidget* form) {
    const int bar = form->findChild<QMenuBar*>()->height();
    EXPECT_EQ(form->minimumSize(), form->maximumSize());
    EXPECT_EQ(form->size(), QSize(Pixels(11460), Pixels(7110) + bar));
    EXPECT_EQ(Pane(form, "txtReport")->mapTo(form, QPoint()), QPoint(8, 8 + bar));
    const Qt::WindowFlags flags = form->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
  });
}

TEST_F(frmLogViewTest, ThePanesAreReadOnlyDoNotWrapAndHaveBothScrollBars) {
  Put("acqlog.txt", std::string(500, 'x') + "\r\n");
  View([](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    for (const char* name : {"txtReport", "txtComment"}) {
      QPlainTextEdit* pane = Pane(form, name);
      EXPECT_TRUE(pane->isReadOnly());
      EXPECT_TRUE(pane->horizontalScrollBar()->isVisible());
      EXPECT_TRUE(pane->verticalScrollBar()->isVisible());
      const QString before = pane->toPlainText();
      QTest::keyClicks(pane, QStringLiteral("typed"));
      EXPECT_EQ(pane->toPlainText(), before);
    }
    EXPECT_EQ(Pane(form, "txtReport")->document()->firstBlock().layout()->lineCount(), 1);
    EXPECT_GT(Pane(form, "txtReport")->horizontalScrollBar()->maximum(), 0);
  });
}

TEST_F(frmLogViewTest, WithoutCeTheMenuBarShowsFourEntries) {
  View([](QWidget* form) {
    EXPECT_EQ(Visible(form->findChild<QMenuBar*>()->actions()),
              (Names{"mnuTune", "mnuLog", "mnuMainte", "mnuMeter"}));
    EXPECT_EQ(Visible(Entry(form, "mnuLog")->menu<QMenu*>()->actions()),
              (Names{"mnuACQlog", "mnuSeqlog", "mnuChainlog", "mnuErrLog"}));
  });
}

TEST_F(frmLogViewTest, WithCeTheMenuBarShowsAllEntriesAndNeverTheCeErrorLog) {
  w.state.CEMode = true;
  View([](QWidget* form) {
    auto* bar = form->findChild<QMenuBar*>();
    EXPECT_EQ(Visible(bar->actions()),
              (Names{"mnuTune", "mnuLog", "mnuMainte", "mnuMeter", "mnuAna", "mnuBit", "mnuSYS"}));
    EXPECT_EQ(Visible(Entry(form, "mnuBit")->menu<QMenu*>()->actions()),
              (Names{"mnuBout", "mnuBin"}));
    EXPECT_FALSE(Entry(form, "mnuCeErrLog")->isVisible());
    for (QAction* entry : bar->actions()) {  // none is pushed off the bar
      EXPECT_TRUE(bar->rect().contains(bar->actionGeometry(entry))) << entry->text().toStdString();
      EXPECT_GT(bar->actionGeometry(entry).width(), 0);
    }
  });
}

TEST_F(frmLogViewTest, EveryCommandStandsInAMenu) {
  View([](QWidget* form) {
    const LogView view;
    for (const ViewCommand& command : kViewCommands) {
      const std::string name = (view.*command.Entry).Name;
      EXPECT_NE(form->findChild<QAction*>(QString::fromStdString(name)), nullptr) << name;
    }
  });
}

TEST_F(frmLogViewTest, AMenuKeyShowsItsReport) {
  Put("auser.txt", "21.4,22\r\n");
  View([&](QWidget* form) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(form, kWaitLimit));
    QTest::keyClick(form, Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(TextOf(form, "txtReport").rfind("Vacuum:\n Backing Press", 0), 0U);
    EXPECT_EQ(w.state.ViewMode, 7);
  });
  EXPECT_TRUE(w.disk.Has(w.InLog(kLog, "meter.rpt")));
}

TEST_F(frmLogViewTest, EachEntryShowsItsReport) {
  Put("acqlog.txt", "acquisition\r\n");
  Put("sequence.log", "sequence\r\n");
  Put("chnseq.log", "chained\r\n");
  Put("errlog.txt", "errors\r\n");
  Put("tune.rpt", "tune\r\n");
  w.state.CEMode = true;
  View([&](QWidget* form) {
    const std::pair<const char*, const char*> texts[] = {
        {"mnuACQlog", "acquisition\n"}, {"mnuSeqlog", "sequence\n"}, {"mnuChainlog", "chained\n"},
        {"mnuErrLog", "errors\n"},      {"mnuTune", "tune\n"},       {"mnuMainte", ""}};
    for (const auto& [entry, text] : texts) {
      Entry(form, entry)->trigger();
      EXPECT_EQ(TextOf(form, "txtReport"), text) << entry;
    }
    for (const char* entry : {"mnuMeter", "mnuAna", "mnuBout", "mnuBin", "mnuSYS"}) {
      Entry(form, entry)->trigger();
    }
  });
  for (const char* file :
       {"tune.bin", "mainte.rpt", "meter.rpt", "analog.rpt", "bitout.rpt", "bitin.rpt", "Sys.rpt"})
    EXPECT_TRUE(w.disk.Has(w.InLog(kLog, file))) << file;
}

TEST_F(frmLogViewTest, ANewReportIsShownFromItsBeginning) {
  std::string log;
  for (int i = 0; i < 200; ++i) log += "line\r\n";
  Put("acqlog.txt", log);
  Put("errlog.txt", log);
  View([](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    QScrollBar* bar = Pane(form, "txtReport")->verticalScrollBar();
    bar->setValue(bar->maximum());
    EXPECT_GT(bar->value(), 0);
    Entry(form, "mnuErrLog")->trigger();
    EXPECT_EQ(bar->value(), 0);
  });
}

TEST_F(frmLogViewTest, ThePaneIsEmptyWhileTheMessageOfALongLogIsShown) {
  Put("errlog.txt", "first\r\n");
  Put("acqlog.txt", "short\r\n" + std::string(70000, 'x'));
  View([&](QWidget* form) {
    Entry(form, "mnuErrLog")->trigger();
    std::string behind = "never shown";
    w.messages.on_show = [&] { behind = TextOf(form, "txtReport"); };
    Entry(form, "mnuACQlog")->trigger();
    EXPECT_EQ(w.messages.shown.size(), 1U);
    EXPECT_EQ(behind, "");
    EXPECT_EQ(TextOf(form, "txtReport"), "short\n");
  });
}

TEST_F(frmLogViewTest, ExitSetsTheViewModeToZeroAndCloses) {
  View([&](QWidget* form) {
    Entry(form, "mnuMeter")->trigger();
    QTest::mouseClick(Button(form, "cmdExit"), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
  });
  EXPECT_EQ(w.state.ViewMode, 0);
}

TEST_F(frmLogViewTest, EscapePressesExit) {
  for (const char* focus : {"txtReport", "txtComment", "cmdHelp"}) {
    View([&](QWidget* form) {
      Entry(form, "mnuMeter")->trigger();
      QWidget* control = FormsWorkstation::FindIn<QWidget>(form, focus);
      control->setFocus();
      QTest::keyClick(control, Qt::Key_Escape);
      EXPECT_FALSE(form->isVisible()) << focus;
    });
    EXPECT_EQ(w.state.ViewMode, 0) << focus;
  }
}

TEST_F(frmLogViewTest, TheCloseBoxLeavesTheViewModeStaleForTheNextViewer) {
  View([&](QWidget* form) {
    Entry(form, "mnuMeter")->trigger();
    EXPECT_TRUE(form->close());
    EXPECT_FALSE(form->isVisible());
  });
  EXPECT_EQ(w.state.ViewMode, 7);
  View([&](QWidget* form) {
    EXPECT_EQ(w.state.ViewMode, 7);
    EXPECT_EQ(TextOf(form, "txtReport"), "");
  });
  EXPECT_EQ(w.state.ViewMode, 0);
}

TEST_F(frmLogViewTest, AnActivatedWindowIsCentredOnTheWorkAreaAndRaisedToTheTopOfTheNormalBand) {
  View([&](QWidget* form) {
    const auto window = static_cast<std::intptr_t>(form->winId());
    w.windows.calls.clear();
    w.windows.positions[window] = {10, 20, 610, 420};
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(form, &activation);
    const std::string band = "SetBand " + std::to_string(window) + " normal";
    EXPECT_EQ(w.windows.calls, (std::vector<std::string>{band, band}));
    const PixelRect& place = w.windows.positions[window];
    EXPECT_EQ((std::vector<long>{place.Left, place.Top, place.Right, place.Bottom}),
              (std::vector<long>{660, 340, 1260, 740}));
  });
}

TEST_F(frmLogViewTest, HelpShowsTheTopicOfTheModeAndLeavesTheViewerOpen) {
  w.state.HelpFileName = "C:\\QUOREX\\help\\quorex.chm";
  for (const bool ce_mode : {false, true}) {
    w.state.CEMode = ce_mode;
    View([&](QWidget* form) {
      w.help.calls.clear();
      Button(form, "cmdHelp")->click();
      EXPECT_TRUE(form->isVisible());
    });
    ASSERT_FALSE(w.help.calls.empty());
    const std::string topic = ce_mode ? " 15 16702" : " 15 16701";
    EXPECT_TRUE(w.help.calls.back().ends_with("C:\\QUOREX\\help\\quorex.chm" + topic))
        << w.help.calls.back();
  }
}

TEST_F(frmLogViewTest, AFailedPrintIsSaidAndBringsTheViewerBackToTheFront) {
  w.print.print_error = RunTimeError(ErrorNumber::kPrinterError);
  View([&](QWidget* form) {
    Entry(form, "mnuErrLog")->trigger();
    QDialog other;
    other.setModal(true);
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, kWaitLimit));
    Button(form, "cmdPrint")->click();
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(QTest::qWaitForWindowActive(form, kWaitLimit));
  });
  ASSERT_EQ(w.messages.shown.size(), 1u);
  EXPECT_EQ(w.messages.shown[0].Text, "Printer error");
}

TEST_F(frmLogViewTest, AFullLogOfOneLineIsOnShowAtOnce) {
  Put("acqlog.txt", std::string(65533, 'x'));
  View([](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    EXPECT_EQ(TextOf(form, "txtReport").size(), 65534U);
  });
}

// The most that the pane takes before the window answers again: a slice and the rest of its line.
constexpr std::size_t kFirstSlice = 128 * 1024 + 200;

TEST_F(frmLogViewTest, AFullLogIsOnShowAtOnceAndALongerOneBeginsWithOneSlice) {
  std::string log;
  while (log.size() + 80 < 65536) log += "2026-11-15 05:09:59  " + std::string(57, 'a') + "\r\n";
  std::string chain;
  for (int i = 0; i < 4; ++i) chain += log;
  Put("acqlog.txt", log);
  Put("chnseq.log", chain);
  View([&](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    EXPECT_EQ(TextOf(form, "txtReport").size(), log.size() - log.size() / 80);
    Entry(form, "mnuChainlog")->trigger();
    EXPECT_GT(TextOf(form, "txtReport").size(), kFirstSlice / 2);
    EXPECT_LE(TextOf(form, "txtReport").size(), kFirstSlice);
  });
}

TEST_F(frmLogViewTest, ALongTextComesInSlicesBetweenWhichTheWindowAnswers) {
  std::string log;
  for (int i = 0; i < 30000; ++i) log += "line " + std::to_string(100000 + i) + " of the log\n";
  Put("chnseq.log", log);
  View([&](QWidget* form) {
    Entry(form, "mnuChainlog")->trigger();
    const auto* document = Pane(form, "txtReport")->document();
    EXPECT_GT(document->blockCount(), 1000);
    EXPECT_LT(document->blockCount(), 30000);
    EXPECT_EQ(document->firstBlock().text(), QStringLiteral("line 100000 of the log"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return document->blockCount() > 30000; }, kWaitLimit));
    EXPECT_EQ(TextOf(form, "txtReport"), log);
    EXPECT_EQ(Pane(form, "txtReport")->verticalScrollBar()->value(), 0);
  });
}

TEST_F(frmLogViewTest, ANewReportEndsTheTextThatIsStillComing) {
  std::string log;
  for (int i = 0; i < 30000; ++i) log += "a line of the log\r\n";
  Put("chnseq.log", log);
  Put("errlog.txt", "errors\r\n");
  View([&](QWidget* form) {
    Entry(form, "mnuChainlog")->trigger();
    Entry(form, "mnuErrLog")->trigger();
    for (int i = 0; i < 20; ++i) QApplication::processEvents();
    EXPECT_EQ(TextOf(form, "txtReport"), "errors\n");
  });
}

// The place of a character in its line, in pixels.
qreal PlaceOf(const QTextBlock& block, qsizetype index) {
  block.document()->documentLayout()->blockBoundingRect(block);  // lays out what is out of sight
  return block.layout()->lineAt(0).cursorToX(static_cast<int>(index));
}

class frmLogViewIn932 : public frmLogViewTest {
 protected:
  frmLogViewIn932() : frmLogViewTest(932) {}
};

TEST_F(frmLogViewIn932, ColumnsStandStraightBehindDoubleByteCharacters) {
  // Kanji, half-width katakana, Greek, Cyrillic, box drawing, full-width letters, symbols; each
  // row is 20 bytes up to the bar.
  const std::vector<std::string> rows = {
      "12345678901234567890|",
      "\x8A\xBF\x8E\x9A\x8A\xBF\x8E\x9A\x8A\xBF\x8E\x9A\x8A\xBF\x8E\x9A\x8A\xBF\x8E\x9A|",
      "\xB1\xB2\xB3\xB4\xB5\xB6\xB7\xB8\xB9\xBA\xB1\xB2\xB3\xB4\xB5\xB6\xB7\xB8\xB9\xBA|",
      "\x83\xBF\x83\xC0\x83\xC1\x83\xB6\x84\x40\x84\x41\x84\x42\x84\x9F\x84\xA0\x84\xAA|",
      "\x82\x60\x82\x61\x81\x69\x81\x6A\x81\x8B\x81\x7D\x81\x80\x81\xF7\x81\x98\x87\x94|"};
  std::string log;
  for (const std::string& row : rows) log += row + "\r\n";
  Put("acqlog.txt", log);
  View([&](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    QApplication::processEvents();
    const QTextDocument* document = Pane(form, "txtReport")->document();
    const qreal expected = PlaceOf(document->findBlockByNumber(0), 20);
    EXPECT_GT(expected, 0);
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
      const QTextBlock block = document->findBlockByNumber(i);
      EXPECT_NEAR(PlaceOf(block, block.text().size() - 1), expected, 0.5)
          << block.text().toStdString();
    }
  });
}

// Lines of 78 characters of two bytes each.
std::string DoubleByteLog(std::size_t bytes) {
  std::string log;
  for (int lead = 0x88; log.size() + 160 < bytes; lead = lead < 0x97 ? lead + 1 : 0x88) {
    for (int trail = 0x9F; trail < 0x9F + 78; ++trail) {
      log += static_cast<char>(lead);
      log += static_cast<char>(trail);
    }
    log += "\r\n";
  }
  return log;
}

TEST_F(frmLogViewIn932, ALineIsMeasuredWhenItComesOnShow) {
  Put("acqlog.txt", DoubleByteLog(60000));
  View([](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    form->grab();
    QPlainTextEdit* pane = Pane(form, "txtReport");
    const QTextBlock middle = pane->document()->findBlockByNumber(200);
    const auto is_measured = [](const QTextBlock& line) { return line.userState() != -1; };
    EXPECT_TRUE(is_measured(pane->document()->firstBlock()));
    EXPECT_FALSE(is_measured(middle));
    pane->verticalScrollBar()->setValue(200);
    form->grab();
    EXPECT_TRUE(is_measured(middle));
  });
}

TEST_F(frmLogViewIn932, ALongLogOfDoubleByteCharactersBeginsWithOneSlice) {
  Put("acqlog.txt", DoubleByteLog(65536));
  Put("chnseq.log", DoubleByteLog(600000));
  View([](QWidget* form) {
    Entry(form, "mnuACQlog")->trigger();
    EXPECT_GT(Pane(form, "txtReport")->document()->blockCount(), 400);
    Entry(form, "mnuChainlog")->trigger();
    const int characters = Pane(form, "txtReport")->document()->characterCount();
    EXPECT_GT(characters, 100000);
    EXPECT_LE(static_cast<std::size_t>(characters), kFirstSlice);
  });
}

TEST_F(frmLogViewIn932, AReportWithDoubleByteLabelsKeepsItsColumns) {
  w.state.catalogues.MeterItems[0].Name =
      "\xE6\xBC\xA2\xE5\xAD\x97\xE3\x83\xA9\xE3\x83\x99\xE3\x83\xAB";
  Put("auser.txt", "21.4,22\r\n");
  View([](QWidget* form) {
    Entry(form, "mnuMeter")->trigger();
    QApplication::processEvents();
    qreal place = 0;
    int rows = 0;
    const QTextDocument* document = Pane(form, "txtReport")->document();
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
      if (!block.text().startsWith(QLatin1Char(' '))) continue;
      const qreal colon = PlaceOf(block, block.text().indexOf(QLatin1Char(':')));
      if (rows == 0) place = colon;
      EXPECT_NEAR(colon, place, 0.5) << block.text().toStdString();
      ++rows;
    }
    EXPECT_GT(rows, 15);
  });
}

TEST_F(frmLogViewTest, ThePaneShowsWhatTheCodePageHoldsOfALabel) {
  w.state.CEMode = true;
  Put("sys.txt", "1\r\n");
  View([](QWidget* form) {
    Entry(form, "mnuSYS")->trigger();
    EXPECT_NE(TextOf(form, "txtReport").find(" Stanby Mode(Reaction Mode)/Timeout"),
              std::string::npos);
  });
}

}  // namespace
}  // namespace logbook
