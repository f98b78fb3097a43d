// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The window that shows a help book: contents at the left, the page at the right. It belongs to no
// other window and stays usable while a dialog of the program is open.
#pragma once

#include <QString>
#include <QUrl>
#include <QWidget>

#include "help/HelpBook.h"

class QLabel;
class QLineEdit;
class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;

namespace logbook {

class HelpWindow : public QWidget {
 public:
  // `folder` is the native path of the book's pages. A notice, if there is one, stands on top.
  HelpWindow(HelpBook book, const QString& folder, const QString& notice);

  // Shows the page of a topic; the first page if the book lacks it.
  void ShowTopic(std::uint32_t topic);
  void ShowFirstPage();

 private:
  void MakeContents();
  QWidget* MakeTools();
  QUrl UrlOf(const HelpPage& page) const;
  void ShowPage(const HelpPage* page);
  // Marks the entry of a page in the contents.
  void FollowPage(const QUrl& page);
  void FindNext();

  const HelpBook book_;
  const QUrl folder_;
  QTreeWidget* contents_;
  QTextBrowser* text_;
  QLineEdit* find_;
};

}  // namespace logbook
