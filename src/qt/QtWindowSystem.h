// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Placement of the program's own windows. A window handle is the toolkit's window id of a widget
// of this process; its class name is the widget's property "windowClass", or its object name where
// there is none.
#pragma once

#include <QMargins>

#include "state/Services.h"

class QWidget;

namespace logbook {

// Width of the window frame on each side, in pixels: what the window manager tells, or what the
// toolkit reports of a shown window, or a usual frame where nobody knows it yet.
QMargins FrameOf(const QWidget& window);

class QtWindowSystem : public WindowSystem {
 public:
  void SetBand(std::intptr_t window, Band band) override;
  std::string ClassName(std::intptr_t window) override;
  std::intptr_t FindChild(std::intptr_t parent, const std::string& class_name) override;
  void SetParent(std::intptr_t window, std::intptr_t parent) override;
  PixelRect ClientRect(std::intptr_t window) override;
  PixelRect WorkArea() override;
  // No window: the screen itself owns what belongs to none.
  std::intptr_t DesktopWindow() override { return 0; }
  PixelRect NormalPosition(std::intptr_t window) override;
  void SetNormalPosition(std::intptr_t window, const PixelRect& place) override;
};

}  // namespace logbook
