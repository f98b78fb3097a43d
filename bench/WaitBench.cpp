// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What a wait for the host costs: the part of one core that it takes (in percent), how often it
// wakes in a second, and how long after an event it goes on.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <ctime>

#include "qt/QtEventDelivery.h"

namespace logbook {
namespace {

using namespace std::chrono_literals;

void WaitWithoutEvents(benchmark::State& state) {
  QtEventDelivery events;
  QCoreApplication::processEvents();
  QElapsedTimer elapsed;
  elapsed.start();
  const std::clock_t start = std::clock();
  int wake_ups = 0;
  for (auto _ : state) {
    events.Deliver();
    ++wake_ups;
  }
  const double seconds = static_cast<double>(elapsed.nsecsElapsed()) / 1e9;
  const double taken = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  state.counters["core_percent"] = 100 * taken / seconds;
  state.counters["wake_ups_a_second"] = wake_ups / seconds;
}
BENCHMARK(WaitWithoutEvents)->MinTime(2)->UseRealTime()->Unit(benchmark::kMillisecond);

void WaitUntilAnEventComes(benchmark::State& state) {
  QtEventDelivery events;
  QObject context;
  for (auto _ : state) {
    bool delivered = false;
    QTimer::singleShot(5ms, Qt::PreciseTimer, &context, [&] { delivered = true; });
    while (!delivered) events.Deliver();
  }
}
BENCHMARK(WaitUntilAnEventComes)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace logbook

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
