// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmLogEditor.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <filesystem>
#include <string>

#include "FormsWorkstation.h"

namespace logbook {
namespace {

using test::FormsWorkstation;
using test::WhenModal;

// A new log whose editor comes up modally, as a recording shows it.
class frmLogEditorTest : public testing::Test {
 protected:
  frmLogEditorTest() {
    w.MakeLog("26111500", "11/15/2026 05:09:59");
    w.state.LogPath = std::string(w.kLogRoot) + "26111500\\";
  }

  // Shows the editor and runs the action in it.
  void Edit(const std::function<void(QWidget*)>& action) {
    WhenModal("frmLogEditor", action);
    w.qt_forms.ShowLogEditor("Logbook Editor:" + w.state.LogPath);
  }
  static QPushButton* Button(QWidget* form, const char* name) {
    return FormsWorkstation::FindIn<QPushButton>(form, name);
  }
  static QCheckBox* Check(QWidget* form, int index) {
    return FormsWorkstation::FindIn<QCheckBox>(form,
                                               ("Check1(" + std::to_string(index) + ")").c_str());
  }
  static QPlainTextEdit* Comment(QWidget* form) {
    return FormsWorkstation::FindIn<QPlainTextEdit>(form, "txtComment");
  }
  std::string SavedComment() { return w.disk.Get(w.InLog("26111500", "comment.txt")); }
  bool LogExists() { return w.disk.Has(w.InLog("26111500", "logfile.ini")); }

  FormsWorkstation w;
};

TEST_F(frmLogEditorTest, TheTitleNamesTheFolder) {
  Edit([&](QWidget* form) {
    EXPECT_EQ(form->windowTitle().toStdString(), "Logbook Editor:" + w.state.LogPath);
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, OkStoresTicksAndCommentAndCloses) {
  Edit([&](QWidget* form) {
    QTest::mouseClick(Check(form, 2), Qt::LeftButton, {}, QPoint(8, 12));
    QTest::mouseClick(Check(form, 9), Qt::LeftButton, {}, QPoint(8, 12));
    QTest::keyClicks(Comment(form), QStringLiteral("cones changed"));
    QTest::mouseClick(Button(form, "cmdOK"), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
  });
  EXPECT_EQ(SavedComment(), "cones changed\r\n");
  const std::string profile = w.disk.Get(w.InLog("26111500", "logfile.ini"));
  EXPECT_NE(profile.find("Item2=1\r\n"), std::string::npos) << profile;
  EXPECT_NE(profile.find("Item9=1\r\n"), std::string::npos) << profile;
  EXPECT_NE(profile.find("Item0=0\r\n"), std::string::npos) << profile;
}

TEST_F(frmLogEditorTest, TheNextEditorOpensWithTheTicksOfTheLastRecord) {
  Edit([&](QWidget* form) {
    Check(form, 2)->click();
    Check(form, 9)->click();
    Button(form, "cmdOK")->click();
  });
  Edit([&](QWidget* form) {
    for (int i = 0; i < LogEditor::kChecks; ++i) {
      EXPECT_EQ(Check(form, i)->isChecked(), i == 2 || i == 9) << i;
    }
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, AnEmptyCommentMakesAFileOfOneLineEnd) {
  Edit([&](QWidget* form) { Button(form, "cmdOK")->click(); });
  EXPECT_EQ(SavedComment(), "\r\n");
}

TEST_F(frmLogEditorTest, ACommentThatEndsInATypedLineEndKeepsIt) {
  Edit([&](QWidget* form) {
    QTest::keyClicks(Comment(form), QStringLiteral("cones"));
    QTest::keyClick(Comment(form), Qt::Key_Return);
    Button(form, "cmdOK")->click();
  });
  EXPECT_EQ(SavedComment(), "cones\r\n\r\n");
}

TEST_F(frmLogEditorTest, TheCommentHasItsScrollBarAlsoWhileItIsEmpty) {
  Edit([&](QWidget* form) {
    const QScrollBar* bar = Comment(form)->verticalScrollBar();
    EXPECT_TRUE(bar->isVisible());
    const int width = Comment(form)->viewport()->width();
    EXPECT_LE(width + bar->width(), Comment(form)->width());
    Comment(form)->setPlainText(QStringLiteral("line\n").repeated(50));
    EXPECT_EQ(Comment(form)->viewport()->width(), width) << "lines break alike with any number";
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, CancelRemovesTheLog) {
  Edit([&](QWidget* form) { QTest::mouseClick(Button(form, "cmdCancel"), Qt::LeftButton); });
  EXPECT_FALSE(LogExists());
}

TEST_F(frmLogEditorTest, EscapePressesCancel) {
  Edit([&](QWidget* form) { QTest::keyClick(form, Qt::Key_Escape); });
  EXPECT_FALSE(LogExists());
}

TEST_F(frmLogEditorTest, CancelThatCannotRemoveTheFolderSaysSoAndKeepsTheDialogOpen) {
  const std::filesystem::path file = w.disk.Native(w.InLog("26111500", "logfile.ini"));
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  Edit([&](QWidget* form) {
    Button(form, "cmdCancel")->click();
    EXPECT_TRUE(form->isVisible());
    ASSERT_EQ(w.messages.shown.size(), 1u);
    EXPECT_EQ(w.messages.shown[0].Text, "Can not delete logfile:" + w.state.LogRoot + " !");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    Button(form, "cmdCancel")->click();
  });
  EXPECT_FALSE(LogExists());
}

TEST_F(frmLogEditorTest, TheCloseBoxIsNoWayOut) {
  Edit([&](QWidget* form) {
    EXPECT_FALSE(form->close());
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(LogExists());
    const Qt::WindowFlags flags = form->windowFlags();
    EXPECT_FALSE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowSystemMenuHint));
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, EnterMakesANewLineInTheComment) {
  Edit([&](QWidget* form) {
    Comment(form)->setFocus();
    QTest::keyClicks(Comment(form), QStringLiteral("a"));
    QTest::keyClick(Comment(form), Qt::Key_Return);
    QTest::keyClicks(Comment(form), QStringLiteral("b"));
    EXPECT_TRUE(form->isVisible());
    EXPECT_FALSE(Button(form, "cmdOK")->isDefault());
    Button(form, "cmdOK")->click();
  });
  EXPECT_EQ(SavedComment(), "a\r\nb\r\n");
}

TEST_F(frmLogEditorTest, EnterOnATickBoxConfirmsNothing) {
  Edit([&](QWidget* form) {
    Check(form, 0)->setFocus();
    QTest::keyClick(Check(form, 0), Qt::Key_Return);
    EXPECT_TRUE(form->isVisible());
    Button(form, "cmdOK")->setFocus();
    QTest::keyClick(Button(form, "cmdOK"), Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
  });
}

TEST_F(frmLogEditorTest, TabLeavesTheComment) {
  Edit([&](QWidget* form) {
    Comment(form)->setFocus();
    QTest::keyClick(Comment(form), Qt::Key_Tab);
    EXPECT_EQ(form->focusWidget(), Button(form, "cmdOK"));
    EXPECT_TRUE(Comment(form)->toPlainText().isEmpty());
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, IsPlacedAtEachActivation) {
  Edit([&](QWidget* form) {
    const auto handle = static_cast<std::intptr_t>(form->winId());
    w.windows.positions.clear();
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(form, &activate);
    EXPECT_EQ(w.windows.positions.count(handle), 1u);
    w.windows.positions.clear();
    QApplication::sendEvent(form, &activate);
    EXPECT_EQ(w.windows.positions.count(handle), 1u);
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, AnErrorWhileItIsActivatedIsReportedAndEndsTheProcess) {
  LogEditor editor;
  frmLogEditor form(&w.window, w.state, w.real, editor);
  w.windows.work_area.Right = 8'000'000'000;
  QEvent activate(QEvent::WindowActivate);
  try {
    QApplication::sendEvent(&form, &activate);
    FAIL() << "the process did not end";
  } catch (const test::ProcessEnded& end) {
    EXPECT_EQ(end.status, 1);
  }
  ASSERT_EQ(w.messages.shown.size(), 1u);
  EXPECT_EQ(w.messages.shown[0].Text, "Run-time error '6':\r\n\r\nOverflow");
}

TEST_F(frmLogEditorTest, BelongsToTheMainWindow) {
  Edit([&](QWidget* form) {
    EXPECT_EQ(form->parentWidget(), &w.window);
    EXPECT_TRUE(form->isModal());
    Button(form, "cmdOK")->click();
  });
}

TEST_F(frmLogEditorTest, AnAutomaticRecordConfirmsItselfWithoutAWindow) {
  w.state.AutoRec = true;
  try {
    w.qt_forms.ShowLogEditor(std::nullopt);
    FAIL() << "showing the unloaded editor did not fail";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kObjectUnloaded);
  }
  EXPECT_EQ(SavedComment(), "Automatically logged on Tune Report generation.\r\n");
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(frmLogEditorTest, ALongParagraphIsSavedAsTheBoxShowsIt) {
  int displayed = 0;
  Edit([&](QWidget* form) {
    QString text;
    for (int i = 0; i < 60; ++i) text += QStringLiteral("pump oil ");
    Comment(form)->setPlainText(text);
    displayed = Comment(form)->document()->firstBlock().layout()->lineCount();
    Button(form, "cmdOK")->click();
  });
  const std::string saved = SavedComment();
  int line_ends = 0;
  for (std::size_t at = saved.find("\r\n"); at != std::string::npos;
       at = saved.find("\r\n", at + 2))
    ++line_ends;
  EXPECT_GT(displayed, 3);
  EXPECT_EQ(line_ends, displayed);
}

}  // namespace
}  // namespace logbook
