// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/IndexUpdate.h"

#include <algorithm>
#include <chrono>
#include <unordered_map>

#include "insight/IndexLayout.h"
#include "insight/QueryMatch.h"

namespace logbook::insight {
namespace {

constexpr std::int64_t kToleratedWaste = 4096;
constexpr std::size_t kMostTextBytes = 4 * 1024 * 1024;

// Of one change: blocks, and the time after which no further block is begun.
constexpr int kMostBlocks = 2;
constexpr std::chrono::milliseconds kLongChange(250);

std::size_t IndexOf(SpecialColumn column) {
  return static_cast<std::size_t>(column);
}

// The columns of the block that is being filled.
class BlockInMaking {
 public:
  BlockInMaking(IndexStore& store, const Catalogues& catalogues)
      : store_(store),
        next_(store.NextId()),
        columns_(static_cast<std::size_t>(kColumnCount)),
        is_text_(static_cast<std::size_t>(kAllRows)) {
    for (int place = 0; place < kAllRows; ++place) {
      is_text_[static_cast<std::size_t>(place)] =
          KindOf(catalogues, RowAtPlace(place)) == RowKind::kText ? 1 : 0;
    }
    if (next_ % kBlockLogs != 0) {
      for (int column = 0; column < kColumnCount; ++column) {
        columns_[static_cast<std::size_t>(column)] = store.Column(Block(), column);
      }
    }
    SizeTo(kBlockLogs);
  }

  bool IsFull() const { return next_ % kBlockLogs == 0 && added_; }

  // Gives the log its number.
  std::int64_t Add(const LogReading& reading) {
    const auto at = static_cast<std::size_t>(next_ % kBlockLogs);
    unsigned states = 0;
    for (std::size_t place = 0; place < kAllRows; ++place) {
      const RowValue& value = reading.Values[place];
      states |= 1U << static_cast<unsigned>(value.State);
      columns_[place].States[at] = static_cast<std::uint8_t>(value.State);
      columns_[place].Numbers[at] = NumberOf(place, value);
    }
    SetSpecial(at, reading, states);
    added_ = true;
    return next_++;
  }

  // Writes what was added.
  void Put() {
    if (!added_) return;
    const std::int64_t block = (next_ - 1) / kBlockLogs;
    SizeTo(static_cast<std::size_t>((next_ - 1) % kBlockLogs + 1));
    for (int column = 0; column < kColumnCount; ++column) {
      store_.PutColumn(block, column, columns_[static_cast<std::size_t>(column)]);
    }
    store_.SetNextId(next_);
  }

 private:
  std::int64_t Block() const { return next_ / kBlockLogs; }

  // Each column for so many logs: those that were not added yet are filled in later.
  void SizeTo(std::size_t logs) {
    for (ValueColumn& column : columns_) {
      column.States.resize(logs);
      column.Numbers.resize(logs);
    }
  }

  double NumberOf(std::size_t place, const RowValue& value) {
    if (value.State != ValueState::kOk) return 0;
    if (is_text_[place] == 0) return value.Number;
    return static_cast<double>(store_.NumberOfText(value.Text));
  }

  void SetSpecial(std::size_t at, const LogReading& reading, unsigned states) {
    const auto add = [&](SpecialColumn column, std::uint8_t state, double number) {
      columns_[IndexOf(column)].States[at] = state;
      columns_[IndexOf(column)].Numbers[at] = number;
    };
    add(SpecialColumn::kLive, 1, 0);
    const auto seconds =
        reading.Date ? static_cast<double>(reading.Date->time_since_epoch().count()) : 0.0;
    add(SpecialColumn::kDate, reading.Date ? 1 : 0, seconds);
    add(SpecialColumn::kName1, 0, NameNumber(reading.Identity.Folder, 0));
    add(SpecialColumn::kName2, 0, NameNumber(reading.Identity.Folder, 6));
    double ticks = 0;
    for (std::size_t item = 0; item < reading.Ticks.size(); ++item) {
      if (reading.Ticks[item]) ticks += static_cast<double>(1U << item);
    }
    add(SpecialColumn::kTicks, 0, ticks);
    const int flags = (reading.Automatic ? kAutomaticFlag : 0) |
                      (reading.HasTicks ? kTicksFlag : 0) | (reading.HasComment ? kCommentFlag : 0);
    add(SpecialColumn::kFlags, static_cast<std::uint8_t>(flags), 0);
    add(SpecialColumn::kStates, 0, states);
    for (const OptionKey& each : kOptionKeys) {
      columns_[static_cast<std::size_t>(ColumnOfOption(each.Member))].Numbers[at] =
          reading.Options.*each.Member;
    }
  }

  IndexStore& store_;
  std::int64_t next_;
  std::vector<ValueColumn> columns_;
  std::vector<char> is_text_;  // by place
  bool added_ = false;
};

// The texts of logs whose words are to be written: many at a time, as what holds the words stays at
// hand of the processor then, which reading files in between would drive out.
class WordsInMaking {
 public:
  explicit WordsInMaking(IndexStore& store) : store_(store) {}

  void Add(std::int64_t id, std::string text) {
    bytes_ += text.size();
    texts_.emplace_back(id, std::move(text));
    if (bytes_ > kMostTextBytes) Put();
  }

  void Put() {
    for (const auto& [id, text] : texts_) store_.PutWords(id, text);
    texts_.clear();
    bytes_ = 0;
  }

 private:
  IndexStore& store_;
  std::vector<std::pair<std::int64_t, std::string>> texts_;
  std::size_t bytes_ = 0;
};

class Updater {
 public:
  Updater(IndexStore& store, const CodePage& code_page, const Catalogues& catalogues,
          const LogRootWalk& walk, const ProgressSink& progress)
      : store_(store),
        code_page_(code_page),
        catalogues_(catalogues),
        reader_(code_page, catalogues),
        walk_(walk),
        progress_(progress) {}

  void Run() {
    LookAtFolders();
    SortLogNames(changed_);
    for (std::size_t done = 0; done < changed_.size();) {
      store_.Change([&] { done = ReadSome(done); });
    }
    if (!changed_.empty()) {
      progress_({UpdateProgress::Step::kReading, changed_.size(), changed_.size()});
    }
    if (!gone_.empty()) {
      store_.Change([&] {
        for (const std::string& folder : gone_) RemoveUnlessBack(folder);
      });
    }
  }

 private:
  // Finds out what changed.
  void LookAtFolders() {
    const std::vector<std::string> names = walk_.Names();
    std::unordered_map<std::string, std::uint64_t> known;
    for (StoredLog& log : store_.Logs()) known.emplace(std::move(log.Folder), log.Stamp);
    std::size_t done = 0;
    for (const std::string& name : names) {
      if (done++ % 64 == 0) progress_({UpdateProgress::Step::kLooking, done - 1, names.size()});
      const auto entry = known.find(name);
      const bool unchanged = IsUnchanged(name, entry != known.end() ? entry->second : 0);
      if (!unchanged) changed_.push_back(name);
      if (entry != known.end()) known.erase(entry);
    }
    progress_({UpdateProgress::Step::kLooking, names.size(), names.size()});
    for (const auto& [folder, stamp] : known) gone_.push_back(folder);
  }

  // A disk with a clock of its own shows the time by all its logs before the first is read: those
  // that are to be read could not settle else but in the order of their times.
  bool IsUnchanged(const std::string& name, std::uint64_t stored) const {
    if (stored == 0 && !walk_.HasForeignClock()) return false;
    const std::optional<LogStamp> stamp = walk_.Stamp(name);
    return stamp && stamp->Digest == stored;
  }

  // Reads as many blocks as one change should bring: words that stand in many logs cost less if
  // they are written together, but nobody should have to wait long, or to read much again.
  std::size_t ReadSome(std::size_t done) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point enough = Clock::now() + kLongChange;
    for (int block = 0; block < kMostBlocks && done < changed_.size(); ++block) {
      progress_({UpdateProgress::Step::kReading, done, changed_.size()});
      done = ReadBlock(done);
      if (Clock::now() >= enough) break;
    }
    return done;
  }

  // Reads changed logs from this one on until a block is full; the number of logs done then.
  std::size_t ReadBlock(std::size_t done) {
    BlockInMaking block(store_, catalogues_);
    WordsInMaking words(store_);
    std::vector<std::int64_t> removed;
    while (done < changed_.size() && !block.IsFull()) {
      ReadOne(changed_[done++], block, words, removed);
    }
    words.Put();
    block.Put();
    for (const std::int64_t id : removed) MarkDead(id);
    return done;
  }

  void ReadOne(const std::string& name, BlockInMaking& block, WordsInMaking& words,
               std::vector<std::int64_t>& removed) {
    const std::optional<StoredLog> stored = store_.LogOfFolder(name);
    // Another program may have read it meanwhile.
    if (stored && IsUnchanged(name, stored->Stamp)) return;
    if (stored) {
      store_.RemoveLog(stored->Id);
      removed.push_back(stored->Id);
    }
    const auto loaded = walk_.LoadStamped(name);
    if (loaded) Put(loaded->Files, loaded->Stamp, block, words);
  }

  void Put(const LogFiles& files, const LogStamp& stamp, BlockInMaking& block,
           WordsInMaking& words) {
    const LogReading reading = reader_.Read(files);
    StoredLog log;
    log.Id = block.Add(reading);
    log.Folder = files.Folder;
    log.Stamp = stamp.Settled ? stamp.Digest : 0;
    log.Record = PackRecord({reading.Identity.Fingerprint, reading.Identity.Date, reading.Comment,
                             reading.RefusedFiles});
    store_.PutLog(log);
    words.Add(log.Id, SearchedText(code_page_, catalogues_, files, reading));
  }

  void RemoveUnlessBack(const std::string& folder) {
    if (walk_.Stamp(folder)) return;
    const std::optional<StoredLog> stored = store_.LogOfFolder(folder);
    if (!stored) return;
    store_.RemoveLog(stored->Id);
    MarkDead(stored->Id);
  }

  void MarkDead(std::int64_t id) {
    const std::int64_t block = id / kBlockLogs;
    const int column = static_cast<int>(SpecialColumn::kLive);
    ValueColumn live = store_.Column(block, column);
    const auto place = static_cast<std::size_t>(id % kBlockLogs);
    if (place >= live.States.size()) {
      throw IndexError(IndexError::Kind::kDamaged, "the index is damaged");
    }
    live.States[place] = 0;
    store_.PutColumn(block, column, live);
  }

  IndexStore& store_;
  const CodePage& code_page_;
  const Catalogues& catalogues_;
  const LogReader reader_;
  const LogRootWalk& walk_;
  const ProgressSink& progress_;
  std::vector<std::string> changed_;
  std::vector<std::string> gone_;
};

}  // namespace

void UpdateIndex(IndexStore& store, const CodePage& code_page, const Catalogues& catalogues,
                 const LogRootWalk& walk, const ProgressSink& progress) {
  Updater(store, code_page, catalogues, walk, progress).Run();
}

bool IsMostlyWaste(IndexStore& store) {
  const std::int64_t logs = static_cast<std::int64_t>(store.Logs().size());
  return store.NextId() > 2 * logs + kToleratedWaste;
}

}  // namespace logbook::insight
