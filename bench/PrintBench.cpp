// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How long a report takes from the sheet to the finished PDF document, and what memory the process
// needs for it at most: reports of many lines, and one line of as many characters as a report may
// have in one, which goes over hundreds of pages and should take less than 3 s.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>

#include "printing/SheetSettings.h"
#include "qt/SheetPrinting.h"
#include "state/F1Report.h"

namespace logbook {
namespace {

F1Book ReportOf(int lines) {
  F1Book sheet;
  BeginSheet(sheet);
  sheet.SetSheetName("Acquisition Log");
  for (int row = 1; row <= lines; ++row)
    sheet.SetText(row, 1,
                  "11/15/2026 05:09:59  sample " + std::to_string(row) +
                      "  acquired, 31 masses, 3 repetitions, no warnings");
  FinishSheet(sheet, false);
  return sheet;
}

F1Book LineOf(int characters) {
  F1Book sheet;
  BeginSheet(sheet);
  sheet.SetText(1, 1, std::string(static_cast<std::size_t>(characters), 'x'));
  FinishSheet(sheet, false);
  return sheet;
}

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

void Print(benchmark::State& state, const F1Book& sheet) {
  const LocalTime now{2026, 11, 21, 5, 9, 59};
  const CodePage& page = *CodePage::Find(1252);
  qsizetype bytes = 0;
  for (auto _ : state) bytes = SheetAsPdf(sheet, now, QPageSize(QPageSize::A4), page).size();
  state.counters["pdf_bytes"] = static_cast<double>(bytes);
  state.counters["peak_MB"] = PeakMegabytes();
}

void PrintReport(benchmark::State& state) {
  Print(state, ReportOf(static_cast<int>(state.range(0))));
}
BENCHMARK(PrintReport)->Arg(100)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

void PrintLongLine(benchmark::State& state) {
  Print(state, LineOf(static_cast<int>(state.range(0))));
}
BENCHMARK(PrintLongLine)->Arg(1000)->Arg(16000)->Arg(65533)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace logbook

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
