// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <chrono>
#include <memory>
#include <ostream>

#include "LogRoots.h"
#include "Output.h"
#include "Terminal.h"
#include "Verbs.h"
#include "base/Files.h"
#include "insight/Collectors.h"
#include "insight/UpkeepCalendar.h"
#include "insight/UpkeepText.h"
#include "insight/VisibleText.h"

namespace logbook::cli {
namespace {

using insight::DueReport;
using insight::TickKind;

struct DueRequest {
  LogRootOptions roots;
  std::string intervals;
  std::string today;
  std::string calendar;
  bool claimed = false;
  bool json = false;
};

insight::Intervals ReadIntervals(Call& call, const DueRequest& request) {
  const std::string file = SettingsFileOr(call, request.intervals, "intervals.ini");
  if (file.empty()) return {};
  return insight::ParseIntervals(file, ReadSettingsFile(call, file));
}

std::vector<insight::UpkeepRecord> ReadRecords(Call& call, const std::string& root) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  insight::LogIndex index(*call.machine.code_page, catalogues, root, IndexSettingsFor(call));
  return RecordsOf(index.Find({}));
}

void WriteCalendar(Call& call, const DueRequest& request, const std::vector<DueReport>& reports) {
  std::vector<std::string> roots;
  std::string calendar;
  if (request.calendar != "-" && Exists(call.machine, TypedPathText(request.calendar))) {
    calendar = ReadSettingsFile(call, request.calendar);
  }
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  for (const DueReport& report : reports) {
    roots.push_back(report.root);
    calendar = UpdateCalendar(calendar, insight::CalendarRootOf(report.root), report.items, now);
  }
  WriteOutput(call, request.calendar, calendar, roots);
}

int TellDue(Call& call, const DueRequest& request) {
  const insight::Intervals intervals = ReadIntervals(call, request);
  const insight::LocalDay today = TodayOf(request.today);
  const TickKind from = request.claimed ? TickKind::kClaimed : TickKind::kCertain;
  std::vector<DueReport> reports;
  for (const std::string& root : FindLogRoots(call, request.roots)) {
    reports.push_back(
        {root, today, from, ReckonDue(ReadRecords(call, root), intervals, from, today)});
  }
  if (!request.calendar.empty()) {
    WriteCalendar(call, request, reports);
  }
  if (request.json) {
    call.out << DueJson(reports);
  } else if (request.calendar != "-") {
    const TerminalFacts facts = LookAtTerminal();
    const int columns = facts.terminal ? facts.columns : 0;
    for (const DueReport& report : reports) {
      if (reports.size() > 1) call.out << insight::VisibleName(report.root) << '\n';
      call.out << DueTable(report, columns);
    }
  }
  return kSuccess;
}

}  // namespace

void AddDue(Frame& frame) {
  const auto request = std::make_shared<DueRequest>();
  CLI::App& verb = frame.AddVerb(
      "due", "Tell when maintenance was last done, by the ticks of the records, and when it is due",
      [request](Call& call) { return TellDue(call, *request); });
  AddLogRootOption(verb, request->roots);
  verb.add_option("--intervals", request->intervals,
                  "Intervals of the items, instead of intervals.ini of the configuration")
      ->type_name("FILE");
  verb.add_flag("--claimed", request->claimed,
                "Reckon from the last tick even if it may have been carried over");
  verb.add_option("--today", request->today, "Reckon for this day")->type_name("YYYY-MM-DD");
  auto* calendar =
      verb.add_option("--ics", request->calendar,
                      "Also write the days into this iCalendar; what it holds is updated")
          ->type_name("FILE");
  auto* json = verb.add_flag("--json", request->json, "Print one JSON document");
  json->excludes(calendar);
}

}  // namespace logbook::cli
