// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Both help engines. A help book (help/HelpBook.h) is shown in a window of the program, whatever
// engine is asked for it: a name that ends in ".hhbook", a folder with such a file, or a name of
// another kind beside which a book of the same name stands. A ".chm" file is shown by the viewer
// that the machine has. What cannot be shown gives way to the program's own manual, with a notice
// on top.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <optional>

#include "base/Machine.h"
#include "state/Services.h"

class QProcess;

namespace logbook {

class HelpWindow;

class QtHelpEngine : public HelpEngine {
 public:
  // `manual` is the native path of the index of the program's own manual.
  QtHelpEngine(const Machine& machine, QString manual);
  ~QtHelpEngine() override;

  // Commands: 0 first page, 1 contents, 2 index, 15 topic, 18 close all, 28 and 29 begin and end.
  // Contents are followed by a topic in one go: the viewer of a ".chm" file starts once.
  void HtmlHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                std::uint32_t& data) override;
  // Commands: 1 and 15 topic, 2 quit; any other shows the first page.
  void WinHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
               std::uint32_t data) override;

 private:
  // Shows a file, on a topic if there is one.
  void Show(const std::string& file, std::optional<std::uint32_t> topic);
  void ShowBook(const QString& index, std::optional<std::uint32_t> topic, const QString& notice);
  // False if the machine has no viewer.
  bool StartViewer(const QString& file);
  void CloseAll();

  const Machine& machine_;
  const QString manual_;
  QPointer<HelpWindow> window_;
  QString book_;    // index of the book in the window
  QObject starts_;  // owns viewers, and the start that waits for a topic
  QString viewer_file_;
  std::optional<std::uint32_t> viewer_topic_;
};

}  // namespace logbook
