// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/LogSnapshots.h"

#include <algorithm>

#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "snapshot/MacroSearch.h"
#include "snapshot/PositionalNumbers.h"
#include "snapshot/SequentialReader.h"
#include "snapshot/SnapshotCache.h"
#include "text/CSVMan.h"

namespace logbook {
namespace {

constexpr std::string_view kDescriptorFile = "logfile.ini";
constexpr std::string_view kCommentFile = "comment.txt";
constexpr std::size_t kShortLines = 4 * 1024;
constexpr std::size_t kLongestComment = 64 * 1024;
constexpr std::string_view kLineEnds = "\r\n";

bool IsMissing(const FileStamp& stamp) {
  return stamp == FileStamp();
}

template <typename Entries>
auto FindFile(Entries& entries, std::string_view file) {
  return std::find_if(entries.begin(), entries.end(),
                      [file](const auto& entry) { return entry.file == file; });
}

template <typename Value>
std::size_t IndexOf(const std::vector<Value>& values, const auto& wanted) {
  return static_cast<std::size_t>(std::find(values.begin(), values.end(), wanted) - values.begin());
}

// Reads the numbers of some rows of a file of any size. False if the disk refuses to read on; the
// rest is 0 then.
bool ReadNumbers(const Machine& machine, const std::string& path, const std::vector<int>& rows,
                 std::vector<double>& numbers) {
  SequentialReader reader(machine, path);
  numbers.assign(rows.size(), 0);
  int row = 0;
  try {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      double number = 0;
      for (; row <= rows[i] && !reader.AtEnd(); ++row) {
        try {
          number = reader.ReadNumber();
        } catch (const RunTimeError& error) {
          if (error.Number() != ErrorNumber::kOverflow) throw;
          number = 0;
        }
      }
      if (row > rows[i]) numbers[i] = number;
    }
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

bool IsShort(const MacroLines& lines) {
  return lines.Value.size() + lines.ColOpgs.size() + lines.Clmd.size() <= kShortLines;
}

}  // namespace

void SnapshotWants::Add(std::string_view file, int row) {
  auto entry = FindFile(rows, file);
  if (entry == rows.end()) entry = rows.insert(rows.end(), {std::string(file), {}});
  const auto place = std::lower_bound(entry->rows.begin(), entry->rows.end(), row);
  if (place == entry->rows.end() || *place != row) entry->rows.insert(place, row);
}

void SnapshotWants::Add(std::string_view file, std::string_view variable) {
  auto entry = FindFile(variables, file);
  if (entry == variables.end()) entry = variables.insert(variables.end(), {std::string(file), {}});
  if (IndexOf(entry->variables, variable) == entry->variables.size()) {
    entry->variables.emplace_back(variable);
  }
}

LogSnapshots::LogSnapshots(SnapshotCache& cache, std::string root, std::string name)
    : cache_(cache), root_(std::move(root)), name_(std::move(name)) {}

std::string LogSnapshots::PathOf(std::string_view file) const {
  return ExactFolder(root_ + name_).append(file);
}

// True if what is kept of a file holds in this pass.
bool LogSnapshots::Stands(Kept& kept, std::string_view file) {
  if (!kept.settled) return false;
  FileStamp stamp;
  if (cache_.FilesOf(root_).Look(name_, file, stamp) == FilesBelow::Found::kUnclear) {
    stamp = StampOf(cache_.machine_, PathOf(file));
  }
  if (IsMissing(stamp) || stamp != kept.stamp) return false;
  kept.pass = cache_.pass_number_;
  return true;
}

template <typename FromBytes, typename FromPath>
bool LogSnapshots::Refresh(Kept& kept, std::string_view file, const FromBytes& from_bytes,
                           const FromPath& from_path) {
  if (kept.pass == cache_.pass_number_) return kept.exists;
  if (cache_.between_files_) cache_.between_files_();
  if (Stands(kept, file)) return true;
  const DiskClocks::Moment before = DiskClocks::Moment::Now();
  kept.settled = false;
  const FileStamp old_stamp = kept.stamp;
  std::string_view bytes;
  bool whole = true;
  const auto found = cache_.FilesOf(root_).Read(name_, file, kept.stamp, bytes);
  if (found == FilesBelow::Found::kFile) {
    from_bytes(bytes);
    kept.exists = true;
  } else {
    const std::string path = PathOf(file);
    kept.stamp =
        found == FilesBelow::Found::kMissing ? FileStamp() : StampOf(cache_.machine_, path);
    kept.exists = !IsMissing(kept.stamp);
    if (kept.exists) whole = from_path(path);
  }
  cache_.clocks_.SeeChange(old_stamp, kept.stamp);
  kept.settled = kept.exists && whole && cache_.clocks_.IsSettled(kept.stamp, before) &&
                 cache_.ShowsChanges(kept.stamp, [&] { return PathOf(file); });
  if (!kept.settled) cache_.clocks_.Take(kept.stamp, DiskClocks::Moment::Now());
  kept.pass = cache_.pass_number_;
  return kept.exists;
}

void LogSnapshots::ReadDescriptor() {
  const auto parse = [this](std::string_view bytes) {
    GetIniStringFrom(cache_.machine_, "LogFile", "Date", "", date_, bytes);
    has_options_ = cache_.wants_.options;
    if (has_options_) options_ = ParseLogOptions(cache_.machine_, bytes);
  };
  const auto read = [&](const std::string& path) {
    try {
      parse(ReadFile(cache_.machine_, path, kLargestProfile));
      return true;
    } catch (const RunTimeError&) {
      parse({});  // a file that cannot be read has no values
      return false;
    }
  };
  if (!Refresh(descriptor_, kDescriptorFile, parse, read)) parse({});
}

const LogOptions& LogSnapshots::Options() {
  cache_.wants_.options = true;
  if (!has_options_) descriptor_ = {};
  ReadDescriptor();
  return options_;
}

const std::string& LogSnapshots::Date() {
  ReadDescriptor();
  return date_;
}

std::string LogSnapshots::Comment() {
  const Machine& machine = cache_.machine_;
  const auto first_line = [&](std::string_view bytes) {
    if (bytes.empty()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
    comment_ = machine.code_page->ToUtf8(bytes.substr(0, bytes.find_first_of(kLineEnds)));
  };
  const auto read = [&](const std::string& path) {
    comment_.clear();
    if (FolderExists(machine, path)) return true;
    comment_ = machine.code_page->ToUtf8(InputFile(machine, path).ReadLine(kLongestComment));
    return true;
  };
  if (!Refresh(comment_file_, kCommentFile, first_line, read)) return {};
  if (comment_.size() <= kShortLines) return comment_;
  comment_file_ = {};
  return std::move(comment_);
}

LogSnapshots::Numbers& LogSnapshots::NumbersOf(std::string_view file) {
  const auto known = FindFile(numbers_, file);
  if (known != numbers_.end()) return *known;
  numbers_.emplace_back().file = file;
  return numbers_.back();
}

bool LogSnapshots::RefreshNumbers(Numbers& entry) {
  const std::vector<int>& rows = FindFile(cache_.wants_.rows, entry.file)->rows;
  const auto keep = [&](std::vector<double> numbers) {
    entry.rows = rows;
    entry.numbers = std::move(numbers);
  };
  return Refresh(
      entry, entry.file, [&](std::string_view bytes) { keep(NumbersAt(bytes, rows)); },
      [&](const std::string& path) {
        std::vector<double> numbers;
        const bool whole = ReadNumbers(cache_.machine_, path, rows, numbers);
        keep(std::move(numbers));
        return whole;
      });
}

std::optional<double> LogSnapshots::Number(std::string_view file, int row) {
  cache_.wants_.Add(file, row);
  Numbers& entry = NumbersOf(file);
  if (IndexOf(entry.rows, row) == entry.rows.size()) static_cast<Kept&>(entry) = {};
  if (!RefreshNumbers(entry)) return std::nullopt;
  return entry.numbers[IndexOf(entry.rows, row)];
}

LogSnapshots::Macros& LogSnapshots::MacrosOf(std::string_view file) {
  const auto known = FindFile(macros_, file);
  if (known != macros_.end()) return *known;
  macros_.emplace_back().file = file;
  return macros_.back();
}

bool LogSnapshots::RefreshMacros(Macros& entry, const std::vector<std::string>& variables) {
  const auto keep = [&](const auto& find) {
    entry.variables = variables;
    entry.lines.clear();
    for (const std::string& variable : variables) {
      std::optional<MacroLines> lines = find(variable);
      if (!IsShort(*lines)) lines.reset();
      entry.lines.push_back(std::move(lines));
    }
  };
  return Refresh(
      entry, entry.file,
      [&](std::string_view bytes) {
        const MacroSearch text(*cache_.machine_.code_page, bytes);
        keep([&](const std::string& variable) { return text.Find(variable); });
      },
      [&](const std::string& path) {
        keep([&](const std::string& variable) {
          return ReadMacroLines(cache_.machine_, path, variable);
        });
        return true;
      });
}

std::optional<MacroLines> LogSnapshots::Macro(const std::string& file,
                                              const std::string& variable) {
  cache_.wants_.Add(file, variable);
  const std::vector<std::string>& variables = FindFile(cache_.wants_.variables, file)->variables;
  for (const std::string& name : MacroFileNames(file)) {
    Macros& entry = MacrosOf(name);
    if (IndexOf(entry.variables, variable) == entry.variables.size()) {
      static_cast<Kept&>(entry) = {};
    }
    if (!RefreshMacros(entry, variables)) continue;
    const std::optional<MacroLines>& lines = entry.lines[IndexOf(entry.variables, variable)];
    return lines ? lines : ReadMacroLines(cache_.machine_, PathOf(name), variable);
  }
  return std::nullopt;
}

}  // namespace logbook
