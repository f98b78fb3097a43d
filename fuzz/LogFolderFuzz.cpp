// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Whole log folders through all reports and the list: a report has its lines, tune.bin at most
// one column a row, and nothing but run-time errors comes out.

#include <array>
#include <string>

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

// Six columns by the last bytes of the input.
std::string Columns(Input& input) {
  constexpr std::array kCategories = {"Meter", "Analog", "Tune"};
  std::string profile;
  for (int column = 3; column <= 8; ++column) {
    profile += "[Header" + std::to_string(column) +
               "]\r\nCat=" + kCategories[static_cast<std::size_t>(input.Number(3))] +
               "\r\nItem=" + std::to_string(input.Byte() % 29) + "\r\n";
  }
  return profile;
}

void Try(Input input) {
  static test::TestWorkstation station;
  AppState& state = station.state;
  static const bool filled = (FillCatalogues(state.catalogues), true);
  static_cast<void>(filled);
  state.LogRoot = "C:\\logs\\";
  state.IniFile = "C:\\logbook.ini";
  const Machine& machine = station.disk.machine();
  const std::string folder = "C:\\logs\\26111500\\";
  for (const char* name : kFiles) station.disk.Put(folder + name, input.Text());
  for (const ValueReport report : kReports)
    Quietly([&] { ValueReportText(machine, state.catalogues, report, folder); });
  Quietly([&] { MaintenanceText(machine, state.catalogues, folder); });
  Quietly(
      [&] { FUZZ_REQUIRE(TuneCells(machine, state.catalogues, folder).size() <= kTuneRowCount); });
  station.disk.Put(state.IniFile, Columns(input));
  Quietly([&] {
    RebuildList(state, station.services.messages);
    FUZZ_REQUIRE(state.LogCount == 1 && state.ListView1.Rows.size() == 1);
  });
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
