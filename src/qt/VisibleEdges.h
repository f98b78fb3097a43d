// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// On grounds that are nearly black the toolkit paints the edges of boxes, fields and buttons darker
// still, and grey words as dark as their ground: an empty tick box cannot be seen. Where the
// colours of the desktop are such, edges are painted anew and grey words become lighter.
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace logbook {

// The least contrast of an edge, or of a word that cannot be used, and its ground.
inline constexpr double kLeastEdgeContrast = 3;

// Whether the toolkit's own edges can hardly be told from their ground in these colours.
bool HidesEdges(const QPalette& palette);

// The colour of edges that can be seen on windows and on fields in these colours.
QColor EdgeColour(const QPalette& palette);

// The palette with words that cannot be used at least kLeastEdgeContrast from their ground where
// they would not be seen at all.
QPalette WithVisibleDisabledText(const QPalette& palette);

// The usual style, with edges that can be seen where it would hide them.
class VisibleEdges : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget = nullptr) const override;
};

}  // namespace logbook
