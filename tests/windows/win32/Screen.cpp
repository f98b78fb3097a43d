// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "win32/Screen.h"

#include <array>

namespace logbook::windows_test {
namespace {

struct Search {
  DWORD process = 0;
  const std::function<bool(const std::string&)>& has_title;
  HWND found = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  const bool fits = process == search.process && IsWindowVisible(window) &&
                    IsWindowEnabled(window) && search.has_title(TitleOf(window));
  if (fits) search.found = window;
  return !fits;
}

}  // namespace

HWND FindWindowOf(const Program& program,
                  const std::function<bool(const std::string&)>& has_title) {
  Search search = {program.Id(), has_title};
  EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::string TitleOf(HWND window) {
  std::array<char, 256> title = {};
  GetWindowTextA(window, title.data(), static_cast<int>(title.size()));
  return title.data();
}

void Click(HWND window, Spot spot) {
  RECT client = {};
  GetClientRect(window, &client);
  const auto dots = [](int place, LONG size) { return place < 0 ? size + place : place; };
  const LPARAM place = MAKELPARAM(dots(spot.x, client.right), dots(spot.y, client.bottom));
  PostMessageA(window, WM_MOUSEMOVE, 0, place);
  PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageA(window, WM_LBUTTONUP, 0, place);
}

void PressKey(HWND window, int key) {
  PostMessageA(window, WM_KEYDOWN, key, 1);
  PostMessageA(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

}  // namespace logbook::windows_test
