// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/IndexLayout.h"

#include <algorithm>

#include "base/UpperCase.h"

namespace logbook::insight {
namespace {

constexpr std::size_t kNameBytes = 6;

void Put(std::string& bytes, std::uint64_t value) {
  for (int i = 0; i < 8; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

void Put(std::string& bytes, std::string_view text) {
  Put(bytes, text.size());
  bytes += text;
}

// Takes parts from the front; nothing once a part is not whole.
class Source {
 public:
  explicit Source(std::string_view bytes) : bytes_(bytes) {}

  std::uint64_t TakeNumber() {
    const std::string_view part = Take(8);
    std::uint64_t value = 0;
    for (std::size_t i = part.size(); i > 0; --i) {
      value = value << 8 | static_cast<unsigned char>(part[i - 1]);
    }
    return value;
  }
  std::string TakeText() { return std::string(Take(TakeNumber())); }
  bool IsWhole() const { return !short_ && bytes_.empty(); }
  bool IsShort() const { return short_; }

 private:
  std::string_view Take(std::uint64_t size) {
    short_ |= size > bytes_.size();
    if (short_) return {};
    const std::string_view part = bytes_.substr(0, static_cast<std::size_t>(size));
    bytes_.remove_prefix(part.size());
    return part;
  }

  std::string_view bytes_;
  bool short_ = false;
};

}  // namespace

int ColumnOfOption(double LogOptions::*option) {
  const auto found = std::find_if(kOptionKeys.begin(), kOptionKeys.end(),
                                  [&](const OptionKey& each) { return each.Member == option; });
  return static_cast<int>(SpecialColumn::kOptions) + static_cast<int>(found - kOptionKeys.begin());
}

std::string PackRecord(const LogRecord& record) {
  std::string bytes;
  Put(bytes, record.Fingerprint);
  Put(bytes, record.Date);
  Put(bytes, record.Comment);
  Put(bytes, record.RefusedFiles.size());
  for (const std::string& name : record.RefusedFiles) Put(bytes, name);
  std::string whole;
  Put(whole, ChecksumOf(bytes));
  return whole + bytes;
}

std::optional<LogRecord> UnpackRecord(std::string_view bytes) {
  Source source(bytes);
  const std::uint64_t checksum = source.TakeNumber();
  if (source.IsShort() || checksum != ChecksumOf(bytes.substr(8))) return std::nullopt;
  LogRecord record;
  record.Fingerprint = source.TakeNumber();
  record.Date = source.TakeText();
  record.Comment = source.TakeText();
  for (std::uint64_t count = source.TakeNumber(); count > 0 && !source.IsShort(); --count) {
    record.RefusedFiles.push_back(source.TakeText());
  }
  if (!source.IsWhole()) return std::nullopt;
  return record;
}

double NameNumber(std::string_view folder, std::size_t from) {
  const std::string upper = UpperCaseText(folder);
  double number = 0;
  for (std::size_t i = from; i < from + kNameBytes; ++i) {
    number = number * 256 + (i < upper.size() ? static_cast<unsigned char>(upper[i]) : 0);
  }
  return number;
}

}  // namespace logbook::insight
