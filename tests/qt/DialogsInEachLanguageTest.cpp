// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Message boxes, the help window and the save dialog in every language: each text is measured in
// its control.

#include <gtest/gtest.h>

#include <QComboBox>
#include <QFileDialog>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QScreen>
#include <QTextBrowser>
#include <QTranslator>
#include <QTreeWidget>
#include <fstream>
#include <iterator>

#include "FormsAsData.h"
#include "help/HelpBook.h"
#include "qt/HelpWindow.h"
#include "qt/QtMessageBoxes.h"
#include "qt/QtSaveDialog.h"

namespace logbook {
namespace {

using test::WhenModal;

constexpr int kTitleButtons = 100;  // pixels of a title bar without words

// What a text needs of its label, as the toolkit lays it out.
void ExpectWhole(const QLabel& label) {
  const std::string text = label.text().toStdString();
  if (label.hasHeightForWidth()) {
    EXPECT_GE(label.height(), label.heightForWidth(label.width())) << text;
  } else {
    EXPECT_GE(label.width(), label.sizeHint().width()) << text;
    EXPECT_GE(label.height(), label.sizeHint().height()) << text;
  }
}

// All labels and buttons of a window that are shown, and its title.
void ExpectAllWhole(QWidget& window) {
  EXPECT_GE(window.width(),
            window.fontMetrics().horizontalAdvance(window.windowTitle()) + kTitleButtons)
      << window.windowTitle().toStdString();
  int measured = 0;
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    if (!label->isVisible() || label->text().isEmpty()) continue;
    ExpectWhole(*label);
    ++measured;
  }
  for (QPushButton* button : window.findChildren<QPushButton*>()) {
    if (!button->isVisible()) continue;
    const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    const int icon = button->icon().isNull() ? 0 : button->iconSize().width() + 4;
    const QSize room = test::RoomForCaption(button);
    EXPECT_LE(text.width() + icon, room.width()) << button->text().toStdString();
    EXPECT_LE(text.height(), room.height()) << button->text().toStdString();
    ++measured;
  }
  for (const QWidget* child : window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    EXPECT_TRUE(!child->isVisible() || child->isWindow() ||
                window.rect().contains(child->geometry()))
        << child->objectName().toStdString();
  EXPECT_GE(measured, 2);
}

class DialogsInEachLanguage : public testing::TestWithParam<std::size_t> {
 protected:
  DialogsInEachLanguage() {
    ChooseLanguage(LanguageAt(GetParam()).id);
    const QString catalogue = ToQt(CurrentLanguage().toolkit);
    if (!catalogue.isEmpty() &&
        words_.load(catalogue, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
      QApplication::installTranslator(&words_);
  }
  ~DialogsInEachLanguage() override {
    QApplication::removeTranslator(&words_);
    ChooseLanguage("en");
  }

 private:
  QTranslator words_;
};

// Sentences are the words of boxes: those of refusals, and what stands behind "Run-time error".
bool IsOfABox(int number) {
  return (number >= 219 && number <= 225) || number >= 1395;
}

TEST_P(DialogsInEachLanguage, EverySentenceStandsWholeInItsBox) {
  const std::string path = "C:\\QUOREX\\inst1\\maintain\\26111500\\";
  int boxes = 0;
  for (const StringResource& sentence : AllStrings()) {
    if (!IsOfABox(sentence.number)) continue;
    std::string text(sentence.text);
    if (const auto place = text.find("%1"); place != std::string::npos)
      text.replace(place, 2, path);
    const bool asks = ++boxes % 2 == 0;
    WhenModal(kMessageBoxName, [](QWidget* box) {
      ExpectAllWhole(*box);
      box->close();
    });
    QtMessageBoxes().Show({.Text = text,
                           .Icon = MessageIcon::kExclamation,
                           .Buttons = asks ? MessageButtons::kYesNo : MessageButtons::kOk});
  }
  EXPECT_GT(boxes, 60);
}

TEST_P(DialogsInEachLanguage, ContentsAndButtonsOfTheManualStandWholeInTheHelpWindow) {
  std::ifstream index(std::string(TEST_MANUAL_DIR "/") + std::string(CurrentLanguage().manual) +
                      "/logbook.hhbook");
  const std::string text{std::istreambuf_iterator<char>(index), {}};
  const std::string notice =
      std::string(LoadResString(1425)) + " " + std::string(LoadResString(1426));
  HelpWindow help(ReadHelpBook(text), QStringLiteral("/"), ToQt(notice));
  help.setAttribute(Qt::WA_DeleteOnClose, false);
  // As it is meant to be, and on a small screen with twice the dots.
  for (const QSize& size : {QSize(960, 680), QSize(624, 464)}) {
    help.resize(size);
    help.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(help.size(), size);
    ExpectAllWhole(help);
    auto* contents = help.findChild<QTreeWidget*>(QStringLiteral("HelpContents"));
    ASSERT_GT(contents->topLevelItemCount(), 5);
    EXPECT_LE(static_cast<QAbstractItemView*>(contents)->sizeHintForColumn(0),
              contents->viewport()->width())
        << size.width();
    EXPECT_GE(help.findChild<QTextBrowser*>(QStringLiteral("HelpText"))->width(), 320);
  }
}

TEST_P(DialogsInEachLanguage, ADenseScreenIsOneWithTwiceTheDots) {
  const bool is_dense = qgetenv("QT_QPA_PLATFORM").contains("twice-the-dots");
  EXPECT_EQ(QGuiApplication::primaryScreen()->devicePixelRatio(), is_dense ? 2 : 1);
}

TEST_P(DialogsInEachLanguage, TheSaveDialogShowsItsWordsWhole) {
  const test::TestMachine disk;
  test::TestMessages messages;
  WhenModal(kSaveDialogName, [](QWidget* dialog) {
    ExpectAllWhole(*dialog);
    const auto* types = dialog->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    EXPECT_GE(types->width(), types->sizeHint().width());
    qobject_cast<QDialog*>(dialog)->reject();
  });
  QtSaveDialog(disk, messages)
      .Show({.Title = std::string(LoadResString(1193)),
             .DefaultExtension = ".zip",
             .Filter = std::string(LoadResString(1294)),
             .InitialFolder = "C:\\",
             .FileName = "m26B051407.zip"});
}

INSTANTIATE_TEST_SUITE_P(All, DialogsInEachLanguage,
                         testing::Range(std::size_t{0}, LanguageCount()),
                         [](const auto& test) { return std::string(LanguageAt(test.param).id); });

}  // namespace
}  // namespace logbook
