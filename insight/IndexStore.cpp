// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/IndexStore.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <map>
#include <unordered_map>

#include "insight/PageSums.h"
#include "insight/WordTokens.h"

namespace logbook::insight {
namespace {

// Raised with every change of the tables or of what lies in them.
constexpr int kVersion = 3;
constexpr int kPatience = 60'000;  // milliseconds to wait for another writer
constexpr std::int64_t kColumns = 1024;
constexpr std::size_t kMostTexts = 4096;
// No root comes near, and the numbers of columns stay within 64 bits.
constexpr std::int64_t kMostLogs = std::int64_t{1} << 40;

constexpr const char* kTables =
    "CREATE TABLE about(name TEXT PRIMARY KEY, value) WITHOUT ROWID;"
    "CREATE TABLE logs(id INTEGER PRIMARY KEY, folder TEXT NOT NULL UNIQUE, stamp INTEGER NOT NULL,"
    " mark INTEGER NOT NULL, record BLOB NOT NULL);"
    "CREATE TABLE columns(id INTEGER PRIMARY KEY, bytes BLOB NOT NULL);"
    "CREATE TABLE texts(id INTEGER PRIMARY KEY, text TEXT NOT NULL UNIQUE);"
    "CREATE VIRTUAL TABLE words USING fts5(text, content='', columnsize=0, tokenize='logbook');";

// The words of a whole change are gathered in memory and written at once, and what was written is
// merged seldom: both costs the making of an index less.
constexpr const char* kWordSettings =
    "INSERT INTO words(words, rank) VALUES('hashsize', 4194304);"
    "INSERT INTO words(words, rank) VALUES('automerge', 8);";

[[noreturn]] void RaiseDamage() {
  throw IndexError(IndexError::Kind::kDamaged, "the index is damaged");
}

// The first byte of a result code is its kind, whatever stands in the others.
[[noreturn]] void Raise(const SQLite::Exception& error) {
  switch (error.getErrorCode() & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
    case SQLITE_ERROR:  // a table is missing
    case SQLITE_MISMATCH:
    case SQLITE_CONSTRAINT:
      RaiseDamage();
    case SQLITE_FULL:
      throw IndexError(IndexError::Kind::kUnwritable, "the disk of the index is full");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      throw IndexError(IndexError::Kind::kUnwritable, "another program keeps the index occupied");
    default:
      throw IndexError(IndexError::Kind::kUnwritable,
                       std::string("the index cannot be written: ") + error.what());
  }
}

// What the library raises becomes what this module raises.
template <typename Work>
auto Guarded(Work work) {
  try {
    return work();
  } catch (const SQLite::Exception& error) {
    Raise(error);
  }
}

std::uint32_t MarkOf(const StoredLog& log) {
  return ChecksumOf(std::to_string(log.Id) + '\n' + std::to_string(log.Stamp) + '\n' + log.Folder);
}

std::string BlobOf(const SQLite::Column& column) {
  const int size = column.getBytes();
  return size == 0 ? std::string()
                   : std::string(static_cast<const char*>(column.getBlob()),
                                 static_cast<std::size_t>(size));
}

// The phrase in the language of full-text tables.
std::string PhraseText(const std::vector<std::string>& phrase, bool last_begins) {
  std::string text = "\"";
  for (const std::string& word : phrase) text += (text.size() == 1 ? "" : " ") + word;
  return text + (last_begins ? "\"*" : "\"");
}

}  // namespace

struct IndexStore::State {
  explicit State(const std::string& path)
      : database(path.empty() ? ":memory:" : path,
                 SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLITE_OPEN_NOMUTEX, kPatience,
                 RegisterPageSums()) {
    int free_bytes = kPageSumBytes;
    sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_RESERVE_BYTES, &free_bytes);
  }

  // Prepared once and kept.
  SQLite::Statement& Prepared(const char* text) {
    auto found = statements.find(text);
    if (found == statements.end()) {
      found = statements.emplace(text, std::make_unique<SQLite::Statement>(database, text)).first;
    }
    found->second->reset();
    return *found->second;
  }

  void Open() {
    database.exec(
        "PRAGMA cell_size_check=ON; PRAGMA synchronous=NORMAL; PRAGMA cache_size=-32768;"
        "PRAGMA temp_store=MEMORY; PRAGMA journal_size_limit=4194304;");
    // A journal that readers and a writer share. Where the file system cannot, another kind stays.
    SQLite::Statement(database, "PRAGMA journal_mode=WAL").executeStep();
    if (!RegisterWordTokens(database.getHandle())) {
      throw IndexError(IndexError::Kind::kUnwritable, "this SQLite has no full-text tables");
    }
  }

  void OpenOrMake(const std::string& contents) {
    Open();
    const std::string wanted = std::to_string(kVersion) + "\n" + contents;
    if (Version() == 0) MakeTables(wanted);
    if (Version() != kVersion || About("contents") != wanted) RaiseDamage();
  }

  int Version() {
    SQLite::Statement query(database, "PRAGMA user_version");
    return query.executeStep() ? query.getColumn(0).getInt() : 0;
  }

  std::string About(const char* name) {
    SQLite::Statement& query = Prepared("SELECT value FROM about WHERE name=?");
    query.bind(1, name);
    std::string value = query.executeStep() ? query.getColumn(0).getString() : std::string();
    query.reset();
    return value;
  }

  std::int64_t NumberOfText(const std::string& text) {
    SQLite::Statement& query = Prepared("SELECT id FROM texts WHERE text=?");
    query.bindNoCopy(1, text);
    const bool known = query.executeStep();
    const std::int64_t number = known ? query.getColumn(0).getInt64() : 0;
    query.reset();
    if (known) return number;
    SQLite::Statement& insert = Prepared("INSERT INTO texts(text) VALUES(?)");
    insert.bindNoCopy(1, text);
    insert.exec();
    return static_cast<std::int64_t>(database.getLastInsertRowid());
  }

  void MakeTables(const std::string& contents) {
    database.exec("BEGIN IMMEDIATE");
    // Another program may have been quicker.
    if (Version() == 0) {
      database.exec(kTables);
      database.exec(kWordSettings);
      SQLite::Statement about(database, "INSERT INTO about VALUES('contents', ?), ('next', 0)");
      about.bind(1, contents);
      about.exec();
      database.exec("PRAGMA user_version=" + std::to_string(kVersion));
    }
    database.exec("COMMIT");
  }

  void Run(const char* begin, const std::function<void()>& work) {
    Guarded([&] { database.exec(begin); });
    try {
      work();
      Guarded([&] { database.exec("COMMIT"); });
    } catch (...) {
      text_numbers.clear();
      // A full disk may have ended the change already.
      if (sqlite3_get_autocommit(database.getHandle()) == 0) database.tryExec("ROLLBACK");
      throw;
    }
  }

  SQLite::Database database;
  std::map<std::string, std::unique_ptr<SQLite::Statement>, std::less<>> statements;
  // Those that were asked for lately. A number that was given stays.
  std::unordered_map<std::string, std::int64_t> text_numbers;
};

IndexStore::IndexStore(const std::string& native_path, const std::string& contents) {
  Guarded([&] {
    state_ = std::make_unique<State>(native_path);
    state_->OpenOrMake(contents);
  });
}

IndexStore::IndexStore(const std::string& native_path) {
  Guarded([&] {
    state_ = std::make_unique<State>(native_path);
    state_->Open();
    if (state_->Version() != kVersion) RaiseDamage();
  });
}

IndexStore::~IndexStore() = default;

void IndexStore::Change(const std::function<void()>& work) {
  state_->Run("BEGIN IMMEDIATE", work);
}

void IndexStore::Look(const std::function<void()>& work) {
  state_->Run("BEGIN", work);
}

std::vector<StoredLog> IndexStore::Logs() {
  return Guarded([&] {
    std::vector<StoredLog> logs;
    SQLite::Statement& query = state_->Prepared("SELECT id, folder, stamp, mark FROM logs");
    while (query.executeStep()) {
      StoredLog log;
      log.Id = query.getColumn(0).getInt64();
      log.Folder = query.getColumn(1).getString();
      log.Stamp = static_cast<std::uint64_t>(query.getColumn(2).getInt64());
      if (query.getColumn(3).getInt64() != MarkOf(log)) RaiseDamage();
      logs.push_back(std::move(log));
    }
    query.reset();
    return logs;
  });
}

std::optional<StoredLog> IndexStore::LogOfFolder(const std::string& folder) {
  return Guarded([&]() -> std::optional<StoredLog> {
    SQLite::Statement& query = state_->Prepared("SELECT id, stamp FROM logs WHERE folder=?");
    query.bind(1, folder);
    std::optional<StoredLog> log;
    if (query.executeStep()) {
      log = {query.getColumn(0).getInt64(),
             folder,
             static_cast<std::uint64_t>(query.getColumn(1).getInt64()),
             {}};
    }
    query.reset();
    return log;
  });
}

StoredLog IndexStore::LogOfId(std::int64_t id) {
  return Guarded([&] {
    SQLite::Statement& query =
        state_->Prepared("SELECT folder, stamp, mark, record FROM logs WHERE id=?");
    query.bind(1, id);
    if (!query.executeStep()) RaiseDamage();
    StoredLog log = {id, query.getColumn(0).getString(),
                     static_cast<std::uint64_t>(query.getColumn(1).getInt64()),
                     BlobOf(query.getColumn(3))};
    if (query.getColumn(2).getInt64() != MarkOf(log)) RaiseDamage();
    query.reset();
    return log;
  });
}

void IndexStore::PutLog(const StoredLog& log) {
  Guarded([&] {
    SQLite::Statement& insert = state_->Prepared("INSERT INTO logs VALUES(?, ?, ?, ?, ?)");
    insert.bind(1, log.Id);
    insert.bindNoCopy(2, log.Folder);
    insert.bind(3, static_cast<std::int64_t>(log.Stamp));
    insert.bind(4, static_cast<std::int64_t>(MarkOf(log)));
    insert.bindNoCopy(5, log.Record.data(), static_cast<int>(log.Record.size()));
    insert.exec();
  });
}

void IndexStore::RemoveLog(std::int64_t id) {
  Guarded([&] {
    SQLite::Statement& removal = state_->Prepared("DELETE FROM logs WHERE id=?");
    removal.bind(1, id);
    removal.exec();
  });
}

std::int64_t IndexStore::NextId() {
  return Guarded([&] {
    SQLite::Statement& query = state_->Prepared("SELECT value FROM about WHERE name='next'");
    if (!query.executeStep()) RaiseDamage();
    const std::int64_t next = query.getColumn(0).getInt64();
    query.reset();
    if (next < 0 || next > kMostLogs) RaiseDamage();
    return next;
  });
}

void IndexStore::SetNextId(std::int64_t id) {
  Guarded([&] {
    SQLite::Statement& change = state_->Prepared("UPDATE about SET value=? WHERE name='next'");
    change.bind(1, id);
    change.exec();
  });
}

ValueColumn IndexStore::Column(std::int64_t block, int column) {
  return Guarded([&] {
    SQLite::Statement& query = state_->Prepared("SELECT bytes FROM columns WHERE id=?");
    query.bind(1, block * kColumns + column);
    if (!query.executeStep()) return ValueColumn();
    const SQLite::Column bytes = query.getColumn(0);
    std::optional<ValueColumn> values = UnpackColumn(
        {static_cast<const char*>(bytes.getBlob()), static_cast<std::size_t>(bytes.getBytes())});
    query.reset();
    if (!values) RaiseDamage();
    return *std::move(values);
  });
}

void IndexStore::PutColumn(std::int64_t block, int column, const ValueColumn& values) {
  Guarded([&] {
    const std::string bytes = PackColumn(values);
    SQLite::Statement& insert = state_->Prepared("INSERT OR REPLACE INTO columns VALUES(?, ?)");
    insert.bind(1, block * kColumns + column);
    insert.bindNoCopy(2, bytes.data(), static_cast<int>(bytes.size()));
    insert.exec();
  });
}

std::int64_t IndexStore::NumberOfText(const std::string& text) {
  const auto known = state_->text_numbers.find(text);
  if (known != state_->text_numbers.end()) return known->second;
  const std::int64_t number = Guarded([&] { return state_->NumberOfText(text); });
  if (state_->text_numbers.size() >= kMostTexts) state_->text_numbers.clear();
  state_->text_numbers.emplace(text, number);
  return number;
}

std::string IndexStore::TextOfNumber(std::int64_t number) {
  return Guarded([&] {
    SQLite::Statement& query = state_->Prepared("SELECT text FROM texts WHERE id=?");
    query.bind(1, number);
    if (!query.executeStep()) RaiseDamage();
    std::string text = query.getColumn(0).getString();
    query.reset();
    return text;
  });
}

std::vector<std::int64_t> IndexStore::NumbersOfTexts(
    const std::function<bool(const std::string&)>& which) {
  return Guarded([&] {
    std::vector<std::int64_t> numbers;
    SQLite::Statement& query = state_->Prepared("SELECT id, text FROM texts");
    while (query.executeStep()) {
      if (which(query.getColumn(1).getString())) numbers.push_back(query.getColumn(0).getInt64());
    }
    query.reset();
    return numbers;
  });
}

void IndexStore::PutWords(std::int64_t id, const std::string& text) {
  Guarded([&] {
    SQLite::Statement& insert = state_->Prepared("INSERT INTO words(rowid, text) VALUES(?, ?)");
    insert.bind(1, id);
    insert.bindNoCopy(2, text);
    insert.exec();
  });
}

void IndexStore::EachWithWords(const std::vector<std::string>& phrase, bool last_begins,
                               const std::function<void(std::int64_t)>& sink) {
  Guarded([&] {
    SQLite::Statement& query = state_->Prepared("SELECT rowid FROM words WHERE words MATCH ?");
    query.bind(1, PhraseText(phrase, last_begins));
    while (query.executeStep()) sink(query.getColumn(0).getInt64());
    query.reset();
  });
}

}  // namespace logbook::insight
