// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Placement of windows by the platform's own calls, so that a window of the host, which is none of
// this process, can be the surface too. Pixels are those of the system.
#pragma once

#include "state/Services.h"

namespace logbook {

class NativeWindowSystem : public WindowSystem {
 public:
  void SetBand(std::intptr_t window, Band band) override;
  std::string ClassName(std::intptr_t window) override;
  std::intptr_t FindChild(std::intptr_t parent, const std::string& class_name) override;
  void SetParent(std::intptr_t window, std::intptr_t parent) override;
  PixelRect ClientRect(std::intptr_t window) override;
  PixelRect WorkArea() override;
  std::intptr_t DesktopWindow() override;
  PixelRect NormalPosition(std::intptr_t window) override;
  // A window that is not shown yet stays so.
  void SetNormalPosition(std::intptr_t window, const PixelRect& place) override;
};

}  // namespace logbook
