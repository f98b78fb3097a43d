// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/SettingsText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace logbook::insight {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view Unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                      (text.front() == '"' || text.front() == '\'');
  return quoted ? text.substr(1, text.size() - 2) : text;
}

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Takes the lines one by one.
class Parser {
 public:
  explicit Parser(std::string_view file) : file_(file) {}

  void Take(std::string_view line) {
    ++line_;
    line = Trimmed(line);
    if (line.empty() || line.front() == ';' || line.front() == '#') return;
    if (line.front() == '[') return TakeSection(line);
    TakeEntry(line);
  }

  std::vector<SettingsSection> Sections() && { return std::move(sections_); }

 private:
  [[noreturn]] void Fail(std::string_view what) const { throw SettingsError(file_, line_, what); }

  void TakeSection(std::string_view line) {
    if (line.back() != ']') Fail("a section ends with \"]\"");
    const std::string_view name = Trimmed(line.substr(1, line.size() - 2));
    if (name.empty()) Fail("the section has no name");
    sections_.push_back({std::string(name), line_, {}});
  }

  void TakeEntry(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) Fail("expected \"key = value\" or \"[section]\"");
    const std::string_view key = Trimmed(line.substr(0, equals));
    if (key.empty()) Fail("there is no key before \"=\"");
    if (sections_.empty()) sections_.push_back({});
    for (const SettingsEntry& entry : sections_.back().entries) {
      if (SameName(entry.key, key)) Fail("the key stands in this section already");
    }
    sections_.back().entries.push_back(
        {std::string(key), std::string(Unquoted(Trimmed(line.substr(equals + 1)))), line_});
  }

  std::string_view file_;
  int line_ = 0;
  std::vector<SettingsSection> sections_;
};

}  // namespace

SettingsError::SettingsError(std::string_view file, int line, std::string_view what)
    : std::runtime_error(
          std::string(file).append(":").append(std::to_string(line)).append(": ").append(what)) {}

std::vector<SettingsSection> ParseSettings(std::string_view file, std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  Parser parser(file);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    parser.Take(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return std::move(parser).Sections();
}

bool SameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

std::optional<double> WholeNumber(std::string_view text) {
  text = Trimmed(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
    return std::nullopt;
  }
  return number;
}

double Amount::Of(double whole) const {
  return percent ? std::abs(whole) * number / 100 : number;
}

std::optional<Amount> ParseAmount(std::string_view text) {
  text = Trimmed(text);
  const bool percent = text.ends_with('%');
  if (percent) text.remove_suffix(1);
  const std::optional<double> number = WholeNumber(text);
  if (!number || *number < 0) return std::nullopt;
  return Amount{*number, percent};
}

}  // namespace logbook::insight
