// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The dialog that chooses what a value column of the list shows. It shows a ColumnChooser and
// hands its commands to the routines of loglist/ColumnChooser.h. Escape and the close box press
// Cancel.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "loglist/ColumnChooser.h"

class QGroupBox;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace logbook {

class frmChangeItem : public QDialog {
 public:
  // `chooser` outlives the dialog and says after each command whether the dialog has unloaded.
  frmChangeItem(QWidget* owner, AppState& state, Services& services, ColumnChooser& chooser);

  // The load step, then shows what it made. The dialog stays hidden.
  void Load();

  // Presses Cancel.
  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;
  // A double click anywhere in the list presses OK, on an empty part of it too.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ConnectOptions();
  void ConnectCommands();
  void SetTabOrder();
  void Update();
  void UpdateList();
  // Runs a command in the frame around all handlers and closes the dialog if it has unloaded.
  void Run(const std::function<void()>& command);

  AppState& state_;
  Services& services_;
  ColumnChooser& chooser_;
  QGroupBox* Frame1_;
  std::array<QRadioButton*, 3> Options_;
  QListWidget* List1_;
  QPushButton* cmdOK_;
  QPushButton* cmdCancel_;
  QPushButton* cmdHelp_;
};

}  // namespace logbook
