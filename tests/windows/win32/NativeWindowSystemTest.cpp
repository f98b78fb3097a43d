// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Placing inside a host, by the platform's calls on real windows.

#include "qt/win32/NativeWindowSystem.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "placement/AsDialog.h"

namespace logbook::windows_test {
namespace {

constexpr char kPlain[] = "A window of the test";
constexpr char kDataAnalysis[] = "ZEB QRXDA Class", kView[] = "ViewWndClass";

std::intptr_t NumberOf(HWND window) {
  return reinterpret_cast<std::intptr_t>(window);
}

class NativeWindowSystemTest : public testing::Test {
 protected:
  NativeWindowSystemTest() {
    for (const char* name : {kPlain, kDataAnalysis, kView}) {
      WNDCLASSA known = {};
      known.lpfnWndProc = DefWindowProcA;
      known.hInstance = GetModuleHandleA(nullptr);
      known.lpszClassName = name;
      RegisterClassA(&known);
    }
  }
  ~NativeWindowSystemTest() override {
    for (const HWND window : {form_, host_}) {
      if (window != nullptr) DestroyWindow(window);
    }
  }

  HWND MakeHost(const char* class_name) { return host_ = Make(class_name, nullptr, 0, 600, 400); }
  HWND MakeForm() { return form_ = Make(kPlain, nullptr, 0, 200, 100); }
  static HWND MakeInside(HWND host, const char* class_name) {
    return Make(class_name, host, WS_CHILD | WS_VISIBLE, 300, 200);
  }
  // Left, top, width and height of a window's normal place.
  static std::vector<LONG> PlaceOf(HWND window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    const RECT& place = placement.rcNormalPosition;
    return {place.left, place.top, place.right - place.left, place.bottom - place.top};
  }

  NativeWindowSystem windows;

 private:
  static HWND Make(const char* class_name, HWND parent, DWORD style, int width, int height) {
    const DWORD kind = parent == nullptr ? WS_POPUP : style;
    return CreateWindowA(class_name, "", kind, 10, 20, width, height, parent, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
  }

  HWND form_ = nullptr;
  HWND host_ = nullptr;
};

TEST_F(NativeWindowSystemTest, AWindowInsideAKnownHostStandsInTheMiddleOfItsSurface) {
  const HWND host = MakeHost(kDataAnalysis);
  const HWND surface = MakeInside(host, kView);
  const HWND form = MakeForm();
  PlaceDialog(windows, kPlaceNormalBand | kPlaceInsideHost, NumberOf(form), NumberOf(host));
  EXPECT_EQ(GetAncestor(form, GA_PARENT), surface);
  EXPECT_EQ(PlaceOf(form), (std::vector<LONG>{50, 50, 200, 100}));
  EXPECT_FALSE(IsWindowVisible(form));
}

TEST_F(NativeWindowSystemTest, AKnownHostWithoutItsChildIsTheSurfaceItself) {
  const HWND host = MakeHost(kDataAnalysis);
  const HWND form = MakeForm();
  PlaceDialog(windows, kPlaceNormalBand | kPlaceInsideHost, NumberOf(form), NumberOf(host));
  EXPECT_EQ(GetAncestor(form, GA_PARENT), host);
  EXPECT_EQ(PlaceOf(form), (std::vector<LONG>{200, 150, 200, 100}));
}

TEST_F(NativeWindowSystemTest, TheChildOfAnotherHostIsNotLookedFor) {
  const HWND host = MakeHost(kPlain);
  MakeInside(host, kView);
  const HWND form = MakeForm();
  PlaceDialog(windows, kPlaceNormalBand, NumberOf(form), NumberOf(host));
  EXPECT_EQ(GetAncestor(form, GA_PARENT), GetDesktopWindow());
  EXPECT_EQ(PlaceOf(form), (std::vector<LONG>{200, 150, 200, 100}));
}

TEST_F(NativeWindowSystemTest, TheBandIsTopmostUnlessItIsNormal) {
  const HWND form = MakeForm();
  const auto is_topmost = [form] {
    return (GetWindowLongA(form, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  };
  PlaceDialog(windows, 0, NumberOf(form), 0);
  EXPECT_TRUE(is_topmost());
  const HWND other = MakeHost(kPlain);
  PlaceDialog(windows, kPlaceNormalBand, NumberOf(other), 0);
  EXPECT_FALSE((GetWindowLongA(other, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0);
}

TEST_F(NativeWindowSystemTest, WithoutAParentNoChildIsFound) {
  MakeHost(kDataAnalysis);
  EXPECT_EQ(windows.FindChild(0, kDataAnalysis), 0);
  EXPECT_EQ(windows.ClassName(0), "");
}

}  // namespace
}  // namespace logbook::windows_test
