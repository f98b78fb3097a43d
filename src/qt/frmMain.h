// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The main window: the list of logs and the row of buttons. It shows AppState::frmMain and
// AppState::ListView1 and hands every command to the routine of its name.
//
// Keys: Tab goes from the list through the buttons; Enter in the list selects the current row and
// views its log like a double click; Alt+3 to Alt+8 stand for a click on the header of that column.
#pragma once

#include <QWidget>
#include <array>
#include <functional>

#include "state/AppState.h"
#include "state/Services.h"

class QPushButton;
class QTreeView;

namespace logbook {

class ListViewModel;

class frmMain : public QWidget {
 public:
  frmMain(AppState& state, Services& services);

  // Brings the window to what the state says: captions, fonts, places, enabled states, rows,
  // selection and current row. While the window is not available it takes no input.
  void Update();

  // Fixes the window's size. Outer size in twips, frame included; returns the inner size.
  Size SetOuterSize(Size outer);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MakeList();
  void MakeKeys();
  void MakeCommands();
  // A control that is disabled while it has the focus takes the focus with it and has it again when
  // it is enabled: a second key stroke on cmdRecord must not press cmdExit.
  void KeepFocus(QWidget* had_focus);
  void ShowSelection();
  void TakeSelection();
  // Runs a handler in the frame around all handlers; not while the window is not available.
  void Run(const std::function<void()>& handler);

  AppState& state_;
  Services& services_;
  ListViewModel* model_;
  QTreeView* ListView1_;
  QPushButton* cmdRecord_;
  QPushButton* cmdBrowse_;
  QPushButton* cmdDelete_;
  QPushButton* cmdPrint_;
  QPushButton* cmdExit_;
  QPushButton* cmdHelp_;
  QPushButton* cmdArchive_;
  QWidget* lost_focus_ = nullptr;  // disabled while it had the focus
  bool updating_ = false;          // the view follows the state, not the user
};

}  // namespace logbook
