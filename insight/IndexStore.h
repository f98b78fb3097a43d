// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The file of the index: an SQLite database in the user's cache, which can be thrown away at any
// time (docs/insight.md). This module knows its tables and nothing of logs; IndexUpdate fills it,
// IndexSearch asks it.
//
// A log has a number, given once and never again: block * kBlockLogs + place in the block. Values
// lie in columns over the logs of a block, words in a full-text table by the numbers of the logs.
// Every page bears a checksum (PageSums.h), and so does what is kept outside of the full-text
// table.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "insight/ValueColumn.h"

namespace logbook::insight {

// The index cannot be used. what() is a sentence for the user, without a full stop.
class IndexError : public std::runtime_error {
 public:
  enum class Kind {
    kDamaged,    // not what this program wrote; make it anew
    kUnwritable  // no place, no right, or no end of waiting for another program
  };
  IndexError(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}
  Kind What() const { return kind_; }

 private:
  Kind kind_;
};

// A log as the index knows it, apart from its values.
struct StoredLog {
  std::int64_t Id = 0;
  std::string Folder;
  std::uint64_t Stamp = 0;  // LogStamp::Digest when it was read; 0 if it had not settled
  std::string Record;       // LogRecord.h; empty where it was not asked for
};

class IndexStore {
 public:
  // Opens the database of this native path, or makes it; an empty path is a database in memory.
  // `contents` tells what it is made from: one that was made from something else counts as
  // damaged. Raises IndexError, as all routines here do.
  IndexStore(const std::string& native_path, const std::string& contents);
  // Opens one that is there, whatever it is made from.
  explicit IndexStore(const std::string& native_path);
  ~IndexStore();
  IndexStore(const IndexStore&) = delete;
  IndexStore& operator=(const IndexStore&) = delete;

  // Runs the work as one change: all of it lasts, or nothing. Waits for other writers. What the
  // work raises ends it without a change.
  void Change(const std::function<void()>& work);
  // Runs the work on one state of the index, whatever others write meanwhile.
  void Look(const std::function<void()>& work);

  // --- logs
  std::vector<StoredLog> Logs();  // all, without their records
  std::optional<StoredLog> LogOfFolder(const std::string& folder);
  StoredLog LogOfId(std::int64_t id);
  void PutLog(const StoredLog& log);
  void RemoveLog(std::int64_t id);

  // The number that the next log gets.
  std::int64_t NextId();
  void SetNextId(std::int64_t id);

  // --- columns by their numbers, 0 to 1023; an absent one is empty
  ValueColumn Column(std::int64_t block, int column);
  void PutColumn(std::int64_t block, int column, const ValueColumn& values);

  // --- texts that stand for numbers in columns
  std::int64_t NumberOfText(const std::string& text);  // a new one for a new text
  std::string TextOfNumber(std::int64_t number);
  std::vector<std::int64_t> NumbersOfTexts(const std::function<bool(const std::string&)>& which);

  // --- words
  void PutWords(std::int64_t id, const std::string& text);
  // Calls with the number of each log, also of removed ones, whose text holds the phrase.
  void EachWithWords(const std::vector<std::string>& phrase, bool last_begins,
                     const std::function<void(std::int64_t)>& sink);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook::insight
