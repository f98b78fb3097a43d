// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/Dde.h"

#include <array>

#include "base/PlainText.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"

namespace logbook::win32 {

namespace {

// The system calls back without telling for whom.
DdeStation* the_station = nullptr;

// A text that the system holds for an instance.
class StringHandle {
 public:
  StringHandle(DWORD instance, const std::string& text)
      : instance_(instance),
        handle_(DdeCreateStringHandleW(instance, Wide(text).c_str(), CP_WINUNICODE)) {}
  ~StringHandle() { DdeFreeStringHandle(instance_, handle_); }
  StringHandle(const StringHandle&) = delete;
  StringHandle& operator=(const StringHandle&) = delete;
  operator HSZ() const { return handle_; }

 private:
  DWORD instance_;
  HSZ handle_;
};

std::string ReasonOf(UINT error) {
  switch (error) {
    case DMLERR_NO_CONV_ESTABLISHED:
      return "There is no such host";
    case DMLERR_DATAACKTIMEOUT:
    case DMLERR_POKEACKTIMEOUT:
    case DMLERR_ADVACKTIMEOUT:
      return "The host did not answer in time";
    case DMLERR_NOTPROCESSED:
      return "The host has no such item";
    case DMLERR_SERVER_DIED:
      return "The host has ended";
    default:
      return "The conversation with the host failed (" + std::to_string(error) + ")";
  }
}

}  // namespace

DdeStation::DdeStation(const CodePage& code_page, DdeService& service)
    : code_page_(code_page), service_(service) {
  the_station = this;
  if (DdeInitializeW(&instance_, Callback, APPCLASS_STANDARD | CBF_FAIL_EXECUTES, 0) !=
      DMLERR_NO_ERROR)
    instance_ = 0;
}

DdeStation::~DdeStation() {
  Close();
  the_station = nullptr;
}

void DdeStation::Close() {
  Unregister();
  if (IsOpen()) DdeUninitialize(instance_);
  instance_ = 0;
}

bool DdeStation::Register(const std::string& application) {
  if (!IsOpen()) return false;
  application_ = application;
  const StringHandle name(instance_, application);
  return name != nullptr && DdeNameService(instance_, name, nullptr, DNS_REGISTER) != nullptr;
}

void DdeStation::Unregister() {
  if (IsOpen() && !application_.empty())
    DdeNameService(instance_, StringHandle(instance_, application_), nullptr, DNS_UNREGISTER);
  application_.clear();
}

void DdeStation::Announce(const std::string& topic, const std::string& item) {
  if (!application_.empty())
    DdePostAdvise(instance_, StringHandle(instance_, topic), StringHandle(instance_, item));
}

HCONV DdeStation::Connect(const std::string& application, const std::string& topic) {
  if (!IsOpen()) return nullptr;
  // The system makes no string of an empty name or of one beyond 255 characters, and without a
  // string it would take any application.
  const StringHandle server(instance_, application), subject(instance_, topic);
  if (server == nullptr || subject == nullptr) return nullptr;
  return DdeConnect(instance_, server, subject, nullptr);
}

void DdeStation::Disconnect(HCONV conversation) {
  if (conversation != nullptr) DdeDisconnect(conversation);
}

bool DdeStation::IsAlive(HCONV conversation) const {
  CONVINFO facts = {};
  facts.cb = sizeof facts;
  return DdeQueryConvInfo(conversation, static_cast<DWORD>(QID_SYNC), &facts) != 0 &&
         (facts.wStatus & ST_CONNECTED) != 0 && IsWindow(facts.hwndPartner);
}

std::string DdeStation::Request(HCONV conversation, const std::string& item, DWORD longest) {
  const HDDEDATA data =
      conversation == nullptr
          ? nullptr
          : DdeClientTransaction(nullptr, 0, conversation, StringHandle(instance_, item), CF_TEXT,
                                 XTYP_REQUEST, longest, nullptr);
  if (data == nullptr) {
    throw RunTimeError(ErrorNumber::kDeviceInputOutput, ReasonOf(DdeGetLastError(instance_)));
  }
  std::string text = TextOf(data);
  DdeFreeDataHandle(data);
  return text;
}

bool DdeStation::Poke(HCONV conversation, const std::string& item, const std::string& text,
                      DWORD longest) {
  std::string bytes = Bytes(text);
  return DdeClientTransaction(reinterpret_cast<BYTE*>(bytes.data()),
                              static_cast<DWORD>(bytes.size() + 1), conversation,
                              StringHandle(instance_, item), CF_TEXT, XTYP_POKE, longest,
                              nullptr) != nullptr;
}

bool DdeStation::Follow(HCONV conversation, const std::string& item, DWORD longest) {
  return DdeClientTransaction(nullptr, 0, conversation, StringHandle(instance_, item), CF_TEXT,
                              XTYP_ADVSTART, longest, nullptr) != nullptr;
}

HDDEDATA CALLBACK DdeStation::Callback(UINT type, UINT format, HCONV conversation, HSZ first,
                                       HSZ second, HDDEDATA data, ULONG_PTR, ULONG_PTR) {
  if (the_station == nullptr) return nullptr;
  return the_station->Answer(type, format, conversation, first, second, data);
}

HDDEDATA DdeStation::Answer(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second,
                            HDDEDATA data) {
  const auto flag = [](bool yes, std::uintptr_t value) {
    return reinterpret_cast<HDDEDATA>(yes ? value : 0);
  };
  switch (type) {
    case XTYP_CONNECT:
      return flag(IsOurs(first, second), TRUE);
    case XTYP_WILDCONNECT:
      return AnswerToAll(first, second);
    case XTYP_ADVSTART:
      return flag(format == CF_TEXT && service_.Give(TextOf(second)).has_value(), TRUE);
    case XTYP_REQUEST:
    case XTYP_ADVREQ: {
      if (service_.IsDeaf()) return CBR_BLOCK;
      const auto text = format == CF_TEXT ? service_.Give(TextOf(second)) : std::nullopt;
      if (!text) return nullptr;
      std::string bytes = Bytes(*text);
      return DdeCreateDataHandle(instance_, reinterpret_cast<BYTE*>(bytes.data()),
                                 static_cast<DWORD>(bytes.size() + 1), 0, second, CF_TEXT, 0);
    }
    case XTYP_POKE:
      return flag(format == CF_TEXT && service_.Take(TextOf(second), TextOf(data)), DDE_FACK);
    case XTYP_ADVDATA:
      service_.Hear(TextOf(second), TextOf(data));
      return flag(true, DDE_FACK);
    case XTYP_DISCONNECT:
      service_.Lose(conversation);
      return nullptr;
    case XTYP_REGISTER:
      service_.Meet(TextOf(first));
      return nullptr;
    default:
      return nullptr;
  }
}

bool DdeStation::IsOurs(HSZ topic, HSZ application) const {
  return !application_.empty() && EqualIgnoringCase(TextOf(application), application_) &&
         service_.Serves(TextOf(topic));
}

// Somebody looks for a topic of ours at any application. Who does not name a topic gets no answer.
HDDEDATA DdeStation::AnswerToAll(HSZ topic, HSZ application) {
  const bool named = application == nullptr || EqualIgnoringCase(TextOf(application), application_);
  if (application_.empty() || !named || topic == nullptr || !service_.Serves(TextOf(topic)))
    return nullptr;
  DdeKeepStringHandle(instance_, topic);
  std::array<HSZPAIR, 2> pairs = {};
  pairs[0] = {DdeCreateStringHandleW(instance_, Wide(application_).c_str(), CP_WINUNICODE), topic};
  return DdeCreateDataHandle(instance_, reinterpret_cast<BYTE*>(pairs.data()), sizeof pairs, 0,
                             nullptr, 0, 0);
}

std::string DdeStation::TextOf(HSZ handle) const {
  if (handle == nullptr) return {};
  std::array<wchar_t, 256> buffer = {};
  const DWORD length = DdeQueryStringW(instance_, handle, buffer.data(),
                                       static_cast<DWORD>(buffer.size()), CP_WINUNICODE);
  return Narrow({buffer.data(), length});
}

std::string DdeStation::TextOf(HDDEDATA data) const {
  DWORD size = 0;
  const BYTE* bytes = DdeAccessData(data, &size);
  if (bytes == nullptr) return {};
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  std::string utf8 = code_page_.ToUtf8(UpToNul(text));
  DdeUnaccessData(data);
  return utf8;
}

std::string DdeStation::Bytes(const std::string& text) const {
  return code_page_.FromUtf8(text);
}

}  // namespace logbook::win32
