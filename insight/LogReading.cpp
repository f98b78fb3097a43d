// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogReading.h"

#include <algorithm>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "insight/RowReaders.h"
#include "resources/Resources.h"
#include "text/CSVMan.h"
#include "text/LeadingNumber.h"
#include "text/NumberFormat.h"

namespace logbook::insight {
namespace {

constexpr int kAutomaticComment = 131;

constexpr auto kStateNames =
    std::to_array<std::string_view>({"ok", "na", "missing", "short", "nonumber"});

std::string_view BytesOf(const LogFiles& files, std::string_view name) {
  const LogFile* file = files.Find(name);
  return file != nullptr ? std::string_view(file->Bytes) : std::string_view();
}

// As GetIniString cuts values.
constexpr std::size_t kProfileBuffer = 512;

std::vector<std::string> TickTexts(const Machine& machine, std::string_view profile) {
  static const std::vector<std::string> kKeys = [] {
    std::vector<std::string> keys;
    keys.reserve(kItemHeaderCount);
    for (int item = 0; item < kItemHeaderCount; ++item) {
      keys.push_back("Item" + std::to_string(item));
    }
    return keys;
  }();
  const std::vector<std::string_view> keys(kKeys.begin(), kKeys.end());
  return GetProfileStrings(machine, "Maintenance", keys, "", kProfileBuffer, profile);
}

void ReadDescriptor(const Machine& machine, std::string_view profile, LogReading& reading) {
  GetIniStringFrom(machine, "LogFile", "Date", "", reading.Identity.Date, profile);
  reading.Date = ParseLogDate(reading.Identity.Date);
  reading.Options = ParseLogOptions(machine, profile);
  const std::vector<std::string> ticks = TickTexts(machine, profile);
  for (std::size_t item = 0; item < ticks.size(); ++item) {
    reading.HasTicks |= !ticks[item].empty();
    try {
      reading.Ticks[item] = LeadingNumber(ticks[item]) == 1;
    } catch (const RunTimeError&) {
      // Not 1, whatever it is.
    }
  }
}

// The logbook that made the record may have spoken any of the languages.
bool IsAutomaticComment(std::string_view comment) {
  for (std::size_t language = 0; language < LanguageCount(); ++language) {
    if (comment == LoadResString(kAutomaticComment, language)) return true;
  }
  return false;
}

void ReadComment(const CodePage& code_page, const LogFiles& files, LogReading& reading) {
  const LogFile* file = files.Find("comment.txt");
  reading.HasComment = file != nullptr && file->What == LogFile::Kind::kFile;
  if (!reading.HasComment) return;
  InputFile lines(file->Bytes);
  bool first = true;
  while (!lines.AtEnd()) {
    if (!first) reading.Comment += '\n';
    reading.Comment += code_page.ToUtf8(lines.ReadLine());
    first = false;
  }
  reading.Automatic = IsAutomaticComment(reading.Comment);
}

// Two or four decimal digits at a place of the text; -1 if others stand there.
int Digits(std::string_view text, std::size_t place, std::size_t count) {
  int number = 0;
  for (const char digit : text.substr(place, count)) {
    if (digit < '0' || digit > '9') return -1;
    number = number * 10 + (digit - '0');
  }
  return number;
}

}  // namespace

std::string_view NameOf(ValueState state) {
  return kStateNames.at(static_cast<std::size_t>(state));
}

std::optional<ValueState> FindState(std::string_view name) {
  for (std::size_t i = 0; i < kStateNames.size(); ++i) {
    if (kStateNames[i] == name) return static_cast<ValueState>(i);
  }
  return std::nullopt;
}

// Logs of one root are mostly those of one instrument.
struct LogReader::LastGates {
  const Gates& Of(const Catalogues& catalogues, const LogOptions& options) {
    const bool same =
        known && std::all_of(kOptionKeys.begin(), kOptionKeys.end(), [&](const auto& each) {
          return of.*each.Member == options.*each.Member;
        });
    if (!same) {
      of = options;
      gates = GatesOf(catalogues, options);
      known = true;
    }
    return gates;
  }

  bool known = false;
  LogOptions of;
  Gates gates;
};

LogReader::LogReader(const CodePage& code_page, const Catalogues& catalogues)
    : code_page_(code_page),
      catalogues_(catalogues),
      macros_(catalogues),
      gates_(std::make_unique<LastGates>()) {}

LogReader::~LogReader() = default;

LogReading ReadLog(const CodePage& code_page, const Catalogues& catalogues, const LogFiles& files) {
  return LogReader(code_page, catalogues).Read(files);
}

LogReading LogReader::Read(const LogFiles& files) const {
  LogReading reading;
  reading.Identity.Root = files.Root;
  reading.Identity.Folder = files.Folder;
  reading.Identity.Fingerprint = FingerprintOf(files);
  const Machine machine = {{}, &code_page_};  // for the code page alone
  ReadDescriptor(machine, BytesOf(files, "logfile.ini"), reading);
  ReadComment(code_page_, files, reading);
  for (const LogFile& file : files.Files) {
    // A descriptor that leads nowhere hides all that it said.
    const bool lost = file.What == LogFile::Kind::kNothing && &file == files.Find("logfile.ini");
    if (lost || file.What == LogFile::Kind::kRefused) reading.RefusedFiles.push_back(file.Name);
  }
  reading.Values = ReadRows({code_page_, catalogues_, reading.Options,
                             gates_->Of(catalogues_, reading.Options), files, macros_});
  return reading;
}

std::string PrintedText(const Catalogues& catalogues, const RowId& id, const RowValue& value) {
  if (value.State == ValueState::kNotApplicable) return "N/A";
  if (value.State != ValueState::kOk) return {};
  const RowInfo info = DescribeRow(catalogues, id);
  switch (info.Kind) {
    case RowKind::kNumber:
      return FormatNumber(value.Number, info.Format);
    case RowKind::kText:
      return value.Text;
    case RowKind::kBit:
      return value.Number != 0 ? info.Label1 : info.Label0;
  }
  return {};
}

std::optional<std::chrono::local_seconds> ParseLogDate(std::string_view text) {
  namespace chrono = std::chrono;
  constexpr std::string_view kShape = "##/##/#### ##:##:##";
  if (text.size() != kShape.size()) return std::nullopt;
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    if (kShape[i] == '#' ? Digits(text, i, 1) < 0 : text[i] != kShape[i]) return std::nullopt;
  }
  const chrono::year_month_day day(chrono::year(Digits(text, 6, 4)),
                                   chrono::month(static_cast<unsigned>(Digits(text, 0, 2))),
                                   chrono::day(static_cast<unsigned>(Digits(text, 3, 2))));
  const int hour = Digits(text, 11, 2);
  const int minute = Digits(text, 14, 2);
  const int second = Digits(text, 17, 2);
  if (!day.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return chrono::local_days(day) + chrono::hours(hour) + chrono::minutes(minute) +
         chrono::seconds(second);
}

std::string_view FirstLine(std::string_view comment) {
  return comment.substr(0, comment.find('\n'));
}

}  // namespace logbook::insight
