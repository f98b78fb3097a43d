// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The dialog that asks where a file is to be saved: a QFileDialog with the object name
// "SaveDialog", drawn by the toolkit itself so that it looks and behaves alike on every desktop.
#pragma once

#include "base/Machine.h"
#include "state/Services.h"

namespace logbook {

inline constexpr char kSaveDialogName[] = "SaveDialog";

class QtSaveDialog : public SaveDialog {
 public:
  // The messages tell of a folder that does not exist.
  QtSaveDialog(const Machine& machine, MessageBoxes& messages)
      : machine_(machine), messages_(messages) {}

  // Opens in the user's home folder if the initial folder does not exist. A file below a drive
  // comes back with its drive, any other as a path from the root.
  std::optional<std::string> Show(const SaveRequest& request) override;

 private:
  const Machine& machine_;
  MessageBoxes& messages_;
};

}  // namespace logbook
