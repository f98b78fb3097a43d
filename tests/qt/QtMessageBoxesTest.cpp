// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtMessageBoxes.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <algorithm>
#include <functional>
#include <utility>

#include "FormsWorkstation.h"
#include "qt/QtEventDelivery.h"

namespace logbook {
namespace {

using test::WhenModal;

// Shows a message, runs the action on its box, returns the answer.
MessageAnswer Show(const Message& message, const std::function<void(QMessageBox&)>& action) {
  WhenModal(kMessageBoxName,
            [action](QWidget* modal) { action(*qobject_cast<QMessageBox*>(modal)); });
  return QtMessageBoxes().Show(message);
}

QAbstractButton* Button(QMessageBox& box, const char* name) {
  return box.findChild<QAbstractButton*>(QString::fromUtf8(name));
}

TEST(QtMessageBoxes, TheDefaultTitleIsTheProgramsTitle) {
  Show({.Text = "Text"}, [](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), QLatin1String("Maintenance LogBook"));
    box.close();
  });
}

TEST(QtMessageBoxes, AGivenTitleStands) {
  Show({.Text = "Text", .Title = "Logbook Editor"}, [](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), QLatin1String("Logbook Editor"));
    box.close();
  });
}

TEST(QtMessageBoxes, AnEmptyTitleDoesNotGiveWayToTheProgramsName) {
  Show({.Text = "Text", .Title = ""}, [](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), QLatin1String(" "));
    box.close();
  });
}

TEST(QtMessageBoxes, ABoxOverAWindowThatTakesNoInputCanBeAnswered) {
  QWidget window(nullptr, Qt::Window);
  window.setEnabled(false);
  window.show();
  Show({.Text = "Text"}, [](QMessageBox& box) {
    EXPECT_TRUE(box.isEnabled());
    EXPECT_TRUE(Button(box, "OK")->isEnabled());
    box.done(QMessageBox::Ok);
  });
}

TEST(QtMessageBoxes, CarriageReturnsBreakLinesWithAndWithoutLineFeed) {
  Show({.Text = "a\rb\r\nc"}, [](QMessageBox& box) {
    EXPECT_EQ(box.text(), QLatin1String("a\nb\nc"));
    box.close();
  });
}

TEST(QtMessageBoxes, MarkupAndAmpersandsAreShownAsTheyStand) {
  Show({.Text = "<b>R&D</b>"}, [](QMessageBox& box) {
    EXPECT_EQ(box.text(), QLatin1String("<b>R&D</b>"));
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    const auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(label->buddy(), nullptr);  // an ampersand marks a key only for a buddy
    box.close();
  });
}

TEST(QtMessageBoxes, EachIconIsTheToolkitsIconOfItsKind) {
  const std::pair<MessageIcon, QMessageBox::Icon> cases[] = {
      {MessageIcon::kNone, QMessageBox::NoIcon},
      {MessageIcon::kCritical, QMessageBox::Critical},
      {MessageIcon::kExclamation, QMessageBox::Warning},
      {MessageIcon::kInformation, QMessageBox::Information}};
  for (const auto& [icon, expected] : cases) {
    Show({.Text = "Text", .Icon = icon}, [expected = expected](QMessageBox& box) {
      EXPECT_EQ(box.icon(), expected);
      box.close();
    });
  }
}

TEST(QtMessageBoxes, OkAnswersOk) {
  EXPECT_EQ(Show({.Text = "Text"},
                 [](QMessageBox& box) {
                   EXPECT_EQ(box.buttons().size(), 1);
                   EXPECT_EQ(Button(box, "OK")->accessibleName(), QLatin1String("OK"));
                   Button(box, "OK")->click();
                 }),
            MessageAnswer::kOk);
}

TEST(QtMessageBoxes, AQuestionIsAnsweredByItsButtonsItsKeysAndItsCloseBox) {
  using Action = std::function<void(QMessageBox&)>;
  const std::pair<Action, MessageAnswer> cases[] = {
      {[](QMessageBox& box) { Button(box, "Yes")->click(); }, MessageAnswer::kYes},
      {[](QMessageBox& box) { Button(box, "No")->click(); }, MessageAnswer::kNo},
      {[](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }, MessageAnswer::kYes},
      {[](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }, MessageAnswer::kNo},
      {[](QMessageBox& box) { box.close(); }, MessageAnswer::kNo}};
  int number = 0;
  for (const auto& [action, answer] : cases) {
    EXPECT_EQ(Show({.Text = "Sure?", .Buttons = MessageButtons::kYesNo}, action), answer)
        << number++;
  }
}

TEST(QtMessageBoxes, TextsOfAnyLengthAreShownWhole) {
  const std::string folder = "C:\\QUOREX\\inst1\\maintain\\26111500";
  for (const std::string& text :
       {std::string("Delete Logfiles ?"), "Can not delete logfile:" + folder + " !",
        "There are 256 or more logs in Log Folder. Recording new log is failed! " + folder}) {
    Show({.Text = text}, [text](QMessageBox& box) {
      const auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
      ASSERT_NE(label, nullptr);
      const QSize needed =
          label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
      EXPECT_GE(label->width(), needed.width()) << text;
      EXPECT_GE(label->height(), needed.height()) << text;
      box.close();
    });
  }
}

// Dark columns of the label's picture, the first and the last one, counted from 0.
std::pair<int, int> Ink(const QImage& picture) {
  int first = picture.width(), last = -1;
  for (int x = 0; x < picture.width(); ++x) {
    for (int y = 0; y < picture.height(); ++y) {
      if (picture.pixelColor(x, y).lightness() > 100) continue;
      first = std::min(first, x);
      last = std::max(last, x);
    }
  }
  return {first, last};
}

TEST(QtMessageBoxes, LongPathsWithoutBlanksBreakWithinTheBox) {
  std::string path = "C:";
  for (int i = 0; i < 40; ++i) path += "\\quite_long_folder_" + std::to_string(i);
  const std::string text = "Can not delete logfile:" + path + " !";
  Show({.Text = text}, [&](QMessageBox& box) {
    EXPECT_EQ(box.text().toStdString(), text);
    QLabel* shown = nullptr;
    for (QLabel* label : box.findChildren<QLabel*>()) {
      if (label->isVisible() && label->text().toStdString() == text) shown = label;
    }
    ASSERT_NE(shown, nullptr);
    EXPECT_TRUE(box.rect().contains(shown->geometry()));
    EXPECT_LE(box.width(), 700);
    const QImage picture = shown->grab().toImage();
    const auto [first, last] = Ink(picture);
    EXPECT_LT(first, 10);
    EXPECT_GT(last, picture.width() / 2);
    EXPECT_LT(last, picture.width() - 1) << "nothing runs out at the right";
    const int lines =
        shown->fontMetrics().horizontalAdvance(QString::fromStdString(text)) / shown->width();
    EXPECT_GE(shown->height(), (lines + 1) * shown->fontMetrics().height());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(shown)->text(QAccessible::Name).toStdString(),
              text);
    QTest::keyClick(&box, Qt::Key_Return);
  });
}

TEST(QtMessageBoxes, ThePointerOfLongWorkRestsWhileABoxAsks) {
  QtEventDelivery events;
  const LongWork work(events);
  const auto pointer = [] { return QGuiApplication::overrideCursor()->shape(); };
  Show({.Text = "Text"}, [&](QMessageBox& box) {
    EXPECT_EQ(pointer(), Qt::ArrowCursor);
    box.close();
  });
  EXPECT_EQ(pointer(), Qt::WaitCursor);
}

TEST(QtMessageBoxes, ABoxMayComeUpWhileAnotherIsShown) {
  const MessageAnswer outer =
      Show({.Text = "outer", .Buttons = MessageButtons::kYesNo}, [](QMessageBox& box) {
        EXPECT_EQ(Show({.Text = "inner"},
                       [&box](QMessageBox& inner) {
                         EXPECT_EQ(inner.parentWidget(), &box);
                         inner.close();
                       }),
                  MessageAnswer::kOk);
        Button(box, "Yes")->click();
      });
  EXPECT_EQ(outer, MessageAnswer::kYes);
}

}  // namespace
}  // namespace logbook
