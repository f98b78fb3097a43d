// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Windows of another program, and a mouse on them, by the platform's own calls.
#pragma once

#include <functional>
#include <string>

#include "win32/Program.h"

namespace logbook::windows_test {

// A place in a window's client area in pixels of 96 to the inch. Negative numbers count from the
// right or lower edge.
struct Spot {
  int x = 0, y = 0;
};

// The window of the program that is shown, takes input and has such a title; null if there is none.
HWND FindWindowOf(const Program& program, const std::function<bool(const std::string&)>& has_title);

std::string TitleOf(HWND window);

int DotsPerInch();

// Presses and releases the left button there. The window does so when it comes to it.
void Click(HWND window, Spot spot);

// What the screen shows where the window stands, as a file of pixels ("BMP"); empty while it is of
// one colour, so that nothing can have been painted yet.
std::string PictureOf(HWND window);

// Presses and releases a key in the window that has the focus.
void PressKey(HWND window, int key);

}  // namespace logbook::windows_test
