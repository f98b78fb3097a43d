// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Check.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "base/TemporaryName.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"
#include "insight/Collectors.h"
#include "snapshot/BitWords.h"
#include "snapshot/MacroFile.h"
#include "snapshot/SequentialReader.h"
#include "snapshot/SystemParameters.h"

namespace logbook::insight {
namespace {

constexpr int kListRows = 256;
constexpr int kRateDays = 90;
constexpr int kAheadDays = 90;

// How the fields of a snapshot file are read.
enum class Fields { kNumbers, kSystem, kTexts };

struct Snapshot {
  std::string_view name;
  int fields;
  Fields kind;
};

constexpr auto kSnapshots = std::to_array<Snapshot>({
    {"auser.txt", kMeterRowCount, Fields::kNumbers},
    {"aall.txt", kAnalogRowCount, Fields::kNumbers},
    {"sys.txt", kSysRowCount, Fields::kSystem},
    {"bout.txt", static_cast<int>(std::tuple_size_v<BitWords>), Fields::kTexts},
    {"bin.txt", static_cast<int>(std::tuple_size_v<BitWords>), Fields::kTexts},
});

constexpr auto kMacroNames = std::to_array<std::string_view>(
    {"sensevar.mac", "othervar.mac", "resovar.mac", "paramvar.mac"});

int CountFields(const CodePage& code_page, const Snapshot& snapshot, std::string_view bytes) {
  SequentialReader reader(code_page, bytes);
  int count = 0;
  while (!reader.AtEnd()) {
    const bool text =
        snapshot.kind == Fields::kTexts || (snapshot.kind == Fields::kSystem && count == kStampRow);
    if (text) {
      reader.ReadText();
    } else {
      reader.FindNumber();
    }
    ++count;
  }
  return count;
}

// What a text in a foreign code page is known by: a byte that stands for no character, or bytes
// beyond ASCII that make sense as UTF-8. Empty for a text that is at home.
std::string ForeignText(const CodePage& code_page, std::string_view bytes) {
  bool beyond_ascii = false;
  bool utf8 = true;
  for (std::size_t i = 0; i < bytes.size();) {
    const char32_t character = NextCharacter(bytes, i);
    utf8 &= character != kNotUtf8;
    beyond_ascii |= character >= 0x80;
  }
  if (!beyond_ascii) return {};
  if (utf8) return "it looks like UTF-8";
  const std::string text = code_page.ToUtf8(bytes);
  for (std::size_t i = 0; i < text.size();) {
    const char32_t character = NextCharacter(text, i);
    if (character == 0xFFFD || (character >= 0x80 && character < 0xA0)) {
      return "a byte stands for no character of code page " + std::to_string(code_page.Number());
    }
  }
  return {};
}

class LogCheck {
 public:
  LogCheck(const CodePage& code_page, const LogFiles& files, const LogReading& reading)
      : code_page_(code_page), files_(files), reading_(reading) {}

  std::vector<Finding> Check(const std::vector<EntryFacts>& entries) {
    if (!DayOfFolder(files_.Folder)) Add("odd-name");
    CheckDescriptor();
    CheckFiles();
    CheckTexts();
    for (const EntryFacts& entry : entries) CheckEntry(entry);
    return std::move(findings_);
  }

 private:
  void Add(std::string_view code, std::string detail = {}) {
    findings_.push_back({code, files_.Folder, std::move(detail)});
  }

  void CheckDescriptor() {
    // What cannot be read says nothing; that is a finding of its own.
    const LogFile* descriptor = files_.Find("logfile.ini");
    if (descriptor != nullptr && descriptor->What != LogFile::Kind::kFile) return;
    if (!reading_.HasTicks) Add("unfinished");
    if (reading_.Identity.Date.empty()) {
      Add("date-missing");
    } else if (!reading_.Date) {
      Add("date-impossible", reading_.Identity.Date);
    }
    const LogFile* comment = files_.Find("comment.txt");
    if (comment == nullptr || comment->What == LogFile::Kind::kNothing) {
      // A record that was never confirmed has none.
      if (reading_.HasTicks) Add("comment-missing");
    } else if (comment->What == LogFile::Kind::kFile && comment->Size == 0) {
      Add("comment-empty");
    }
  }

  void CheckFiles() {
    for (const Snapshot& snapshot : kSnapshots) CheckSnapshot(snapshot);
    for (const std::string_view name : kMacroNames) {
      const std::vector<std::string> names = MacroFileNames(name);
      const bool there = std::any_of(names.begin(), names.end(), [&](const std::string& each) {
        return !IsMissing(files_.Find(each));
      });
      if (!there && reading_.HasTicks) Add("macro-missing", std::string(name));
    }
    for (const std::string& name : reading_.RefusedFiles) refused_.push_back(name);
  }

  static bool IsMissing(const LogFile* file) {
    return file == nullptr || file->What == LogFile::Kind::kNothing;
  }

  void CheckSnapshot(const Snapshot& snapshot) {
    const LogFile* file = files_.Find(snapshot.name);
    if (IsMissing(file)) {
      if (reading_.HasTicks) Add("snapshot-missing", std::string(snapshot.name));
      return;
    }
    if (file->What != LogFile::Kind::kFile) return;
    const int count = CountFields(code_page_, snapshot, file->Bytes);
    if (count == snapshot.fields) return;
    Add(count < snapshot.fields ? "snapshot-short" : "snapshot-long",
        file->Name + ": " + std::to_string(count) + " fields of " +
            std::to_string(snapshot.fields));
  }

  void CheckTexts() {
    CheckText("logfile.ini");
    CheckText("comment.txt");
    for (const std::string_view name : kTextLogs) CheckText(name);
  }

  void CheckText(std::string_view name) {
    const LogFile* file = files_.Find(name);
    if (IsMissing(file)) return;
    const std::string problem = ForeignText(code_page_, file->Bytes);
    if (!problem.empty()) Add("text-foreign", file->Name + ": " + problem);
  }

  void CheckEntry(const EntryFacts& entry) {
    if (entry.folder) return Add("sub-folder", entry.name);
    // What a writer leaves goes with the folder.
    if (IsTemporaryName(entry.name)) return;
    if (entry.name.starts_with('.')) Add("file-hidden", entry.name);
    if (entry.read_only) Add("file-read-only", entry.name);
    if (std::find(refused_.begin(), refused_.end(), entry.name) != refused_.end()) {
      Add("file-unreadable", entry.name);
    }
  }

  const CodePage& code_page_;
  const LogFiles& files_;
  const LogReading& reading_;
  std::vector<std::string> refused_;
  std::vector<Finding> findings_;
};

void CheckDates(const RootFacts& facts, std::vector<Finding>& findings) {
  std::map<LocalTime, std::vector<std::string>> logs;
  for (const RootFacts::Log& log : facts.logs) {
    if (log.date) logs[*log.date].push_back(log.folder);
  }
  for (auto& [date, folders] : logs) {
    if (folders.size() < 2) continue;
    std::sort(folders.begin(), folders.end());
    std::string names;
    for (const std::string& folder : folders) names += (names.empty() ? "" : ", ") + folder;
    findings.push_back({"date-double", "", TimeText(date) + ": " + names});
  }
}

void CheckLength(const RootFacts& facts, LocalDay today, std::vector<Finding>& findings) {
  const auto count = static_cast<int>(facts.logs.size());
  if (count == kListRows) {
    findings.push_back(
        {"list-overflow", "",
         std::to_string(count) + " logs: full today, the next one will not be shown"});
    return;
  }
  if (count > kListRows) {
    findings.push_back({"list-full", "",
                        std::to_string(count) + " logs, " + std::to_string(count - kListRows) +
                            " of them not shown"});
    return;
  }
  const auto recent = std::count_if(facts.logs.begin(), facts.logs.end(), [&](const auto& log) {
    return log.date && DayOf(*log.date) <= today &&
           DayOf(*log.date) > today - std::chrono::days(kRateDays);
  });
  if (recent == 0) return;
  const double rate = static_cast<double>(recent) / kRateDays;
  const int days = static_cast<int>(std::ceil((kListRows - count) / rate));
  if (days > kAheadDays) return;
  findings.push_back({"list-overflow", "",
                      std::to_string(count) + " logs, " + std::to_string(recent) + " in " +
                          std::to_string(kRateDays) + " days: full on " +
                          DayText(today + std::chrono::days(days))});
}

// True for the name of a staging folder or its descriptor from a day before this one.
bool IsOldStaging(std::string_view name, LocalDay today) {
  if (name.ends_with(".xml")) name.remove_suffix(4);
  if (!name.ends_with("_LOGBK") || name.size() < 12) return false;
  const std::optional<LocalDay> day = DayOfFolder(std::string(name.substr(0, 6)) + "00");
  return day && *day < today;
}

}  // namespace

const FindingKind* FindKind(std::string_view code) {
  for (const FindingKind& kind : kFindingKinds) {
    if (kind.code == code) return &kind;
  }
  return nullptr;
}

std::vector<Finding> CheckLog(const CodePage& code_page, const LogFiles& files,
                              const LogReading& reading, const std::vector<EntryFacts>& entries) {
  return LogCheck(code_page, files, reading).Check(entries);
}

std::vector<Finding> CheckRoot(const RootFacts& facts, LocalDay today) {
  std::vector<Finding> findings;
  CheckLength(facts, today, findings);
  CheckDates(facts, findings);
  for (const std::string& file : facts.files) {
    if (EndsInIgnoringCase(file, ".qkvzip")) findings.push_back({"package-left", "", file});
  }
  for (const std::string& name : facts.staged) {
    if (IsOldStaging(name, today)) findings.push_back({"staging-left", "", name});
  }
  return findings;
}

}  // namespace logbook::insight
