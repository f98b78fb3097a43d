// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A process's part in conversations by DDE, as client and as server. Everything is text: UTF-8
// here, in the machine's code page (format CF_TEXT, up to the first NUL) between processes. What
// arrives is delivered with the window events of the thread that made the station.
#pragma once

#include <optional>
#include <string>

#include "base/CodePage.h"
#include "base/win32/System.h"

#include <ddeml.h>

namespace logbook::win32 {

// What a station does for others. Application, topics and items are compared without regard to
// case. Called while a transaction is delivered: none may be begun from here.
class DdeService {
 public:
  virtual ~DdeService() = default;
  // True if conversations on this topic are taken.
  virtual bool Serves(const std::string& topic) = 0;
  // True if requests get no answer at all.
  virtual bool IsDeaf() { return false; }
  // The text of an item; nothing if there is no such item.
  virtual std::optional<std::string> Give(const std::string& item) = 0;
  // Takes a text for an item; false if there is no such item or it is not to be written.
  virtual bool Take(const std::string& item, const std::string& text) = 0;
  // News about a server: a text that it announces, its end, and the coming of an application.
  virtual void Hear(const std::string& /*item*/, const std::string& /*text*/) {}
  virtual void Lose(HCONV /*conversation*/) {}
  virtual void Meet(const std::string& /*application*/) {}
};

// One at a time in a process.
class DdeStation {
 public:
  DdeStation(const CodePage& code_page, DdeService& service);
  ~DdeStation();
  DdeStation(const DdeStation&) = delete;
  DdeStation& operator=(const DdeStation&) = delete;

  // False if the system gives no part in DDE, or after Close.
  bool IsOpen() const { return instance_ != 0; }
  // Ends all conversations, so that the partners know.
  void Close();

  // As server: others find it by this application's name from now on, or no longer.
  bool Register(const std::string& application);
  void Unregister();
  // Tells all who have asked to be told that an item has changed.
  void Announce(const std::string& topic, const std::string& item);

  // As client: a conversation, or null if nobody takes it.
  HCONV Connect(const std::string& application, const std::string& topic);
  void Disconnect(HCONV conversation);
  // False once the partner has ended, in whatever way.
  bool IsAlive(HCONV conversation) const;
  // Waits so many milliseconds at most. Raises kDeviceInputOutput with a reason.
  std::string Request(HCONV conversation, const std::string& item, DWORD longest);
  // False if it was not taken in time.
  bool Poke(HCONV conversation, const std::string& item, const std::string& text, DWORD longest);
  // Asks to hear of the item's changes.
  bool Follow(HCONV conversation, const std::string& item, DWORD longest);

 private:
  static HDDEDATA CALLBACK Callback(UINT type, UINT format, HCONV conversation, HSZ first,
                                    HSZ second, HDDEDATA data, ULONG_PTR, ULONG_PTR);
  HDDEDATA Answer(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data);
  bool IsOurs(HSZ topic, HSZ application) const;
  HDDEDATA AnswerToAll(HSZ topic, HSZ application);

  std::string TextOf(HSZ handle) const;
  std::string TextOf(HDDEDATA data) const;
  std::string Bytes(const std::string& text) const;

  const CodePage& code_page_;
  DdeService& service_;
  DWORD instance_ = 0;
  std::string application_;  // empty unless registered
};

}  // namespace logbook::win32
