// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Whole log folders through all reports and the list: a report has the rows of the log's instrument
// whatever its snapshot holds, the list shows what the report reads, a report file is as long as
// its text in the code page, tune.bin has at most one column a row, and nothing but run-time errors
// comes out.

#include <array>
#include <sstream>
#include <string>
#include <vector>

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "catalogue/ItemRecord.h"
#include "loglist/ColumnValues.h"
#include "loglist/LogList.h"
#include "reports/MaintenanceReport.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "support/TestServices.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFiles[] = {"logfile.ini",  "comment.txt",  "aall.txt",     "auser.txt",
                                  "bin.txt",      "bout.txt",     "sys.txt",      "SENSEVAR.MAC",
                                  "SENSEVA2.MAC", "OTHERVAR.MAC", "OTHERVA2.MAC", "resovar.mac"};
constexpr ValueReport kReports[] = {ValueReport::kAnalog, ValueReport::kMeter, ValueReport::kSys,
                                    ValueReport::kBitOut, ValueReport::kBitIn};

template <typename Call>
void Quietly(Call call) {
  try {
    call();
  } catch (const RunTimeError&) {
    // What a damaged file may raise.
  }
}

constexpr const char* kFolder = "C:\\logs\\26111500\\";
constexpr const char* kPlainFolder = "C:\\plain\\26111500\\";  // all numbers are 0

struct Choice {
  std::size_t category;
  int item;
};

// Six columns by the last bytes of the input.
std::vector<Choice> Columns(Input& input) {
  std::vector<Choice> columns;
  for (int column = 3; column <= 8; ++column) {
    const auto category = static_cast<std::size_t>(input.Number(3));
    columns.push_back({category, input.Byte() % kMeterRowCount});
  }
  return columns;
}

std::string Profile(const std::vector<Choice>& columns) {
  constexpr std::array kCategories = {"Meter", "Analog", "Tune"};
  std::string profile;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    profile += "[Header" + std::to_string(i + 3) + "]\r\nCat=" + kCategories[columns[i].category] +
               "\r\nItem=" + std::to_string(columns[i].item) + "\r\n";
  }
  return profile;
}

std::vector<std::string> RowsOf(const std::string& report) {
  std::vector<std::string> rows;
  std::istringstream lines(report);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(' ')) rows.push_back(line.substr(0, line.rfind('\r')));
  }
  return rows;
}

void PutPlainFolder(const test::TestMachine& disk) {
  std::string zeros;
  for (int i = 0; i < kSysRowCount; ++i) zeros += "0\r\n";
  for (const char* name : {"aall.txt", "auser.txt", "bin.txt", "bout.txt", "sys.txt"})
    disk.Put(std::string(kPlainFolder) + name, zeros);
}

// A report of the log; empty if it cannot be made.
std::string TryReport(const AppState& state, const Machine& machine, ValueReport report) {
  std::string text;
  Quietly([&] { text = ValueReportText(machine, state.catalogues, report, kFolder); });
  if (text.empty()) return text;
  const std::string plain = ValueReportText(machine, state.catalogues, report, kPlainFolder);
  FUZZ_REQUIRE(RowsOf(text).size() == RowsOf(plain).size());
  FUZZ_REQUIRE(ReportFileBytes(machine, text).size() == machine.code_page->Length(text) + 2);
  return text;
}

// A cell of the list stands in a row of the report, where that has a reading for it.
void Agree(const std::string& cell, const ItemRecord& item, const std::string& report) {
  bool has_reading = false;
  for (const std::string& row : RowsOf(report)) {
    if (!row.starts_with(" " + item.Name) || row.ends_with(":N/A")) continue;
    if (row.ends_with(":" + cell + " " + item.Unit)) return;
    has_reading = true;
  }
  FUZZ_REQUIRE(!has_reading);
}

void TryList(test::TestWorkstation& station, const std::vector<Choice>& columns,
             const std::string& meter, const std::string& analog) {
  AppState& state = station.state;
  RebuildList(state, station.services.messages);
  FUZZ_REQUIRE(state.LogCount == 1 && state.ListView1.Rows.size() == 1);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string& cell = state.ListView1.Row(1).SubItem(static_cast<int>(i) + 2);
    if (cell.empty() || cell == "N/A" || columns[i].category == 2) continue;
    const bool is_meter = columns[i].category == 0;
    Agree(cell,
          is_meter ? RowAt(state.catalogues.MeterItems, columns[i].item)
                   : RowAt(state.catalogues.AnalogItems, columns[i].item),
          is_meter ? meter : analog);
  }
}

void Begin(test::TestWorkstation& station) {
  FillCatalogues(station.state.catalogues);
  station.state.LogRoot = "C:\\logs\\";
  station.state.IniFile = "C:\\logbook.ini";
  PutPlainFolder(station.disk);
}

void Try(Input input) {
  static test::TestWorkstation station;
  static const bool begun = (Begin(station), true);
  static_cast<void>(begun);
  AppState& state = station.state;
  const Machine& machine = station.disk.machine();
  for (const char* name : kFiles) {
    const std::string bytes = input.Text();
    station.disk.Put(std::string(kFolder) + name, bytes);
    if (name == std::string("logfile.ini"))
      station.disk.Put(std::string(kPlainFolder) + name, bytes);
  }
  std::array<std::string, 5> reports;
  for (const ValueReport report : kReports)
    reports.at(static_cast<std::size_t>(report)) = TryReport(state, machine, report);
  Quietly([&] { MaintenanceText(machine, state.catalogues, kFolder); });
  Quietly(
      [&] { FUZZ_REQUIRE(TuneCells(machine, state.catalogues, kFolder).size() <= kTuneRowCount); });
  const std::vector<Choice> columns = Columns(input);
  station.disk.Put(state.IniFile, Profile(columns));
  Quietly([&] {
    TryList(station, columns, reports[static_cast<std::size_t>(ValueReport::kMeter)],
            reports[static_cast<std::size_t>(ValueReport::kAnalog)]);
  });
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
