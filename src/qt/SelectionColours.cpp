// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SelectionColours.h"

#include <algorithm>
#include <cmath>

namespace logbook {
namespace {

constexpr int kSteps = 32;  // to black or white

double Linear(double part) {
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

QColor Mixed(const QColor& colour, const QColor& other, double share) {
  const auto part = [share](double from, double to) {
    return static_cast<float>(from + (to - from) * share);
  };
  return QColor::fromRgbF(part(colour.redF(), other.redF()), part(colour.greenF(), other.greenF()),
                          part(colour.blueF(), other.blueF()));
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
  const double first = Luminance(a) + 0.05, second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

QPalette WithReadableSelection(const QPalette& palette) {
  QPalette readable = palette;
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    const QColor ground = palette.color(group, QPalette::Highlight);
    const QColor text = palette.color(group, QPalette::HighlightedText);
    if (Contrast(ground, text) >= kLeastContrast) continue;
    const bool light_text = Contrast(text, Qt::black) > Contrast(text, Qt::white);
    const QColor new_text = light_text ? Qt::white : Qt::black;
    const QColor away = light_text ? Qt::black : Qt::white;
    QColor new_ground = ground;
    for (int step = 1; step <= kSteps && Contrast(new_ground, new_text) < kLeastContrast; ++step) {
      new_ground = Mixed(ground, away, static_cast<double>(step) / kSteps).toRgb();
    }
    readable.setColor(group, QPalette::Highlight, new_ground);
    readable.setColor(group, QPalette::HighlightedText, new_text);
  }
  return readable;
}

}  // namespace logbook
