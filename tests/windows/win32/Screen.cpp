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

// The pixels of a rectangle of the screen, from its lowest line upwards: three bytes each, lines
// filled up to whole words.
std::string PixelsOf(const RECT& place, BITMAPINFOHEADER& format) {
  format.biSize = sizeof format;
  format.biWidth = place.right - place.left;
  format.biHeight = place.bottom - place.top;
  format.biPlanes = 1;
  format.biBitCount = 24;
  format.biSizeImage = static_cast<DWORD>((format.biWidth * 3 + 3) / 4 * 4 * format.biHeight);
  const HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, format.biWidth, format.biHeight);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, format.biWidth, format.biHeight, screen, place.left, place.top, SRCCOPY);
  SelectObject(memory, before);
  std::string pixels(format.biSizeImage, '\0');
  GetDIBits(memory, bitmap, 0, static_cast<UINT>(format.biHeight), pixels.data(),
            reinterpret_cast<BITMAPINFO*>(&format), DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return pixels;
}

}  // namespace

HWND FindWindowOf(const Program& program,
                  const std::function<bool(const std::string&)>& has_title) {
  Search search = {program.Id(), has_title};
  EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

int DotsPerInch() {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dots;
}

std::string TitleOf(HWND window) {
  std::array<char, 256> title = {};
  GetWindowTextA(window, title.data(), static_cast<int>(title.size()));
  return title.data();
}

void Click(HWND window, Spot spot) {
  RECT client = {};
  GetClientRect(window, &client);
  const auto dots = [](int place, LONG size) {
    const int scaled = place * DotsPerInch() / 96;
    return scaled < 0 ? size + scaled : scaled;
  };
  const LPARAM place = MAKELPARAM(dots(spot.x, client.right), dots(spot.y, client.bottom));
  PostMessageA(window, WM_MOUSEMOVE, 0, place);
  PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageA(window, WM_LBUTTONUP, 0, place);
}

std::string PictureOf(HWND window) {
  RECT place = {};
  GetWindowRect(window, &place);
  BITMAPINFOHEADER format = {};
  const std::string pixels = PixelsOf(place, format);
  if (pixels.find_first_not_of(pixels[0]) == std::string::npos) return {};
  BITMAPFILEHEADER head = {};
  head.bfType = 0x4D42;  // "BM"
  head.bfOffBits = sizeof head + sizeof format;
  head.bfSize = head.bfOffBits + format.biSizeImage;
  return std::string(reinterpret_cast<const char*>(&head), sizeof head) +
         std::string(reinterpret_cast<const char*>(&format), sizeof format) + pixels;
}

void PressKey(HWND window, int key) {
  PostMessageA(window, WM_KEYDOWN, key, 1);
  PostMessageA(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

}  // namespace logbook::windows_test
