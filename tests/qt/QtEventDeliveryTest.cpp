// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtEventDelivery.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <ctime>
#include <functional>

namespace logbook {
namespace {

using namespace std::chrono_literals;

constexpr int kPollsOfLongestSleep =
    static_cast<int>(QtEventDelivery::kLongestSleep / QtEventDelivery::kPoll);

TEST(QtEventDelivery, AWaitWithoutEventsSleepsAndWakesRarely) {
  QtEventDelivery events;
  QCoreApplication::processEvents();
  int wake_ups = 0;
  int polls = 0;
  for (; polls < 50000; ++wake_ups) {  // about half a second
    const int stands_for = events.Deliver();
    EXPECT_GE(stands_for, 1);
    EXPECT_LE(stands_for, kPollsOfLongestSleep);
    polls += stands_for;
  }
  EXPECT_LE(wake_ups, 25);
}

TEST(QtEventDelivery, AWaitTakesLessThanOnePercentOfACore) {
  QtEventDelivery events;
  QCoreApplication::processEvents();
  QElapsedTimer elapsed;
  elapsed.start();
  const std::clock_t start = std::clock();
  while (elapsed.elapsed() < 2000) events.Deliver();
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  EXPECT_LT(seconds, 0.01 * static_cast<double>(elapsed.elapsed()) / 1000);
}

// The fewest polls that a wait has taken; a loaded machine gets more tries.
int FewestPolls(const std::function<int()>& wait) {
  int fewest = wait();
  for (int i = 0; i < 50 && fewest >= kPollsOfLongestSleep; ++i) fewest = wait();
  return fewest;
}

TEST(QtEventDelivery, APendingEventIsDeliveredWithoutASleep) {
  const int polls = FewestPolls([] {
    QtEventDelivery events;
    QObject context;
    bool delivered = false;
    QTimer::singleShot(0, &context, [&] { delivered = true; });
    const int taken = events.Deliver();
    EXPECT_TRUE(delivered);
    return taken;
  });
  EXPECT_LT(polls, kPollsOfLongestSleep);
}

TEST(QtEventDelivery, AnEventEndsTheSleep) {
  const int polls = FewestPolls([] {
    QtEventDelivery events;
    QCoreApplication::processEvents();
    QObject context;
    bool delivered = false;
    QTimer::singleShot(5ms, Qt::PreciseTimer, &context, [&] { delivered = true; });
    int taken = 0;
    while (!delivered) taken += events.Deliver();
    return taken;
  });
  EXPECT_LT(polls, kPollsOfLongestSleep);
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
    QTimer::singleShot(150ms, &modal, [&] { modal.quit(); });
    modal.exec();
  });
  EXPECT_LE(events.Deliver(), kPollsOfLongestSleep);
}

}  // namespace
}  // namespace logbook
