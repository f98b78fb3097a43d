// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A label for texts with words wider than itself, such as long paths: where a word does not fit a
// line it is broken. The text stays as it is, for the clipboard and for those who have it read out.
#pragma once

#include <QLabel>

class QTextLayout;

namespace logbook {

class WrappedLabel : public QLabel {
 public:
  // A plain text with line feeds for line ends; `width` in pixels is what it takes at least.
  WrappedLabel(const QString& text, int width, QWidget* parent);

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override { return {width_, heightForWidth(width_)}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // Breaks the text into lines of this width; returns the height of all.
  double LayOut(QTextLayout& layout, int width) const;

  const int width_;
};

// True if the text has a word that is wider than this.
bool HasWiderWord(const QString& text, const QFontMetrics& metrics, int width);

}  // namespace logbook
