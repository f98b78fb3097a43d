// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/HelpWindow.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include "qt/Widgets.h"
#include "resources/Resources.h"

namespace logbook {

namespace {

constexpr int kWidth = 960, kHeight = 680, kContentsWidth = 240;
// What the desktop puts around a window, generously: nobody tells before the window is shown.
constexpr QSize kFrame(16, 48);
// Room around pages, and around their tables, which have none of their own.
constexpr double kPageMargin = 10;
constexpr char kPageStyle[] = "table { margin-top: 8px; margin-bottom: 8px }";
constexpr int kPageRole = Qt::UserRole;  // URL of an entry's page

}  // namespace

HelpWindow::HelpWindow(HelpBook book, const QString& folder, const QString& notice)
    : QWidget(nullptr, Qt::Window),
      book_(std::move(book)),
      folder_(QUrl::fromLocalFile(folder + QLatin1Char('/'))),
      contents_(new QTreeWidget),
      text_(new QTextBrowser),
      find_(new QLineEdit) {
  setObjectName(QStringLiteral("HelpWindow"));
  ReadAsFrame(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(ToQt(book_.Title));
  // Dense screens have few of the toolkit's pixels.
  resize(QSize(kWidth, kHeight).boundedTo(screen()->availableSize() - kFrame));

  text_->setObjectName(QStringLiteral("HelpText"));
  text_->setAccessibleName(ToQt(LoadResString(1413)));
  text_->setOpenExternalLinks(true);
  text_->document()->setDocumentMargin(kPageMargin);
  text_->document()->setDefaultStyleSheet(QString::fromLatin1(kPageStyle));
  connect(text_, &QTextBrowser::sourceChanged, this,
          [this](const QUrl& page) { FollowPage(page); });
  MakeContents();

  auto* panes = new QSplitter;
  panes->addWidget(contents_);
  panes->addWidget(text_);
  panes->setStretchFactor(1, 1);
  panes->setSizes({kContentsWidth, kWidth - kContentsWidth});
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(MakeTools());
  if (!notice.isEmpty()) {
    auto* label = new QLabel(notice);
    label->setObjectName(QStringLiteral("HelpNotice"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);
  }
  layout->addWidget(panes, 1);
  auto* close_key = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(close_key, &QShortcut::activated, this, &QWidget::close);
}

void HelpWindow::MakeContents() {
  contents_->setObjectName(QStringLiteral("HelpContents"));
  contents_->setAccessibleName(ToQt(LoadResString(1414)));
  contents_->setColumnCount(1);
  contents_->setHeaderLabel(ToQt(LoadResString(1414)));  // read out, though not seen
  contents_->header()->hide();
  std::vector<QTreeWidgetItem*> above;  // the last entry of each level
  for (const HelpPage& page : book_.Pages) {
    const auto level = std::min(static_cast<std::size_t>(page.Level), above.size());
    above.resize(level);
    auto* entry = level == 0 ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(above.back());
    entry->setText(0, ToQt(page.Title));
    entry->setData(0, kPageRole, UrlOf(page));
    above.push_back(entry);
  }
  contents_->expandAll();
  connect(contents_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* entry) {
    const QUrl url = entry == nullptr ? QUrl() : entry->data(0, kPageRole).toUrl();
    if (!url.isEmpty() && text_->source() != url) text_->setSource(url);
  });
}

QWidget* HelpWindow::MakeTools() {
  auto* tools = new QWidget;
  auto* row = new QHBoxLayout(tools);
  row->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](const char* name, const QString& caption) {
    auto* button = new QPushButton(caption);
    button->setObjectName(QString::fromLatin1(name));
    row->addWidget(button);
    return button;
  };
  QPushButton* back = add("HelpBack", ToQt(LoadResString(1420)));
  QPushButton* forward = add("HelpForward", ToQt(LoadResString(1421)));
  QPushButton* first = add("HelpFirst", ToQt(LoadResString(1422)));
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QPushButton::clicked, text_, &QTextBrowser::backward);
  connect(forward, &QPushButton::clicked, text_, &QTextBrowser::forward);
  connect(first, &QPushButton::clicked, this, [this] { ShowFirstPage(); });
  connect(text_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(text_, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);

  row->addStretch(1);
  auto* label = new QLabel(ToQt(LoadResString(1423)));
  label->setBuddy(find_);
  find_->setObjectName(QStringLiteral("HelpFind"));
  row->addWidget(label);
  row->addWidget(find_);
  connect(find_, &QLineEdit::returnPressed, this, [this] { FindNext(); });
  auto* find_key = new QShortcut(QKeySequence(QKeySequence::Find), this);
  connect(find_key, &QShortcut::activated, find_, [this] { find_->setFocus(); });
  return tools;
}

QUrl HelpWindow::UrlOf(const HelpPage& page) const {
  return folder_.resolved(QUrl(ToQt(page.File)));
}

void HelpWindow::ShowTopic(std::uint32_t topic) {
  ShowPage(book_.PageOf(topic));
}

void HelpWindow::ShowFirstPage() {
  ShowPage(book_.Pages.empty() ? nullptr : &book_.Pages.front());
}

void HelpWindow::ShowPage(const HelpPage* page) {
  if (page != nullptr) text_->setSource(UrlOf(*page));
}

void HelpWindow::FollowPage(const QUrl& page) {
  const QSignalBlocker follows(contents_);
  for (QTreeWidgetItemIterator entry(contents_); *entry != nullptr; ++entry) {
    if ((*entry)->data(0, kPageRole).toUrl() != page) continue;
    contents_->setCurrentItem(*entry);
    return;
  }
}

void HelpWindow::FindNext() {
  if (text_->find(find_->text())) return;
  text_->moveCursor(QTextCursor::Start);
  text_->find(find_->text());
}

}  // namespace logbook
