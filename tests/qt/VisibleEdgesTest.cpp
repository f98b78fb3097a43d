// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/VisibleEdges.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QImage>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTreeView>
#include <algorithm>

#include "qt/ReportList.h"
#include "qt/SelectionColours.h"

namespace logbook {
namespace {

QPalette Grey(int window, int base, int text) {
  QPalette palette(QColor(window, window, window));
  palette.setColor(QPalette::Base, QColor(base, base, base));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(role, QColor(text, text, text));
  return palette;
}

const QPalette kBlack = Grey(0, 0, 255), kDark = Grey(44, 28, 252), kUsual = Grey(239, 255, 0);

// The program's style and colours, while one lives.
class InColours {
 public:
  explicit InColours(const QPalette& colours) : before_(QApplication::palette()) {
    QApplication::setStyle(new VisibleEdges);
    QApplication::setPalette(colours);
  }
  ~InColours() {
    QApplication::setStyle(new QProxyStyle);
    QApplication::setPalette(before_);
  }
  InColours(const InColours&) = delete;
  InColours& operator=(const InColours&) = delete;

 private:
  const QPalette before_;
};

// How far the pixels on the way from outside of a thing to its inside stand out from the window.
double MostOnTheWayIn(QWidget& thing, int y, int width) {
  const QImage picture = thing.grab().toImage();
  double most = 1;
  for (int x = 0; x < width; ++x) {
    const QColor pixel = picture.pixelColor(x, y);
    most = std::max(most, Contrast(pixel, QApplication::palette().color(QPalette::Window)));
  }
  return most;
}

void ExpectEdge(QWidget& thing, int width = 6) {
  thing.resize(120, 60);
  EXPECT_GE(MostOnTheWayIn(thing, 30, width), kLeastEdgeContrast)
      << thing.metaObject()->className();
}

TEST(VisibleEdges, EachKindOfBoxAndFieldHasOneOnDarkGrounds) {
  for (const QPalette& palette : {kBlack, kDark}) {
    const InColours colours(palette);
    QCheckBox box;
    QRadioButton radio;
    ExpectEdge(box, 16);
    ExpectEdge(radio, 16);
    QPushButton button;
    QLineEdit line;
    QComboBox list;
    QPlainTextEdit text;
    QGroupBox group;
    for (QWidget* thing : std::initializer_list<QWidget*>{&button, &line, &list, &text, &group})
      ExpectEdge(*thing);
    const std::unique_ptr<QTreeView> logs(NewReportList(nullptr));
    ExpectEdge(*logs);
  }
}

TEST(VisibleEdges, OnUsualGroundsEverythingIsPaintedAsByTheToolkit) {
  const auto picture = [](QStyle* style) {
    QGroupBox group;
    QCheckBox box(&group);
    QLineEdit line(&group);
    line.move(0, 30);
    for (QWidget* thing : std::initializer_list<QWidget*>{&group, &box, &line})
      thing->setStyle(style);
    return group.grab().toImage();
  };
  const InColours colours(kUsual);
  VisibleEdges edges;
  QProxyStyle toolkit;
  EXPECT_EQ(picture(&edges), picture(&toolkit));
}

TEST(VisibleEdges, OnlyDarkGroundsHideThem) {
  EXPECT_TRUE(HidesEdges(kBlack));
  EXPECT_TRUE(HidesEdges(kDark));
  EXPECT_FALSE(HidesEdges(kUsual));
}

TEST(VisibleEdges, WordsThatCannotBeUsedAreSeenAllTheSame) {
  QPalette palette = kBlack;
  palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(10, 10, 10));
  const QColor seen =
      WithVisibleDisabledText(palette).color(QPalette::Disabled, QPalette::ButtonText);
  EXPECT_GE(Contrast(seen, palette.color(QPalette::Button)), kLeastEdgeContrast);
  EXPECT_LT(Contrast(seen, palette.color(QPalette::Button)), 2 * kLeastEdgeContrast)
      << "they do not look as if they could be used";
  palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(90, 90, 90));
  EXPECT_EQ(WithVisibleDisabledText(palette).color(QPalette::Disabled, QPalette::ButtonText),
            QColor(90, 90, 90));
}

}  // namespace
}  // namespace logbook
