// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A host control panel as any program of this system would be one: DDE by the platform's own calls,
// 8-bit texts, one thread.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <ddeml.h>

namespace logbook::windows_test {

class DdeHost {
 public:
  // Serves this application's name on the topic CPWAIT with these items. A deaf one takes
  // conversations and never answers a request.
  enum class Hearing { kGood, kDeaf };
  DdeHost(const std::string& application, std::map<std::string, std::string> items,
          Hearing hearing = Hearing::kGood);
  ~DdeHost();
  DdeHost(const DdeHost&) = delete;
  DdeHost& operator=(const DdeHost&) = delete;

  // True once the logbook has asked for all its items and closed the last of its conversations.
  // Earlier it waits for an answer, and may hear nothing else.
  bool HasToldAll() const { return requests_.size() == items_.size() && asking_ == 0; }
  // The items that were asked for, in their order.
  const std::vector<std::string>& Requests() const { return requests_; }
  // All texts of the cell that were heard of, in their order.
  const std::vector<std::string>& Heard() const { return heard_; }

  // Opens the conversation about the cell and asks to hear of its changes. A text that stands there
  // already is heard of too.
  bool FollowCell();
  bool HasCell() const { return cell_ != nullptr; }
  std::string ReadCell();
  bool WriteCell(const std::string& text);

  // Delivers what arrives until the condition holds; false if it does not within a minute. Calls
  // `on_text` with each text of the cell that is heard of.
  bool RunUntil(const std::function<bool()>& condition,
                const std::function<void(const std::string&)>& on_text = {});

 private:
  static HDDEDATA CALLBACK Callback(UINT type, UINT format, HCONV conversation, HSZ topic, HSZ item,
                                    HDDEDATA data, ULONG_PTR, ULONG_PTR);
  HDDEDATA Answer(UINT type, HCONV conversation, HSZ topic, HSZ item, HDDEDATA data);
  HDDEDATA AnswerToAll(HSZ topic, HSZ application) const;
  std::string NameOf(HSZ handle) const;
  static void DeliverWhatIsThere();
  static void DeliverUpToAcknowledgement();

  const std::string application_;
  const std::map<std::string, std::string> items_;
  const Hearing hearing_;
  DWORD instance_ = 0;
  HCONV cell_ = nullptr;
  int asking_ = 0;  // conversations that the logbook has opened
  std::vector<std::string> requests_;
  std::vector<std::string> heard_;
  std::string stood_there_;  // what was read and may be announced once more
  std::size_t delivered_ = 0;
};

}  // namespace logbook::windows_test
