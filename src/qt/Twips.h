// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Twips and pixels. Every place and size in the program's tables is in twips, 1440 to the inch;
// the window system reckons in pixels, 96 to the inch whatever the screen (a screen of higher
// density is scaled as a whole). So 15 twips are a pixel.
#pragma once

namespace logbook {

inline constexpr int kTwipsPerPixel = 1440 / 96;

// Pixels for twips, rounded to the nearest one, halves up (towards the larger number).
constexpr int Pixels(int twips) {
  const int doubled = 2 * twips + kTwipsPerPixel;
  const int quotient = doubled / (2 * kTwipsPerPixel);
  return doubled < 0 && doubled % (2 * kTwipsPerPixel) != 0 ? quotient - 1 : quotient;
}

// Twips for pixels, exact.
constexpr int TwipsOf(int pixels) {
  return pixels * kTwipsPerPixel;
}

}  // namespace logbook
