// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtEventDelivery.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <chrono>

#include "WaitLimit.h"

namespace logbook {
namespace {

using namespace std::chrono_literals;
using test::kWaitLimit;

constexpr int kPollsOfLongestSleep =
    static_cast<int>(QtEventDelivery::kLongestSleep / QtEventDelivery::kPoll);

TEST(QtEventDelivery, AWaitWithoutEventsSleepsAndWakesRarely) {
  QtEventDelivery events;
  QCoreApplication::processEvents();
  int wake_ups = 0;
  int polls = 0;
  for (; polls < 100000; ++wake_ups) {  // about a second
    const int stands_for = events.Deliver();
    EXPECT_GE(stands_for, 1);
    EXPECT_LE(stands_for, kPollsOfLongestSleep);
    polls += stands_for;
  }
  EXPECT_LE(wake_ups, 10);
}

// A sleep so long that a delivery that returns before its end was woken.
constexpr std::chrono::minutes kMinute{1};
constexpr int kPollsOfAMinute = static_cast<int>(kMinute / QtEventDelivery::kPoll);

TEST(QtEventDelivery, APendingEventIsDeliveredWithoutASleep) {
  QtEventDelivery events(kMinute);
  QObject context;
  bool delivered = false;
  QTimer::singleShot(0, &context, [&] { delivered = true; });
  EXPECT_LT(events.Deliver(), kPollsOfAMinute);
  EXPECT_TRUE(delivered);
}

TEST(QtEventDelivery, AnEventEndsTheSleep) {
  QtEventDelivery events(kMinute);
  QCoreApplication::processEvents();
  QObject context;
  bool delivered = false;
  QTimer::singleShot(5ms, Qt::PreciseTimer, &context, [&] { delivered = true; });
  while (!delivered) {
    ASSERT_LT(events.Deliver(), kPollsOfAMinute);
  }
}

TEST(QtEventDelivery, MayBeEnteredAgainFromAnEventThatItDelivers) {
  QtEventDelivery events;
  QObject context;
  int inner = 0;
  QTimer::singleShot(0, &context, [&] { inner = events.Deliver(); });
  events.Deliver();
  EXPECT_GE(inner, 1);
}

TEST(QtEventDelivery, AModalWindowOpenedByAnEventDoesNotCountAsPolls) {
  QtEventDelivery events;
  QObject context;
  QTimer::singleShot(0, &context, [&] {
    QEventLoop modal;
    QTimer::singleShot(400ms, &modal, [&] { modal.quit(); });
    modal.exec();
  });
  EXPECT_LE(events.Deliver(), kPollsOfLongestSleep);
}

// A shown window with a button on it; counts how often the button paints itself.
class PaintedWindow {
 public:
  class Button : public QPushButton {
   public:
    using QPushButton::QPushButton;
    int paintings = 0;

   protected:
    void paintEvent(QPaintEvent* event) override {
      ++paintings;
      QPushButton::paintEvent(event);
    }
  };

  PaintedWindow() {
    window.resize(200, 100);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, kWaitLimit));
    QCoreApplication::processEvents();
    button.paintings = 0;
  }

  QWidget window;
  Button button{&window};
};

TEST(QtEventDelivery, LongWorkPaintsTheWindowsWithAllThatIsOnThem) {
  PaintedWindow shown;
  QtEventDelivery events;
  const LongWork work(events);
  EXPECT_EQ(shown.button.paintings, 1) << "at the beginning";
  EXPECT_TRUE(QTest::qWaitFor(
      [&] {
        events.Paint();
        return shown.button.paintings >= 3;
      },
      kWaitLimit))
      << "and again after a pause";
}

// Counts how often a widget paints itself.
class Paintings : public QObject {
 public:
  explicit Paintings(QWidget* widget) { widget->installEventFilter(this); }
  int number = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++number;
    return QObject::eventFilter(watched, event);
  }
};

TEST(QtEventDelivery, LongWorkPaintsTheRowsOfAListToo) {
  QWidget window;
  QListWidget list(&window);
  list.addItems({QStringLiteral("a"), QStringLiteral("b")});
  window.resize(200, 200);
  list.setGeometry(10, 10, 180, 100);
  window.show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, kWaitLimit));
  QCoreApplication::processEvents();
  const Paintings rows(list.viewport());
  QtEventDelivery events;
  const LongWork work(events);
  EXPECT_EQ(rows.number, 1);
}

TEST(QtEventDelivery, AWindowThatIsNotShownIsNotPainted) {
  PaintedWindow shown;
  shown.window.hide();
  QtEventDelivery events;
  const LongWork work(events);
  EXPECT_EQ(shown.button.paintings, 0);
}

TEST(QtEventDelivery, PaintingDeliversNeitherInputNorAnythingElse) {
  PaintedWindow shown;
  int clicks = 0, calls = 0;
  QObject::connect(&shown.button, &QPushButton::clicked, &shown.window, [&] { ++clicks; });
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QCoreApplication::postEvent(
        &shown.button, new QMouseEvent(type, {5, 5}, {5, 5}, Qt::LeftButton, held, Qt::NoModifier));
  }
  QMetaObject::invokeMethod(
      &shown.window, [&] { ++calls; }, Qt::QueuedConnection);
  QTimer::singleShot(0, &shown.window, [&] { ++calls; });
  QtEventDelivery events;
  {
    const LongWork work(events);
    const QDeadlineTimer limit(kWaitLimit);
    while (shown.button.paintings < 3 && !limit.hasExpired()) events.Paint();
    EXPECT_EQ(shown.button.paintings, 3);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(calls, 0);
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return clicks == 1 && calls == 2; }, kWaitLimit))
      << "but nothing is lost";
}

TEST(QtEventDelivery, PaintingRestsBetweenTwoPaintings) {
  PaintedWindow shown;
  QtEventDelivery events;
  QElapsedTimer elapsed;
  elapsed.start();
  const LongWork work(events);
  for (int i = 0; i < 1000; ++i) events.Paint();
  EXPECT_LE(shown.button.paintings, 1 + elapsed.elapsed() / QtEventDelivery::kPaintPause.count());
}

TEST(QtEventDelivery, ThePointerTellsToWaitWhileThereIsLongWork) {
  QtEventDelivery events;
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  {
    const LongWork outer(events);
    { const LongWork inner(events); }
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  }
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace logbook
