// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The windows of the program on the toolkit.
#pragma once

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

class frmChangeItem;
class frmLogView;
class frmMain;

class QtForms : public Forms {
 public:
  explicit QtForms(AppState& state);

  // Names the main window and the services that the forms hand on. Both are made after this object
  // and outlive it. Before this call all routines do nothing.
  void Attach(frmMain& main, Services& services);

  void UpdateMain() override;
  Size SetMainSize(Size outer) override;
  std::intptr_t MainWindowHandle() override;

  void ShowLogEditor(const std::optional<std::string>& caption) override;
  void ShowLogView(const std::string& caption) override;
  void ShowLogViewAgain() override;
  void ShowChangeItem() override;
  bool ChangeItemVisible() override;

 private:
  AppState& state_;
  frmMain* main_ = nullptr;
  Services* services_ = nullptr;
  frmLogView* log_view_ = nullptr;        // while it is shown
  frmChangeItem* change_item_ = nullptr;  // likewise
};

}  // namespace logbook
