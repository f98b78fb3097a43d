// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The export to a database. Its tables are described in docs/insight.md.

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>

#include "insight/Csv.h"
#include "insight/Difference.h"
#include "insight/Export.h"

namespace logbook::insight {
namespace {

constexpr std::string_view kTables =
    "CREATE TABLE log (id INTEGER PRIMARY KEY, root TEXT NOT NULL, log TEXT NOT NULL,"
    " date TEXT, date_text TEXT NOT NULL, automatic INTEGER NOT NULL, comment TEXT,"
    " fingerprint TEXT NOT NULL);"
    "CREATE TABLE tick (log_id INTEGER NOT NULL REFERENCES log, item INTEGER NOT NULL,"
    " label TEXT NOT NULL, ticked INTEGER NOT NULL, PRIMARY KEY (log_id, item)) WITHOUT ROWID;"
    "CREATE TABLE option (log_id INTEGER NOT NULL REFERENCES log, key TEXT NOT NULL,"
    " value REAL NOT NULL, PRIMARY KEY (log_id, key)) WITHOUT ROWID;";
constexpr std::string_view kLongTables =
    "CREATE TABLE catalogue_row (id INTEGER PRIMARY KEY, catalogue TEXT NOT NULL,"
    " row INTEGER NOT NULL, label TEXT NOT NULL, unit TEXT NOT NULL, section TEXT NOT NULL,"
    " UNIQUE (catalogue, row));"
    "CREATE TABLE value (log_id INTEGER NOT NULL REFERENCES log,"
    " row_id INTEGER NOT NULL REFERENCES catalogue_row, value REAL, text TEXT NOT NULL,"
    " state TEXT NOT NULL, PRIMARY KEY (log_id, row_id)) WITHOUT ROWID;"
    "CREATE VIEW long AS SELECT log.root, log.log, log.date, catalogue_row.catalogue,"
    " catalogue_row.row, catalogue_row.label, catalogue_row.unit, catalogue_row.section,"
    " value.value, value.text, value.state FROM value JOIN log ON log.id = log_id"
    " JOIN catalogue_row ON catalogue_row.id = row_id;";

// The library's errors as ours.
template <typename Work>
auto Told(Work work) {
  try {
    return work();
  } catch (const SQLite::Exception& error) {
    throw ExportError(std::string("the database cannot be written: ") + error.what());
  }
}

// A statement that is run over and over, its parameters given from the first on.
class Insertion {
 public:
  Insertion(SQLite::Database& database, const std::string& text) : statement_(database, text) {}

  Insertion& Give(std::string_view text) {
    statement_.bind(++given_, std::string(text));
    return *this;
  }
  Insertion& Give(std::int64_t number) {
    statement_.bind(++given_, number);
    return *this;
  }
  Insertion& Give(double number) {
    statement_.bind(++given_, number);
    return *this;
  }
  Insertion& GiveNothing() {
    statement_.bind(++given_);
    return *this;
  }
  void Run() {
    statement_.exec();
    statement_.reset();
    given_ = 0;
  }

 private:
  SQLite::Statement statement_;
  int given_ = 0;
};

std::string QuotedName(const std::string& name) {
  std::string quoted = "\"";
  for (const char each : name) quoted += each == '"' ? std::string("\"\"") : std::string(1, each);
  return quoted + "\"";
}

class SqliteExporter : public Exporter {
 public:
  SqliteExporter(const std::string& native_path, const Catalogues& catalogues, ExportShape shape)
      : rows_(catalogues),
        shape_(shape),
        database_(native_path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE) {
    database_.exec(
        "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-256; BEGIN;" +
        std::string(kTables));
    add_log_ = Insert("log", 8);
    add_tick_ = Insert("tick", 4);
    add_option_ = Insert("option", 3);
    shape_ == ExportShape::kLong ? BeginLong() : BeginWide();
  }

  void Add(const LogReading& reading) override {
    Told([&] { AddAll(reading); });
  }

  void Finish() override {
    Told([&] { database_.exec("COMMIT;"); });
  }

 private:
  void AddAll(const LogReading& reading) {
    ++log_;
    AddLog(reading);
    for (std::size_t i = 0; i < reading.Ticks.size(); ++i) {
      add_tick_->Give(log_).Give(static_cast<std::int64_t>(i)).Give(rows_.TickLabels()[i]);
      add_tick_->Give(std::int64_t{reading.Ticks[i]}).Run();
    }
    for (const OptionKey& option : kOptionKeys) {
      add_option_->Give(log_).Give(option.Key).Give(reading.Options.*option.Member).Run();
    }
    shape_ == ExportShape::kLong ? AddLong(reading) : AddWide(reading);
  }

  std::unique_ptr<Insertion> Insert(const std::string& table, int columns) {
    std::string text = "INSERT INTO " + table + " VALUES (?";
    for (int i = 1; i < columns; ++i) text += ",?";
    return std::make_unique<Insertion>(database_, text + ")");
  }

  void BeginLong() {
    database_.exec(std::string(kLongTables));
    const std::unique_ptr<Insertion> add_row = Insert("catalogue_row", 6);
    for (int place = 0; place < kAllRows; ++place) {
      const RowId id = RowAtPlace(place);
      const RowInfo& info = rows_.InfoAt(place);
      add_row->Give(std::int64_t{place}).Give(InfoOf(id.Which).Name).Give(std::int64_t{id.Row});
      add_row->Give(info.Label).Give(info.Unit).Give(info.Section).Run();
    }
    add_value_ = Insert("value", 5);
  }

  // A table a catalogue, with a column a row.
  void BeginWide() {
    int place = 0;
    for (const CatalogueInfo& catalogue : kCatalogues) {
      std::string text = "CREATE TABLE " + std::string(catalogue.Name) +
                         " (log_id INTEGER PRIMARY KEY REFERENCES log";
      for (int row = 0; row < catalogue.Rows; ++row)
        text += "," + QuotedName(rows_.TitleAt(place++));
      database_.exec(text + ");");
      add_wide_.push_back(Insert(std::string(catalogue.Name), catalogue.Rows + 1));
    }
  }

  void AddLog(const LogReading& reading) {
    add_log_->Give(log_).Give(reading.Identity.Root).Give(reading.Identity.Folder);
    reading.Date ? add_log_->Give(ExportDate(reading)) : add_log_->GiveNothing();
    add_log_->Give(reading.Identity.Date).Give(std::int64_t{reading.Automatic});
    reading.HasComment ? add_log_->Give(reading.Comment) : add_log_->GiveNothing();
    add_log_->Give(FingerprintText(reading.Identity)).Run();
  }

  void AddLong(const LogReading& reading) {
    for (int place = 0; place < kAllRows; ++place) {
      const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
      const bool number =
          value.State == ValueState::kOk && rows_.InfoAt(place).Kind != RowKind::kText;
      add_value_->Give(log_).Give(std::int64_t{place});
      number ? add_value_->Give(value.Number) : add_value_->GiveNothing();
      add_value_->Give(PrintedText(rows_.AllCatalogues(), RowAtPlace(place), value));
      add_value_->Give(NameOf(value.State)).Run();
    }
  }

  void AddWide(const LogReading& reading) {
    int place = 0;
    for (std::size_t i = 0; i < kCatalogues.size(); ++i) {
      add_wide_[i]->Give(log_);
      for (int row = 0; row < kCatalogues[i].Rows; ++row) GiveWide(reading, place++, *add_wide_[i]);
      add_wide_[i]->Run();
    }
  }

  void GiveWide(const LogReading& reading, int place, Insertion& statement) const {
    const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
    const bool ok = value.State == ValueState::kOk;
    if (ok && rows_.InfoAt(place).Kind == RowKind::kNumber) {
      statement.Give(value.Number);
    } else if (ok || value.State == ValueState::kNotApplicable) {
      statement.Give(PrintedText(rows_.AllCatalogues(), RowAtPlace(place), value));
    } else {
      statement.GiveNothing();
    }
  }

  ExportRows rows_;
  ExportShape shape_;
  SQLite::Database database_;
  std::int64_t log_ = 0;
  std::unique_ptr<Insertion> add_log_;
  std::unique_ptr<Insertion> add_tick_;
  std::unique_ptr<Insertion> add_option_;
  std::unique_ptr<Insertion> add_value_;
  std::vector<std::unique_ptr<Insertion>> add_wide_;
};

}  // namespace

std::unique_ptr<Exporter> MakeSqliteExporter(const std::string& native_path,
                                             const Catalogues& catalogues, ExportShape shape) {
  return Told([&]() -> std::unique_ptr<Exporter> {
    return std::make_unique<SqliteExporter>(native_path, catalogues, shape);
  });
}

}  // namespace logbook::insight
