// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/WrappedLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace logbook {

WrappedLabel::WrappedLabel(const QString& text, int width, QWidget* parent)
    : QLabel(text, parent), width_(width) {
  setTextFormat(Qt::PlainText);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

double WrappedLabel::LayOut(QTextLayout& layout, int width) const {
  QTextOption option(Qt::AlignLeft);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  double height = 0;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    line.setPosition({0, height});
    height += line.height();
  }
  layout.endLayout();
  return height;
}

int WrappedLabel::heightForWidth(int width) const {
  QString lines = text();
  QTextLayout layout(lines.replace(QLatin1Char('\n'), QChar::LineSeparator), font());
  return static_cast<int>(std::ceil(LayOut(layout, width)));
}

void WrappedLabel::paintEvent(QPaintEvent*) {
  QString lines = text();
  QTextLayout layout(lines.replace(QLatin1Char('\n'), QChar::LineSeparator), font());
  const double height = LayOut(layout, width());
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  layout.draw(&painter, {0, std::max(0.0, (this->height() - height) / 2)});
}

bool HasWiderWord(const QString& text, const QFontMetrics& metrics, int width) {
  const QStringList words = text.split(QRegularExpression(QStringLiteral("\\s+")));
  return std::any_of(words.begin(), words.end(),
                     [&](const QString& word) { return metrics.horizontalAdvance(word) > width; });
}

}  // namespace logbook
