// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Requests go to the application of the host's id; the cell is an item of our own application,
// which is there while this process is the running logbook.

#include "qt/HostConnection.h"

#include <QObject>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "base/DdeNames.h"
#include "base/HostLinkNames.h"
#include "base/UpperCase.h"
#include "base/win32/Dde.h"

namespace logbook {
namespace {

using win32::DdeStation;

// One instance in a session: DDE does not reach beyond it either.
constexpr wchar_t kInstanceName[] = L"Local\\com.norvane.Quorex.Logbook";

class DdeCell : public HandshakeCell, public win32::DdeService {
 public:
  explicit DdeCell(const CodePage& code_page) : station_(code_page, *this) {}

  DdeStation& Station() { return station_; }
  void SetReachable(bool reachable) {
    if (!reachable) {
      AnnounceChange();
      station_.Unregister();
    }
    is_reachable_ = reachable && station_.Register(kLogbookDdeApplication);
  }

  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    Change(text);
    AnnounceChange();
  }
  bool IsReachable() const override { return is_reachable_; }

  bool Serves(const std::string& topic) override { return EqualIgnoringCase(topic, kCellDdeTopic); }
  std::optional<std::string> Give(const std::string& item) override {
    return EqualIgnoringCase(item, kCellDdeItem) ? std::optional(text_) : std::nullopt;
  }
  // The writer hears of its own text when its writing has been acknowledged: one that waits for the
  // acknowledgement may take anything that comes before it for that (Wine 8 does).
  bool Take(const std::string& item, const std::string& text) override {
    if (!EqualIgnoringCase(item, kCellDdeItem)) return false;
    Change(text);
    QMetaObject::invokeMethod(
        &later_, [this] { AnnounceChange(); }, Qt::QueuedConnection);
    return true;
  }

 private:
  // Each change is announced with its own text, so before the next one.
  void Change(const std::string& text) {
    if (text == text_) return;
    AnnounceChange();
    text_ = text;
    is_changed_ = true;
  }
  void AnnounceChange() {
    if (std::exchange(is_changed_, false)) station_.Announce(kCellDdeTopic, kCellDdeItem);
  }

  std::string text_;
  bool is_changed_ = false;  // and not announced yet
  QObject later_;
  bool is_reachable_ = false;
  DdeStation station_;
};

class DdeHostLink : public HostLink {
 public:
  explicit DdeHostLink(DdeStation& station) : station_(station) {}

  std::string Request(const std::string& host_id, const std::string& topic,
                      const std::string& item) override {
    const Conversation conversation(station_, host_id, topic);
    return station_.Request(conversation.Handle(), item, kHostRequestTimeoutMilliseconds);
  }
  bool IsThere(const std::string& host_id) override {
    return Conversation(station_, host_id, kRequestDdeTopic).Handle() != nullptr;
  }
  // Each request has a conversation of its own, so that there is nothing to close.
  void Close() override {}

 private:
  class Conversation {
   public:
    Conversation(DdeStation& station, const std::string& application, const std::string& topic)
        : station_(station), handle_(station.Connect(application, topic)) {}
    ~Conversation() { station_.Disconnect(handle_); }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;
    HCONV Handle() const { return handle_; }

   private:
    DdeStation& station_;
    HCONV handle_;
  };

  DdeStation& station_;
};

class NamedProcess : public Process {
 public:
  explicit NamedProcess(DdeCell& cell) : cell_(cell) {}

  bool OtherInstanceRuns() override {
    name_ = win32::Handle(CreateMutexW(nullptr, FALSE, kInstanceName));
    // A name that cannot be had belongs to somebody whose rights are others.
    if (!name_.IsOpen() || GetLastError() == ERROR_ALREADY_EXISTS) {
      name_.Close();
      return true;
    }
    cell_.SetReachable(true);
    return false;
  }
  void Resign() override {
    cell_.SetReachable(false);
    name_.Close();
  }
  // Partners are told of the end before it comes.
  [[noreturn]] void End(int status) override {
    Resign();
    cell_.Station().Close();
    std::fflush(nullptr);
    std::_Exit(status);
  }

 private:
  DdeCell& cell_;
  win32::Handle name_;
};

class DdeConnection : public HostConnection {
 public:
  explicit DdeConnection(const CodePage& code_page)
      : cell_(code_page), host_(cell_.Station()), process_(cell_) {}

  HostLink& Link() override { return host_; }
  HandshakeCell& Cell() override { return cell_; }
  Process& Itself() override { return process_; }

 private:
  DdeCell cell_;
  DdeHostLink host_;
  NamedProcess process_;
};

}  // namespace

std::unique_ptr<HostConnection> ConnectToHost(const CodePage& code_page) {
  return std::make_unique<DdeConnection>(code_page);
}

}  // namespace logbook
