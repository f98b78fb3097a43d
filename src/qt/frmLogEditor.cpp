// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmLogEditor.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "help/arvbsub.h"
#include "placement/AsDialog.h"
#include "qt/FrameOnTop.h"
#include "qt/Twips.h"
#include "qt/Widgets.h"
#include "qt/WindowManager.h"
#include "resources/Resources.h"
#include "shell/StartUp.h"

namespace logbook {
namespace {

std::array<QCheckBox*, LogEditor::kChecks> NewChecks(QWidget* frame) {
  std::array<QCheckBox*, LogEditor::kChecks> checks{};
  for (QCheckBox*& check : checks) check = new QCheckBox(frame);
  return checks;
}

}  // namespace

frmLogEditor::frmLogEditor(QWidget* owner, AppState& state, Services& services, LogEditor& editor)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      state_(state),
      services_(services),
      editor_(editor),
      Frame1_(new QGroupBox(this)),
      Check1_(NewChecks(Frame1_)),
      Label1_(new QLabel(this)),
      txtComment_(new QPlainTextEdit(this)),
      cmdOK_(new QPushButton(this)),
      cmdCancel_(new QPushButton(this)),
      cmdHelp_(new QPushButton(this)),
      comment_(*txtComment_, editor.txtComment, *state.machine.code_page) {
  setWindowModality(Qt::WindowModal);  // help belongs to no window and stays usable
  setFixedSize(Pixels(editor.Window.Place.Width), Pixels(editor.Window.Place.Height));
  txtComment_->setTabChangesFocus(true);
  txtComment_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
  txtComment_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  txtComment_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  KeepFrameOnTop(txtComment_);
  Label1_->setBuddy(txtComment_);
  MakeCommands();
  Update();
}

void frmLogEditor::MakeCommands() {
  for (std::size_t i = 0; i < Check1_.size(); ++i) {
    connect(Check1_[i], &QCheckBox::toggled, this,
            [this, i](bool ticked) { editor_.Ticked[i] = ticked; });
  }
  for (QPushButton* button : {cmdOK_, cmdCancel_, cmdHelp_}) button->setAutoDefault(false);
  GiveHelpKey(cmdHelp_);
  connect(cmdOK_, &QPushButton::clicked, this,
          [this] { Run([this] { LogEditorOK(state_, editor_, comment_); }); });
  connect(cmdCancel_, &QPushButton::clicked, this,
          [this] { Run([this] { LogEditorCancel(state_, services_, editor_); }); });
  connect(cmdHelp_, &QPushButton::clicked, this,
          [this] { Run([this] { ShowHelpTopic(state_, services_, HelpTopic::kEditor); }); });
}

void frmLogEditor::Load() {
  LoadLogEditor(state_, editor_, comment_);
  Update();
}

void frmLogEditor::Update() {
  ApplyControl(this, editor_.Window);
  ApplyControl(Frame1_, editor_.Frame1);
  for (std::size_t i = 0; i < Check1_.size(); ++i) {
    ApplyControl(Check1_[i], editor_.Check1[i]);
    Check1_[i]->setChecked(editor_.Ticked[i]);
  }
  ApplyControl(Label1_, editor_.Label1);
  ApplyControl(txtComment_, editor_.txtComment);
  txtComment_->setAccessibleName(ToQt(LoadResString(123)));
  ApplyControl(cmdOK_, editor_.cmdOK);
  ApplyControl(cmdCancel_, editor_.cmdCancel);
  ApplyControl(cmdHelp_, editor_.cmdHelp);
}

void frmLogEditor::Run(const std::function<void()>& command) {
  RunHandler(services_, command);
  if (editor_.Unloaded) done(QDialog::Accepted);
}

void frmLogEditor::reject() {
  cmdCancel_->click();
}

void frmLogEditor::showEvent(QShowEvent* event) {
  LeaveOutOfTaskBar(*this);
  QDialog::showEvent(event);
}

void frmLogEditor::closeEvent(QCloseEvent* event) {
  event->ignore();
}

void frmLogEditor::keyPressEvent(QKeyEvent* event) {
  if (!EnterPressesButton(this, event)) QDialog::keyPressEvent(event);
}

bool frmLogEditor::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    RunHandler(services_,
               [this] { PlaceAndRaise(services_.windows, static_cast<std::intptr_t>(winId())); });
  }
  return QDialog::event(event);
}

}  // namespace logbook
