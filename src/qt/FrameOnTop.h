// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The border of a box on screens where a pixel of the toolkit is not a whole number of dots: what
// the box holds is rounded up to whole dots and would lie over the border.
#pragma once

class QFrame;

namespace logbook {

// Draws the border of a box once more, above all that is in the box. Nothing changes on screens
// where a pixel is a whole number of dots.
void KeepFrameOnTop(QFrame* box);

}  // namespace logbook
