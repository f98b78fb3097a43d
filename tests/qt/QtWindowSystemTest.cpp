// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtWindowSystem.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QVariant>
#include <QWidget>

#include "placement/AsDialog.h"

namespace logbook {
namespace {

std::intptr_t HandleOf(QWidget& widget) {
  return static_cast<std::intptr_t>(widget.winId());
}

TEST(QtWindowSystem, AWindowThatDoesNotExistGivesNothingAndTakesNothing) {
  QtWindowSystem windows;
  for (const std::intptr_t handle : {std::intptr_t{0}, std::intptr_t{0x7ffffff0}}) {
    windows.SetBand(handle, WindowSystem::Band::kTopmost);
    windows.SetParent(handle, handle);
    windows.SetNormalPosition(handle, {1, 2, 3, 4});
    EXPECT_EQ(windows.ClassName(handle), "");
    EXPECT_EQ(windows.FindChild(handle, "ViewWndClass"), 0);
    EXPECT_EQ(windows.ClientRect(handle).Right, 0);
    EXPECT_EQ(windows.NormalPosition(handle).Right, 0);
  }
}

TEST(QtWindowSystem, TheClassNameIsThePropertyOrElseTheObjectName) {
  QtWindowSystem windows;
  QWidget window;
  window.setObjectName(QStringLiteral("frmMain"));
  EXPECT_EQ(windows.ClassName(HandleOf(window)), "frmMain");
  window.setProperty("windowClass", QStringLiteral("ZEB QRXDA Class"));
  EXPECT_EQ(windows.ClassName(HandleOf(window)), "ZEB QRXDA Class");
}

TEST(QtWindowSystem, AChildIsFoundByItsClassWithoutRegardToCase) {
  QtWindowSystem windows;
  QWidget window;
  auto* child = new QWidget(&window);
  child->setProperty("windowClass", QStringLiteral("ViewWndClass"));
  EXPECT_EQ(windows.FindChild(HandleOf(window), "VIEWWNDCLASS"), HandleOf(*child));
  EXPECT_EQ(windows.FindChild(HandleOf(window), "TopViewWndClass"), 0);
}

TEST(QtWindowSystem, AParentTakesTheWindowIn) {
  QtWindowSystem windows;
  QWidget host;
  auto* window = new QWidget;
  windows.SetParent(HandleOf(*window), HandleOf(host));
  EXPECT_EQ(window->parentWidget(), &host);
}

TEST(QtWindowSystem, TheBandIsAHintThatASecondCallDoesNotTouch) {
  QtWindowSystem windows;
  QWidget window;
  window.show();
  windows.SetBand(HandleOf(window), WindowSystem::Band::kTopmost);
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_TRUE(window.isVisible());
  windows.SetBand(HandleOf(window), WindowSystem::Band::kNormal);
  EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_TRUE(window.isVisible());
}

TEST(QtWindowSystem, ThePlaceWrittenIsThePlaceRead) {
  QtWindowSystem windows;
  QWidget window;
  window.setFixedSize(300, 200);
  for (const bool shown : {false, true}) {
    window.setVisible(shown);
    PixelRect place = windows.NormalPosition(HandleOf(window));
    const long width = place.Right - place.Left, height = place.Bottom - place.Top;
    EXPECT_GE(width, 300);
    EXPECT_GE(height, 200);
    place = {40, 50, 40 + width, 50 + height};
    windows.SetNormalPosition(HandleOf(window), place);
    const PixelRect read = windows.NormalPosition(HandleOf(window));
    EXPECT_EQ(read.Left, 40) << shown;
    EXPECT_EQ(read.Top, 50) << shown;
    EXPECT_EQ(read.Right, 40 + width) << shown;
    EXPECT_EQ(read.Bottom, 50 + height) << shown;
    EXPECT_EQ(window.size(), QSize(300, 200)) << shown;
  }
}

TEST(QtWindowSystem, TheClientAreaBeginsAtZero) {
  QtWindowSystem windows;
  QWidget window;
  window.setGeometry(10, 20, 300, 200);
  const PixelRect area = windows.ClientRect(HandleOf(window));
  EXPECT_EQ(area.Left, 0);
  EXPECT_EQ(area.Top, 0);
  EXPECT_EQ(area.Right, 300);
  EXPECT_EQ(area.Bottom, 200);
}

TEST(QtWindowSystem, AWindowMovedByTheUserIsCentredAgain) {
  QtWindowSystem windows;
  QWidget window;
  window.setFixedSize(300, 200);
  window.show();
  window.move(5, 5);
  PlaceAndRaise(windows, HandleOf(window));
  const QRect area = QApplication::primaryScreen()->availableGeometry();
  const QRect frame = window.frameGeometry();
  EXPECT_NEAR(frame.center().x(), area.width() / 2, 1);
  EXPECT_NEAR(frame.center().y(), area.height() / 2, 1);
}

}  // namespace
}  // namespace logbook
