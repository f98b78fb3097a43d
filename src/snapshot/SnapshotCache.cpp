// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SnapshotCache.h"

#include <algorithm>
#include <chrono>

#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "snapshot/SequentialReader.h"
#include "text/CSVMan.h"

namespace logbook {
namespace {

// Rows of the largest positional catalogue.
constexpr std::size_t kMostNumbers = 251;
constexpr std::size_t kSmallFile = 64 * 1024;
constexpr std::size_t kShortLines = 4 * 1024;

// True if no change after `now` can leave the stamp as it is. Time stamps have a grain: some
// milliseconds on file systems that keep fractions of seconds, up to two seconds on others.
bool IsSettled(const FileStamp& stamp) {
  using std::chrono::nanoseconds;
  constexpr std::int64_t kSecond = 1'000'000'000;
  const bool whole_seconds = stamp.modified_ns % kSecond == 0;
  const std::int64_t grain = whole_seconds ? 2 * kSecond + kSecond / 2 : kSecond / 10;
  const std::int64_t now =
      std::chrono::duration_cast<nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
          .count();
  return std::max(stamp.modified_ns, stamp.changed_ns) + grain < now;
}

bool IsMissing(const FileStamp& stamp) {
  return stamp == FileStamp();
}

// The numbers from the start of an open file: as many as there are, 0 for one that cannot be held.
std::vector<double> ReadNumbers(SequentialReader& reader) {
  std::vector<double> numbers;
  while (numbers.size() < kMostNumbers && !reader.AtEnd()) {
    try {
      numbers.push_back(reader.ReadNumber());
    } catch (const RunTimeError& error) {
      if (error.Number() != ErrorNumber::kOverflow) break;
      numbers.push_back(0);
    }
  }
  return numbers;
}

double NumberAt(const std::vector<double>& numbers, int row) {
  const auto index = static_cast<std::size_t>(row);
  return index < numbers.size() ? numbers[index] : 0;
}

}  // namespace

FileStamp SnapshotCache::Stamp(const std::string& path) {
  if (passes_ == 0) return StampOf(machine_, path);
  const auto known = stamps_.find(path);
  if (known != stamps_.end()) return known->second;
  if (between_files_) between_files_();
  return stamps_.emplace(path, StampOf(machine_, path)).first->second;
}

SnapshotCache::Descriptor SnapshotCache::ReadDescriptor(const std::string& logfile_ini) const {
  Descriptor descriptor;
  try {
    const std::string bytes = ReadFile(machine_, logfile_ini);
    GetIniStringFrom(machine_, "LogFile", "Date", "", descriptor.date, bytes);
    descriptor.options = ParseLogOptions(machine_, bytes);
  } catch (const RunTimeError&) {
    // A file that cannot be read has no values.
  }
  return descriptor;
}

const SnapshotCache::Descriptor& SnapshotCache::DescriptorOf(const std::string& logfile_ini,
                                                             Descriptor& fresh) {
  const FileStamp stamp = Stamp(logfile_ini);
  if (IsMissing(stamp)) return fresh;
  const auto known = descriptors_.find(logfile_ini);
  if (known != descriptors_.end() && known->second.stamp == stamp) return known->second.descriptor;
  const bool settled = IsSettled(stamp);
  fresh = ReadDescriptor(logfile_ini);
  if (settled) descriptors_.insert_or_assign(logfile_ini, DescriptorEntry{stamp, fresh});
  return fresh;
}

LogOptions SnapshotCache::Options(const std::string& logfile_ini) {
  Descriptor fresh;
  return DescriptorOf(logfile_ini, fresh).options;
}

std::string SnapshotCache::Date(const std::string& logfile_ini) {
  Descriptor fresh;
  return DescriptorOf(logfile_ini, fresh).date;
}

std::optional<double> SnapshotCache::Number(const std::string& path, int row) {
  const FileStamp stamp = Stamp(path);
  if (IsMissing(stamp)) return std::nullopt;
  const auto known = numbers_.find(path);
  if (known != numbers_.end() && known->second.stamp == stamp) {
    return NumberAt(known->second.numbers, row);
  }
  const bool settled = IsSettled(stamp);
  SequentialReader reader(machine_, path);
  std::vector<double> numbers = ReadNumbers(reader);
  const double number = NumberAt(numbers, row);
  if (settled) numbers_.insert_or_assign(path, NumbersEntry{stamp, std::move(numbers)});
  return number;
}

std::optional<std::string> SnapshotCache::SpelledMacro(const std::string& folder,
                                                       const std::string& file) {
  for (const std::string& name : MacroFileNames(file)) {
    const std::string path = folder + name;
    std::string spelled = PathText(NativePath(machine_, path));
    if (!IsMissing(Stamp(spelled))) return spelled;
    // A native name may hold what a path text cannot.
    if (Exists(machine_, path)) return path;
  }
  return std::nullopt;
}

std::optional<std::string> SnapshotCache::FindMacro(const std::string& folder,
                                                    const std::string& file) {
  const FileStamp stamp = Stamp(folder);
  const auto known = folders_.find(folder);
  const bool fresh = known != folders_.end() && known->second.stamp == stamp;
  if (fresh) {
    // What a link in the folder leads to may come and go without a change of the folder.
    const auto path = known->second.paths.find(file);
    if (path != known->second.paths.end() && !IsMissing(Stamp(path->second))) return path->second;
  }
  const bool settled = !IsMissing(stamp) && IsSettled(stamp);
  std::optional<std::string> path = SpelledMacro(folder, file);
  // The name tried second is not kept: where the first is a link, its target may appear unseen.
  if (settled && path && EqualIgnoringCase(path->substr(path->rfind('\\') + 1), file)) {
    FolderEntry& entry = folders_[folder];
    if (entry.stamp != stamp) entry = {stamp, {}};
    entry.paths.insert_or_assign(file, *path);
  }
  return path;
}

MacroLines SnapshotCache::Macro(const std::string& path, const std::string& var) {
  const FileStamp stamp = Stamp(path);
  const auto known = macros_.find(path);
  if (known != macros_.end() && known->second.stamp == stamp) {
    return FindIn(known->second, path, var);
  }
  MacroEntry entry = {stamp, {}, {}};
  const bool settled = !IsMissing(stamp) && IsSettled(stamp);
  const MacroLines lines = FindIn(entry, path, var);
  if (settled) macros_.insert_or_assign(path, std::move(entry));
  return lines;
}

MacroLines SnapshotCache::FindIn(MacroEntry& entry, const std::string& path,
                                 const std::string& var) {
  if (const auto known = entry.found.find(var); known != entry.found.end()) return known->second;
  if (!entry.lines && entry.stamp.size <= kSmallFile) {
    entry.lines = ReadAssignments(machine_, path);
  }
  const MacroLines lines =
      entry.lines ? FindMacroLines(*entry.lines, var) : ReadMacroLines(machine_, path, var);
  if (lines.Value.size() + lines.ColOpgs.size() + lines.Clmd.size() <= kShortLines) {
    entry.found.emplace(var, lines);
  }
  return lines;
}

}  // namespace logbook
