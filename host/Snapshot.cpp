// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Snapshot.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/UpperCase.h"
#include "host/Disk.h"
#include "host/Quantity.h"
#include "host/Tune.h"
#include "host/Wear.h"
#include "host/tables/TuneVariables.h"

namespace logbook::host {
namespace {

// Fields in lines of so many, separated by commas.
std::string FieldLines(const std::vector<std::string>& fields, std::size_t per_line) {
  std::string text;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const bool ends_line = (i + 1) % per_line == 0 || i + 1 == fields.size();
    text.append(fields[i]).append(ends_line ? "\r\n" : ",");
  }
  return text;
}

std::vector<std::string> HexFields(const std::array<std::uint16_t, kBitWords>& words) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::vector<std::string> fields;
  for (const std::uint16_t word : words) {
    std::string field;
    for (int shift = 12; shift >= 0; shift -= 4) field += kDigits[(word >> shift) & 15];
    fields.push_back(field);
  }
  return fields;
}

std::string FirstHalfOfLines(const std::string& bytes) {
  const auto lines = std::count(bytes.begin(), bytes.end(), '\n');
  std::size_t end = 0;
  for (auto i = lines / 2; i > 0; --i) end = bytes.find('\n', end) + 1;
  return bytes.substr(0, end);
}

// The first place behind the file's middle with a character of the same line on either side.
std::size_t MiddleOfALine(const std::string& bytes) {
  const auto ends_line = [](char c) { return c == '\r' || c == '\n'; };
  std::size_t place = std::max<std::size_t>(bytes.size() / 2, 1);
  while (place < bytes.size() && (ends_line(bytes[place - 1]) || ends_line(bytes[place]))) ++place;
  return place;
}

// As many bytes as the file has, every value among them.
std::string NoText(const std::string& bytes) {
  std::string noise;
  for (std::size_t i = 0; i < std::max<std::size_t>(bytes.size(), 256); ++i) {
    noise += static_cast<char>(Pick(1, 0, kDamageQuantity, static_cast<int>(i), 256));
  }
  return noise;
}

std::string Damaged(const std::string& bytes, DamageKind kind) {
  switch (kind) {
    case DamageKind::kShort:
      return FirstHalfOfLines(bytes);
    case DamageKind::kTruncated:
      return bytes.substr(0, MiddleOfALine(bytes));
    case DamageKind::kBinary:
      return NoText(bytes);
    case DamageKind::kEmpty:
    case DamageKind::kMissing:
      break;
  }
  return {};
}

DamageKind ParseKind(std::string_view word) {
  if (word == "short") return DamageKind::kShort;
  if (word == "truncated") return DamageKind::kTruncated;
  if (word == "empty") return DamageKind::kEmpty;
  if (word == "binary") return DamageKind::kBinary;
  if (word == "missing") return DamageKind::kMissing;
  throw std::invalid_argument("unknown damage \"" + std::string(word) +
                              "\": short, truncated, empty, binary or missing");
}

bool IsSnapshotFile(std::string_view name) {
  const std::vector<SnapshotFile> files = MakeSnapshot({});
  return std::any_of(files.begin(), files.end(),
                     [&](const SnapshotFile& file) { return EqualIgnoringCase(file.name, name); });
}

}  // namespace

std::vector<SnapshotFile> MakeSnapshot(const LogMoment& moment) {
  const Instrument& instrument = moment.instrument;
  const int number = moment.log_number;
  return {
      {"auser.txt", FieldLines(MeterFields(instrument, number), 1)},
      {"aall.txt", FieldLines(AnalogFields(instrument, number), 5)},
      {"bin.txt", FieldLines(HexFields(InputWords(instrument, number)), 4)},
      {"bout.txt", FieldLines(HexFields(OutputWords(instrument, number)), 4)},
      {"sys.txt", FieldLines(SystemFields(instrument), 1)},
      {std::string(kSenseFile), SenseMacro(instrument, number)},
      {std::string(kOtherFile), OtherMacro(instrument, number)},
      {std::string(kResoFile), ResoMacro(instrument, number)},
      {std::string(kParamFile), ParamMacro(instrument, number)},
      {"tune.rpt", TuneReport(instrument, number, moment.time)},
      {"acqlog.txt", AcquisitionLog(moment)},
      {"sequence.log", SequenceLog(moment)},
      {"chnseq.log", ChainSequenceLog(moment)},
      {"errlog.txt", ErrorLog(moment)},
      {"ceerrlog.txt", CeErrorLog(moment)},
  };
}

Damage ParseDamage(std::string_view text) {
  const std::size_t colon = text.find(':');
  Damage damage;
  damage.kind = ParseKind(text.substr(0, colon));
  if (colon != std::string_view::npos) {
    damage.file = text.substr(colon + 1);
    if (!IsSnapshotFile(damage.file)) {
      throw std::invalid_argument("no snapshot file \"" + damage.file + "\"");
    }
  }
  return damage;
}

bool HoldsSnapshot(const Machine& machine, std::string_view folder) {
  const std::string place = std::string(folder) + "\\";
  const std::vector<SnapshotFile> files = MakeSnapshot({});
  return std::any_of(
             files.begin(), files.end(),
             [&](const SnapshotFile& file) { return Exists(machine, place + file.name); }) ||
         !GetPrivateProfileString(machine, "OPTION", "LENS", "", 2, place + "logfile.ini").empty();
}

void WriteSnapshot(const Machine& machine, std::string_view folder,
                   const std::vector<SnapshotFile>& files, const std::vector<Damage>& damages) {
  for (const SnapshotFile& file : files) {
    std::string bytes = machine.code_page->FromUtf8(file.text);
    bool is_missing = false;
    for (const Damage& damage : damages) {
      if (!damage.file.empty() && !EqualIgnoringCase(damage.file, file.name)) continue;
      is_missing = is_missing || damage.kind == DamageKind::kMissing;
      bytes = Damaged(bytes, damage.kind);
    }
    if (!is_missing) PutFile(machine, std::string(folder) + "\\" + file.name, bytes);
  }
}

}  // namespace logbook::host
