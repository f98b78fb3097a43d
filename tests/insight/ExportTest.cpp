// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Exports read back by programs that share nothing with the ones that wrote them: Python's csv,
// json and sqlite3, and openpyxl. Each reader gives the log's values as one JSON object, which is
// held against the readings.

#include "insight/Export.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "SampleReadings.h"
#include "insight/Difference.h"
#include "insight/Upkeep.h"
#include "support/RunProgram.h"

namespace logbook::insight {
namespace {

using nlohmann::json;
using test::AllCatalogues;
using test::QuietReading;
using test::SetNumber;
using test::SetState;

// The Python for the readers; openpyxl is the only module that is not its own.
const std::string& Python() {
  static const std::string python = test::PythonWith("openpyxl");
  return python;
}

#define NEED_PYTHON() \
  if (Python().empty()) GTEST_FAIL() << "the machine has no python3-openpyxl; ./test installs it"

// Runs a reader on a file; the reader leaves its result in `result`.
json ReadBack(const std::string& scratch, const std::string& file, const std::string& reader) {
  std::ofstream(scratch + "/read.py")
      << "import csv, json, sqlite3, sys\npath = sys.argv[1]\nresult = None\n"
      << reader << "\njson.dump(result, open(sys.argv[2], 'w'))\n";
  const test::ProgramResult run =
      test::RunProgram(Python() + " " + test::Quoted(scratch + "/read.py") + " " +
                       test::Quoted(file) + " " + test::Quoted(scratch + "/result.json"));
  EXPECT_EQ(run.status, 0) << run.output;
  std::ifstream in(scratch + "/result.json");
  return json::parse(in, nullptr, false);
}

// Random logs, and one whose texts try to be something else.
std::vector<LogReading> SampleReadings() {
  static const std::vector<LogReading> readings = [] {
    test::RandomLogs logs(41);
    std::vector<LogReading> all = test::RandomReadings(logs, 12);
    LogReading odd = QuietReading("=1+1", "@SUM(1)");
    odd.Comment = "=HYPERLINK(\"http://x\"),\nsecond \"line\"; 5 \xC2\xB5L";
    odd.Ticks[0] = odd.Ticks[17] = true;
    odd.Options.LENS = 1.5;
    odd.Values[static_cast<std::size_t>(PlaceOf({Catalogue::kTune, 62}))].Text = "-1+cmd";
    SetNumber(odd, {Catalogue::kMeter, 0}, -0.1);
    SetNumber(odd, {Catalogue::kMeter, 1}, 1e300);
    SetNumber(odd, {Catalogue::kBitOut, 0}, 1);
    all.push_back(odd);
    return all;
  }();
  return readings;
}

std::string Made(const std::function<std::unique_ptr<Exporter>(std::ostream&)>& make,
                 const std::vector<LogReading>& readings) {
  std::ostringstream out;
  const std::unique_ptr<Exporter> exporter = make(out);
  for (const LogReading& reading : readings) exporter->Add(reading);
  exporter->Finish();
  return out.str();
}

std::string Csv(ExportShape shape, const std::vector<LogReading>& readings,
                RootColumn root = RootColumn::kWithout) {
  return Made([&](auto& out) { return MakeCsvExporter(out, AllCatalogues(), shape, root); },
              readings);
}

std::string JsonLines(ExportShape shape, const std::vector<LogReading>& readings,
                      RootColumn root = RootColumn::kWithout) {
  return Made([&](auto& out) { return MakeJsonLinesExporter(out, AllCatalogues(), shape, root); },
              readings);
}

bool IsNumber(const RowId& id) {
  return KindOf(AllCatalogues(), id) != RowKind::kText;
}

// What the long shape has to say of a row.
json ExpectedLong(const LogReading& reading, const RowId& id) {
  const RowValue& value = reading.At(id);
  const bool has_number = value.State == ValueState::kOk && IsNumber(id);
  return {has_number ? json(value.Number) : json(nullptr), PrintedText(AllCatalogues(), id, value),
          NameOf(value.State)};
}

// A text as a CSV export shows it.
std::string Shown(const std::string& text) {
  return text.find_first_of("=+-@") == 0 ? "'" + text : text;
}

TEST(Export, CsvLongReadsBackAsTheReadings) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  const std::vector<LogReading> readings = SampleReadings();
  std::ofstream(scratch.home() + "/long.csv", std::ios::binary)
      << Csv(ExportShape::kLong, readings);
  const json rows = ReadBack(scratch.home(), scratch.home() + "/long.csv",
                             "result = list(csv.DictReader(open(path, encoding='utf-8', "
                             "newline=''), strict=True))");
  constexpr std::size_t kPerLog = 2 + 18 + 12 + kAllRows;
  ASSERT_EQ(rows.size(), readings.size() * kPerLog);
  for (std::size_t log = 0; log < readings.size(); ++log) {
    const LogReading& reading = readings[log];
    const json& comment = rows[log * kPerLog];
    EXPECT_EQ(comment["text"], Shown(reading.Comment));
    EXPECT_EQ(comment["log"], Shown(reading.Identity.Folder));
    EXPECT_EQ(comment["date"], Shown(ExportDate(reading)));
    for (int place = 0; place < kAllRows; ++place) {
      const RowId id = RowAtPlace(place);
      const RowInfo info = DescribeRow(AllCatalogues(), id);
      const json& row = rows[log * kPerLog + 32 + static_cast<std::size_t>(place)];
      const json expected = ExpectedLong(reading, id);
      ASSERT_EQ(row["catalogue"], InfoOf(id.Which).Name);
      ASSERT_EQ(row["row"], std::to_string(id.Row));
      EXPECT_EQ(row["label"], Shown(info.Label));
      EXPECT_EQ(row["unit"], info.Unit);
      EXPECT_EQ(row["section"], info.Section);
      EXPECT_EQ(row["state"], expected[2]);
      EXPECT_EQ(row["text"], IsNumber(id) ? expected[1] : json(Shown(expected[1])));
      const std::string value = row["value"];
      EXPECT_EQ(value.empty() ? json(nullptr) : json(std::stod(value)), expected[0]);
    }
  }
}

TEST(Export, CsvWideHasALineALog) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  const std::vector<LogReading> readings = SampleReadings();
  std::ofstream(scratch.home() + "/wide.csv", std::ios::binary)
      << Csv(ExportShape::kWide, readings, RootColumn::kWith);
  const json rows = ReadBack(scratch.home(), scratch.home() + "/wide.csv",
                             "rows = list(csv.reader(open(path, encoding='utf-8', newline=''), "
                             "strict=True))\n"
                             "assert len(set(rows[0])) == len(rows[0]), 'a title stands twice'\n"
                             "result = [dict(zip(rows[0], r, strict=True)) for r in rows[1:]]");
  ASSERT_EQ(rows.size(), readings.size());
  for (std::size_t log = 0; log < readings.size(); ++log) {
    const LogReading& reading = readings[log];
    EXPECT_EQ(rows[log]["root"], reading.Identity.Root);
    EXPECT_EQ(rows[log]["comment"], Shown(reading.Comment));
    EXPECT_EQ(rows[log]["Change EM"], reading.Ticks[17] ? "1" : "0");
    EXPECT_EQ(std::stod(std::string(rows[log]["LENS"])), reading.Options.LENS);
    const RowValue& oxide = reading.At({Catalogue::kTune, 63});
    const std::string cell = rows[log]["tune:63 Oxide (%)"];
    if (oxide.State == ValueState::kOk) {
      EXPECT_EQ(std::stod(cell), oxide.Number);
    } else {
      EXPECT_EQ(cell, oxide.State == ValueState::kNotApplicable ? "N/A" : "");
    }
    EXPECT_EQ(
        rows[log]["bout:0 " + DescribeRow(AllCatalogues(), {Catalogue::kBitOut, 0}).Label],
        PrintedText(AllCatalogues(), {Catalogue::kBitOut, 0}, reading.At({Catalogue::kBitOut, 0})));
  }
}

TEST(Export, CsvHasLineEndsOfItsStandard) {
  const std::string csv = Csv(ExportShape::kLong, {QuietReading("a", "")});
  EXPECT_TRUE(csv.starts_with("log,date,catalogue,row,label,unit,section,value,text,state\r\n"));
  for (std::size_t i = csv.find('\n'); i != std::string::npos; i = csv.find('\n', i + 1)) {
    EXPECT_EQ(csv[i - 1], '\r');
  }
}

TEST(Export, JsonLinesReadBackAsTheReadings) {
  const std::vector<LogReading> readings = SampleReadings();
  std::istringstream lines(JsonLines(ExportShape::kLong, readings));
  std::string line;
  for (const LogReading& reading : readings) {
    std::getline(lines, line);
    EXPECT_EQ(json::parse(line).at("text"), reading.Comment);
    for (int skipped = 1; skipped < 32; ++skipped) std::getline(lines, line);
    for (int place = 0; place < kAllRows; ++place) {
      ASSERT_TRUE(std::getline(lines, line));
      const json entry = json::parse(line);
      EXPECT_EQ(entry.at("log"), reading.Identity.Folder);
      EXPECT_EQ(NameOf(RowAtPlace(place)), entry.at("catalogue").get<std::string>() + ":" +
                                               std::to_string(entry.at("row").get<int>()));
      EXPECT_EQ(json({entry.at("value"), entry.at("text"), entry.at("state")}),
                ExpectedLong(reading, RowAtPlace(place)));
    }
  }
  EXPECT_FALSE(std::getline(lines, line));
}

TEST(Export, JsonLinesInWideShapeHaveAnObjectALog) {
  const std::vector<LogReading> readings = SampleReadings();
  std::istringstream lines(JsonLines(ExportShape::kWide, readings, RootColumn::kWith));
  for (const LogReading& reading : readings) {
    std::string line;
    ASSERT_TRUE(std::getline(lines, line));
    const json log = json::parse(line);
    EXPECT_EQ(log.at("root"), reading.Identity.Root);
    EXPECT_EQ(log.at("date_text"), reading.Identity.Date);
    EXPECT_EQ(log.at("fingerprint"), FingerprintText(reading.Identity));
    EXPECT_EQ(log.at("options").at("LENS"), reading.Options.LENS);
    for (int place = 0; place < kAllRows; ++place) {
      const std::string name = NameOf(RowAtPlace(place));
      const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
      const bool ok = value.State == ValueState::kOk;
      ASSERT_EQ(log.at("values").contains(name), ok);
      ASSERT_EQ(log.at("states").contains(name), !ok);
      if (!ok) {
        EXPECT_EQ(log.at("states").at(name), NameOf(value.State));
      } else if (IsNumber(RowAtPlace(place))) {
        EXPECT_EQ(log.at("values").at(name), value.Number);
      } else {
        EXPECT_EQ(log.at("values").at(name), value.Text);
      }
    }
  }
}

constexpr const char* kReadBook =
    "import openpyxl, datetime\n"
    "book = openpyxl.load_workbook(path)\n"
    "plain = lambda v: v.isoformat() if isinstance(v, datetime.datetime) else v\n"
    "result = {s.title: {'freeze': s.freeze_panes, 'bold': s['A1'].font.bold,\n"
    "   'rows': [[plain(c) for c in r] for r in s.iter_rows(values_only=True)]} for s in book}";

json ReadBook(const test::TestMachine& scratch, ExportShape shape,
              const std::vector<LogReading>& readings) {
  const std::string file = scratch.home() + "/book.xlsx";
  const auto exporter = MakeXlsxExporter(file, AllCatalogues(), shape, RootColumn::kWithout);
  for (const LogReading& reading : readings) exporter->Add(reading);
  exporter->Finish();
  return ReadBack(scratch.home(), file, kReadBook);
}

TEST(Export, ACellOfAWorkbookHasAtMost32767Characters) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  std::vector<LogReading> readings;
  for (const std::size_t size : {32766, 32767, 32768}) {
    readings.push_back(test::QuietReading("26010100", "01/01/2026 00:00:00"));
    readings.back().HasComment = true;
    readings.back().Comment = std::string(size, 'x');
  }
  const json rows = ReadBook(scratch, ExportShape::kWide, readings)["Logs"]["rows"];
  std::vector<std::size_t> longest;
  for (std::size_t log = 1; log < rows.size(); ++log) {
    longest.push_back(0);
    for (const json& cell : rows[log]) {
      const std::size_t size = cell.is_string() ? cell.get<std::string>().size() : 0;
      longest.back() = std::max(longest.back(), size);
    }
  }
  EXPECT_EQ(longest, (std::vector<std::size_t>{32766, 32767, 32767}));
}

TEST(Export, TheWorkbookHasASheetACatalogueWithTypedCells) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  const std::vector<LogReading> readings = SampleReadings();
  const json book = ReadBook(scratch, ExportShape::kWide, readings);
  ASSERT_EQ(book.size(), 7U);
  for (const auto& [name, sheet] : book.items()) {
    EXPECT_EQ(sheet["freeze"], "A2") << name;
    EXPECT_EQ(sheet["bold"], true) << name;
    ASSERT_EQ(sheet["rows"].size(), readings.size() + 1) << name;
  }
  for (const CatalogueInfo& catalogue : kCatalogues) {
    const json& rows = book[std::string(catalogue.Title)]["rows"];
    for (std::size_t log = 0; log < readings.size(); ++log) {
      for (int row = 0; row < catalogue.Rows; ++row) {
        const RowId id = {catalogue.Which, row};
        const RowValue& value = readings[log].At(id);
        const json& cell = rows[log + 1][static_cast<std::size_t>(row) + 2];
        const std::string text = PrintedText(AllCatalogues(), id, value);
        if (value.State == ValueState::kOk && KindOf(AllCatalogues(), id) == RowKind::kNumber) {
          ASSERT_TRUE(cell.is_number()) << NameOf(id) << cell;
          EXPECT_NEAR(cell.get<double>(), value.Number, std::abs(value.Number) * 1e-15);
        } else {
          EXPECT_EQ(cell, text.empty() ? json(nullptr) : json(text)) << NameOf(id);
        }
      }
    }
  }
  const json& first = book["Logs"]["rows"][1];
  EXPECT_EQ(first[0], readings[0].Identity.Folder);
  EXPECT_EQ(first[1], ExportDate(readings[0])) << "a date, read as one";
  EXPECT_TRUE(first[2].is_boolean());
  EXPECT_EQ(book["Logs"]["rows"].back().back(), readings.back().Comment) << "a text, no formula";
  EXPECT_EQ(book["Tune"]["rows"][0][2 + 63], "63 Oxide (%)");
}

TEST(Export, TheWorkbookHasTheLongShapeToo) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  const LogReading reading = SampleReadings().back();
  const json rows = ReadBook(scratch, ExportShape::kLong, {reading})["Values"]["rows"];
  ASSERT_EQ(rows.size(), 1U + 32 + kAllRows);
  EXPECT_EQ(rows[0], json({"Log", "Date", "Catalogue", "Row", "Label", "Unit", "Section", "Value",
                           "Text", "State"}));
  EXPECT_EQ(rows[1][8], reading.Comment);
  EXPECT_EQ(rows[33][7], -0.1);
}

TEST(Export, TextsThatNoCellCanHoldAreCutAndCleaned) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  LogReading reading = QuietReading("\xFF", "01/01/1800 00:00:00");
  reading.Comment = std::string("a\x01\0b", 4) + std::string(40000, 'x');
  const json book = ReadBook(scratch, ExportShape::kWide, {reading});
  const json& row = book["Logs"]["rows"][1];
  EXPECT_EQ(row[0], "\xEF\xBF\xBD");
  EXPECT_EQ(row[1], "1800-01-01T00:00:00") << "no date of a workbook";
  EXPECT_EQ(row.back().get<std::string>().substr(0, 8),
            "a\xEF\xBF\xBD\xEF\xBF\xBD"
            "b");
}

TEST(Export, AnEmptyExportIsWhole) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  EXPECT_EQ(ReadBook(scratch, ExportShape::kLong, {})["Values"]["rows"].size(), 1U);
  EXPECT_EQ(JsonLines(ExportShape::kLong, {}), "");
}

TEST(Export, TheDatabaseReadsBackAsTheReadings) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  const std::vector<LogReading> readings = SampleReadings();
  const std::string file = scratch.home() + "/logs.db";
  {
    const auto exporter = MakeSqliteExporter(file, AllCatalogues(), ExportShape::kLong);
    for (const LogReading& reading : readings) exporter->Add(reading);
    exporter->Finish();
  }
  const json result = ReadBack(
      scratch.home(), file,
      "db = sqlite3.connect(path)\n"
      "result = {'values': db.execute('SELECT catalogue, row, label, unit, section, value, text, "
      "state FROM value JOIN catalogue_row ON id = row_id ORDER BY log_id, id').fetchall(),\n"
      " 'logs': db.execute('SELECT root, log, date, date_text, automatic, comment, fingerprint "
      "FROM log ORDER BY id').fetchall(),\n"
      " 'long': db.execute('SELECT count(*) FROM long').fetchone()[0],\n"
      " 'ticks': db.execute('SELECT log_id, label FROM tick WHERE ticked ORDER BY "
      "log_id, item').fetchall(),\n"
      " 'check': db.execute('PRAGMA integrity_check').fetchone()[0]}");
  EXPECT_EQ(result["check"], "ok");
  EXPECT_EQ(result["long"], readings.size() * kAllRows);
  ASSERT_EQ(result["values"].size(), readings.size() * kAllRows);
  for (std::size_t log = 0; log < readings.size(); ++log) {
    const LogReading& reading = readings[log];
    EXPECT_EQ(result["logs"][log], json({reading.Identity.Root, reading.Identity.Folder,
                                         reading.Date ? json(ExportDate(reading)) : json(nullptr),
                                         reading.Identity.Date, reading.Automatic ? 1 : 0,
                                         reading.HasComment ? json(reading.Comment) : json(nullptr),
                                         FingerprintText(reading.Identity)}));
    for (int place = 0; place < kAllRows; ++place) {
      const RowId id = RowAtPlace(place);
      const json& row = result["values"][log * kAllRows + static_cast<std::size_t>(place)];
      EXPECT_EQ(json({row[5], row[6], row[7]}), ExpectedLong(reading, id)) << NameOf(id);
      EXPECT_EQ(row[2], DescribeRow(AllCatalogues(), id).Label);
    }
  }
  EXPECT_EQ(result["ticks"].back(), json({readings.size(), "Change EM"}));
}

TEST(Export, TheDatabaseHasATableACatalogueInWideShape) {
  NEED_PYTHON();
  const test::TestMachine scratch;
  const std::vector<LogReading> readings = SampleReadings();
  const std::string file = scratch.home() + "/wide.db";
  {
    const auto exporter = MakeSqliteExporter(file, AllCatalogues(), ExportShape::kWide);
    for (const LogReading& reading : readings) exporter->Add(reading);
    exporter->Finish();
  }
  const json result = ReadBack(
      scratch.home(), file,
      "db = sqlite3.connect(path)\n"
      "result = {t: db.execute(f'SELECT * FROM {t} ORDER BY log_id').fetchall() for t in ('meter', "
      "'analog', 'tune', 'sys', 'bout', 'bin')}");
  for (const CatalogueInfo& catalogue : kCatalogues) {
    const json& rows = result[std::string(catalogue.Name)];
    ASSERT_EQ(rows.size(), readings.size());
    for (std::size_t log = 0; log < readings.size(); ++log) {
      ASSERT_EQ(rows[log].size(), static_cast<std::size_t>(catalogue.Rows) + 1);
      const RowValue& value = readings[log].At({catalogue.Which, 0});
      const std::string text = PrintedText(AllCatalogues(), {catalogue.Which, 0}, value);
      const bool number = KindOf(AllCatalogues(), {catalogue.Which, 0}) == RowKind::kNumber;
      if (value.State == ValueState::kOk) {
        EXPECT_EQ(rows[log][1], number ? json(value.Number) : json(text));
      } else {
        EXPECT_EQ(rows[log][1], text.empty() ? json(nullptr) : json(text));
      }
    }
  }
}

TEST(Export, ATargetThatCannotBeWrittenIsTold) {
  std::ofstream full("/dev/full");
  if (!full) GTEST_SKIP() << "the machine has no /dev/full";
  const auto csv = MakeCsvExporter(full, AllCatalogues(), ExportShape::kLong, RootColumn::kWithout);
  EXPECT_THROW(
      {
        csv->Add(QuietReading("a", ""));
        csv->Finish();
      },
      ExportError);
  EXPECT_THROW(MakeSqliteExporter("/nowhere/x.db", AllCatalogues(), ExportShape::kLong),
               ExportError);
  EXPECT_THROW(MakeXlsxExporter("/nowhere/x.xlsx", AllCatalogues(), ExportShape::kWide,
                                RootColumn::kWithout),
               ExportError);
}

}  // namespace
}  // namespace logbook::insight
