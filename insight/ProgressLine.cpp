// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ProgressLine.h"

#include <cmath>

namespace logbook::insight {
namespace {

constexpr double kQuiet = 1.0;
constexpr double kBetween = 0.1;

std::string Whole(double number) {
  return std::to_string(static_cast<long long>(std::ceil(number)));
}

}  // namespace

std::string ProgressText(const UpdateProgress& progress, double seconds) {
  std::string text =
      progress.Where == UpdateProgress::Step::kLooking ? "looking at logs: " : "reading logs: ";
  text += std::to_string(progress.Done) + " of " + std::to_string(progress.Total);
  if (progress.Done == 0 || seconds <= 0) return text;
  const double rate = static_cast<double>(progress.Done) / seconds;
  const double left = static_cast<double>(progress.Total - progress.Done) / rate;
  return text + ", " + Whole(rate) + "/s, " + Whole(left) + " s left";
}

std::string ProgressPace::Line(const UpdateProgress& progress, double now) {
  if (!begun_) begin_ = step_begin_ = now;
  if (begun_ && progress.Where != step_) step_begin_ = now;
  begun_ = true;
  step_ = progress.Where;
  if (now - begin_ < kQuiet || (shown_ && now - last_ < kBetween)) return {};
  shown_ = true;
  last_ = now;
  return ProgressText(progress, now - step_begin_);
}

}  // namespace logbook::insight
