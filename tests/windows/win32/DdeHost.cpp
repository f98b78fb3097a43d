// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "win32/DdeHost.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace logbook::windows_test {
namespace {

constexpr char kTopic[] = "CPWAIT";
constexpr char kCell[] = "DDELabel";
constexpr DWORD kLongest = 10000;  // milliseconds

DdeHost* the_host = nullptr;

std::string TextOf(HDDEDATA data) {
  DWORD size = 0;
  const BYTE* bytes = DdeAccessData(data, &size);
  std::string text(reinterpret_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
  DdeUnaccessData(data);
  return text.substr(0, text.find('\0'));
}

bool RunsUnderWine() {
  return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

DdeHost::DdeHost(const std::string& application, std::map<std::string, std::string> items,
                 Hearing hearing)
    : application_(application), items_(std::move(items)), hearing_(hearing) {
  the_host = this;
  if (DdeInitializeA(&instance_, Callback, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR)
    throw std::runtime_error("no DDE");
  const HSZ name = DdeCreateStringHandleA(instance_, application_.c_str(), CP_WINANSI);
  DdeNameService(instance_, name, nullptr, DNS_REGISTER);
}

DdeHost::~DdeHost() {
  DdeNameService(instance_, nullptr, nullptr, DNS_UNREGISTER);
  DdeUninitialize(instance_);
  the_host = nullptr;
}

bool DdeHost::FollowCell() {
  const HSZ application = DdeCreateStringHandleA(instance_, "logbook", CP_WINANSI);
  const HSZ topic = DdeCreateStringHandleA(instance_, kCell, CP_WINANSI);
  cell_ = DdeConnect(instance_, application, topic, nullptr);
  if (cell_ == nullptr || DdeClientTransaction(nullptr, 0, cell_, topic, CF_TEXT, XTYP_ADVSTART,
                                               kLongest, nullptr) == nullptr)
    return false;
  stood_there_ = ReadCell();
  if (!stood_there_.empty()) heard_.push_back(stood_there_);
  return true;
}

std::string DdeHost::ReadCell() {
  const HSZ item = DdeCreateStringHandleA(instance_, kCell, CP_WINANSI);
  const HDDEDATA data =
      DdeClientTransaction(nullptr, 0, cell_, item, CF_TEXT, XTYP_REQUEST, kLongest, nullptr);
  if (data == nullptr) return "no answer";
  const std::string text = TextOf(data);
  DdeFreeDataHandle(data);
  if (RunsUnderWine()) DeliverUpToAcknowledgement();
  return text;
}

// Wine 8 sends an acknowledgement behind the data of a request, and whatever call follows would
// take it for its own answer.
void DdeHost::DeliverUpToAcknowledgement() {
  const UINT_PTR limit = SetTimer(nullptr, 0, kLongest, nullptr);
  MSG message = {};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    DispatchMessageA(&message);
    if (message.message == WM_DDE_ACK || message.message == WM_TIMER) break;
  }
  KillTimer(nullptr, limit);
}

bool DdeHost::WriteCell(const std::string& text) {
  const HSZ item = DdeCreateStringHandleA(instance_, kCell, CP_WINANSI);
  std::string bytes = text;
  return DdeClientTransaction(reinterpret_cast<BYTE*>(bytes.data()),
                              static_cast<DWORD>(bytes.size() + 1), cell_, item, CF_TEXT, XTYP_POKE,
                              kLongest, nullptr) != nullptr;
}

bool DdeHost::RunUntil(const std::function<bool()>& condition,
                       const std::function<void(const std::string&)>& on_text) {
  using std::chrono::steady_clock;
  constexpr DWORD kLook = 20;  // milliseconds
  const auto end = steady_clock::now() + std::chrono::minutes(1);
  while (!condition()) {
    if (steady_clock::now() > end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kLook, QS_ALLINPUT);
    DeliverWhatIsThere();
    while (delivered_ < heard_.size()) {
      const std::string text = heard_[delivered_++];
      if (on_text) on_text(text);
    }
  }
  return true;
}

void DdeHost::DeliverWhatIsThere() {
  MSG message = {};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

HDDEDATA CALLBACK DdeHost::Callback(UINT type, UINT, HCONV conversation, HSZ topic, HSZ item,
                                    HDDEDATA data, ULONG_PTR, ULONG_PTR) {
  return the_host == nullptr ? nullptr : the_host->Answer(type, conversation, topic, item, data);
}

HDDEDATA DdeHost::Answer(UINT type, HCONV conversation, HSZ topic, HSZ item, HDDEDATA data) {
  switch (type) {
    case XTYP_CONNECT:
      return reinterpret_cast<HDDEDATA>(static_cast<std::uintptr_t>(NameOf(topic) == kTopic));
    case XTYP_WILDCONNECT:
      return AnswerToAll(topic, item);
    case XTYP_REQUEST: {
      requests_.push_back(NameOf(item));
      if (hearing_ == Hearing::kDeaf) return CBR_BLOCK;
      const auto found = items_.find(NameOf(item));
      if (found == items_.end()) return nullptr;
      std::string text = found->second;
      return DdeCreateDataHandle(instance_, reinterpret_cast<BYTE*>(text.data()),
                                 static_cast<DWORD>(text.size() + 1), 0, item, CF_TEXT, 0);
    }
    case XTYP_ADVDATA:
      if (std::exchange(stood_there_, "") != TextOf(data)) heard_.push_back(TextOf(data));
      return reinterpret_cast<HDDEDATA>(static_cast<std::uintptr_t>(DDE_FACK));
    case XTYP_CONNECT_CONFIRM:
      ++asking_;
      return nullptr;
    case XTYP_DISCONNECT:
      if (conversation == cell_)
        cell_ = nullptr;
      else
        --asking_;
      return nullptr;
    default:
      return nullptr;
  }
}

// Who asks for any application is told of this one.
HDDEDATA DdeHost::AnswerToAll(HSZ topic, HSZ application) const {
  const bool is_meant = application == nullptr || NameOf(application) == application_;
  if (!is_meant || NameOf(topic) != kTopic) return nullptr;
  DdeKeepStringHandle(instance_, topic);
  HSZPAIR pairs[2] = {};
  pairs[0] = {DdeCreateStringHandleA(instance_, application_.c_str(), CP_WINANSI), topic};
  return DdeCreateDataHandle(instance_, reinterpret_cast<BYTE*>(pairs), sizeof pairs, 0, nullptr, 0,
                             0);
}

std::string DdeHost::NameOf(HSZ handle) const {
  char name[256] = {};
  DdeQueryStringA(instance_, handle, name, sizeof name, CP_WINANSI);
  return name;
}

}  // namespace logbook::windows_test
