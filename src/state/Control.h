// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the program knows of a control or window, apart from the toolkit: the forms show it and
// the routines of the program work on it. Positions and sizes are in twips (1/1440 inch), relative
// to the control's container.
#pragma once

#include <string>

namespace logbook {

struct Font {
  std::string Name;
  double Size = 0;  // points
};

struct Rect {
  int Left = 0, Top = 0, Width = 0, Height = 0;
};

struct Size {
  int Width = 0, Height = 0;
};

struct Control {
  std::string Name;  // the object name
  Rect Place{};
  std::string Caption{};  // UTF-8; an ampersand before a letter marks the access key
  Font TextFont{};
  bool Enabled = true;
  bool Visible = true;
};

}  // namespace logbook
