// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The one door of message boxes. A box is a QMessageBox with the object name "MessageBox" and
// buttons named "OK", "Yes" and "No".
#pragma once

#include "state/Services.h"

namespace logbook {

inline constexpr char kMessageBoxName[] = "MessageBox";

class QtMessageBoxes : public MessageBoxes {
 public:
  // The text is shown as it stands, markup and ampersands included. The box belongs to the window
  // that the user works in, or to none. The first button is the default one.
  MessageAnswer Show(const Message& message) override;
};

}  // namespace logbook
