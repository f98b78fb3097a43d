// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtWrappedTextBox.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <string>
#include <vector>

#include "FormsWorkstation.h"
#include "qt/frmLogEditor.h"
#include "records/LogEditor.h"

namespace logbook {
namespace {

using test::FormsWorkstation;

// The comment box of a loaded editor and what reads it.
struct CommentBox {
  explicit CommentBox(int code_page = 1252) : workstation(code_page) {
    form.Load();
    box = FormsWorkstation::FindIn<QPlainTextEdit>(&form, "txtComment");
  }

  std::string Wrapped() { return GetWrappedText(workstation.disk, comment); }
  // Number of characters of the fixed-pitch font that fit a line.
  int Columns() {
    comment.LineCount();
    const double margin = box->document()->documentMargin();
    return static_cast<int>((box->viewport()->width() - 2 * margin) /
                            QFontMetricsF(box->font()).horizontalAdvance(QLatin1Char('x')));
  }

  FormsWorkstation workstation;
  LogEditor editor;
  frmLogEditor form{&workstation.window, workstation.state, workstation.real, editor};
  QPlainTextEdit* box = nullptr;
  QtWrappedTextBox comment{*FormsWorkstation::FindIn<QPlainTextEdit>(&form, "txtComment"),
                           editor.txtComment, *workstation.disk.machine().code_page};
};

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0;;) {
    const std::size_t end = text.find("\r\n", begin);
    lines.push_back(text.substr(begin, end - begin));
    if (end == std::string::npos) return lines;
    begin = end + 2;
  }
}

std::string Words(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += (i == 0 ? "word" : " word") + std::to_string(i);
  return text;
}

TEST(QtWrappedTextBox, AnEmptyBoxHasOneEmptyLine) {
  CommentBox box;
  EXPECT_EQ(box.comment.LineCount(), 1);
  EXPECT_EQ(box.comment.LineIndex(0), 0);
  EXPECT_EQ(box.comment.LineIndex(1), -1);
  EXPECT_EQ(box.comment.LineIndex(-1), -1);
  EXPECT_EQ(box.Wrapped(), "");
}

TEST(QtWrappedTextBox, ACommentOfOneDisplayedLineStaysAsTyped) {
  CommentBox box;
  QTest::keyClicks(box.box, QStringLiteral("cones cleaned"));
  EXPECT_EQ(box.Wrapped(), "cones cleaned");
}

TEST(QtWrappedTextBox, TypedLineEndsAreCarriageReturnAndLineFeed) {
  CommentBox box;
  QTest::keyClicks(box.box, QStringLiteral("one"));
  QTest::keyClick(box.box, Qt::Key_Return);
  QTest::keyClicks(box.box, QStringLiteral("two"));
  QTest::keyClick(box.box, Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClicks(box.box, QStringLiteral("three"));
  EXPECT_EQ(box.comment.Text(), "one\r\ntwo\r\nthree");
  EXPECT_EQ(box.comment.LineCount(), 3);
  EXPECT_EQ(box.comment.LineIndex(1), 5);
  EXPECT_EQ(box.comment.LineIndex(2), 10);
  EXPECT_EQ(box.Wrapped(), "one\r\ntwo\r\nthree");
}

TEST(QtWrappedTextBox, ALastTypedLineEndBeginsAnEmptyLine) {
  CommentBox box;
  box.comment.SetText("one\r\n");
  EXPECT_EQ(box.comment.LineCount(), 2);
  EXPECT_EQ(box.comment.LineIndex(1), 5);
  EXPECT_EQ(box.Wrapped(), "one\r\n");
}

TEST(QtWrappedTextBox, ALongParagraphBreaksAtWordsAndLosesNothing) {
  CommentBox box;
  const std::string text = Words(60);
  box.comment.SetText(text);
  const std::vector<std::string> lines = LinesOf(box.Wrapped());
  EXPECT_EQ(static_cast<int>(lines.size()), box.comment.LineCount());
  ASSERT_GE(lines.size(), 5u);
  std::string joined;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string trimmed = lines[i].substr(0, lines[i].find_last_not_of(' ') + 1);
    EXPECT_LE(static_cast<int>(trimmed.size()), box.Columns()) << lines[i];
    EXPECT_EQ(lines[i].compare(0, 4, "word"), 0) << lines[i];
    if (i + 1 < lines.size()) {
      EXPECT_EQ(lines[i].back(), ' ') << "the blank stays on its line";
    }
    joined += lines[i];
  }
  EXPECT_EQ(joined, text);
}

TEST(QtWrappedTextBox, ALineHoldsAsManyCharactersAsItsWidthHasRoomFor) {
  CommentBox box;
  const int columns = box.Columns();
  EXPECT_GE(columns, 70);
  EXPECT_LE(columns, 80);
  box.comment.SetText(std::string(static_cast<std::size_t>(columns), 'x'));
  EXPECT_EQ(box.comment.LineCount(), 1);
  box.comment.SetText(std::string(static_cast<std::size_t>(columns) + 1, 'x'));
  EXPECT_EQ(box.comment.LineCount(), 2);
  EXPECT_EQ(box.comment.LineIndex(1), columns);
}

TEST(QtWrappedTextBox, ATypedLineEndBeforeAWrappedLineMakesNoEmptyLine) {
  CommentBox box;
  QTest::keyClicks(box.box, QStringLiteral("first"));
  QTest::keyClick(box.box, Qt::Key_Enter);
  QTest::keyClicks(box.box, QString::fromStdString(Words(30)));
  const std::vector<std::string> lines = LinesOf(box.Wrapped());
  EXPECT_EQ(lines.front(), "first");
  EXPECT_GE(lines.size(), 3u);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), ""), 0);
}

TEST(QtWrappedTextBox, DoubleByteCharactersBreakWhereTheBoxBreaksThem) {
  CommentBox box(932);
  std::string text;
  for (int i = 0; i < 120; ++i) text += "\xE4\xBF\x9D";  // one character, two bytes in page 932
  box.comment.SetText(text);
  ASSERT_GE(box.comment.LineCount(), 2);
  const int shown = box.box->document()->firstBlock().layout()->lineAt(0).textLength();
  EXPECT_EQ(box.comment.LineIndex(1), 2 * shown);
  EXPECT_EQ(LinesOf(box.Wrapped()).front(), text.substr(0, static_cast<std::size_t>(3 * shown)));
}

TEST(QtWrappedTextBox, FixedBlanksStayFixedBlanks) {
  CommentBox box;
  box.comment.SetText("5\xC2\xA0mm");
  EXPECT_EQ(box.comment.Text(), "5\xC2\xA0mm");
}

TEST(QtWrappedTextBox, AShownBoxWrapsLikeOneThatWasNeverShown) {
  CommentBox hidden, shown;
  const std::string text = Words(60);
  hidden.comment.SetText(text);
  shown.form.show();
  shown.comment.SetText(text);
  EXPECT_EQ(shown.Wrapped(), hidden.Wrapped());
}

TEST(QtWrappedTextBox, AChangeOfTheTextIsSeen) {
  CommentBox box;
  box.comment.SetText(Words(60));
  EXPECT_GT(box.comment.LineCount(), 1);
  box.comment.SetText("short");
  EXPECT_EQ(box.comment.LineCount(), 1);
}

}  // namespace
}  // namespace logbook
