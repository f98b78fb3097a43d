// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogReading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "AllCatalogues.h"
#include "RandomLogs.h"
#include "base/RunTimeError.h"
#include "loglist/ColumnValues.h"
#include "reports/MaintenanceReport.h"
#include "reports/ReportLayouts.h"
#include "reports/ReportRows.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "resources/Resources.h"
#include "text/NumberFormat.h"

namespace logbook::insight {
namespace {

using test::AllCatalogues;
using test::RandomLogs;

LogReading Read(const RandomLogs& logs, const std::string& folder) {
  return ReadLog(*logs.machine().code_page, AllCatalogues(),
                 LoadLogFiles(logs.machine(), RandomLogs::kRoot, folder));
}

// A log of a few files in memory.
class OneLog {
 public:
  OneLog& With(std::string name, std::string bytes) {
    const std::uint64_t size = bytes.size();
    files.Files.push_back({std::move(name), LogFile::Kind::kFile, std::move(bytes), size});
    return *this;
  }
  LogReading Read(int code_page = 1252) const {
    return ReadLog(*CodePage::Find(code_page), AllCatalogues(), files);
  }
  LogFiles files;
};

ValueState StateIn(const LogReading& reading, Catalogue which, int row) {
  return reading.At({which, row}).State;
}

std::string PrintedIn(const LogReading& reading, Catalogue which, int row) {
  return PrintedText(AllCatalogues(), {which, row}, reading.At({which, row}));
}

// --- the same as the list -------------------------------------------------------------------

// The cells of one catalogue row over some logs, as listlog.csv shows them; nothing if the list
// ends the program there.
class Lists {
 public:
  Lists(const RandomLogs& logs, const std::vector<std::string>& folders)
      : state_(std::make_unique<AppState>(logs.machine())) {
    state_->catalogues = AllCatalogues();
    state_->LogRoot = RandomLogs::kRoot;
    state_->LogCount = static_cast<std::int16_t>(folders.size());
    for (std::size_t i = 0; i < folders.size(); ++i) {
      state_->FileList[i + 1].Name = folders[i];
    }
  }

  std::optional<std::vector<std::string>> Cells(const RowId& id) {
    state_->ListView1.Clear();
    state_->ListView1.Rows.resize(static_cast<std::size_t>(state_->LogCount));
    try {
      Fill(id);
    } catch (const RunTimeError&) {
      return std::nullopt;
    }
    std::vector<std::string> cells;
    for (int log = 1; log <= state_->LogCount; ++log) {
      cells.push_back(state_->ListView1.Row(log).SubItem(2));
    }
    return cells;
  }

 private:
  void Fill(const RowId& id) {
    if (id.Which == Catalogue::kMeter) FillMeterList(*state_, 1, "Meter", id.Row);
    if (id.Which == Catalogue::kAnalog) FillAnalogList(*state_, 1, "Analog", id.Row);
    if (id.Which == Catalogue::kTune) FillTuneList(*state_, 1, "Tune", id.Row);
  }

  std::unique_ptr<AppState> state_;
};

// What the list shows for a value in this state.
std::string ExpectedCell(const RowId& id, const RowValue& value) {
  const RowInfo info = DescribeRow(AllCatalogues(), id);
  const bool zero = value.State == ValueState::kNoNumber ||
                    (value.State == ValueState::kFileShort && id.Which != Catalogue::kTune);
  if (zero) return FormatNumber(0, info.Format);
  return PrintedText(AllCatalogues(), id, value);
}

void ExpectCellsOfTheList(const RandomLogs& logs, const std::vector<std::string>& folders) {
  std::vector<LogReading> readings;
  for (const std::string& folder : folders) readings.push_back(Read(logs, folder));
  Lists lists(logs, folders);
  int compared = 0;
  for (const Catalogue which : {Catalogue::kMeter, Catalogue::kAnalog, Catalogue::kTune}) {
    for (int row = 0; row < InfoOf(which).Rows; ++row) {
      const RowId id = {which, row};
      const std::optional<std::vector<std::string>> cells = lists.Cells(id);
      if (!cells) continue;
      ++compared;
      for (std::size_t i = 0; i < folders.size(); ++i) {
        EXPECT_EQ(ExpectedCell(id, readings[i].At(id)), (*cells)[i]) << folders[i] << NameOf(id);
      }
    }
  }
  EXPECT_GT(compared, 300);
}

TEST(LogReading, ValuesAreTheCellsOfTheListOnEveryBuild) {
  RandomLogs logs(14);
  ExpectCellsOfTheList(logs, logs.Add(40));
}

TEST(LogReading, ValuesOfDamagedLogsAreTheCellsOfTheList) {
  RandomLogs logs(15);
  ExpectCellsOfTheList(logs, logs.AddDamaged(40));
}

// --- the same as the reports ----------------------------------------------------------------

struct ReportOf {
  ValueReport report;
  Catalogue which;
};
constexpr auto kReports = std::to_array<ReportOf>({{ValueReport::kAnalog, Catalogue::kAnalog},
                                                   {ValueReport::kMeter, Catalogue::kMeter},
                                                   {ValueReport::kSys, Catalogue::kSys},
                                                   {ValueReport::kBitOut, Catalogue::kBitOut},
                                                   {ValueReport::kBitIn, Catalogue::kBitIn}});

int GroupOf(const RowId& id) {
  const Catalogues& all = AllCatalogues();
  switch (id.Which) {
    case Catalogue::kAnalog:
      return RowAt(all.AnalogItems, id.Row).Group;
    case Catalogue::kMeter:
      return RowAt(all.MeterItems, id.Row).Group;
    case Catalogue::kSys:
      return RowAt(all.SysItems, id.Row).Group;
    case Catalogue::kBitOut:
      return RowAt(all.BoutItems, id.Row).Group;
    case Catalogue::kBitIn:
      return RowAt(all.BinItems, id.Row).Group;
    case Catalogue::kTune:
      break;
  }
  return 0;
}

// The rows that a report prints for these options.
std::vector<int> RowsOfReport(const ReportOf& each, const LogOptions& options) {
  std::vector<int> rows;
  if (each.which == Catalogue::kBitOut) {
    for (const BitPlace& place : BitOutPlaces(options)) rows.push_back(place.Row);
  } else if (each.which == Catalogue::kBitIn) {
    for (const BitPlace& place : BitInPlaces(options)) rows.push_back(place.Row);
  } else {
    for (std::int16_t row = 0; row < InfoOf(each.which).Rows; ++row) {
      const bool omitted = each.which == Catalogue::kAnalog
                               ? IsOmittedAnalogParam(row, options)
                               : each.which == Catalogue::kSys && IsOmittedSysParam(row);
      if (!omitted) rows.push_back(row);
    }
  }
  const ReportLayout& layout = kReportLayouts[static_cast<std::size_t>(each.report)];
  std::erase_if(rows, [&](int row) {
    return !IsJoined(layout, GroupOf({each.which, row}), options);
  });
  return rows;
}

// What stands behind the colon.
std::string ExpectedReading(const RowId& id, const RowValue& value) {
  const RowInfo info = DescribeRow(AllCatalogues(), id);
  if (value.State == ValueState::kFileShort) return "N/A";
  if (value.State == ValueState::kNotApplicable) return "N/A";
  const std::string unit = info.Kind == RowKind::kNumber ? " " + info.Unit : "";
  if (value.State == ValueState::kNoNumber) {
    return info.Kind == RowKind::kBit ? info.Label0 : FormatNumber(0, info.Format) + unit;
  }
  return PrintedText(AllCatalogues(), id, value) + unit;
}

std::vector<std::string> RowLinesOf(const std::string& report) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  while (begin < report.size()) {
    const std::size_t end = report.find("\r\n", begin);
    if (report[begin] == ' ') lines.push_back(report.substr(begin, end - begin));
    begin = end + 2;
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

void ExpectLinesOfReport(const RandomLogs& logs, const std::string& folder, const ReportOf& each) {
  const std::string path = RandomLogs::kRoot + folder + "\\";
  const LogReading reading = Read(logs, folder);
  std::string report;
  try {
    report = ValueReportText(logs.machine(), AllCatalogues(), each.report, path);
  } catch (const RunTimeError&) {
    return;
  }
  const ReportLayout& layout = kReportLayouts[static_cast<std::size_t>(each.report)];
  std::vector<std::string> expected;
  for (const int row : RowsOfReport(each, reading.Options)) {
    const RowId id = {each.which, row};
    if (StateIn(reading, each.which, row) == ValueState::kFileMissing) {
      EXPECT_EQ(report, "") << folder << NameOf(id);
      return;
    }
    std::string line = " " + DescribeRow(AllCatalogues(), id).Label;
    const std::size_t width = logs.machine().code_page->Length(line);
    line.append(layout.NameWidth + 1 - std::min(width, layout.NameWidth + 1), ' ');
    expected.push_back(line + ":" + ExpectedReading(id, reading.At(id)));
  }
  std::sort(expected.begin(), expected.end());
  if (report.empty()) return;
  const std::vector<std::string> printed = RowLinesOf(report);
  std::vector<std::string> differences;
  std::set_symmetric_difference(expected.begin(), expected.end(), printed.begin(), printed.end(),
                                std::back_inserter(differences));
  EXPECT_EQ(differences, std::vector<std::string>()) << folder;
}

TEST(LogReading, ValuesAreTheLinesOfTheReportsOnEveryBuild) {
  RandomLogs logs(16);
  for (const std::string& folder : logs.Add(60)) {
    for (const ReportOf& each : kReports) ExpectLinesOfReport(logs, folder, each);
  }
}

TEST(LogReading, ValuesOfDamagedLogsAreTheLinesOfTheReports) {
  RandomLogs logs(17);
  for (const std::string& folder : logs.AddDamaged(60)) {
    for (const ReportOf& each : kReports) ExpectLinesOfReport(logs, folder, each);
  }
}

TEST(LogReading, TuneValuesAreTheCellsOfTuneBin) {
  RandomLogs logs(18);
  for (const std::string& folder : logs.Add(40)) {
    const LogReading reading = Read(logs, folder);
    const std::vector<TuneCell> cells =
        TuneCells(logs.machine(), AllCatalogues(), RandomLogs::kRoot + folder + "\\");
    ASSERT_EQ(cells.size(), static_cast<std::size_t>(kTuneRowCount));
    for (int row = 0; row < kTuneRowCount; ++row) {
      // The list alone hides the instrument's name.
      if (IsHiddenInList(RowAt(AllCatalogues().TuneItems, row).Group, reading.Options)) continue;
      EXPECT_EQ(PrintedIn(reading, Catalogue::kTune, row),
                cells[static_cast<std::size_t>(row)].Value)
          << folder << " " << row;
    }
  }
}

TEST(LogReading, TicksAreTheSentencesOfTheMaintenanceReport) {
  RandomLogs logs(19);
  for (const std::string& folder : logs.Add(20)) {
    const LogReading reading = Read(logs, folder);
    std::string text;
    for (std::size_t item = 0; item < kItemHeaderCount; ++item) {
      if (reading.Ticks[item]) text += AllCatalogues().ItemHeaders[item] + "\r\n";
    }
    EXPECT_EQ(text,
              MaintenanceText(logs.machine(), AllCatalogues(), RandomLogs::kRoot + folder + "\\"));
    EXPECT_TRUE(reading.HasTicks);
  }
}

// --- states ---------------------------------------------------------------------------------

TEST(LogReading, ZeroStandsOnlyForZero) {
  const LogReading reading = OneLog().With("auser.txt", "0,,x1,-0,1e999,0.0 ,").Read();
  EXPECT_EQ(reading.At({Catalogue::kMeter, 0}), (RowValue{ValueState::kOk, 0, ""}));
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 1), ValueState::kNoNumber);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 2), ValueState::kNoNumber);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 3), ValueState::kOk);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 4), ValueState::kNoNumber);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 5), ValueState::kOk);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 7), ValueState::kFileShort);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 28), ValueState::kNotApplicable);
  EXPECT_EQ(StateIn(reading, Catalogue::kAnalog, 0), ValueState::kFileMissing);
}

TEST(LogReading, BitsWithoutHexadecimalDigitsHaveNoReading) {
  std::string words;
  for (int i = 0; i < 16; ++i) words += i == 3 ? "zzzz," : "FFFF,";
  const LogReading reading = OneLog().With("bin.txt", words).With("bout.txt", "1,2,3").Read();
  int without = 0;
  for (int row = 0; row < 58; ++row) {
    const bool bad = RowAt(AllCatalogues().BinItems, row).Word == 3;
    without += bad ? 1 : 0;
    EXPECT_EQ(StateIn(reading, Catalogue::kBitIn, row),
              bad ? ValueState::kNoNumber : ValueState::kOk)
        << row;
  }
  EXPECT_GT(without, 0);
  EXPECT_EQ(StateIn(reading, Catalogue::kBitOut, 0), ValueState::kFileShort);
}

TEST(LogReading, VariablesOfMacroFilesThatAreNoNumbersAreTold) {
  const LogReading reading = OneLog()
                                 .With("logfile.ini", "[OPTION]\r\nLENS=1\r\nSecurity=1\r\n")
                                 .With("PARAMVAR.MAC",
                                       "XPOS=5.55\r\nYPOS=x\r\nCLMD=99999\r\nCLHE=4.5\r\n"
                                       "InstrumentName$=Bench\r\n")
                                 .Read();
  EXPECT_EQ(PrintedIn(reading, Catalogue::kTune, 106), "5.6");
  EXPECT_EQ(StateIn(reading, Catalogue::kTune, 107), ValueState::kNoNumber);
  EXPECT_EQ(StateIn(reading, Catalogue::kTune, 108), ValueState::kFileShort);
  EXPECT_EQ(StateIn(reading, Catalogue::kTune, 134), ValueState::kNoNumber);
  EXPECT_EQ(StateIn(reading, Catalogue::kTune, 145), ValueState::kNoNumber);
  EXPECT_EQ(StateIn(reading, Catalogue::kTune, 0), ValueState::kFileMissing);
}

TEST(LogReading, FileNamesAreFoundWithoutRegardToCaseTheExactOneFirst) {
  const LogReading reading = OneLog()
                                 .With("AUSER.TXT", "1\r\n")
                                 .With("auser.txt", "2\r\n")
                                 .With("SENSEVA2.MAC", "SenseMass[1]=7\r\n")
                                 .Read();
  EXPECT_EQ(reading.At({Catalogue::kMeter, 0}).Number, 2);
  EXPECT_EQ(PrintedIn(reading, Catalogue::kTune, 0), "7");
}

// --- descriptor and comment -----------------------------------------------------------------

TEST(LogReading, DatesAreTakenAsTheyStandAndReckonedIfTheyExist) {
  struct Case {
    const char* text;
    bool exists;
  };
  for (const Case& each : {Case{"11/15/2026 05:09:59", true}, Case{"02/29/2024 23:59:59", true},
                           Case{"02/29/2025 00:00:00", false}, Case{"13/01/2026 00:00:00", false},
                           Case{"11/15/2026 24:00:00", false}, Case{"11/15/2026", false},
                           Case{"1/15/2026 05:09:59", false}, Case{"", false}}) {
    const LogReading reading =
        OneLog().With("logfile.ini", std::string("[LogFile]\r\nDate=") + each.text).Read();
    EXPECT_EQ(reading.Identity.Date, each.text);
    EXPECT_EQ(reading.Date.has_value(), each.exists) << each.text;
  }
  using namespace std::chrono;
  EXPECT_EQ(ParseLogDate("11/15/2026 05:09:59"),
            local_days(2026y / November / 15) + 5h + 9min + 59s);
}

TEST(LogReading, CommentIsTheWholeTextAndItsFirstLineThatOfTheList) {
  const LogReading reading = OneLog().With("comment.txt", "a\xB5\r\n\r\nb\r\n").Read();
  EXPECT_EQ(reading.Comment, "a\xC2\xB5\n\nb");
  EXPECT_EQ(FirstLine(reading.Comment), "a\xC2\xB5");
  EXPECT_TRUE(reading.HasComment);
  EXPECT_FALSE(OneLog().Read().HasComment);
  EXPECT_EQ(OneLog().With("comment.txt", "").Read().Comment, "");
  EXPECT_EQ(OneLog().With("comment.txt", "\x83\x5C\r\n").Read(932).Comment, "\xE3\x82\xBD");
}

TEST(LogReading, AutomaticRecordsAreKnownInEveryLanguage) {
  const CodePage& page = *CodePage::Find(1252);
  const std::string german = page.FromUtf8(LoadResString(131, 1));
  EXPECT_TRUE(OneLog().With("comment.txt", german + "\r\n").Read().Automatic);
  EXPECT_FALSE(OneLog().With("comment.txt", german + " \r\n").Read().Automatic);
}

TEST(LogReading, AutomaticRecordsAreKnownByTheirComment) {
  const std::string text(LoadResString(131));
  EXPECT_TRUE(OneLog().With("comment.txt", text + "\r\n").Read().Automatic);
  EXPECT_FALSE(OneLog().With("comment.txt", text + " \r\n").Read().Automatic);
  EXPECT_FALSE(OneLog().With("comment.txt", text + "\r\nmore\r\n").Read().Automatic);
}

// --- identity -------------------------------------------------------------------------------

TEST(LogIdentity, FingerprintLeavesOutWhatTheViewerRewrites) {
  OneLog log;
  log.With("aall.txt", "1\r\n").With("tune.rpt", "host");
  const std::uint64_t before = FingerprintOf(log.files);
  for (const char* name : {"analog.rpt", "METER.RPT", "sys.rpt", "bitout.rpt", "bitin.rpt",
                           "mainte.rpt", "tune.bin"}) {
    OneLog viewed = log;
    viewed.With(name, "anything");
    EXPECT_EQ(FingerprintOf(viewed.files), before) << name;
  }
}

TEST(LogIdentity, FingerprintTellsEveryByteOfTheHost) {
  OneLog log;
  log.With("aall.txt", "12345678901\r\n").With("tune.rpt", "host");
  const std::uint64_t before = FingerprintOf(log.files);
  for (std::size_t file = 0; file < log.files.Files.size(); ++file) {
    for (std::size_t byte = 0; byte < log.files.Files[file].Bytes.size(); ++byte) {
      OneLog other = log;
      other.files.Files[file].Bytes[byte] ^= 1;
      EXPECT_NE(FingerprintOf(other.files), before) << file << " " << byte;
    }
  }
  OneLog other = log;
  other.files.Files[0].Name = "auser.txt";
  EXPECT_NE(FingerprintOf(other.files), before);
  // The bytes of two files are not those of one.
  EXPECT_NE(FingerprintOf(OneLog().With("a", "xy").With("b", "").files),
            FingerprintOf(OneLog().With("a", "x").With("b", "y").files));
}

TEST(LogIdentity, FingerprintIsTheSameOnEveryMachine) {
  EXPECT_EQ(FingerprintOf(OneLog().With("aall.txt", "1.5\r\n2.5\r\n").files),
            7252113339339452824ULL);
}

// --- the log root ---------------------------------------------------------------------------

TEST(LogRootScan, EverySubFolderIsALogAndThereIsNoLimit) {
  const test::TestMachine disk;
  for (int i = 0; i < 300; ++i) {
    disk.MakeFolders("C:\\maintain\\" + std::to_string(26110000 + i));
  }
  disk.MakeFolders("C:\\maintain\\.odd name");
  disk.MakeFolders("C:\\maintain\\.logbook-new~");
  disk.Put("C:\\maintain\\.logbook-new~1", "half a list");
  disk.Put("C:\\maintain\\listlog.csv", "");
  const std::vector<std::string> logs = ScanLogRoot(disk, "C:\\maintain");
  ASSERT_EQ(logs.size(), 302U);
  EXPECT_EQ(logs[0], ".logbook-new~");
  EXPECT_EQ(logs[1], ".odd name");
  EXPECT_EQ(logs.back(), "26110299");
}

TEST(LogRootScan, FilesThatCannotBeReadAreTold) {
  const test::TestMachine disk;
  disk.Put("C:\\maintain\\26111500\\auser.txt", "1\r\n");
  disk.MakeFolders("C:\\maintain\\26111500\\aall.txt");
  const LogFiles files = LoadLogFiles(disk, "C:\\maintain", "26111500");
  const LogReading reading = ReadLog(*disk.machine().code_page, AllCatalogues(), files);
  EXPECT_EQ(reading.RefusedFiles, std::vector<std::string>{"aall.txt"});
  EXPECT_EQ(StateIn(reading, Catalogue::kAnalog, 0), ValueState::kFileMissing);
  EXPECT_EQ(StateIn(reading, Catalogue::kMeter, 0), ValueState::kOk);
}

TEST(LogRootScan, OfAFileOfMoreThan16MegabytesTheBeginningIsRead) {
  for (const std::size_t size : {kMostFileBytes - 1, kMostFileBytes, kMostFileBytes + 1}) {
    const test::TestMachine disk;
    disk.Put("C:\\maintain\\26111500\\comment.txt", std::string(size, 'x'));
    const LogFiles files = LoadLogFiles(disk, "C:\\maintain", "26111500");
    ASSERT_EQ(files.Files.size(), 1U);
    EXPECT_EQ(files.Files[0].Bytes.size(), std::min(size, std::size_t{16} * 1024 * 1024));
    EXPECT_EQ(files.Files[0].Size, size);
  }
}

TEST(LogRootScan, FolderThatHasGoneHasNoFiles) {
  const test::TestMachine disk;
  EXPECT_TRUE(LoadLogFiles(disk, "C:\\maintain", "26111500").Files.empty());
}

// --- rows -----------------------------------------------------------------------------------

TEST(CatalogueRow, PlacesAndRowsAreOneToOne) {
  for (int place = 0; place < kAllRows; ++place) {
    EXPECT_EQ(PlaceOf(RowAtPlace(place)), place);
    EXPECT_EQ(KindOf(AllCatalogues(), RowAtPlace(place)),
              DescribeRow(AllCatalogues(), RowAtPlace(place)).Kind);
    EXPECT_NE(DescribeRow(AllCatalogues(), RowAtPlace(place)).Section, "");
  }
  EXPECT_EQ(kAllRows, 29 + 215 + 163 + 245 + 58 + 65);
  EXPECT_EQ(NameOf(RowAtPlace(29)), "analog:0");
  EXPECT_EQ(FindCatalogue("Bout"), Catalogue::kBitOut);
}

}  // namespace
}  // namespace logbook::insight
