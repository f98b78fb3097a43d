// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmMain.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTreeView>

#include "archive/ArcHandler.h"
#include "help/arvbsub.h"
#include "printing/ListPrinting.h"
#include "qt/ListViewModel.h"
#include "qt/QtWindowSystem.h"
#include "qt/ReportList.h"
#include "qt/Twips.h"
#include "qt/Widgets.h"
#include "qt/WindowManager.h"
#include "records/LogCommands.h"
#include "records/Recording.h"
#include "resources/Resources.h"
#include "shell/StartUp.h"

namespace logbook {

frmMain::frmMain(AppState& state, Services& services)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                           Qt::WindowCloseButtonHint),
      state_(state),
      services_(services),
      model_(new ListViewModel(this)),
      ListView1_(NewReportList(this)),
      cmdRecord_(new QPushButton(this)),
      cmdBrowse_(new QPushButton(this)),
      cmdDelete_(new QPushButton(this)),
      cmdPrint_(new QPushButton(this)),
      cmdExit_(new QPushButton(this)),
      cmdHelp_(new QPushButton(this)),
      cmdArchive_(new QPushButton(this)) {
  ReadAsFrame(this);
  MakeList();
  MakeKeys();
  MakeCommands();
  Update();
}

void frmMain::MakeList() {
  ListView1_->setModel(model_);
  QHeaderView* header = ListView1_->header();
  for (int i = 0; i < ListView::kColumns; ++i) {
    header->resizeSection(i, Pixels(state_.ListView1.Column(i + 1).Width));
  }

  connect(ListView1_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { TakeSelection(); });
  connect(ListView1_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { TakeSelection(); });
  connect(ListView1_, &QTreeView::doubleClicked, this,
          [this] { Run([this] { cmdBrowse_Click(state_, services_); }); });
  connect(header, &QHeaderView::sectionClicked, this, [this](int section) {
    Run([this, section] { ListView1_ColumnClick(state_, services_, section + 1); });
  });
}

void frmMain::MakeKeys() {
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* enter = new QShortcut(QKeySequence(key), ListView1_);
    enter->setContext(Qt::WidgetShortcut);
    connect(enter, &QShortcut::activated, this, [this] {
      SelectCurrentRow(ListView1_);
      Run([this] { cmdBrowse_Click(state_, services_); });
    });
  }
  for (int column = 1; column <= ListView::kColumns; ++column) {
    if (HeaderKey(column).isEmpty()) continue;
    auto* click = new QShortcut(HeaderKey(column), ListView1_);
    connect(click, &QShortcut::activated, this, [this, column] {
      Run([this, column] { ListView1_ColumnClick(state_, services_, column); });
    });
  }
  GiveHelpKey(cmdHelp_);
}

void frmMain::MakeCommands() {
  const auto on_click = [this](QPushButton* button, void (*command)(AppState&, Services&)) {
    connect(button, &QPushButton::clicked, this,
            [this, command] { Run([this, command] { command(state_, services_); }); });
  };
  on_click(cmdRecord_, cmdRecord_Click);
  on_click(cmdBrowse_, cmdBrowse_Click);
  on_click(cmdDelete_, cmdDelete_Click);
  on_click(cmdArchive_, ArchiveLogs);
  on_click(cmdPrint_, PrintList);
  on_click(cmdExit_, GlobalEnd);
  on_click(cmdHelp_, cmdHelp_Click);
}

void frmMain::Update() {
  const QScopedValueRollback updating(updating_, true);
  const MainWindow& window = state_.frmMain;
  QWidget* had_focus = focusWidget();
  ApplyControl(this, window.Window);
  ApplyControl(ListView1_, window.ListView1);
  ListView1_->setAccessibleName(ToQt(LoadResString(1410)));
  ApplyControl(cmdRecord_, window.cmdRecord);
  ApplyControl(cmdBrowse_, window.cmdBrowse);
  ApplyControl(cmdDelete_, window.cmdDelete);
  ApplyControl(cmdPrint_, window.cmdPrint);
  ApplyControl(cmdExit_, window.cmdExit);
  ApplyControl(cmdHelp_, window.cmdHelp);
  ApplyControl(cmdArchive_, window.cmdArchive);
  setEnabled(window.Available);
  KeepFocus(had_focus);
  model_->Show(state_.ListView1);
  ShowSelection();
}

void frmMain::KeepFocus(QWidget* had_focus) {
  if (had_focus != nullptr && !had_focus->isEnabled()) {
    lost_focus_ = had_focus;
    if (focusWidget() != nullptr) focusWidget()->clearFocus();
  } else if (lost_focus_ != nullptr && lost_focus_->isEnabled()) {
    lost_focus_->setFocus();
    lost_focus_ = nullptr;
  }
}

Size frmMain::SetOuterSize(Size outer) {
  const QSize wanted(Pixels(outer.Width), Pixels(outer.Height));
  winId();               // makes the native window, which the window manager is asked about
  setFixedSize(wanted);  // a window of one size may get another frame
  const QSize inner = wanted.shrunkBy(FrameOf(*this));
  setFixedSize(inner);
  TellSize(*this);
  return {TwipsOf(inner.width()), TwipsOf(inner.height())};
}

void frmMain::ShowSelection() {
  QItemSelectionModel* view = ListView1_->selectionModel();
  QItemSelection selection;
  const int rows = model_->rowCount();
  for (int row = 0; row < rows; ++row) {
    if (!state_.ListView1.Row(row + 1).Selected) continue;
    selection.select(model_->index(row, 0), model_->index(row, ListView::kColumns - 1));
  }
  view->select(selection, QItemSelectionModel::ClearAndSelect);
  view->setCurrentIndex(model_->index(state_.ListView1.CurrentRow - 1, 0),
                        QItemSelectionModel::NoUpdate);
}

void frmMain::TakeSelection() {
  if (updating_) return;
  const QItemSelectionModel* view = ListView1_->selectionModel();
  ListView& list = state_.ListView1;
  for (std::size_t i = 0; i < list.Rows.size(); ++i) {
    list.Rows[i].Selected = view->isRowSelected(static_cast<int>(i));
  }
  const int current = view->currentIndex().row() + 1;
  list.CurrentRow = current <= static_cast<int>(list.Rows.size()) ? current : 0;
}

void frmMain::Run(const std::function<void()>& handler) {
  if (state_.frmMain.Available) RunHandler(services_, handler);
}

void frmMain::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([this] { Form_Unload(state_, services_); });
}

void frmMain::keyPressEvent(QKeyEvent* event) {
  if (!EnterPressesButton(this, event)) QWidget::keyPressEvent(event);
}

}  // namespace logbook
