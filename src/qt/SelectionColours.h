// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The colours of what is selected, in lists, texts and menus: those of the desktop, unless they
// cannot be read.
#pragma once

#include <QColor>
#include <QPalette>

namespace logbook {

// The least contrast of a text and its ground. People with weak eyes can do with 4.5; small letters
// are painted paler than their colour, and need more for that.
inline constexpr double kLeastContrast = 6;

// From 1, equal colours, to 21, black and white: the ratio of their relative luminances.
double Contrast(const QColor& a, const QColor& b);

// The palette with selected text and its ground at least kLeastContrast apart, in each state of a
// window. Colours that are keep their places; of others, the text becomes black or white, whichever
// it is nearer to, and the ground moves away from it as far as is needed.
QPalette WithReadableSelection(const QPalette& palette);

}  // namespace logbook
