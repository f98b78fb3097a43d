// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Queries of any text: the index finds the logs that reading them all finds, the contrary of a
// query finds the others, brackets around it change nothing, an answer has no more logs than were
// asked for; a query that cannot be read is told with the place that it stumbles over. And words of
// any text: the full-text table finds what the words themselves say.

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "AllCatalogues.h"
#include "Fuzzing.h"
#include "RandomLogs.h"
#include "insight/LogIndex.h"
#include "insight/QueryMatch.h"
#include "insight/TextWords.h"

namespace logbook::fuzz {
namespace {

using namespace insight;
using test::AllCatalogues;
using test::RandomLogs;
using Folders = std::set<std::string>;

constexpr int kLogs = 6;  // of whole ones, and of damaged ones

// Some logs, read one by one and by an index in memory.
class Shelf {
 public:
  Shelf() : index_(*logs_.machine().code_page, AllCatalogues(), Fill(), InMemory()) {
    const CodePage& page = *logs_.machine().code_page;
    for (const std::string& folder : ScanLogRoot(logs_.machine(), RandomLogs::kRoot)) {
      const LogFiles files = LoadLogFiles(logs_.machine(), RandomLogs::kRoot, folder);
      SearchedLog log;
      log.Reading = ReadLog(page, AllCatalogues(), files);
      log.Words = WordsOf(SearchedText(page, AllCatalogues(), files, log.Reading));
      all_.push_back(std::move(log));
    }
  }

  Folders Read(const Query& query) const {
    Folders folders;
    for (const SearchedLog& log : all_) {
      if (Matches(query, log)) folders.insert(log.Reading.Identity.Folder);
    }
    return folders;
  }

  Folders Find(const Query& query) {
    FindRequest request;
    request.What = query;
    const FindResult result = index_.Find(request);
    Folders folders;
    for (const FoundLog& log : result.Logs) folders.insert(log.Folder);
    FUZZ_REQUIRE(folders.size() == result.Count && result.Logs.size() == result.Count);
    request.Limit = 2;
    const FindResult some = index_.Find(request);
    FUZZ_REQUIRE(some.Count == result.Count);
    FUZZ_REQUIRE(some.Logs.size() == std::min<std::size_t>(2, some.Count));
    return folders;
  }

 private:
  std::string Fill() {
    logs_.Add(kLogs);
    logs_.AddDamaged(kLogs);
    return logs_.NativeRoot();
  }
  static IndexSettings InMemory() {
    IndexSettings settings;
    settings.Folder.clear();
    return settings;
  }

  RandomLogs logs_{12};
  LogIndex index_;
  std::vector<SearchedLog> all_;
};

void TryError(const QueryError& error, const std::string& text) {
  FUZZ_REQUIRE(error.Place() <= text.size());
  const std::string told = Explain(error, text);
  FUZZ_REQUIRE(told.ends_with('\n'));
  FUZZ_REQUIRE(std::ranges::count(told, '\n') == (error.Near().empty() ? 3 : 4));
  FUZZ_REQUIRE(std::ranges::none_of(
      told, [](char each) { return static_cast<unsigned char>(each) < ' ' && each != '\n'; }));
}

std::optional<Query> Parsed(const std::string& text) {
  try {
    return ParseQuery(AllCatalogues(), text);
  } catch (const QueryError& error) {
    TryError(error, text);
    return std::nullopt;
  }
}

void TryQuery(const std::string& text) {
  static Shelf shelf;
  const std::optional<Query> query = Parsed(text);
  if (!query) return;
  const Folders found = shelf.Find(*query);
  FUZZ_REQUIRE(found == shelf.Read(*query));
  if (query->What == Query::Kind::kEverything) return;
  // A query in brackets can be nested too deeply.
  if (const auto same = Parsed("(" + text + ")")) FUZZ_REQUIRE(shelf.Find(*same) == found);
  if (const auto contrary = Parsed("NOT (" + text + ")")) {
    for (const std::string& folder : shelf.Find(*contrary)) FUZZ_REQUIRE(!found.contains(folder));
    FUZZ_REQUIRE(shelf.Find(*contrary).size() + found.size() == 2 * kLogs);
  }
}

void TryWords(const std::string& text, const std::string& sought) {
  const std::vector<std::string> phrase = WordsOf(sought);
  if (text.empty() || phrase.empty()) return;
  IndexStore store("", "words");
  store.Change([&] { store.PutWords(7, text); });
  for (const bool last_begins : {false, true}) {
    bool found = false;
    store.EachWithWords(phrase, last_begins, [&](std::int64_t id) {
      FUZZ_REQUIRE(id == 7 && !found);
      found = true;
    });
    FUZZ_REQUIRE(found == HoldsPhrase(WordsOf(text), phrase, last_begins));
  }
}

void Try(Input input) {
  const std::string text = input.Text();
  const std::string query(input.Rest());
  TryQuery(query);
  TryWords(text, query);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
