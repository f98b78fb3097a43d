// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtMessageBoxes.h"

#include "qt/Widgets.h"
#include "qt/WrappedLabel.h"
#include "resources/ResourceText.h"
#include "state/Fonts.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>

namespace logbook {
namespace {

// In the string table.
constexpr int kDefaultTitle = 112, kOk = 120, kYes = 1440, kNo = 1441;

constexpr int kTitleButtons = 100;  // pixels that a title bar keeps for icon and buttons
constexpr int kWidestWord = 480;    // pixels

QMessageBox::Icon ToolkitIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kNone:
      return QMessageBox::NoIcon;
    case MessageIcon::kCritical:
      return QMessageBox::Critical;
    case MessageIcon::kExclamation:
      return QMessageBox::Warning;
    case MessageIcon::kInformation:
      return QMessageBox::Information;
  }
  return QMessageBox::NoIcon;
}

QWidget* Owner() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) return window;
  }
  return nullptr;
}

// Short texts make narrow boxes, which cut their title.
void GiveRoomForTitle(QMessageBox& box) {
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label == nullptr) return;
  const int title = box.fontMetrics().horizontalAdvance(box.windowTitle()) + kTitleButtons;
  // A longer text keeps its own width: a least width given here would take its place.
  if (label->minimumSizeHint().width() < title) label->setMinimumWidth(title);
}

// The box cuts a word that is wider than itself, such as a long path.
void BreakLongWords(QMessageBox& box) {
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label == nullptr || !HasWiderWord(box.text(), label->fontMetrics(), kWidestWord)) return;
  delete box.layout()->replaceWidget(label, new WrappedLabel(box.text(), kWidestWord, &box));
  label->hide();  // keeps the text for the clipboard
}

// Where a title is empty the toolkit's window bears the program's name instead; a blank keeps it
// out.
QString TitleFor(const Message& message) {
  const QString title = ToQt(message.Title.value_or(ResourceText(kDefaultTitle)));
  return title.isEmpty() ? QStringLiteral(" ") : title;
}

// The pointer for answering, while one lives: long work may ask a question too.
class UsualPointer {
 public:
  UsualPointer() : work_goes_on_(QGuiApplication::overrideCursor() != nullptr) {
    if (work_goes_on_) QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
  }
  ~UsualPointer() {
    if (work_goes_on_) QGuiApplication::restoreOverrideCursor();
  }
  UsualPointer(const UsualPointer&) = delete;
  UsualPointer& operator=(const UsualPointer&) = delete;

 private:
  const bool work_goes_on_;
};

// `caption` is its number in the string table.
void AddButton(QMessageBox& box, QMessageBox::StandardButton which, const char* name, int caption) {
  QPushButton* button = box.addButton(which);
  button->setObjectName(QLatin1String(name));
  button->setText(ToQt(LoadResString(caption)));
  button->setAccessibleName(SpokenCaption(std::string(LoadResString(caption))));
  button->setIcon(QIcon());
}

}  // namespace

MessageAnswer QtMessageBoxes::Show(const Message& message) {
  const UsualPointer pointer;
  QMessageBox box(Owner());
  box.setObjectName(QLatin1String(kMessageBoxName));
  box.setFont(ToolkitFont(FormFont()));
  box.setTextFormat(Qt::PlainText);
  QString text = ToQt(message.Text);
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  box.setText(text);
  box.setWindowTitle(TitleFor(message));
  box.setIcon(ToolkitIcon(message.Icon));
  GiveRoomForTitle(box);
  BreakLongWords(box);
  if (message.Buttons == MessageButtons::kOk) {
    AddButton(box, QMessageBox::Ok, "OK", kOk);
    box.exec();
    return MessageAnswer::kOk;
  }
  AddButton(box, QMessageBox::Yes, "Yes", kYes);
  AddButton(box, QMessageBox::No, "No", kNo);
  box.setDefaultButton(QMessageBox::Yes);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes ? MessageAnswer::kYes : MessageAnswer::kNo;
}

}  // namespace logbook
