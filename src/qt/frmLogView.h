// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The window in which one log is read. It shows a LogView and hands its commands to the routines of
// viewer/LogView.h. Escape presses Exit; the close box closes without it.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <vector>

#include "viewer/LogView.h"

class QAction;
class QMenu;
class QMenuBar;
class QPlainTextEdit;
class QPushButton;
class QTimer;

namespace logbook {

class ColumnKeeper;

class frmLogView : public QDialog {
 public:
  // `view` outlives the window and says after each command whether the window has unloaded.
  frmLogView(QWidget* owner, AppState& state, Services& services, LogView& view);

  // The load step, then the caption in place of the plain one, then shows what they made. The
  // window stays hidden. Raises what LoadLogView raises.
  void Load(const std::string& caption);

  // Presses Exit.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  // A pane, what keeps its columns, and the part of its text that is still to come.
  struct Pane {
    QPlainTextEdit* box;
    ColumnKeeper* columns;
    QTimer* pouring;
    QString rest;
    TextLines more{};  // behind the rest
  };
  struct Entry {
    MenuEntry LogView::*entry;
    QAction* action;
  };

  Pane MakePane();
  void MakeMenus();
  void AddCommand(QWidget* menu, MenuEntry LogView::*entry);
  QMenu* AddMenu(MenuEntry LogView::*entry);
  void Update();
  void UpdatePane(const Pane& pane, const Control& control);
  // Shows a text from its beginning, and what is behind it. Of a long one the rest follows in
  // slices, between events, so that the window never stands still.
  void ShowText(Pane& pane, const std::string& text, TextLines more = {});
  void Pour(Pane& pane);
  // A text as the code page holds it, which is what the file that goes with it holds.
  QString OnPage(const std::string& text) const;
  // Runs a command in the frame around all handlers and closes the window if it has unloaded.
  void Run(const std::function<void()>& command);
  void RunView(const ViewCommand& command);

  AppState& state_;
  Services& services_;
  LogView& view_;
  QMenuBar* menus_;
  QWidget* client_;  // the window below its menu bar
  Pane txtReport_;
  Pane txtComment_;
  QPushButton* cmdPrint_;
  QPushButton* cmdExit_;
  QPushButton* cmdHelp_;
  std::vector<Entry> entries_;
};

}  // namespace logbook
