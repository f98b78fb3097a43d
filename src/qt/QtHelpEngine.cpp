// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtHelpEngine.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include "base/Files.h"
#include "qt/HelpWindow.h"
#include "qt/Widgets.h"
#include "resources/ResourceText.h"

namespace logbook {

namespace {

// In the string table.
constexpr int kHelp = 119, kCannotShow = 1424, kNotThere = 1425, kOwnManual = 1426;

constexpr std::uint32_t kHtmlContext = 15, kHtmlCloseAll = 18, kHtmlInitialize = 28,
                        kHtmlUninitialize = 29;
constexpr std::uint32_t kWinContext = 1, kWinQuit = 2;
constexpr std::uint32_t kCookie = 1;
constexpr int kViewerEndMilliseconds = 500;

// The viewer of ".chm" files that takes a topic's number, and the option for it.
constexpr char kViewer[] = "xchm";
constexpr char kViewerTopicOption[] = "--contextid=";

// Index of the book that a native path stands for; empty if it is no book.
QString BookFor(const QString& path) {
  const QFileInfo info(path);
  const QString extension = QString::fromLatin1(kHelpBookExtension);
  if (info.isDir()) {
    const QStringList books = QDir(path).entryList({QLatin1Char('*') + extension}, QDir::Files);
    return books.isEmpty() ? QString() : path + QLatin1Char('/') + books.first();
  }
  if (info.isFile()) return path.endsWith(extension, Qt::CaseInsensitive) ? path : QString();
  const QString beside = info.path() + QLatin1Char('/') + info.completeBaseName() + extension;
  return QFileInfo(beside).isFile() ? beside : QString();
}

}  // namespace

QtHelpEngine::QtHelpEngine(const Machine& machine, QString manual)
    : machine_(machine), manual_(std::move(manual)) {}

QtHelpEngine::~QtHelpEngine() {
  CloseAll();
}

void QtHelpEngine::HtmlHelp(std::intptr_t /*window*/, const std::string& file,
                            std::uint32_t command, std::uint32_t& data) {
  switch (command) {
    case kHtmlInitialize:
      data = kCookie;
      return;
    case kHtmlUninitialize:
      return;
    case kHtmlCloseAll:
      return CloseAll();
    case kHtmlContext:
      return Show(file, data);
    default:
      return Show(file, std::nullopt);
  }
}

void QtHelpEngine::WinHelp(std::intptr_t /*window*/, const std::string& file, std::uint32_t command,
                           std::uint32_t data) {
  switch (command) {
    case kWinQuit:
      return CloseAll();
    case kWinContext:
    case kHtmlContext:
      return Show(file, data);
    default:
      return Show(file, std::nullopt);
  }
}

void QtHelpEngine::Show(const std::string& file, std::optional<std::uint32_t> topic) {
  const QString path = ToQt(NativePath(machine_, file));
  const QString book = BookFor(path);
  if (!book.isEmpty()) return ShowBook(book, topic, QString());
  const bool is_chm = path.endsWith(QLatin1String(".chm"), Qt::CaseInsensitive);
  if (is_chm && QFileInfo(path).isFile()) {
    viewer_topic_ = topic;
    if (path == viewer_file_ || StartViewer(path)) return;
  }
  const int reason = QFileInfo(path).isFile() ? kCannotShow : kNotThere;
  ShowBook(manual_, topic, ToQt(ResourceText(reason, {file}) + " " + ResourceText(kOwnManual)));
}

void QtHelpEngine::ShowBook(const QString& index, std::optional<std::uint32_t> topic,
                            const QString& notice) {
  if (window_ == nullptr || book_ != index) {
    if (window_ != nullptr) window_->close();
    QFile file(index);
    const bool is_there = QFileInfo(index).isFile() && file.open(QIODevice::ReadOnly);
    HelpBook book;
    if (is_there) book = ReadHelpBook(file.readAll().toStdString());
    if (book.Title.empty()) book.Title = ResourceText(kHelp);
    window_ = new HelpWindow(std::move(book), QFileInfo(index).path(), notice);
    book_ = index;
  }
  if (topic) {
    window_->ShowTopic(*topic);
  } else {
    window_->ShowFirstPage();
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
}

bool QtHelpEngine::StartViewer(const QString& file) {
  const QString viewer = QStandardPaths::findExecutable(QString::fromLatin1(kViewer));
  if (viewer.isEmpty() && !QDesktopServices::openUrl(QUrl::fromLocalFile(file))) return false;
  viewer_file_ = file;
  QTimer::singleShot(0, &starts_, [this, viewer] {
    if (viewer_file_.isEmpty()) return;                 // closed again before it began
    if (viewer.isEmpty()) return viewer_file_.clear();  // the desktop's program has the file
    auto* process = new QProcess(&starts_);
    QStringList arguments;
    if (viewer_topic_)
      arguments << QString::fromLatin1(kViewerTopicOption) + QString::number(*viewer_topic_);
    arguments << viewer_file_;
    process->start(viewer, arguments);
    viewer_file_.clear();
  });
  return true;
}

void QtHelpEngine::CloseAll() {
  if (window_ != nullptr) delete window_.data();
  viewer_file_.clear();
  const QList<QProcess*> viewers = starts_.findChildren<QProcess*>();
  for (QProcess* viewer : viewers) viewer->terminate();
  for (QProcess* viewer : viewers) {
    viewer->waitForFinished(kViewerEndMilliseconds);
    delete viewer;
  }
}

}  // namespace logbook
