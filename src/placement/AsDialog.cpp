// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "placement/AsDialog.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "base/RunTimeError.h"
#include "base/UpperCase.h"

namespace logbook {

namespace {

// A host whose real working surface is a child window.
struct HostClass {
  std::string_view host;
  std::string_view surface;
};
constexpr HostClass kHostClasses[] = {
    {"KD-LMR CP Class", "TopViewWndClass"},  // the workstation's control panel
    {"ZEB QRXDA Class", "ViewWndClass"},     // the workstation's data-analysis program
};

constexpr std::intptr_t kHostNeverParent = 1;
constexpr std::size_t kClassNameLimit = 127;  // a buffer of 128 characters with its NUL

std::intptr_t FindSurface(WindowSystem& windows, std::intptr_t host) {
  std::string name = windows.ClassName(host).substr(0, kClassNameLimit);
  name.resize(std::min(name.find('\0'), name.size()));
  for (const HostClass& known : kHostClasses) {
    if (!EqualIgnoringCase(name, known.host)) continue;
    const std::intptr_t child = windows.FindChild(host, std::string(known.surface));
    return child != 0 ? child : host;
  }
  return host;
}

// The value as a 32-bit number, which all arithmetic on rectangles is in: rounded to the nearest
// whole one, ties to the even one.
long Whole(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max()))
    throw RunTimeError(ErrorNumber::kOverflow);
  return static_cast<long>(rounded);
}

long Distance(long from, long to) {
  return Whole(static_cast<double>(to) - static_cast<double>(from));
}

// Where something of this size begins in the middle of a room.
long Middle(long room, long size) {
  return Whole(static_cast<double>(room) / 2 - static_cast<double>(size) / 2);
}

long Sum(long a, long b) {
  return Whole(static_cast<double>(a) + static_cast<double>(b));
}

}  // namespace

void PlaceDialog(WindowSystem& windows, std::uint32_t flags, std::intptr_t form,
                 std::intptr_t host) {
  windows.SetBand(form, (flags & kPlaceNormalBand) != 0 ? WindowSystem::Band::kNormal
                                                        : WindowSystem::Band::kTopmost);
  if (host >= 1 && (flags & kPlaceInsideHost) != 0) ParentToHost(windows, form, host);
  CenterOnHost(windows, form, host);
}

void ParentToHost(WindowSystem& windows, std::intptr_t window, std::intptr_t host) {
  if (window == 0 || host == kHostNeverParent) return;
  windows.SetParent(window, FindSurface(windows, host));
}

void CenterOnHost(WindowSystem& windows, std::intptr_t window, std::intptr_t host) {
  if (window == 0) return;
  const PixelRect area =
      host != 0 ? windows.ClientRect(FindSurface(windows, host)) : windows.WorkArea();
  PixelRect place = windows.NormalPosition(window);
  const long width = Distance(place.Left, place.Right);
  const long height = Distance(place.Top, place.Bottom);
  place.Left = Middle(Distance(area.Left, area.Right), width);
  place.Top = Middle(Distance(area.Top, area.Bottom), height);
  place.Right = Sum(place.Left, width);
  place.Bottom = Sum(place.Top, height);
  windows.SetNormalPosition(window, place);
}

void PlaceAndRaise(WindowSystem& windows, std::intptr_t form) {
  PlaceDialog(windows, kPlaceNormalBand, form, 0);
  windows.SetBand(form, WindowSystem::Band::kNormal);
}

}  // namespace logbook
