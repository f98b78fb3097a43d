// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The dialog that finishes or cancels a new log. It shows a LogEditor and hands its commands to
// the routines of records/LogEditor.h. OK and Cancel are the only ways out; Escape presses Cancel,
// and Enter makes a new line in the comment. Tab goes through the tick boxes, the comment and the
// buttons. The dialog has no entry in the task bar.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "qt/QtWrappedTextBox.h"
#include "records/LogEditor.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace logbook {

class frmLogEditor : public QDialog {
 public:
  // `editor` outlives the dialog and says after each command whether the dialog has unloaded.
  frmLogEditor(QWidget* owner, AppState& state, Services& services, LogEditor& editor);

  // The load step, then shows what it made. The dialog stays hidden.
  void Load();

  // Presses Cancel.
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void MakeCommands();
  void Update();
  // Runs a command in the frame around all handlers and closes the dialog if it has unloaded.
  void Run(const std::function<void()>& command);

  AppState& state_;
  Services& services_;
  LogEditor& editor_;
  QGroupBox* Frame1_;  // the controls are made in tab order
  std::array<QCheckBox*, LogEditor::kChecks> Check1_;
  QLabel* Label1_;
  QPlainTextEdit* txtComment_;
  QPushButton* cmdOK_;
  QPushButton* cmdCancel_;
  QPushButton* cmdHelp_;
  QtWrappedTextBox comment_;
};

}  // namespace logbook
