// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What DDE delivers must not begin a transaction, so every step that follows from it waits for the
// event loop.

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>
#include <QWinEventNotifier>
#include <utility>

#include "base/DdeNames.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/win32/Dde.h"
#include "host/Jobs.h"
#include "host/Seat.h"

namespace logbook::host {
namespace {

constexpr DWORD kLongest = 5000;  // milliseconds
constexpr auto kBetweenLooks = std::chrono::milliseconds(500);
// Looks that are left out for a logbook that starts, which may have an answer held back for a
// while.
constexpr int kLooksLeftOut = 30;
constexpr const char* kLastItem = "_helpfile$";

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

// A conversation with the logbook about its one item.
class DdeCell : public Cell {
 public:
  explicit DdeCell(win32::DdeStation& station) : station_(station) {
    QObject::connect(&look_, &QTimer::timeout, this, [this] { Watch(); });
  }
  ~DdeCell() override { station_.Disconnect(conversation_); }

  // A logbook tells when it comes and goes; one that does not, or that was killed, is looked for
  // from time to time.
  void Watch() override {
    look_.start(kBetweenLooks);
    if (conversation_ != nullptr && !station_.IsAlive(conversation_)) return Lose(conversation_);
    if (conversation_ != nullptr || (left_out_ > 0 && left_out_-- > 0)) return;
    conversation_ = station_.Connect(kLogbookDdeApplication, kCellDdeTopic);
    if (conversation_ == nullptr) return;
    station_.Follow(conversation_, kCellDdeItem, kLongest);
    Q_EMIT Appeared();
  }
  void Read() override {
    Later([this](HCONV conversation) {
      try {
        const std::string text = station_.Request(conversation, kCellDdeItem, kLongest);
        if (conversation == conversation_) Q_EMIT TextSeen(Text(text));
      } catch (const RunTimeError&) {
        // The logbook has gone.
      }
    });
  }
  void Write(const QString& text) override {
    Later([this, text](HCONV conversation) {
      const bool taken = station_.Poke(conversation, kCellDdeItem, text.toStdString(), kLongest);
      if (conversation != conversation_) return;
      if (taken) {
        Q_EMIT Written(text);
      } else {
        Q_EMIT Refused();
      }
    });
  }

  void Hear(const std::string& text) {
    Later([this, text](HCONV) { Q_EMIT TextSeen(Text(text)); });
  }
  void Lose(HCONV conversation) {
    if (conversation == nullptr || conversation != conversation_) return;
    conversation_ = nullptr;
    QMetaObject::invokeMethod(
        this,
        [this] {
          Q_EMIT Vanished();
          Watch();
        },
        Qt::QueuedConnection);
  }
  // A logbook that waits for the answer to a request may hear nothing else, and opening a
  // conversation waits for it: both would wait for each other.
  void LeaveInPeace() { left_out_ = kLooksLeftOut; }
  void Meet() {
    left_out_ = 0;
    QMetaObject::invokeMethod(
        this, [this] { Watch(); }, Qt::QueuedConnection);
  }

 private:
  // From the event loop, unless the logbook has gone by then.
  template <typename Step>
  void Later(Step step) {
    QMetaObject::invokeMethod(
        this,
        [this, step, conversation = conversation_] {
          if (conversation != nullptr && conversation == conversation_) step(conversation);
        },
        Qt::QueuedConnection);
  }

  win32::DdeStation& station_;
  HCONV conversation_ = nullptr;
  QTimer look_;
  int left_out_ = 0;
};

class DdeSeat : public Seat, public win32::DdeService {
 public:
  explicit DdeSeat(const HostOptions& options)
      : options_(options),
        station_(*options.workstation.machine.code_page, *this),
        cell_(station_) {}

  bool IsTaken() override {
    const HCONV other = station_.Connect(options_.id, kRequestDdeTopic);
    station_.Disconnect(other);
    return other != nullptr;
  }
  bool Take(std::string& reason) override {
    // Two applications of one name would both get the logbook's requests.
    if (!IsTaken() && station_.Register(options_.id)) return true;
    reason = "the application name " + options_.id + " cannot be had";
    return false;
  }
  std::string Name() const override { return options_.id + "|" + kRequestDdeTopic; }
  Cell& LogbookCell() override { return cell_; }

  bool Serves(const std::string& topic) override {
    return EqualIgnoringCase(topic, kRequestDdeTopic);
  }
  bool IsDeaf() override { return options_.attention == Attention::kDeaf; }
  std::optional<std::string> Give(const std::string& item) override {
    last_was_given_ = EqualIgnoringCase(item, kLastItem);
    return ItemText(options_.workstation, item);
  }
  bool Take(const std::string&, const std::string&) override { return false; }
  void Hear(const std::string&, const std::string& text) override { cell_.Hear(text); }
  void Lose(HCONV conversation) override {
    cell_.Lose(conversation);
    if (std::exchange(last_was_given_, false)) cell_.Meet();
  }
  // Its requests follow.
  void Meet(const std::string& application) override {
    if (EqualIgnoringCase(application, kLogbookDdeApplication)) cell_.LeaveInPeace();
  }

 private:
  const HostOptions& options_;
  win32::DdeStation station_;
  DdeCell cell_;
  bool last_was_given_ = false;
};

}  // namespace

std::unique_ptr<Seat> MakeSeat(const HostOptions& options,
                               std::function<void(const std::string&)> /*lost*/) {
  return std::make_unique<DdeSeat>(options);
}

std::unique_ptr<QObject> NotifyOfEnd(const EndSignal& end_signal, std::function<void()> end) {
  const auto event = static_cast<std::intptr_t>(end_signal.Descriptor());
  auto notifier = std::make_unique<QWinEventNotifier>(reinterpret_cast<HANDLE>(event));
  QObject::connect(notifier.get(), &QWinEventNotifier::activated, QCoreApplication::instance(),
                   std::move(end));
  return notifier;
}

// The system tells every program of a console by itself.
void LetWishesThrough(QProcess&) {}

}  // namespace logbook::host
