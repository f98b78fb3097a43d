// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/ControlPanel.h"

#include <QTimer>
#include <exception>
#include <utility>

#include "host/Jobs.h"

namespace logbook::host {
namespace {

constexpr double kCellNothing = 0;
constexpr double kCellCapture = 1;
constexpr double kCellPrint = 2;
constexpr double kCellEnding = 9;

QString CellIdle() {
  return QStringLiteral("0");
}
// A number that is no job: the logbook waits while it stands there.
QString CellBusy() {
  return QStringLiteral("5");
}

bool IsJob(double number) {
  return number == kCellCapture || number == kCellPrint || number == kCellEnding;
}

}  // namespace

ControlPanel::ControlPanel(Seat& seat, const HostOptions& options,
                           std::function<void(const std::string&)> tell)
    : seat_(seat), options_(options), tell_(std::move(tell)), cell_(seat.LogbookCell()) {
  connect(&cell_, &Cell::Appeared, this, &ControlPanel::OnAppeared);
  connect(&cell_, &Cell::TextSeen, this, &ControlPanel::OnTextSeen);
  connect(&cell_, &Cell::Written, this, &ControlPanel::OnWritten);
  connect(&cell_, &Cell::Refused, this, [this] { holds_cell_ = false; });
  connect(&cell_, &Cell::Vanished, this, [this] {
    ++visit_;
    holds_cell_ = false;
    is_busy_at_start_ = false;
    kept_job_ = kCellNothing;
    Q_EMIT LogbookGone();
  });
}

bool ControlPanel::Start(std::string& reason) {
  if (!seat_.Take(reason)) return false;
  cell_.Watch();
  return true;
}

void ControlPanel::OnAppeared() {
  if (options_.attention != Attention::kFull) return;
  if (options_.busy.count() == 0) {
    cell_.Read();
    return;
  }
  holds_cell_ = true;
  is_busy_at_start_ = true;
  cell_.Write(CellBusy());
  QTimer::singleShot(options_.busy, this, [this, visit = visit_] {
    if (visit != visit_) return;
    is_busy_at_start_ = false;
    if (kept_job_ == kCellNothing) {
      cell_.Write(CellIdle());
    } else {
      Obey(std::exchange(kept_job_, kCellNothing));
    }
  });
}

void ControlPanel::OnTextSeen(const QString& text) {
  if (options_.attention != Attention::kFull) return;
  const double number = CellNumber(text.toStdString());
  if (!holds_cell_) {
    Obey(number);
  } else if (is_busy_at_start_ && IsJob(number)) {
    kept_job_ = number;
  }
}

void ControlPanel::Obey(double number) {
  if (number == kCellCapture) {
    StartJob([this] { return Capture(options_, Now()); });
  } else if (number == kCellPrint) {
    StartJob([this] { return Print(options_, Now()); });
  } else if (number == kCellEnding) {
    holds_cell_ = true;
    cell_.Write(CellIdle());
  }
}

void ControlPanel::StartJob(const std::function<std::string()>& work) {
  holds_cell_ = true;
  QTimer::singleShot(options_.slow, this, [this, work, visit = visit_] {
    if (visit != visit_) return;
    try {
      tell_(work());
    } catch (const std::exception& failure) {
      // The cell is cleared all the same: a logbook never learns how a job went.
      tell_(std::string("failed: ") + failure.what());
    }
    Release();
  });
}

void ControlPanel::Release() {
  if (options_.busy.count() == 0) {
    cell_.Write(CellIdle());
    return;
  }
  cell_.Write(CellBusy());
  QTimer::singleShot(options_.busy, this, [this, visit = visit_] {
    if (visit == visit_) cell_.Write(CellIdle());
  });
}

void ControlPanel::OnWritten(const QString& text) {
  if (text != CellIdle()) return;
  holds_cell_ = false;
  // Whatever was asked for meanwhile.
  cell_.Read();
}

}  // namespace logbook::host
