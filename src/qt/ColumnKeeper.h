// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Straight columns in a pane: a report counts its columns in bytes of the code page, so each
// character has to stand as many cells wide as it has bytes, one or two, whatever the fonts make of
// it.
#pragma once

#include <QHash>
#include <QList>
#include <QPlainTextDocumentLayout>
#include <QTextLayout>

#include "base/CodePage.h"

namespace logbook {

// The layout of a pane's document. A line is measured when it comes on show, so that a long text
// costs no more than what is seen of it.
class ColumnKeeper : public QPlainTextDocumentLayout {
 public:
  // Keeps the columns of a document in its default font. A cell is as wide as the letter M.
  ColumnKeeper(QTextDocument* document, const CodePage& code_page);

  // To be called when the document's default font has changed, before the next text.
  void TakeFont();

  QRectF blockBoundingRect(const QTextBlock& block) const override;

 protected:
  void documentChanged(int from, int removed, int added) override;

 private:
  // Gives a line its spaces, if it has not got them yet.
  void Prepare(QTextBlock block) const;
  QList<QTextLayout::FormatRange> SpacesOf(const QString& text) const;
  // The space in pixels that a character needs behind it, below 0 if it is too wide.
  qreal SpaceBehind(char32_t character) const;

  const CodePage& code_page_;
  mutable QHash<char32_t, qreal> spaces_;
};

}  // namespace logbook
