// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmChangeItem.h"

#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "placement/AsDialog.h"
#include "qt/FrameOnTop.h"
#include "qt/ReportList.h"
#include "qt/Twips.h"
#include "qt/Widgets.h"
#include "resources/Resources.h"
#include "shell/StartUp.h"

namespace logbook {

frmChangeItem::frmChangeItem(QWidget* owner, AppState& state, Services& services,
                             ColumnChooser& chooser)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      state_(state),
      services_(services),
      chooser_(chooser),
      Frame1_(new QGroupBox(this)),
      Options_{new QRadioButton(Frame1_), new QRadioButton(Frame1_), new QRadioButton(Frame1_)},
      List1_(new QListWidget(this)),
      cmdOK_(new QPushButton(this)),
      cmdCancel_(new QPushButton(this)),
      cmdHelp_(new QPushButton(this)) {
  setWindowModality(Qt::WindowModal);  // help belongs to no window and stays usable
  setFixedSize(Pixels(chooser.Window.Place.Width), Pixels(chooser.Window.Place.Height));
  List1_->setSelectionMode(QAbstractItemView::SingleSelection);
  List1_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  ShowSelectionAlone(List1_);
  KeepFrameOnTop(List1_);
  ConnectOptions();
  ConnectCommands();
  SetTabOrder();
  Update();
}

void frmChangeItem::ConnectOptions() {
  for (std::size_t i = 0; i < Options_.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    const auto set = [this, number] {
      Run([this, number] { SetOption(state_, chooser_, number); });
      UpdateList();
    };
    // A screen reader sets an option without a click; a click on the set one fills the list anew.
    connect(Options_[i], &QRadioButton::clicked, this, set);
    connect(Options_[i], &QRadioButton::toggled, this, [this, number, set](bool on) {
      if (on && chooser_.OptionSet != number) set();
    });
  }
}

void frmChangeItem::ConnectCommands() {
  for (QPushButton* button : {cmdOK_, cmdCancel_, cmdHelp_}) button->setAutoDefault(false);
  GiveHelpKey(cmdHelp_);
  connect(cmdOK_, &QPushButton::clicked, this,
          [this] { Run([this] { ColumnChooserOK(state_, services_, chooser_); }); });
  connect(cmdCancel_, &QPushButton::clicked, this,
          [this] { Run([this] { ColumnChooserCancel(chooser_); }); });
  connect(cmdHelp_, &QPushButton::clicked, this, [this] {
    Run([this] { ShowHelpTopic(state_, services_, ColumnChooserHelpTopic(state_)); });
  });
  connect(List1_, &QListWidget::itemSelectionChanged, this, [this] {
    chooser_.ListIndex = List1_->selectedItems().isEmpty() ? -1 : List1_->currentRow();
  });
  List1_->viewport()->installEventFilter(this);
}

void frmChangeItem::SetTabOrder() {
  const std::array<QWidget*, 7> order = {cmdOK_, Options_[0], Options_[1], Options_[2],
                                         List1_, cmdCancel_,  cmdHelp_};
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
  cmdOK_->setFocus();
}

void frmChangeItem::Load() {
  LoadColumnChooser(state_, chooser_);
  Update();
}

void frmChangeItem::Update() {
  ApplyControl(this, chooser_.Window);
  ApplyControl(Frame1_, chooser_.Frame1);
  const std::array<const Control*, 3> options = {&chooser_.Option1, &chooser_.Option2,
                                                 &chooser_.Option3};
  for (std::size_t i = 0; i < Options_.size(); ++i) {
    ApplyControl(Options_[i], *options[i]);
    Options_[i]->setChecked(chooser_.OptionSet == static_cast<int>(i) + 1);
  }
  ApplyControl(List1_, chooser_.List1);
  List1_->setAccessibleName(ToQt(LoadResString(1411)));
  ApplyControl(cmdOK_, chooser_.cmdOK);
  ApplyControl(cmdCancel_, chooser_.cmdCancel);
  ApplyControl(cmdHelp_, chooser_.cmdHelp);
  UpdateList();
}

void frmChangeItem::UpdateList() {
  const QSignalBlocker quiet(List1_);
  List1_->clear();
  for (const std::string& item : chooser_.Items) List1_->addItem(ToQt(item));
  List1_->setCurrentRow(chooser_.ListIndex);
}

void frmChangeItem::Run(const std::function<void()>& command) {
  RunHandler(services_, command);
  if (chooser_.Unloaded) done(QDialog::Accepted);
}

void frmChangeItem::reject() {
  cmdCancel_->click();
}

void frmChangeItem::keyPressEvent(QKeyEvent* event) {
  if (!EnterPressesButton(this, event)) QDialog::keyPressEvent(event);
}

bool frmChangeItem::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    RunHandler(services_,
               [this] { PlaceAndRaise(services_.windows, static_cast<std::intptr_t>(winId())); });
  }
  return QDialog::event(event);
}

bool frmChangeItem::eventFilter(QObject* watched, QEvent* event) {
  const bool double_click = event->type() == QEvent::MouseButtonDblClick &&
                            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (watched == List1_->viewport() && double_click) {
    cmdOK_->click();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace logbook
