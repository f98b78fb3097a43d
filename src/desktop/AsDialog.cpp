// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "desktop/AsDialog.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "platform/RunTimeError.h"

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

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

std::intptr_t FindSurface(WindowSystem& windows, std::intptr_t host) {
  std::string name = windows.ClassName(host).substr(0, kClassNameLimit);
  name = name.substr(0, name.find('\0'));
  for (const HostClass& known : kHostClasses) {
    if (!EqualIgnoringCase(name, known.host)) continue;
    const std::intptr_t child = windows.FindChild(host, std::string(known.surface));
    return child != 0 ? child : host;
  }
  return host;
}

// Rounds to the nearest whole number, ties to the even one.
long RoundToEven(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max()))
    throw RunTimeError(ErrorNumber::kOverflow);
  return static_cast<long>(rounded);
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
  const double width = static_cast<double>(place.Right) - static_cast<double>(place.Left);
  const double height = static_cast<double>(place.Bottom) - static_cast<double>(place.Top);
  place.Left = RoundToEven(static_cast<double>(area.Right - area.Left) / 2 - width / 2);
  place.Top = RoundToEven(static_cast<double>(area.Bottom - area.Top) / 2 - height / 2);
  place.Right = place.Left + static_cast<long>(width);
  place.Bottom = place.Top + static_cast<long>(height);
  windows.SetNormalPosition(window, place);
}

void PlaceAndRaise(WindowSystem& windows, std::intptr_t form) {
  PlaceDialog(windows, kPlaceNormalBand, form, 0);
  windows.SetBand(form, WindowSystem::Band::kNormal);
}

}  // namespace logbook
