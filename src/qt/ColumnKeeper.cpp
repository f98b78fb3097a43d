// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/ColumnKeeper.h"

#include <QFontMetricsF>
#include <QTextCharFormat>
#include <QTextDocument>
#include <cmath>

namespace logbook {
namespace {

constexpr char32_t kFirstBeyondAscii = 0x80;
// Narrower than this nobody sees.
constexpr qreal kTolerance = 0.01;

}  // namespace

ColumnKeeper::ColumnKeeper(QTextDocument* document, const CodePage& code_page)
    : QSyntaxHighlighter(document), code_page_(code_page) {}

void ColumnKeeper::TakeFont() {
  spaces_.clear();
}

void ColumnKeeper::highlightBlock(const QString& text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool pair = text[i].isHighSurrogate() && i + 1 < text.size();
    const char32_t character =
        pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
    const qreal space = character < kFirstBeyondAscii ? 0 : SpaceBehind(character);
    if (std::abs(space) > kTolerance) {
      QTextCharFormat spaced;
      spaced.setFontLetterSpacingType(QFont::AbsoluteSpacing);
      spaced.setFontLetterSpacing(space);
      setFormat(static_cast<int>(i), pair ? 2 : 1, spaced);
    }
    if (pair) ++i;
  }
}

qreal ColumnKeeper::SpaceBehind(char32_t character) {
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
