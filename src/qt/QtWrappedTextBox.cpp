// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtWrappedTextBox.h"

#include <QAbstractTextDocumentLayout>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextLayout>

#include "qt/Widgets.h"

namespace logbook {
namespace {

// The text with its line ends, those inside a paragraph too, as single line feeds. The toolkit's
// own plain text would turn fixed blanks into ordinary ones.
QString TextWithLineFeeds(const QPlainTextEdit& box) {
  QString text = box.document()->toRawText();
  for (QChar& c : text) {
    if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator) c = QLatin1Char('\n');
  }
  return text;
}

std::string WithLineEnds(QString text) {
  return text.replace(QLatin1Char('\n'), QLatin1String("\r\n")).toStdString();
}

// Positions of the displayed lines' first characters in TextWithLineFeeds.
std::vector<int> LinePositions(const QPlainTextEdit& box) {
  std::vector<int> positions;
  const QTextDocument& document = *box.document();
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    document.documentLayout()->blockBoundingRect(block);  // lays the paragraph out
    const QTextLayout& layout = *block.layout();
    for (int line = 0; line < layout.lineCount(); ++line) {
      positions.push_back(block.position() + layout.lineAt(line).textStart());
    }
  }
  return positions;
}

}  // namespace

QtWrappedTextBox::QtWrappedTextBox(QPlainTextEdit& box, const Control& control,
                                   const CodePage& page)
    : box_(box), control_(control), page_(page) {}

std::string QtWrappedTextBox::Text() const {
  return WithLineEnds(TextWithLineFeeds(box_));
}

void QtWrappedTextBox::SetText(const std::string& text) {
  box_.setPlainText(ToQt(text));
}

int QtWrappedTextBox::LineCount() const {
  return static_cast<int>(LineStarts().size());
}

long QtWrappedTextBox::LineIndex(int line) const {
  const std::vector<long>& starts = LineStarts();
  const auto index = static_cast<std::size_t>(line);
  return line < 0 || index >= starts.size() ? -1 : starts[index];
}

void QtWrappedTextBox::LayOut() const {
  ApplyControl(&box_, control_);
  box_.ensurePolished();
  // A box that has never been shown learns its size only when it is painted.
  if (!box_.isVisible()) box_.grab(QRect(0, 0, 1, 1));
}

const std::vector<long>& QtWrappedTextBox::LineStarts() const {
  LayOut();
  const QList<int> valid_for = {box_.document()->revision(), box_.viewport()->width()};
  if (valid_for == starts_valid_for_) return starts_;
  starts_valid_for_ = valid_for;
  starts_.clear();
  const QString text = TextWithLineFeeds(box_);
  int position = 0;
  long offset = 0;
  for (const int start : LinePositions(box_)) {
    const QString line = text.mid(position, start - position);
    offset += static_cast<long>(page_.Length(WithLineEnds(line)));
    position = start;
    starts_.push_back(offset);
  }
  return starts_;
}

}  // namespace logbook
