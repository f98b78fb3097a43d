// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A text box that wraps after a fixed number of code-page bytes, as a fixed-pitch box does that
// breaks anywhere. For tests of what is made of soft wraps.
#pragma once

#include <string>
#include <vector>

#include "base/Machine.h"
#include "base/RunTimeError.h"
#include "records/WrappedText.h"

namespace logbook::test {

class FixedWidthBox : public WrappedTextBox {
 public:
  FixedWidthBox(const Machine& machine, long width, std::string text = {})
      : machine_(machine), width_(width), text_(std::move(text)) {}

  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override { text_ = text; }
  int LineCount() const override { return static_cast<int>(Starts().size()); }
  long LineIndex(int line) const override {
    if (line == fails_at_line) throw RunTimeError(ErrorNumber::kInternalError);
    const std::vector<long> starts = Starts();
    return line < static_cast<int>(starts.size()) ? starts[static_cast<std::size_t>(line)] : -1;
  }

  int fails_at_line = -1;

 private:
  // Byte offsets at which the displayed lines begin.
  std::vector<long> Starts() const {
    std::vector<long> starts{0};
    long offset = 0;
    for (std::size_t i = 0; i < text_.size();) {
      if (text_.compare(i, 2, "\r\n") == 0) {
        i += 2;
        offset += 2;
        starts.push_back(offset);
        continue;
      }
      std::size_t length = 1;
      while (i + length < text_.size() &&
             (static_cast<unsigned char>(text_[i + length]) & 0xC0) == 0x80)
        ++length;
      const long bytes =
          static_cast<long>(machine_.code_page->Length(std::string_view(text_).substr(i, length)));
      if (offset + bytes > starts.back() + width_) starts.push_back(offset);
      offset += bytes;
      i += length;
    }
    return starts;
  }

  const Machine& machine_;
  long width_;
  std::string text_;
};

}  // namespace logbook::test
