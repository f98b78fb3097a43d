// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What colours a place on the screen has.
#pragma once

#include <QColor>
#include <QImage>
#include <map>

#include "Desktop.h"
#include "qt/SelectionColours.h"

namespace logbook::e2e {

// What people with weak eyes need to read words.
inline constexpr double kReadable = 4.5;

struct Painted {
  QColor ground, text;
  double contrast() const { return Contrast(text, ground); }
};

// A picture of the whole screen.
inline QImage ScreenPicture(Desktop& desktop) {
  const std::string file = desktop.NewFile("screen.png");
  desktop.TakePicture(file);
  return QImage(QString::fromStdString(file));
}

// The colour that most of a place has, and the one that stands out most from it.
inline Painted ColoursAt(const QImage& screen, const Place& place) {
  const QRect part = QRect(place.x, place.y, place.width, place.height) & screen.rect();
  std::map<QRgb, int> counts;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x) ++counts[screen.pixel(x, y)];
  Painted painted;
  int most = 0;
  for (const auto& [colour, count] : counts) {
    if (count <= most) continue;
    most = count;
    painted.ground = QColor(colour);
  }
  painted.text = painted.ground;
  for (const auto& [colour, count] : counts)
    if (Contrast(QColor(colour), painted.ground) > painted.contrast()) painted.text = colour;
  return painted;
}

}  // namespace logbook::e2e
