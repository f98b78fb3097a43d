// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Straight columns in a pane: a report counts its columns in bytes of the code page, so each
// character has to stand as many cells wide as it has bytes, one or two, whatever the fonts make of
// it.
#pragma once

#include <QHash>
#include <QSyntaxHighlighter>

#include "base/CodePage.h"

namespace logbook {

class ColumnKeeper : public QSyntaxHighlighter {
 public:
  // Keeps the columns of a document in its default font. A cell is as wide as the letter M.
  ColumnKeeper(QTextDocument* document, const CodePage& code_page);

  // To be called when the document's default font has changed, before the next text.
  void TakeFont();

 protected:
  void highlightBlock(const QString& text) override;

 private:
  // The space in pixels that a character needs behind it, below 0 if it is too wide.
  qreal SpaceBehind(char32_t character);

  const CodePage& code_page_;
  QHash<char32_t, qreal> spaces_;
};

}  // namespace logbook
