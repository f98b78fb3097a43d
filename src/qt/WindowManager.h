// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the toolkit does not ask of the window manager, or asks too late: the frame of a window
// before it is shown, a place for the frame itself, no entry in the task bar. Under a window system
// that has no such partner nothing is known and nothing happens. The calls make the window's native
// one if it has none yet.
#pragma once

#include <QMargins>
#include <QPoint>
#include <optional>

class QWidget;

namespace logbook {

// The widths of the frame that the window has or, not shown yet, would have, in the toolkit's
// pixels; waits for the answer, a second at most. Nothing if nobody can tell.
std::optional<QMargins> FrameByWindowManager(const QWidget& window);

// Has a shown window moved so that the upper left corner of its frame is here, in the toolkit's
// pixels, wherever the toolkit believes it to be. False if nobody takes such orders.
bool MoveByWindowManager(const QWidget& window, QPoint corner);

// Tells the window system the size of a window that is not shown yet, which the toolkit holds back,
// where windows are placed by what that system knows of them.
void TellSize(const QWidget& window);

// Asks for no entry in the task bar. To be called before the window is shown.
void LeaveOutOfTaskBar(const QWidget& window);

}  // namespace logbook
