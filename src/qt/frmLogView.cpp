// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmLogView.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimer>
#include <utility>

#include "help/arvbsub.h"
#include "placement/AsDialog.h"
#include "qt/ColumnKeeper.h"
#include "qt/FrameOnTop.h"
#include "qt/Twips.h"
#include "qt/Widgets.h"
#include "resources/Resources.h"
#include "shell/StartUp.h"
#include "viewer/ReportPrinting.h"

namespace logbook {
namespace {

// Characters that a pane takes at a time; a small part of a second.
constexpr qsizetype kSlice = 128 * 1024;

}  // namespace

frmLogView::frmLogView(QWidget* owner, AppState& state, Services& services, LogView& view)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                         Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      state_(state),
      services_(services),
      view_(view),
      menus_(new QMenuBar(this)),
      client_(new QWidget(this)),
      txtReport_(MakePane()),
      txtComment_(MakePane()),
      cmdPrint_(new QPushButton(client_)),
      cmdExit_(new QPushButton(client_)),
      cmdHelp_(new QPushButton(client_)) {
  setWindowModality(Qt::WindowModal);  // help belongs to no window and stays usable
  MakeMenus();
  for (Pane* pane : {&txtReport_, &txtComment_}) {
    connect(pane->pouring, &QTimer::timeout, this,
            [this, pane] { Run([this, pane] { Pour(*pane); }); });
  }
  for (QPushButton* button : {cmdPrint_, cmdExit_, cmdHelp_}) button->setAutoDefault(false);
  GiveHelpKey(cmdHelp_);
  connect(cmdExit_, &QPushButton::clicked, this,
          [this] { Run([this] { LogViewExit(state_, view_); }); });
  connect(cmdPrint_, &QPushButton::clicked, this,
          [this] { Run([this] { cmdPrint_Click(state_, services_, view_); }); });
  connect(cmdHelp_, &QPushButton::clicked, this, [this] {
    const HelpTopic topic = state_.CEMode ? HelpTopic::kViewerCE : HelpTopic::kViewer;
    Run([this, topic] { ShowHelpTopic(state_, services_, topic); });
  });
  Update();
}

frmLogView::Pane frmLogView::MakePane() {
  auto* box = new QPlainTextEdit(client_);
  auto* document = new QTextDocument(box);
  auto* columns = new ColumnKeeper(document, *state_.machine.code_page);
  document->setDocumentLayout(columns);
  box->setDocument(document);
  box->setReadOnly(true);
  box->setUndoRedoEnabled(false);
  box->setTabChangesFocus(true);
  box->setLineWrapMode(QPlainTextEdit::NoWrap);
  box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  KeepFrameOnTop(box);
  auto* pouring = new QTimer(box);
  return {box, columns, pouring, {}, {}};
}

void frmLogView::MakeMenus() {
  AddCommand(menus_, &LogView::mnuTune);
  QMenu* logs = AddMenu(&LogView::mnuLog);
  AddCommand(logs, &LogView::mnuACQlog);
  AddCommand(logs, &LogView::mnuSeqlog);
  AddCommand(logs, &LogView::mnuChainlog);
  AddCommand(logs, &LogView::mnuErrLog);
  AddCommand(logs, &LogView::mnuCeErrLog);
  AddCommand(menus_, &LogView::mnuMainte);
  AddCommand(menus_, &LogView::mnuMeter);
  AddCommand(menus_, &LogView::mnuAna);
  QMenu* bits = AddMenu(&LogView::mnuBit);
  AddCommand(bits, &LogView::mnuBout);
  AddCommand(bits, &LogView::mnuBin);
  AddCommand(menus_, &LogView::mnuSYS);
}

void frmLogView::AddCommand(QWidget* menu, MenuEntry LogView::*entry) {
  auto* action = new QAction(menu);
  menu->addAction(action);
  entries_.push_back({entry, action});
  for (const ViewCommand& command : kViewCommands) {
    if (command.Entry != entry) continue;
    connect(action, &QAction::triggered, this, [this, &command] { RunView(command); });
  }
}

QMenu* frmLogView::AddMenu(MenuEntry LogView::*entry) {
  auto* menu = new QMenu(menus_);
  menus_->addMenu(menu);
  menu->setObjectName(ToQt((view_.*entry).Name));
  entries_.push_back({entry, menu->menuAction()});
  return menu;
}

void frmLogView::Load(const std::string& caption) {
  LoadLogView(state_, view_);
  view_.Window.Caption = caption;
  Update();
  ShowText(txtReport_, view_.ReportText);
  ShowText(txtComment_, view_.CommentText);
}

void frmLogView::Update() {
  ApplyControl(this, view_.Window);
  UpdatePane(txtReport_, view_.txtReport);
  UpdatePane(txtComment_, view_.txtComment);
  txtReport_.box->setAccessibleName(ToQt(LoadResString(1412)));
  txtComment_.box->setAccessibleName(ToQt(LoadResString(123)));
  ApplyControl(cmdPrint_, view_.cmdPrint);
  ApplyControl(cmdExit_, view_.cmdExit);
  ApplyControl(cmdHelp_, view_.cmdHelp);
  for (const Entry& item : entries_) {
    const MenuEntry& entry = view_.*item.entry;
    item.action->setObjectName(ToQt(entry.Name));
    item.action->setText(ToQt(entry.Caption));
    item.action->setVisible(entry.Visible);
  }
  // The toolkit may have a font of its own for menus, too wide for this bar.
  for (QWidget* menu : findChildren<QMenu*>()) menu->setFont(font());
  menus_->setFont(font());
  const int width = Pixels(view_.Window.Place.Width);
  const int height = Pixels(view_.Window.Place.Height);
  const int bar = menus_->heightForWidth(width);
  menus_->setGeometry(0, 0, width, bar);
  client_->setGeometry(0, bar, width, height);
  setFixedSize(width, bar + height);
}

void frmLogView::UpdatePane(const Pane& pane, const Control& control) {
  ApplyControl(pane.box, control);
  const QFont font = ColumnFont(control.TextFont, state_.machine.code_page->Number());
  pane.box->setFont(font);
  pane.box->document()->setDefaultFont(font);
  pane.columns->TakeFont();
}

QString frmLogView::OnPage(const std::string& text) const {
  const CodePage& code_page = *state_.machine.code_page;
  return ToQt(code_page.ToUtf8(code_page.FromUtf8(text)));
}

void frmLogView::ShowText(Pane& pane, const std::string& text, TextLines more) {
  pane.rest = OnPage(text);
  pane.more = std::move(more);
  pane.box->clear();
  Pour(pane);
}

void frmLogView::Pour(Pane& pane) {
  pane.pouring->stop();
  if (pane.rest.isEmpty()) pane.rest = OnPage(pane.more.Take(kSlice));
  const qsizetype line = pane.rest.indexOf(QLatin1Char('\n'), kSlice);
  const qsizetype count = line < 0 ? pane.rest.size() : line + 1;
  QTextCursor end(pane.box->document());
  end.movePosition(QTextCursor::End);
  end.insertText(pane.rest.left(count));
  pane.rest.remove(0, count);
  if (pane.rest.isEmpty()) pane.rest = QString();  // gives its memory up
  if (!pane.rest.isEmpty() || !pane.more.AtEnd()) pane.pouring->start(0);
}

void frmLogView::Run(const std::function<void()>& command) {
  RunHandler(services_, command);
  if (view_.Unloaded) done(QDialog::Accepted);
}

void frmLogView::RunView(const ViewCommand& command) {
  ShowText(txtReport_, {});
  Run([this, &command] {
    command.Run(state_, services_, view_);
    ShowText(txtReport_, view_.ReportText, std::exchange(view_.ReportRest, {}));
  });
}

void frmLogView::reject() {
  cmdExit_->click();
}

void frmLogView::closeEvent(QCloseEvent* event) {
  event->accept();
  done(QDialog::Rejected);
}

void frmLogView::keyPressEvent(QKeyEvent* event) {
  if (!EnterPressesButton(this, event)) QDialog::keyPressEvent(event);
}

bool frmLogView::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    RunHandler(services_,
               [this] { PlaceAndRaise(services_.windows, static_cast<std::intptr_t>(winId())); });
  }
  return QDialog::event(event);
}

}  // namespace logbook
