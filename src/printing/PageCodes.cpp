// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/PageCodes.h"

#include "base/PlainText.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace logbook {

namespace {

constexpr int kLargestSize = 999;

class PageCodeReader {
 public:
  PageCodeReader(std::string_view codes, const PageFacts& facts) : rest_(codes), facts_(facts) {}

  PageText Read() {
    while (!rest_.empty()) {
      const std::size_t length = std::min(rest_.find('&'), rest_.size());
      Add(rest_.substr(0, length));
      rest_.remove_prefix(length);
      if (!rest_.empty()) TakeCode();
    }
    return std::move(text_);
  }

 private:
  // Takes an ampersand and the code behind it.
  void TakeCode() {
    rest_.remove_prefix(1);
    if (rest_.empty()) return;
    if (IsDigit(rest_.front())) return TakeFontSize();
    const char code = rest_.front();
    rest_.remove_prefix(1);
    switch (code) {
      case '"':
        return TakeFontName();
      case 'L':
        return Begin(text_.Left);
      case 'C':
        return Begin(text_.Centre);
      case 'R':
        return Begin(text_.Right);
      case 'A':
        return Add(facts_.SheetName);
      case 'P':
        return Add(std::to_string(facts_.Page));
      case 'N':
        return Add(std::to_string(facts_.Pages));
      case 'D':
        return Add(facts_.Date);
      case 'T':
        return Add(facts_.Time);
      case '&':
        return Add("&");
      default:
        return;
    }
  }

  void TakeFontName() {
    const std::size_t quote = rest_.find('"');
    if (quote == std::string_view::npos) {
      rest_ = {};
      return;
    }
    font_name_ = std::string(rest_.substr(0, quote));
    if (font_name_->empty()) font_name_.reset();
    rest_.remove_prefix(quote + 1);
  }

  void TakeFontSize() {
    int size = 0;
    while (!rest_.empty() && IsDigit(rest_.front())) {
      size = std::min(size * 10 + (rest_.front() - '0'), kLargestSize);
      rest_.remove_prefix(1);
    }
    if (size > 0) font_size_ = size;
  }

  void Begin(std::vector<PageRun>& part) {
    part_ = &part;
    font_name_.reset();
    font_size_.reset();
  }

  void Add(std::string_view text) {
    if (text.empty()) return;
    const bool joins = !part_->empty() && part_->back().FontName == font_name_ &&
                       part_->back().FontSize == font_size_;
    if (joins) {
      part_->back().Text += text;
    } else {
      part_->push_back({std::string(text), font_name_, font_size_});
    }
  }

  std::string_view rest_;
  const PageFacts& facts_;
  PageText text_;
  std::vector<PageRun>* part_ = &text_.Centre;
  std::optional<std::string> font_name_;
  std::optional<int> font_size_;
};

}  // namespace

PageText ExpandPageCodes(std::string_view codes, const PageFacts& facts) {
  return PageCodeReader(codes, facts).Read();
}

}  // namespace logbook
