// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/WebDavStore.h"

#include <curl/curl.h>

#include <algorithm>
#include <limits>
#include <new>

#include "base/NativeDisk.h"
#include "upload/DavFailure.h"
#include "upload/ServerAddress.h"
#include "upload/Sha256.h"

namespace logbook {

namespace {

constexpr long kConnectSeconds = 15;
constexpr long kSlowest = 1000;                     // bytes in a second, of a file
constexpr std::uint64_t kMostOfHead = 256 * 1024;   // bytes of an answer before its body
constexpr std::uint64_t kMostOfPage = 1024 * 1024;  // bytes of a body that is no file

// The library asks before it sends a file whether the server wants it, which saves the sending of a
// large one that is refused, but costs each small one another way there and back.
constexpr std::uint64_t kWorthAsking = 1024 * 1024;  // bytes

using Lines = std::unique_ptr<curl_slist, void (*)(curl_slist*)>;

// The lines of a head; they stay as they are if there is no memory for another one.
void Append(Lines& lines, const std::string& line) {
  curl_slist* longer = curl_slist_append(lines.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc();
  static_cast<void>(lines.release());  // the longer one begins with it
  lines.reset(longer);
}

// Without memory for a text the library keeps the former one, an address above all: what is sent
// then would go elsewhere.
template <typename Value>
void SetOption(CURL* curl, CURLoption option, Value value) {
  if (curl_easy_setopt(curl, option, value) == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

std::size_t ReadBody(char* buffer, std::size_t size, std::size_t count, void* file) {
  auto* reader = static_cast<native::Reader*>(file);
  const std::size_t bytes = reader->Read(buffer, size * count);
  return reader->Failure() ? CURL_READFUNC_ABORT : bytes;
}

// The library seeks from the start alone.
int SeekBody(void* file, curl_off_t offset, int) {
  return static_cast<native::Reader*>(file)->SeekTo(static_cast<std::uint64_t>(offset))
             ? CURL_SEEKFUNC_FAIL
             : CURL_SEEKFUNC_OK;
}

// What comes back for one request. A callback that takes fewer bytes than it is given ends it.
struct Answer {
  CURL* curl = nullptr;
  bool wants_file = false;  // a body behind status 200 is the file and not a page about an error
  std::uint64_t most = 0;   // bytes of that file
  std::uint64_t head = 0;   // bytes so far
  std::uint64_t body = 0;
  bool has_no_end = false;
  bool is_larger_file = false;
  Sha256 sum;

  bool HoldsFile() const {
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    return wants_file && status == 200;
  }
};

std::size_t TakeHead(char*, std::size_t size, std::size_t count, void* target) {
  auto* answer = static_cast<Answer*>(target);
  answer->head += size * count;
  answer->has_no_end = answer->head > kMostOfHead;
  return answer->has_no_end ? 0 : size * count;
}

std::size_t TakeBody(char* bytes, std::size_t size, std::size_t count, void* target) {
  auto* answer = static_cast<Answer*>(target);
  const bool is_file = answer->HoldsFile();
  answer->body += size * count;
  answer->has_no_end = !is_file && answer->body > kMostOfPage;
  answer->is_larger_file = is_file && answer->body > answer->most;
  if (answer->has_no_end || answer->is_larger_file) return 0;
  if (is_file) answer->sum.Add(bytes, size * count);
  return size * count;
}

}  // namespace

long LongestTransfer(std::chrono::milliseconds answer, std::uint64_t file_bytes) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
  const std::uint64_t for_file = std::min(file_bytes, kMost) * 1000 / kSlowest;
  return static_cast<long>(std::min(static_cast<std::uint64_t>(answer.count()) + for_file, kMost));
}

struct WebDavStore::State {
  CURL* curl = curl_easy_init();
  ServerSettings settings;
  std::string base;  // with trailing slash
  char detail[CURL_ERROR_SIZE] = {};

  State() {
    if (curl == nullptr) throw std::bad_alloc();
  }
  ~State() { curl_easy_cleanup(curl); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  std::string Escaped(const std::string& component) const {
    char* escaped = curl_easy_escape(curl, component.c_str(), static_cast<int>(component.size()));
    if (escaped == nullptr) throw std::bad_alloc();
    const std::unique_ptr<char, void (*)(void*)> free_escaped(escaped, curl_free);
    return escaped;
  }

  // The address of a path below the configured folder.
  std::string UrlOf(const std::string& path) const {
    std::string url = base;
    for (const std::string& component : FolderComponents(settings.folder))
      url += Escaped(component) + "/";
    for (const std::string& component : FolderComponents(path)) url += Escaped(component) + "/";
    if (!path.ends_with('/')) url.pop_back();
    return url;
  }

  // What holds for all requests. The handle is never reset: it keeps the connection, and the way to
  // log on that the server has asked for. The library would send each request twice otherwise.
  void SetUp(const std::string& password, const std::string& ca_file) {
    SetOption(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    SetOption(curl, CURLOPT_FOLLOWLOCATION, 0L);
    SetOption(curl, CURLOPT_SSL_VERIFYPEER, 1L);
    SetOption(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    SetOption(curl, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    SetOption(curl, CURLOPT_LOW_SPEED_LIMIT, kSlowest);
    SetOption(curl, CURLOPT_LOW_SPEED_TIME,
              std::max<long>(1, settings.answer_timeout.count() / 2000));
    SetOption(curl, CURLOPT_ERRORBUFFER, detail);
    SetOption(curl, CURLOPT_USERAGENT, "ecm-agent");
    SetOption(curl, CURLOPT_HEADERFUNCTION, TakeHead);
    SetOption(curl, CURLOPT_WRITEFUNCTION, TakeBody);
    if (!ca_file.empty()) SetOption(curl, CURLOPT_CAINFO, ca_file.c_str());
    // An authority of one's own has no list of revoked certificates to ask for, as a rule. What
    // asks for one here does without it then; elsewhere none is asked for.
    SetOption(curl, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_REVOKE_BEST_EFFORT));
    if (settings.user.empty()) return;
    SetOption(curl, CURLOPT_HTTPAUTH, CURLAUTH_BASIC | CURLAUTH_DIGEST);
    SetOption(curl, CURLOPT_USERNAME, settings.user.c_str());
    SetOption(curl, CURLOPT_PASSWORD, password.c_str());
  }

  // Runs a request for which the method is set; the status of the answer. `file_bytes` is the size
  // of the file that goes or comes with it.
  long Run(const DavRequest& request, const std::string& url, std::uint64_t file_bytes,
           Answer& answer) {
    answer.curl = curl;
    detail[0] = '\0';
    SetOption(curl, CURLOPT_URL, url.c_str());
    SetOption(curl, CURLOPT_TIMEOUT_MS, LongestTransfer(settings.answer_timeout, file_bytes));
    SetOption(curl, CURLOPT_HEADERDATA, &answer);
    SetOption(curl, CURLOPT_WRITEDATA, &answer);
    const CURLcode code = curl_easy_perform(curl);
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    if (code == CURLE_OK || answer.is_larger_file) return status;
    if (answer.has_no_end) FailWithoutEnd(request);
    FailToTransfer(request, code, detail[0] != '\0' ? detail : curl_easy_strerror(code),
                   WasConnected());
  }

  bool WasConnected() const {
    curl_off_t microseconds = 0;
    curl_easy_getinfo(curl, CURLINFO_PRETRANSFER_TIME_T, &microseconds);
    return microseconds > 0;
  }

  // As above for a request without a file, with these lines in its head or null.
  long RunPlain(const DavRequest& request, const std::string& url, const curl_slist* lines) {
    Answer answer;
    SetOption(curl, CURLOPT_HTTPGET, 1L);
    SetOption(curl, CURLOPT_CUSTOMREQUEST, request.method.c_str());
    SetOption(curl, CURLOPT_HTTPHEADER, lines);
    return Run(request, url, 0, answer);
  }

  [[noreturn]] void Fail(const DavRequest& request, long status) const {
    const char* location = nullptr;
    curl_easy_getinfo(curl, CURLINFO_REDIRECT_URL, &location);
    FailWithStatus(request, status, location != nullptr ? location : "");
  }

  void MakeCollection(const std::string& url, const std::string& path) {
    const DavRequest request{"MKCOL", path};
    const long status = RunPlain(request, url, nullptr);
    // 405: the name is taken, which for a folder of ours means that it is there.
    if (status != 201 && status != 405) Fail(request, status);
  }
};

WebDavStore::WebDavStore(const ServerSettings& settings, const std::string& password,
                         const std::string& ca_file)
    : state_(std::make_unique<State>()) {
  state_->settings = settings;
  state_->base = settings.url.ends_with('/') ? settings.url : settings.url + "/";
  state_->SetUp(password, ca_file);
}

WebDavStore::~WebDavStore() = default;

void WebDavStore::MakeRoot() {
  std::string url = state_->base;
  for (const std::string& component : FolderComponents(state_->settings.folder)) {
    url += state_->Escaped(component) + "/";
    state_->MakeCollection(url, component);
  }
}

void WebDavStore::MakeFolder(const std::string& path) {
  state_->MakeCollection(state_->UrlOf(path + "/"), path);
}

std::optional<Digest> WebDavStore::DigestOf(const std::string& path, std::uint64_t most) {
  const DavRequest request{"GET", path};
  Answer answer;
  answer.wants_file = true;
  answer.most = most;
  SetOption(state_->curl, CURLOPT_HTTPGET, 1L);
  SetOption(state_->curl, CURLOPT_CUSTOMREQUEST, nullptr);
  SetOption(state_->curl, CURLOPT_HTTPHEADER, nullptr);
  const long status = state_->Run(request, state_->UrlOf(path), most, answer);
  if (status == 404) return std::nullopt;
  if (status != 200) state_->Fail(request, status);
  if (answer.is_larger_file) return Digest{.size = answer.body, .sha256 = {}};
  return answer.sum.Finish();
}

void WebDavStore::Put(const std::string& path, native::Reader& file) {
  const DavRequest request{"PUT", path};
  const std::uint64_t size = file.Size();
  Lines unasked(nullptr, curl_slist_free_all);
  Append(unasked, "Expect:");
  CURL* curl = state_->curl;
  SetOption(curl, CURLOPT_UPLOAD, 1L);
  SetOption(curl, CURLOPT_CUSTOMREQUEST, nullptr);
  SetOption(curl, CURLOPT_HTTPHEADER, size < kWorthAsking ? unasked.get() : nullptr);
  SetOption(curl, CURLOPT_READFUNCTION, ReadBody);
  SetOption(curl, CURLOPT_READDATA, &file);
  SetOption(curl, CURLOPT_SEEKFUNCTION, SeekBody);
  SetOption(curl, CURLOPT_SEEKDATA, &file);
  SetOption(curl, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(size));
  Answer answer;
  file.SeekTo(0);
  const long status = state_->Run(request, state_->UrlOf(path), size, answer);
  if (status != 200 && status != 201 && status != 204) state_->Fail(request, status);
}

void WebDavStore::Move(const std::string& from, const std::string& to) {
  const DavRequest request{"MOVE", to};
  // The server knows who is asking; its address alone is what it looks for.
  const std::string target = AddressForTheEye(state_->UrlOf(to));
  Lines lines(nullptr, curl_slist_free_all);
  Append(lines, "Destination: " + target);
  Append(lines, "Overwrite: F");
  const long status = state_->RunPlain(request, state_->UrlOf(from), lines.get());
  if (status != 201 && status != 204) state_->Fail(request, status);
}

}  // namespace logbook
