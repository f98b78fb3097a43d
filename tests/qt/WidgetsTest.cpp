// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/Widgets.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QFontInfo>
#include <QFontMetrics>
#include <QPushButton>
#include <utility>

#include "qt/Twips.h"

namespace logbook {
namespace {

TEST(Twips, FifteenAreAPixelAndHalvesGoUp) {
  const std::pair<int, int> cases[] = {{0, 0},    {7, 0},    {8, 1},       {15, 1}, {22, 1},
                                       {23, 2},   {375, 25}, {11145, 743}, {-7, 0}, {-8, -1},
                                       {-15, -1}, {-22, -1}, {-23, -2}};
  for (const auto& [twips, pixels] : cases) EXPECT_EQ(Pixels(twips), pixels) << twips;
}

TEST(Twips, PixelsComeBackUnchanged) {
  for (int pixels = -100; pixels <= 100; ++pixels) EXPECT_EQ(Pixels(TwipsOf(pixels)), pixels);
}

TEST(ToolkitFont, PointsAreReckonedAtNinetySixDotsPerInch) {
  EXPECT_EQ(ToolkitFont({"Arial", 8}).pixelSize(), 11);
  EXPECT_EQ(ToolkitFont({"Arial", 9}).pixelSize(), 12);
  EXPECT_EQ(ToolkitFont({"Arial", 0}).pixelSize(), 1);
}

TEST(ToolkitFont, FixedsysIsFixedPitchAndAboutEightPixelsWide) {
  const QFont font = ToolkitFont({"Fixedsys", 9});
  EXPECT_TRUE(QFontInfo(font).fixedPitch()) << QFontInfo(font).family().toStdString();
  const QFontMetrics metrics(font);
  EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')),
            metrics.horizontalAdvance(QLatin1Char('W')));
  EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('W')), 8);
}

TEST(ToolkitFont, ArialIsProportional) {
  EXPECT_FALSE(QFontInfo(ToolkitFont({"Arial", 8})).fixedPitch());
}

TEST(SpokenCaption, HasNoAmpersandsOfAccessKeys) {
  const std::pair<const char*, const char*> cases[] = {{"OK", "OK"},
                                                       {"&Delete", "Delete"},
                                                       {"Save && Go", "Save & Go"},
                                                       {"E&xit", "Exit"},
                                                       {"&", "&"}};
  for (const auto& [caption, spoken] : cases) {
    EXPECT_EQ(SpokenCaption(caption).toStdString(), spoken) << caption;
  }
}

TEST(ApplyControl, GivesAWidgetNameCaptionFontPlaceAndState) {
  QWidget window;
  auto* button = new QPushButton(&window);
  ApplyControl(button, {.Name = "cmdOK",
                        .Place = {150, 300, 975, 375},
                        .Caption = "&OK",
                        .TextFont = {"Arial", 8},
                        .Enabled = false});
  EXPECT_EQ(button->objectName(), QLatin1String("cmdOK"));
  EXPECT_EQ(button->accessibleName(), QLatin1String("OK"));
  EXPECT_EQ(button->text(), QLatin1String("&OK"));
  EXPECT_EQ(button->geometry(), QRect(10, 20, 65, 25));
  EXPECT_EQ(button->font().pixelSize(), 11);
  EXPECT_FALSE(button->isEnabled());
  EXPECT_FALSE(button->isHidden());
}

TEST(ApplyControl, HidesAControlThatIsNotVisible) {
  QWidget window;
  auto* box = new QCheckBox(&window);
  ApplyControl(box, {.Name = "Option3", .Visible = false});
  EXPECT_TRUE(box->isHidden());
}

TEST(ApplyControl, LeavesATopLevelWindowWhereItIs) {
  QWidget window;
  window.setGeometry(30, 40, 200, 100);
  ApplyControl(&window, {.Name = "frmMain", .Place = {0, 0, 15, 15}, .Caption = "Title"});
  EXPECT_EQ(window.geometry(), QRect(30, 40, 200, 100));
  EXPECT_EQ(window.windowTitle(), QLatin1String("Title"));
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace logbook
