// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/win32/NativeWindowSystem.h"

#include <array>

#include "base/win32/System.h"

namespace logbook {
namespace {

constexpr int kLongestClassName = 128;

HWND WindowOf(std::intptr_t window) {
  return reinterpret_cast<HWND>(window);
}

std::intptr_t NumberOf(HWND window) {
  return reinterpret_cast<std::intptr_t>(window);
}

PixelRect Edges(const RECT& rect) {
  return {rect.left, rect.top, rect.right, rect.bottom};
}

WINDOWPLACEMENT PlacementOf(HWND window) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof placement;
  GetWindowPlacement(window, &placement);
  return placement;
}

}  // namespace

void NativeWindowSystem::SetBand(std::intptr_t window, Band band) {
  ::SetWindowPos(WindowOf(window), band == Band::kTopmost ? HWND_TOPMOST : HWND_TOP, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE);
}

std::string NativeWindowSystem::ClassName(std::intptr_t window) {
  std::array<char, kLongestClassName> name = {};
  GetClassNameA(WindowOf(window), name.data(), kLongestClassName);
  return name.data();
}

std::intptr_t NativeWindowSystem::FindChild(std::intptr_t parent, const std::string& class_name) {
  // Without a parent the system would look among all windows of the desktop.
  if (parent == 0) return 0;
  return NumberOf(FindWindowExA(WindowOf(parent), nullptr, class_name.c_str(), nullptr));
}

void NativeWindowSystem::SetParent(std::intptr_t window, std::intptr_t parent) {
  ::SetParent(WindowOf(window), WindowOf(parent));
}

PixelRect NativeWindowSystem::ClientRect(std::intptr_t window) {
  RECT rect = {};
  GetClientRect(WindowOf(window), &rect);
  return Edges(rect);
}

PixelRect NativeWindowSystem::WorkArea() {
  RECT rect = {};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &rect, 0);
  return Edges(rect);
}

std::intptr_t NativeWindowSystem::DesktopWindow() {
  return NumberOf(GetDesktopWindow());
}

PixelRect NativeWindowSystem::NormalPosition(std::intptr_t window) {
  return Edges(PlacementOf(WindowOf(window)).rcNormalPosition);
}

void NativeWindowSystem::SetNormalPosition(std::intptr_t window, const PixelRect& place) {
  WINDOWPLACEMENT placement = PlacementOf(WindowOf(window));
  placement.rcNormalPosition = {place.Left, place.Top, place.Right, place.Bottom};
  if (!IsWindowVisible(WindowOf(window))) placement.showCmd = SW_HIDE;
  SetWindowPlacement(WindowOf(window), &placement);
}

}  // namespace logbook
