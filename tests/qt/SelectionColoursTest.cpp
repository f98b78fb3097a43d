// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SelectionColours.h"

#include <gtest/gtest.h>

namespace logbook {
namespace {

QPalette Selecting(const QColor& ground, const QColor& text) {
  QPalette palette;
  palette.setColor(QPalette::Highlight, ground);
  palette.setColor(QPalette::HighlightedText, text);
  return palette;
}

TEST(SelectionColours, ContrastIsThatOfTheUsualDefinition) {
  EXPECT_DOUBLE_EQ(Contrast(Qt::black, Qt::white), 21);
  EXPECT_DOUBLE_EQ(Contrast(Qt::red, Qt::red), 1);
  EXPECT_NEAR(Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005);
  EXPECT_NEAR(Contrast(Qt::white, QColor(0x76, 0x76, 0x76)), 4.54, 0.005);
}

TEST(SelectionColours, EveryPairOfColoursBecomesReadable) {
  for (int ground = 0; ground < 256; ground += 5) {
    for (int text = 0; text < 256; text += 5) {
      for (const QColor& tinted : {QColor(ground, ground, ground), QColor(ground, 140, 198)}) {
        const QPalette palette = WithReadableSelection(Selecting(tinted, QColor(text, text, text)));
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
          EXPECT_GE(Contrast(palette.color(group, QPalette::Highlight),
                             palette.color(group, QPalette::HighlightedText)),
                    kLeastContrast)
              << "ground " << tinted.name().toStdString() << ", text " << text;
        }
      }
    }
  }
}

TEST(SelectionColours, ReadableColoursStayAsTheDesktopHasThem) {
  const QPalette palette = Selecting(QColor(0x1A, 0xEB, 0xFF), Qt::black);
  EXPECT_EQ(WithReadableSelection(palette), palette);
}

TEST(SelectionColours, UsualBlueUnderWhiteGrowsDarkerAndStaysBlue) {
  const QPalette palette = WithReadableSelection(Selecting(QColor(48, 140, 198), Qt::white));
  const QColor ground = palette.color(QPalette::Active, QPalette::Highlight);
  EXPECT_EQ(palette.color(QPalette::Active, QPalette::HighlightedText), QColor(Qt::white));
  EXPECT_LT(Contrast(ground, Qt::white), kLeastContrast + 0.5);
  EXPECT_NEAR(ground.hue(), QColor(48, 140, 198).hue(), 2);
}

}  // namespace
}  // namespace logbook
