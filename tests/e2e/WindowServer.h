// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the window server knows of the windows on a desktop, asked without tools: quick, and the
// mouse stays where it is. A window that has gone gives empty answers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Desktop.h"

struct xcb_connection_t;

namespace logbook::e2e {

class WindowServer {
 public:
  explicit WindowServer(const Desktop& desktop);
  ~WindowServer();
  WindowServer(const WindowServer&) = delete;
  WindowServer& operator=(const WindowServer&) = delete;

  // The window on the screen with the frame around it; empty for one that is not shown.
  Place Outer(WindowId window) const;
  // The window alone, likewise.
  Place Inner(WindowId window) const;
  // True if the window manager keeps this state of the window, "_NET_WM_STATE_SKIP_TASKBAR" say.
  bool HasState(WindowId window, const std::string& state) const;
  // The widths in which the window offers its icon, in the order that it gives them.
  std::vector<int> IconWidths(WindowId window) const;
  // The windows that the window manager looks after.
  std::vector<WindowId> Managed() const;
  // The window that has the keyboard, 0 for none.
  WindowId Active() const;
  // All windows of the screen's first level, framed or not, shown or not.
  std::vector<WindowId> FirstLevel() const;

 private:
  std::vector<std::uint32_t> Numbers(WindowId window, const std::string& property) const;
  std::uint32_t Atom(const std::string& name) const;

  xcb_connection_t* connection_;
  std::uint32_t root_ = 0;
};

}  // namespace logbook::e2e
