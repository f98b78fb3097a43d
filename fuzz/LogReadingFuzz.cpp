// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Log folders of any content through the readers of the analysing commands: what they read is what
// the list shows and what stands in the reports, it comes back from a baseline, a log differs from
// itself in nothing and from another as much as the other from it, and what the check finds is
// of a known kind.

#include <algorithm>
#include <array>
#include <sstream>
#include <string>
#include <vector>

#include "AllCatalogues.h"
#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "insight/Baselines.h"
#include "insight/Check.h"
#include "insight/Difference.h"
#include "loglist/LogList.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "support/TestServices.h"
#include "text/NumberFormat.h"

namespace logbook::fuzz {
namespace {

using namespace insight;
using test::AllCatalogues;

constexpr const char* kFiles[] = {"logfile.ini",  "comment.txt",  "aall.txt",     "auser.txt",
                                  "bin.txt",      "bout.txt",     "sys.txt",      "SENSEVAR.MAC",
                                  "SENSEVA2.MAC", "OTHERVAR.MAC", "OTHERVA2.MAC", "resovar.mac",
                                  "PARAMVAR.MAC"};
constexpr const char* kFolder = "C:\\logs\\26111500\\";
constexpr std::array kListed = {Catalogue::kMeter, Catalogue::kAnalog, Catalogue::kTune};

struct ReportOf {
  ValueReport report;
  Catalogue which;
};
constexpr auto kReports = std::to_array<ReportOf>({{ValueReport::kAnalog, Catalogue::kAnalog},
                                                   {ValueReport::kMeter, Catalogue::kMeter},
                                                   {ValueReport::kSys, Catalogue::kSys},
                                                   {ValueReport::kBitOut, Catalogue::kBitOut},
                                                   {ValueReport::kBitIn, Catalogue::kBitIn}});

// What the catalogues say, gathered once.
const RowInfo& InfoOfRow(const RowId& id) {
  static const std::vector<RowInfo> rows = [] {
    std::vector<RowInfo> infos;
    for (int place = 0; place < kAllRows; ++place)
      infos.push_back(DescribeRow(AllCatalogues(), RowAtPlace(place)));
    return infos;
  }();
  return rows[static_cast<std::size_t>(PlaceOf(id))];
}

// Runs the call; false if it raises what a damaged file may raise.
template <typename Call>
bool Succeeds(Call call) {
  try {
    call();
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

// --- the list -------------------------------------------------------------------------------

// Six columns by the last bytes of the input.
std::vector<RowId> Columns(Input& input) {
  std::vector<RowId> columns;
  for (int column = 3; column <= 8; ++column) {
    const Catalogue which = kListed.at(static_cast<std::size_t>(input.Number(3)));
    columns.push_back({which, input.Byte() % InfoOf(which).Rows});
  }
  return columns;
}

std::string Profile(const std::vector<RowId>& columns) {
  constexpr std::array kCategories = {"Meter", "Analog", "Tune"};
  std::string profile;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    profile += "[Header" + std::to_string(i + 3) +
               "]\r\nCat=" + kCategories.at(static_cast<std::size_t>(columns[i].Which)) +
               "\r\nItem=" + std::to_string(columns[i].Row) + "\r\n";
  }
  return profile;
}

// The list shows 0 where a report would say that nothing is there.
std::string ExpectedCell(const RowId& id, const RowValue& value) {
  const bool is_zero = value.State == ValueState::kNoNumber ||
                       (value.State == ValueState::kFileShort && id.Which != Catalogue::kTune);
  if (is_zero) return FormatNumber(0, InfoOfRow(id).Format);
  return PrintedText(AllCatalogues(), id, value);
}

void AgreeWithList(test::TestWorkstation& station, const std::vector<RowId>& columns,
                   const LogReading& reading) {
  AppState& state = station.state;
  station.disk.Put(state.IniFile, Profile(columns));
  if (!Succeeds([&] { RebuildList(state, station.services.messages); })) return;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string& cell = state.ListView1.Row(1).SubItem(static_cast<int>(i) + 2);
    FUZZ_REQUIRE(cell == ExpectedCell(columns[i], reading.At(columns[i])));
  }
}

// --- the reports ----------------------------------------------------------------------------

// What stands behind the colon.
std::string ExpectedReading(const RowId& id, const RowValue& value) {
  const RowInfo& info = InfoOfRow(id);
  if (value.State == ValueState::kFileShort) return "N/A";
  if (value.State == ValueState::kNotApplicable) return "N/A";
  const std::string unit = info.Kind == RowKind::kNumber ? " " + info.Unit : "";
  if (value.State == ValueState::kNoNumber)
    return info.Kind == RowKind::kBit ? info.Label0 : FormatNumber(0, info.Format) + unit;
  return PrintedText(AllCatalogues(), id, value) + unit;
}

// A row as its line begins and ends.
struct Ends {
  std::string begin;
  std::string end;
};

std::vector<Ends> EndsOf(Catalogue which, const LogReading& reading) {
  std::vector<Ends> rows;
  for (RowId id = {which, 0}; id.Row < InfoOf(which).Rows; ++id.Row)
    rows.push_back({" " + InfoOfRow(id).Label, ":" + ExpectedReading(id, reading.At(id))});
  return rows;
}

void AgreeWithReports(const Machine& machine, const LogReading& reading) {
  for (const ReportOf& each : kReports) {
    std::string report;
    if (!Succeeds(
            [&] { report = ValueReportText(machine, AllCatalogues(), each.report, kFolder); }))
      continue;
    const std::vector<Ends> rows = EndsOf(each.which, reading);
    std::istringstream lines(report);
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with(' ') || !line.ends_with('\r')) continue;
      line.pop_back();
      FUZZ_REQUIRE(std::ranges::any_of(rows, [&](const Ends& row) {
        return line.starts_with(row.begin) && line.ends_with(row.end);
      }));
    }
  }
}

// All tune values but those that the list alone hides.
void AgreeWithTuneBin(const Machine& machine, const LogReading& reading) {
  std::vector<TuneCell> cells;
  if (!Succeeds([&] { cells = TuneCells(machine, AllCatalogues(), kFolder); })) return;
  if (cells.size() != kTuneRowCount) return;
  for (RowId id = {Catalogue::kTune, 0}; id.Row < kTuneRowCount; ++id.Row) {
    if (IsHiddenInList(RowAt(AllCatalogues().TuneItems, id.Row).Group, reading.Options)) continue;
    const std::string& cell = cells[static_cast<std::size_t>(id.Row)].Value;
    FUZZ_REQUIRE(cell == ExpectedCell(id, reading.At(id)));
  }
}

// --- the log by itself ----------------------------------------------------------------------

void ComeBack(const LogReading& reading) {
  const LogReading again = ParseReading(ReadingText(reading));
  FUZZ_REQUIRE(again.Identity == reading.Identity && again.Date == reading.Date);
  FUZZ_REQUIRE(again.Comment == reading.Comment && again.HasComment == reading.HasComment);
  FUZZ_REQUIRE(again.Ticks == reading.Ticks && again.HasTicks == reading.HasTicks);
  FUZZ_REQUIRE(again.Automatic == reading.Automatic && again.Values == reading.Values);
  for (const OptionKey& option : kOptionKeys)
    FUZZ_REQUIRE(again.Options.*option.Member == reading.Options.*option.Member);
}

void Compare(const LogReading& reading, const LogReading& empty) {
  FUZZ_REQUIRE(!CompareLogs(AllCatalogues(), reading, reading, {}).Different());
  const LogDifference there = CompareLogs(AllCatalogues(), empty, reading, {});
  const LogDifference back = CompareLogs(AllCatalogues(), reading, empty, {});
  FUZZ_REQUIRE(there.options.size() == back.options.size());
  FUZZ_REQUIRE(there.values.size() == back.values.size());
  FUZZ_REQUIRE(there.missing.size() == back.missing.size());
  FUZZ_REQUIRE(there.applicability.size() == back.applicability.size());
}

void Check(const CodePage& page, const LogFiles& files, const LogReading& reading) {
  for (const Finding& finding : CheckLog(page, files, reading, {}))
    FUZZ_REQUIRE(FindKind(finding.code) != nullptr && finding.log == files.Folder);
}

void Begin(test::TestWorkstation& station) {
  FillCatalogues(station.state.catalogues);
  station.state.LogRoot = "C:\\logs\\";
  station.state.IniFile = "C:\\logbook.ini";
}

void Try(Input input) {
  static test::TestWorkstation station;
  static const bool begun = (Begin(station), true);
  static_cast<void>(begun);
  const Machine& machine = station.disk.machine();
  LogFiles files{"/logs", "26111500", {}};
  for (const char* name : kFiles) {
    const std::string bytes = input.Text();
    station.disk.Put(std::string(kFolder) + name, bytes);
    files.Files.push_back({name, LogFile::Kind::kFile, bytes, bytes.size()});
  }
  const LogReading reading = ReadLog(*machine.code_page, AllCatalogues(), files);
  FUZZ_REQUIRE(reading.Values.size() == static_cast<std::size_t>(kAllRows));
  AgreeWithList(station, Columns(input), reading);
  AgreeWithReports(machine, reading);
  AgreeWithTuneBin(machine, reading);
  ComeBack(reading);
  Compare(reading, ReadLog(*machine.code_page, AllCatalogues(), {}));
  Check(*machine.code_page, files, reading);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
