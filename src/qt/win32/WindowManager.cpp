// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/WindowManager.h"

#include <QWidget>
#include <QWindow>
#include <cmath>

#include "base/win32/System.h"

namespace logbook {
namespace {

HWND WindowOf(const QWidget& window) {
  return reinterpret_cast<HWND>(window.winId());
}

}  // namespace

// The system tells the frame of any style of window.
std::optional<QMargins> FrameByWindowManager(const QWidget& window) {
  const HWND handle = WindowOf(window);
  RECT rect = {};
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(handle, GWL_STYLE));
  const auto extended = static_cast<DWORD>(GetWindowLongPtrW(handle, GWL_EXSTYLE));
  if (!AdjustWindowRectEx(&rect, style, FALSE, extended)) return std::nullopt;
  const double ratio = window.devicePixelRatioF();
  const auto width = [ratio](LONG dots) { return static_cast<int>(std::lround(dots / ratio)); };
  return QMargins(width(-rect.left), width(-rect.top), width(rect.right), width(rect.bottom));
}

bool MoveByWindowManager(const QWidget& window, QPoint corner) {
  if (!window.isVisible()) return false;
  const double ratio = window.devicePixelRatioF();
  return SetWindowPos(WindowOf(window), nullptr, static_cast<int>(std::lround(corner.x() * ratio)),
                      static_cast<int>(std::lround(corner.y() * ratio)), 0, 0,
                      SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE) != 0;
}

void TellSize(const QWidget& window) {
  window.winId();
  window.windowHandle()->resize(window.size());
}

// A window that belongs to another has no entry unless it asks for one.
void LeaveOutOfTaskBar(const QWidget& window) {
  const HWND handle = WindowOf(window);
  SetWindowLongPtrW(
      handle, GWL_EXSTYLE,
      GetWindowLongPtrW(handle, GWL_EXSTYLE) & ~static_cast<LONG_PTR>(WS_EX_APPWINDOW));
}

}  // namespace logbook
