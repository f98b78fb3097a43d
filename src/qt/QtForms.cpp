// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtForms.h"

#include "base/RunTimeError.h"
#include "qt/frmChangeItem.h"
#include "qt/frmLogEditor.h"
#include "qt/frmLogView.h"
#include "qt/frmMain.h"
#include "records/LogEditor.h"
#include "viewer/LogView.h"

namespace logbook {

QtForms::QtForms(AppState& state) : state_(state) {}

void QtForms::Attach(frmMain& main, Services& services) {
  main_ = &main;
  services_ = &services;
}

void QtForms::UpdateMain() {
  if (main_ != nullptr) main_->Update();
}

Size QtForms::SetMainSize(Size outer) {
  return main_ == nullptr ? outer : main_->SetOuterSize(outer);
}

std::intptr_t QtForms::MainWindowHandle() {
  return main_ == nullptr ? 0 : static_cast<std::intptr_t>(main_->winId());
}

void QtForms::ShowLogEditor(const std::optional<std::string>& caption) {
  if (main_ == nullptr) return;
  LogEditor editor;
  if (caption) editor.Window.Caption = *caption;
  frmLogEditor form(main_, state_, *services_, editor);
  form.Load();
  if (editor.Unloaded) throw RunTimeError(ErrorNumber::kObjectUnloaded);
  form.exec();
}

void QtForms::ShowLogView(const std::string& caption) {
  if (main_ == nullptr) return;
  LogView view;
  frmLogView form(main_, state_, *services_, view);
  form.Load(caption);
  log_view_ = &form;
  form.exec();
  log_view_ = nullptr;
}

void QtForms::ShowLogViewAgain() {
  if (log_view_ == nullptr) return;
  log_view_->show();
  log_view_->raise();
  log_view_->activateWindow();
}

void QtForms::ShowChangeItem() {
  if (main_ == nullptr) return;
  ColumnChooser chooser;
  frmChangeItem form(main_, state_, *services_, chooser);
  form.Load();
  change_item_ = &form;
  form.exec();
  change_item_ = nullptr;
}

bool QtForms::ChangeItemVisible() {
  return change_item_ != nullptr && change_item_->isVisible();
}

}  // namespace logbook
