// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

#include "AllCatalogues.h"
#include "RandomLogs.h"
#include "RandomQueries.h"
#include "insight/LogIndex.h"
#include "insight/RowNames.h"
#include "insight/TextWords.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;
using test::AllCatalogues;
using test::RandomLogs;

// The logs of a root as they are now, without any index.
std::vector<SearchedLog> ReadAll(const RandomLogs& logs) {
  const CodePage& page = *logs.machine().code_page;
  std::vector<SearchedLog> all;
  for (const std::string& folder : ScanLogRoot(logs.machine(), RandomLogs::kRoot)) {
    const LogFiles files = LoadLogFiles(logs.machine(), RandomLogs::kRoot, folder);
    SearchedLog log;
    log.Reading = ReadLog(page, AllCatalogues(), files);
    log.Words = WordsOf(SearchedText(page, AllCatalogues(), files, log.Reading));
    all.push_back(std::move(log));
  }
  return all;
}

std::string BytesOf(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// An index of its own cache, removed with the object.
class Cache {
 public:
  Cache() : folder_(disk_.home() + "/cache") {}

  std::unique_ptr<LogIndex> Open(const RandomLogs& logs) {
    IndexSettings settings;
    settings.Folder = folder_;
    settings.Progress = [this](const UpdateProgress& progress) {
      if (progress.Where == UpdateProgress::Step::kReading) read_ = progress.Done;
    };
    settings.Warn = [this](const std::string& sentence) { warnings_.push_back(sentence); };
    return std::make_unique<LogIndex>(*logs.machine().code_page, AllCatalogues(), logs.NativeRoot(),
                                      std::move(settings));
  }
  // The folders that a query finds in an index that is opened for it.
  std::vector<std::string> Find(const RandomLogs& logs, const std::string& query) {
    read_ = 0;
    FindRequest request;
    request.What = ParseQuery(AllCatalogues(), query);
    std::vector<std::string> folders;
    for (const FoundLog& log : Open(logs)->Find(request).Logs) folders.push_back(log.Folder);
    std::sort(folders.begin(), folders.end());
    return folders;
  }
  // Uses the index until all time stamps have settled: what was written a moment ago is read each
  // time.
  void Settle(const RandomLogs& logs) {
    do {
      Find(logs, "");
    } while (LogsRead() > 0);
  }
  // How many logs the last use read anew.
  std::size_t LogsRead() const { return read_; }
  const std::vector<std::string>& Warnings() const { return warnings_; }
  const std::string& Folder() const { return folder_; }
  std::vector<fs::path> Files() const {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      if (!entry.path().string().ends_with("-looked")) files.push_back(entry.path());
    }
    return files;
  }

 private:
  test::TestMachine disk_;
  std::string folder_;
  std::size_t read_ = 0;
  std::vector<std::string> warnings_;
};

std::vector<std::string> Matching(const std::vector<SearchedLog>& logs, const std::string& query) {
  const Query parsed = ParseQuery(AllCatalogues(), query);
  std::vector<std::string> folders;
  for (const SearchedLog& log : logs) {
    if (Matches(parsed, log)) folders.push_back(log.Reading.Identity.Folder);
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

// The index gives what reading all logs gives, for some queries of all kinds.
void ExpectRight(Cache& cache, const RandomLogs& logs, int queries, std::uint64_t seed = 3) {
  const std::vector<SearchedLog> all = ReadAll(logs);
  const std::unique_ptr<LogIndex> index = cache.Open(logs);
  test::RandomQueries random(seed, all);
  int some = 0;
  for (int i = 0; i < queries; ++i) {
    const std::string query = all.empty() ? "cones" : random.Next();
    FindRequest request;
    try {
      request.What = ParseQuery(AllCatalogues(), query);
    } catch (const QueryError& error) {
      FAIL() << Explain(error, query);
    }
    std::vector<std::string> found;
    for (const FoundLog& log : index->Find(request).Logs) found.push_back(log.Folder);
    std::sort(found.begin(), found.end());
    const std::vector<std::string> expected = Matching(all, query);
    some += !expected.empty() && expected.size() < all.size() ? 1 : 0;
    ASSERT_EQ(found, expected) << query;
  }
  EXPECT_TRUE(queries <= 100 || some > queries / 4) << some;
}

// --- the same as reading all logs -----------------------------------------------------------

TEST(Index, AnswersEveryQueryAsReadingAllLogsDoes) {
  RandomLogs logs(21);
  logs.Add(60);
  logs.AddDamaged(40);
  Cache cache;
  ExpectRight(cache, logs, 3000);
}

TEST(Index, AnswersInAnotherCodePage) {
  RandomLogs logs(22, 932);
  logs.Add(6);
  const std::string folder = logs.Add(1).front();
  logs.disk().Put(RandomLogs::PathOf(folder, "comment.txt"),
                  "\x83\x52\x81\x5B\x83\x93\x8C\xF0\x8A\xB7\r\n");
  Cache cache;
  ExpectRight(cache, logs, 200);
  EXPECT_EQ(cache.Find(logs, "\"\xE3\x82\xB3\xE3\x83\xBC\xE3\x83\xB3\""),
            std::vector<std::string>{folder});
}

TEST(Index, GoesOverTheBorderOfABlock) {
  RandomLogs logs(23);
  logs.Add(5);
  for (int i = 0; i < 2 * kBlockLogs; ++i) {
    logs.disk().Put(RandomLogs::PathOf("X" + std::to_string(i), "auser.txt"),
                    std::to_string(i) + "\r\n");
  }
  Cache cache;
  EXPECT_EQ(cache.Find(logs, "").size(), 517U);
  EXPECT_EQ(cache.LogsRead(), 517U);
  cache.Settle(logs);
  EXPECT_EQ(cache.Find(logs, "meter:0=300"), std::vector<std::string>{"X300"});
  EXPECT_EQ(cache.LogsRead(), 0U);
  for (int i = 0; i < 3; ++i) {
    logs.disk().Put(RandomLogs::PathOf("Y" + std::to_string(i), "auser.txt"), "-5\r\n");
  }
  EXPECT_EQ(cache.Find(logs, "meter:0=-5").size(), 3U);
  EXPECT_EQ(cache.LogsRead(), 3U);
}

TEST(Index, SortsWithMissingValuesLastAndCutsAtTheLimit) {
  RandomLogs logs(24);
  logs.Add(20);
  logs.AddDamaged(20);
  Cache cache;
  const std::vector<SearchedLog> all = ReadAll(logs);
  const std::unique_ptr<LogIndex> index = cache.Open(logs);
  for (const RowId& id : {RowId{Catalogue::kAnalog, 1}, RowId{Catalogue::kTune, 145}}) {
    for (const auto order : {FindRequest::Order::kAscending, FindRequest::Order::kDescending}) {
      FindRequest request;
      request.SortBy = FindRequest::Key::kRow;
      request.SortRow = {id};
      request.SortOrder = order;
      request.Columns = {{id}};
      const FindResult whole = index->Find(request);
      ASSERT_EQ(whole.Logs.size(), all.size());
      for (std::size_t i = 1; i < whole.Logs.size(); ++i) {
        const RowValue& a = whole.Logs[i - 1].Values[0];
        const RowValue& b = whole.Logs[i].Values[0];
        if (a.State != ValueState::kOk || b.State != ValueState::kOk) {
          EXPECT_NE(b.State, ValueState::kOk);
        } else if (order == FindRequest::Order::kAscending) {
          EXPECT_LE(std::pair(a.Number, a.Text), std::pair(b.Number, b.Text));
        } else {
          EXPECT_GE(std::pair(a.Number, a.Text), std::pair(b.Number, b.Text));
        }
      }
      request.Limit = 7;
      const FindResult page = index->Find(request);
      EXPECT_EQ(page.Count, all.size());
      ASSERT_EQ(page.Logs.size(), 7U);
      for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(page.Logs[i].Folder, whole.Logs[i].Folder);
    }
  }
}

TEST(Index, GivesTheValuesAndRecordsOfTheReadings) {
  RandomLogs logs(25);
  logs.Add(10);
  logs.AddDamaged(10);
  Cache cache;
  FindRequest request;
  for (int place = 0; place < kAllRows; ++place) request.Columns.push_back({RowAtPlace(place)});
  const FindResult result = cache.Open(logs)->Find(request);
  std::size_t compared = 0;
  for (const SearchedLog& log : ReadAll(logs)) {
    const auto found = std::find_if(
        result.Logs.begin(), result.Logs.end(),
        [&](const FoundLog& each) { return each.Folder == log.Reading.Identity.Folder; });
    ASSERT_NE(found, result.Logs.end());
    EXPECT_EQ(found->Values, log.Reading.Values);
    EXPECT_EQ(found->Record, (LogRecord{log.Reading.Identity.Fingerprint, log.Reading.Identity.Date,
                                        log.Reading.Comment, log.Reading.RefusedFiles}));
    EXPECT_EQ(found->Date, log.Reading.Date);
    EXPECT_EQ(found->Ticks, log.Reading.Ticks);
    EXPECT_EQ(found->Automatic, log.Reading.Automatic);
    ++compared;
  }
  EXPECT_EQ(compared, result.Logs.size());
}

// --- a root that changes --------------------------------------------------------------------

TEST(Index, FollowsTheRootAsItGrowsShrinksAndChanges) {
  RandomLogs logs(26);
  Cache cache;
  EXPECT_TRUE(cache.Find(logs, "").empty());
  std::vector<std::string> folders = logs.Add(8);
  ExpectRight(cache, logs, 20);
  logs.disk().Put(RandomLogs::PathOf(folders[2], "comment.txt"), "quite another comment\r\n");
  EXPECT_EQ(cache.Find(logs, "\"quite another\""), std::vector<std::string>{folders[2]});
  fs::remove_all(logs.NativeRoot() + "/" + folders[3]);
  fs::remove(logs.NativeRoot() + "/" + folders[4] + "/aall.txt");
  ExpectRight(cache, logs, 40);
  EXPECT_EQ(cache.Find(logs, "").size(), 7U);
}

TEST(Index, FolderUsedAgainUnderTheSameNameIsAnotherLog) {
  RandomLogs logs(27);
  const std::vector<std::string> folders = logs.Add(3);
  Cache cache;
  ExpectRight(cache, logs, 10);
  // The same name, file names and sizes.
  const std::string folder = logs.NativeRoot() + "/" + folders[1];
  const std::string comment = logs.disk().Get(RandomLogs::PathOf(folders[1], "comment.txt"));
  fs::rename(folder, folder + "-old");
  fs::copy(folder + "-old", folder);
  fs::remove_all(folder + "-old");
  logs.disk().Put(RandomLogs::PathOf(folders[1], "comment.txt"),
                  std::string(comment.size() - 2, 'q') + "\r\n");
  ExpectRight(cache, logs, 10);
  EXPECT_EQ(cache.Find(logs, "qqq*"), std::vector<std::string>{folders[1]});
}

TEST(Index, UnchangedLogsAreNotReadAgain) {
  RandomLogs logs(28);
  logs.Add(5);
  Cache cache;
  cache.Settle(logs);
  const std::string folder = ScanLogRoot(logs.machine(), RandomLogs::kRoot).front();
  // What the viewer writes is nothing new.
  logs.disk().Put(RandomLogs::PathOf(folder, "analog.rpt"), "report\r\n");
  cache.Find(logs, "");
  EXPECT_EQ(cache.LogsRead(), 0U);
  logs.disk().Put(RandomLogs::PathOf(folder, "aall.txt"), "1\r\n");
  cache.Find(logs, "");
  EXPECT_EQ(cache.LogsRead(), 1U);
}

TEST(Index, VanishedRootIsToldAndTheIndexKept) {
  RandomLogs logs(29);
  logs.Add(3);
  Cache cache;
  cache.Find(logs, "");
  fs::rename(logs.NativeRoot(), logs.NativeRoot() + "-away");
  EXPECT_THROW(cache.Find(logs, ""), RunTimeError);
  fs::rename(logs.NativeRoot() + "-away", logs.NativeRoot());
  EXPECT_EQ(cache.Find(logs, "").size(), 3U);
}

TEST(Index, RootPutInThePlaceOfAnotherIsIndexedAnew) {
  RandomLogs logs(30);
  logs.Add(3);
  Cache cache;
  ExpectRight(cache, logs, 5);
  fs::rename(logs.NativeRoot(), logs.NativeRoot() + "-away");
  fs::create_directory(logs.NativeRoot());
  logs.Add(1);
  ExpectRight(cache, logs, 5);
  EXPECT_EQ(cache.Find(logs, "").size(), 1U);
}

// --- an index that is damaged ---------------------------------------------------------------

TEST(Index, DamagedFileIsMadeAnew) {
  RandomLogs logs(31);
  logs.Add(12);
  std::mt19937_64 random(5);
  for (const char* damage : {"empty", "short", "header", "text", "pages", "other"}) {
    Cache cache;
    ExpectRight(cache, logs, 3);
    for (const fs::path& file : cache.Files()) {
      const auto size = static_cast<std::uintmax_t>(fs::file_size(file));
      std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
      const std::string kind = damage;
      if (kind == "empty") fs::resize_file(file, 0);
      if (kind == "short") fs::resize_file(file, size / 2);
      if (kind == "header") stream.write("not a database", 14);
      if (kind == "other") stream.seekp(60), stream.write("\0\0\0\x63", 4);
      if (kind == "text") std::ofstream(file, std::ios::trunc) << "some text\n";
      if (kind == "pages") {
        for (std::uintmax_t page = 1; page < size / 4096; ++page) {
          std::string garbage(4096, '\0');
          for (char& byte : garbage) byte = static_cast<char>(random());
          stream.seekp(static_cast<std::streamoff>(page * 4096));
          stream.write(garbage.data(), 4096);
        }
      }
    }
    ExpectRight(cache, logs, 30);
    EXPECT_TRUE(cache.Warnings().empty()) << damage << cache.Warnings().front();
  }
}

// The words of a file that was cut within its last page: those that are found, or nothing if the
// index is damaged.
std::optional<int> WordsFound(const std::string& path, int words) {
  try {
    IndexStore store(path, "words");
    int found = 0;
    for (int word = 0; word < words; ++word) {
      store.EachWithWords({"WORD" + std::to_string(word)}, false, [&](std::int64_t) { ++found; });
    }
    return found;
  } catch (const IndexError& error) {
    EXPECT_EQ(error.What(), IndexError::Kind::kDamaged);
    return std::nullopt;
  }
}

TEST(Index, AFileThatEndsWithinItsLastPageIsDamaged) {
  constexpr int kWords = 600;
  const test::TestMachine scratch;
  const std::string path = scratch.home() + "/words.db";
  {
    std::string text;
    for (int word = 0; word < kWords; ++word) text += " word" + std::to_string(word);
    IndexStore store(path, "words");
    store.Change([&] { store.PutWords(0, text); });
  }
  const std::string whole = BytesOf(path);
  EXPECT_EQ(WordsFound(path, kWords), kWords);
  for (std::size_t lost = 1; lost < 4096; lost += 195) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << whole.substr(0, whole.size() - lost);
    EXPECT_EQ(WordsFound(path, kWords), std::nullopt) << lost;
  }
}

// An index of one log without values, changed under right checksums; true if a search tells that it
// is damaged.
bool IsDamage(const std::function<void(IndexStore&)>& change) {
  IndexStore store("", "one log");
  ValueColumn none;
  none.Add(static_cast<std::uint8_t>(ValueState::kNotApplicable), 0);
  store.Change([&] {
    for (int column = 0; column < kColumnCount; ++column) store.PutColumn(0, column, none);
    store.PutLog({0, "26010100", 0, PackRecord({})});
    store.SetNextId(1);
    change(store);
  });
  FindRequest request;
  request.What = ParseQuery(AllCatalogues(), "NOT (tick:3 OR state:ok OR on:2026)");
  request.SortBy = FindRequest::Key::kRow;
  request.SortRow = {{Catalogue::kSys, 83}};
  request.Columns = {{{Catalogue::kMeter, 0}}};
  try {
    EXPECT_EQ(FindInIndex(store, AllCatalogues(), request).Count, 1U);
    return false;
  } catch (const IndexError& error) {
    EXPECT_EQ(error.What(), IndexError::Kind::kDamaged);
    return true;
  }
}

TEST(Index, WhatNoIndexHoldsIsDamageUnderRightChecksumsToo) {
  EXPECT_FALSE(IsDamage([](IndexStore&) {}));
  for (const std::int64_t next : {std::int64_t{-1}, std::int64_t{2}, std::int64_t{1} << 62})
    EXPECT_TRUE(IsDamage([&](IndexStore& store) { store.SetNextId(next); })) << next;
  struct Odd {
    int column;
    std::uint8_t state;
    double number;
  };
  const int text = PlaceOf({Catalogue::kSys, 83});
  for (const Odd& odd : {Odd{PlaceOf({Catalogue::kMeter, 0}), 5, 0}, Odd{text, 0, 1e300},
                         Odd{static_cast<int>(SpecialColumn::kDate), 1, 1e300},
                         Odd{static_cast<int>(SpecialColumn::kTicks), 0, -1},
                         Odd{static_cast<int>(SpecialColumn::kStates), 0, 4294967296.0}}) {
    EXPECT_TRUE(IsDamage([&](IndexStore& store) {
      ValueColumn column;
      column.Add(odd.state, odd.number);
      store.PutColumn(0, odd.column, column);
    })) << odd.column;
  }
}

TEST(Index, EachDamagedPageIsNoticedOrWithoutEffect) {
  RandomLogs logs(32);
  logs.Add(10);
  Cache cache;
  ExpectRight(cache, logs, 3);
  const std::uintmax_t pages = fs::file_size(cache.Files().front()) / 4096;
  ASSERT_GT(pages, 8U);
  std::mt19937_64 random(6);
  for (std::uintmax_t page = 0; page < pages; page += 1 + pages / 25) {
    std::string garbage(4096, '\0');
    for (char& byte : garbage) byte = static_cast<char>(random());
    {
      std::fstream stream(cache.Files().front(), std::ios::in | std::ios::out | std::ios::binary);
      stream.seekp(static_cast<std::streamoff>(page * 4096));
      stream.write(garbage.data(), 4096);
    }
    ExpectRight(cache, logs, 25, page + 1);
  }
}

// A byte that is flipped, wherever it lies: the answers are those of the logs, also of words.
TEST(Index, EachFlippedByteIsNoticedOrWithoutEffect) {
  RandomLogs logs(35);
  logs.Add(10);
  Cache cache;
  cache.Settle(logs);
  const fs::path sound = cache.Files().front();
  const std::string good = BytesOf(sound);
  const std::vector<SearchedLog> all = ReadAll(logs);
  std::mt19937_64 random(8);
  test::RandomQueries queries(9, all);
  std::size_t noticed = 0;
  for (int round = 0; round < 100; ++round) {
    std::string bad = good;
    const auto at = static_cast<std::size_t>(random() % bad.size());
    bad[at] = static_cast<char>(bad[at] ^ (1 << random() % 8));
    fs::remove_all(cache.Folder());
    fs::create_directory(cache.Folder());
    std::ofstream(sound, std::ios::binary) << bad;
    for (const std::string& query :
         {queries.Words(), queries.Words(), queries.Next(), std::string()}) {
      ASSERT_EQ(cache.Find(logs, query), Matching(all, query)) << at << " " << query;
    }
    noticed += fs::exists(sound) ? 0 : 1;
  }
  EXPECT_GT(noticed, 10U) << "bytes that matter";
  EXPECT_TRUE(cache.Warnings().empty()) << cache.Warnings().front();
}

TEST(Index, CacheThatCannotBeWrittenIsToldAndAnIndexInMemoryUsed) {
  RandomLogs logs(33);
  logs.Add(4);
  Cache cache;
  std::ofstream(cache.Folder()) << "a file in the place of the folder";
  ExpectRight(cache, logs, 20);
  ASSERT_EQ(cache.Warnings().size(), 1U);
  EXPECT_NE(cache.Warnings()[0].find("an index in memory is used instead"), std::string::npos);
}

TEST(Index, CacheBelowTheLogRootIsNotUsed) {
  RandomLogs logs(34);
  logs.Add(2);
  IndexSettings settings;
  settings.Folder = logs.NativeRoot() + "/cache";
  std::string warning;
  settings.Warn = [&](const std::string& sentence) { warning = sentence; };
  LogIndex index(*logs.machine().code_page, AllCatalogues(), logs.NativeRoot(), settings);
  EXPECT_EQ(index.Find({}).Logs.size(), 2U);
  EXPECT_EQ(warning, "the cache lies among the logs, so no index is kept");
  EXPECT_FALSE(fs::exists(settings.Folder));
}

}  // namespace
}  // namespace logbook::insight
