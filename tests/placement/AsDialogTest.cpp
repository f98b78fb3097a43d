// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "placement/AsDialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "base/RunTimeError.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::TestWindows;
using testing::ElementsAre;

constexpr std::intptr_t kForm = 10;
constexpr std::intptr_t kHost = 20;
constexpr std::intptr_t kSurface = 21;

void ExpectPlace(TestWindows& windows, long left, long top, long right, long bottom) {
  const PixelRect& place = windows.positions[kForm];
  EXPECT_EQ(place.Left, left);
  EXPECT_EQ(place.Top, top);
  EXPECT_EQ(place.Right, right);
  EXPECT_EQ(place.Bottom, bottom);
}

TEST(PlaceDialog, CentresOnTheWorkAreaWithoutAHost) {
  TestWindows windows;
  windows.positions[kForm] = {5, 6, 405, 306};
  PlaceDialog(windows, kPlaceNormalBand, kForm, 0);
  ExpectPlace(windows, 760, 390, 1160, 690);
  EXPECT_THAT(windows.calls, ElementsAre("SetBand 10 normal"));
}

TEST(PlaceDialog, ClearBit0MeansTheTopmostBand) {
  TestWindows windows;
  PlaceDialog(windows, 0, kForm, 0);
  EXPECT_THAT(windows.calls, ElementsAre("SetBand 10 topmost"));
}

TEST(PlaceDialog, OriginOfTheWorkAreaIsNotAdded) {
  TestWindows windows;
  windows.work_area = {100, 50, 1100, 850};
  windows.positions[kForm] = {0, 0, 400, 300};
  PlaceDialog(windows, kPlaceNormalBand, kForm, 0);
  ExpectPlace(windows, 300, 250, 700, 550);
}

TEST(PlaceDialog, HalvesAreRoundedToTheEvenNumber) {
  TestWindows windows;
  windows.work_area = {0, 0, 1001, 1003};
  windows.positions[kForm] = {0, 0, 400, 400};
  PlaceDialog(windows, kPlaceNormalBand, kForm, 0);
  ExpectPlace(windows, 300, 302, 700, 702);  // 300.5 and 301.5
}

TEST(PlaceDialog, KnownHostCentresOnItsSurface) {
  TestWindows windows;
  windows.class_names[kHost] = "kd-lmr cp CLASS";
  windows.children[{kHost, "TopViewWndClass"}] = kSurface;
  windows.client_rects[kHost] = {0, 0, 800, 600};
  windows.client_rects[kSurface] = {0, 0, 600, 400};
  windows.positions[kForm] = {0, 0, 200, 100};
  PlaceDialog(windows, kPlaceNormalBand, kForm, kHost);
  ExpectPlace(windows, 200, 150, 400, 250);
}

TEST(PlaceDialog, KnownHostWithoutItsChildIsTheSurfaceItself) {
  TestWindows windows;
  windows.class_names[kHost] = "ZEB QRXDA Class";
  windows.client_rects[kHost] = {0, 0, 800, 600};
  windows.positions[kForm] = {0, 0, 200, 100};
  PlaceDialog(windows, kPlaceNormalBand, kForm, kHost);
  ExpectPlace(windows, 300, 250, 500, 350);
}

TEST(PlaceDialog, Bit2MakesTheWindowAChildOfTheSurface) {
  TestWindows windows;
  windows.class_names[kHost] = "ZEB QRXDA Class";
  windows.children[{kHost, "ViewWndClass"}] = kSurface;
  PlaceDialog(windows, kPlaceNormalBand | kPlaceInsideHost, kForm, kHost);
  EXPECT_THAT(windows.calls, testing::Contains("SetParent 10 21"));
}

TEST(PlaceDialog, WithoutBit2NoParentIsSet) {
  TestWindows windows;
  PlaceDialog(windows, kPlaceNormalBand, kForm, kHost);
  EXPECT_THAT(windows.calls, testing::Not(testing::Contains(testing::StartsWith("SetParent"))));
}

TEST(PlaceDialog, Host1IsNeverAParentButItsClassIsAskedForTheCentring) {
  TestWindows windows;
  PlaceDialog(windows, kPlaceNormalBand | kPlaceInsideHost, kForm, 1);
  EXPECT_THAT(windows.calls, ElementsAre("SetBand 10 normal", "ClassName 1"));
}

TEST(PlaceDialog, HostBelow0IsNoParentButItsClassIsAskedForTheCentring) {
  TestWindows windows;
  PlaceDialog(windows, kPlaceNormalBand | kPlaceInsideHost, kForm, -5);
  EXPECT_THAT(windows.calls, ElementsAre("SetBand 10 normal", "ClassName -5"));
}

TEST(PlaceDialog, ClassNameIsReadThroughABufferOf128Characters) {
  TestWindows windows;
  windows.class_names[kHost] = std::string("ZEB QRXDA Class\0rest", 20);
  windows.children[{kHost, "ViewWndClass"}] = kSurface;
  PlaceDialog(windows, kPlaceNormalBand | kPlaceInsideHost, kForm, kHost);
  EXPECT_THAT(windows.calls, testing::Contains("SetParent 10 21"));
}

TEST(CenterOnHost, Window0IsLeftAlone) {
  TestWindows windows;
  CenterOnHost(windows, 0, 0);
  EXPECT_TRUE(windows.positions.empty());
}

TEST(CenterOnHost, ImpossibleRectangleIsAnOverflow) {
  constexpr long kMost = std::numeric_limits<std::int32_t>::max();
  constexpr long kLeast = std::numeric_limits<std::int32_t>::min();
  struct Case {
    PixelRect area, place;
  };
  const Case cases[] = {
      {{0, 0, 800, 600}, {-2'000'000'000, 0, 2'000'000'000, 10}},
      {{0, 0, 800, 600}, {kLeast, 0, kMost, 10}},   // a width beyond 32 bits
      {{0, kLeast, 800, kMost}, {0, 0, 400, 300}},  // a height beyond 32 bits
  };
  for (const Case& each : cases) {
    TestWindows windows;
    windows.work_area = each.area;
    windows.positions[kForm] = each.place;
    try {
      CenterOnHost(windows, kForm, 0);
      ADD_FAILURE() << "no error";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kOverflow);
    }
    EXPECT_EQ(windows.positions[kForm].Left, each.place.Left);
  }
}

TEST(CenterOnHost, LargestRectanglesAreNoOverflow) {
  constexpr long kMost = std::numeric_limits<std::int32_t>::max();
  TestWindows windows;
  windows.work_area = {0, 0, kMost, kMost};
  windows.positions[kForm] = {0, 0, kMost, 1};
  CenterOnHost(windows, kForm, 0);
  ExpectPlace(windows, 0, kMost / 2, kMost, kMost / 2 + 1);
}

TEST(PlaceAndRaise, PlacesAndThenRaisesOnceMore) {
  TestWindows windows;
  PlaceAndRaise(windows, kForm);
  EXPECT_THAT(windows.calls, ElementsAre("SetBand 10 normal", "SetBand 10 normal"));
}

}  // namespace
}  // namespace logbook
