// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/ColumnKeeper.h"

#include <QFontMetricsF>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextDocument>
#include <cmath>

namespace logbook {
namespace {

constexpr char32_t kFirstBeyondAscii = 0x80;
// Narrower than this nobody sees.
constexpr qreal kTolerance = 0.01;
// States of a line.
constexpr int kFresh = -1, kPrepared = 1;

}  // namespace

ColumnKeeper::ColumnKeeper(QTextDocument* document, const CodePage& code_page)
    : QPlainTextDocumentLayout(document), code_page_(code_page) {}

void ColumnKeeper::TakeFont() {
  spaces_.clear();
}

QRectF ColumnKeeper::blockBoundingRect(const QTextBlock& block) const {
  Prepare(block);
  return QPlainTextDocumentLayout::blockBoundingRect(block);
}

// A block that is made new is not prepared; the first and the last of a change may be older.
void ColumnKeeper::documentChanged(int from, int removed, int added) {
  for (const int place : {from, from + added}) {
    QTextBlock block = document()->findBlock(place);
    if (block.isValid()) block.setUserState(kFresh);
  }
  QPlainTextDocumentLayout::documentChanged(from, removed, added);
}

void ColumnKeeper::Prepare(QTextBlock block) const {
  if (!block.isValid() || block.userState() == kPrepared) return;
  block.setUserState(kPrepared);
  const QList<QTextLayout::FormatRange> spaces = SpacesOf(block.text());
  if (spaces.isEmpty() && block.layout()->formats().isEmpty()) return;
  block.clearLayout();
  block.layout()->setFormats(spaces);
}

QList<QTextLayout::FormatRange> ColumnKeeper::SpacesOf(const QString& text) const {
  QList<QTextLayout::FormatRange> ranges;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool pair = text[i].isHighSurrogate() && i + 1 < text.size();
    const char32_t character =
        pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
    const qreal space = character < kFirstBeyondAscii ? 0 : SpaceBehind(character);
    if (std::abs(space) > kTolerance) {
      QTextCharFormat spaced;
      spaced.setFontLetterSpacingType(QFont::AbsoluteSpacing);
      spaced.setFontLetterSpacing(space);
      const int length = pair ? 2 : 1;
      const bool joins = !ranges.isEmpty() && ranges.back().start + ranges.back().length == i &&
                         ranges.back().format == spaced;
      if (joins) {
        ranges.back().length += length;
      } else {
        ranges.push_back({static_cast<int>(i), length, spaced});
      }
    }
    if (pair) ++i;
  }
  return ranges;
}

qreal ColumnKeeper::SpaceBehind(char32_t character) const {
  const auto known = spaces_.constFind(character);
  if (known != spaces_.constEnd()) return *known;
  const QFontMetricsF metrics(document()->defaultFont());
  const QString text = QString::fromUcs4(&character, 1);
  const auto cells = static_cast<qreal>(code_page_.Length(text.toStdString()));
  const qreal space =
      cells * metrics.horizontalAdvance(QLatin1Char('M')) - metrics.horizontalAdvance(text);
  return *spaces_.insert(character, space);
}

}  // namespace logbook
