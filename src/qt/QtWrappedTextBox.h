// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The comment box of frmLogEditor as the program reads it: lines as the toolkit's own layout wraps
// them in the box's width and font, shown or not.
#pragma once

#include <QList>
#include <vector>

#include "base/CodePage.h"
#include "records/WrappedText.h"
#include "state/Control.h"

class QPlainTextEdit;

namespace logbook {

class QtWrappedTextBox : public WrappedTextBox {
 public:
  // Place and font of the box are those of `control` at each call.
  QtWrappedTextBox(QPlainTextEdit& box, const Control& control, const CodePage& page);

  std::string Text() const override;
  void SetText(const std::string& text) override;
  int LineCount() const override;
  long LineIndex(int line) const override;

 private:
  // Gives the box its place and font and makes the layout valid for them.
  void LayOut() const;
  // Offsets of all displayed lines; kept until text or layout change.
  const std::vector<long>& LineStarts() const;

  QPlainTextEdit& box_;
  const Control& control_;
  const CodePage& page_;
  mutable std::vector<long> starts_;
  mutable QList<int> starts_valid_for_;  // revision of the text, width of the page
};

}  // namespace logbook
