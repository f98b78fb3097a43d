// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/WebDavStore.h"

#include <curl/curl.h>

#include "base/NativeDisk.h"
#include "upload/Sha256.h"

namespace logbook {

namespace {

constexpr long kConnectSeconds = 15;
constexpr long kSilenceSeconds = 60;  // a transfer that stands still for so long has failed

using Reach = DeliveryError::Reach;

std::size_t ReadBody(char* buffer, std::size_t size, std::size_t count, void* file) {
  return static_cast<native::Reader*>(file)->Read(buffer, size * count);
}

// The library seeks from the start alone.
int SeekBody(void* file, curl_off_t offset, int) {
  return static_cast<native::Reader*>(file)->SeekTo(static_cast<std::uint64_t>(offset))
             ? CURL_SEEKFUNC_FAIL
             : CURL_SEEKFUNC_OK;
}

std::size_t DropAnswer(char*, std::size_t size, std::size_t count, void*) {
  return size * count;
}

// Where the answer to a GET goes, once it is known to be the file and not a page about an error.
struct Download {
  CURL* curl;
  Sha256 sum;
};

std::size_t SumAnswer(char* bytes, std::size_t size, std::size_t count, void* download) {
  auto* target = static_cast<Download*>(download);
  long status = 0;
  curl_easy_getinfo(target->curl, CURLINFO_RESPONSE_CODE, &status);
  if (status == 200) target->sum.Add(bytes, size * count);
  return size * count;
}

[[noreturn]] void FailToTransfer(CURLcode code, const char* detail) {
  const std::string reason = *detail != '\0' ? detail : curl_easy_strerror(code);
  switch (code) {
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
      throw DeliveryError(Reach::kWholeServer,
                          "The certificate of the content server cannot be trusted: " + reason);
    default:
      throw DeliveryError(Reach::kWholeServer, "The content server cannot be reached: " + reason);
  }
}

[[noreturn]] void FailWithStatus(const char* method, const std::string& path, long status) {
  const std::string number = " (" + std::to_string(status) + ").";
  const std::string what = std::string(method) + " " + path;
  switch (status) {
    case 401:
      throw DeliveryError(Reach::kWholeServer,
                          "The content server does not accept user name and password" + number);
    case 403:
      throw DeliveryError(Reach::kWholeServer,
                          "The content server does not allow " + what + number);
    case 412:  // to a move that may not overwrite
      throw DeliveryError(Reach::kThisSubmission,
                          "The content server holds another file of the name: " + what + number);
    case 413:
      throw DeliveryError(Reach::kThisSubmission,
                          "The content server does not take files of this size: " + what + number);
    case 507:
      throw DeliveryError(Reach::kThisSubmission,
                          "The disk of the content server is full: " + what + number);
    default:
      throw DeliveryError(status >= 500 ? Reach::kWholeServer : Reach::kThisSubmission,
                          "The content server failed to do " + what + number);
  }
}

}  // namespace

struct WebDavStore::State {
  CURL* curl = curl_easy_init();
  ServerSettings settings;
  std::string password;
  std::string ca_file;
  std::string base;  // with trailing slash
  char detail[CURL_ERROR_SIZE] = {};

  ~State() { curl_easy_cleanup(curl); }

  std::string Escaped(const std::string& component) const {
    char* escaped = curl_easy_escape(curl, component.c_str(), static_cast<int>(component.size()));
    std::string text = escaped != nullptr ? escaped : "";
    curl_free(escaped);
    return text;
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

  void Prepare(const std::string& url) {
    curl_easy_reset(curl);  // keeps the connection
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, kSilenceSeconds);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, detail);
    curl_easy_setopt(curl, CURLOPT_USERAGENT, "ecm-agent");
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, DropAnswer);
    if (!ca_file.empty()) curl_easy_setopt(curl, CURLOPT_CAINFO, ca_file.c_str());
    if (settings.user.empty()) return;
    curl_easy_setopt(curl, CURLOPT_HTTPAUTH, CURLAUTH_BASIC | CURLAUTH_DIGEST);
    curl_easy_setopt(curl, CURLOPT_USERNAME, settings.user.c_str());
    curl_easy_setopt(curl, CURLOPT_PASSWORD, password.c_str());
  }

  // Runs the prepared request; the status of the answer.
  long Run() {
    detail[0] = '\0';
    const CURLcode code = curl_easy_perform(curl);
    if (code != CURLE_OK) FailToTransfer(code, detail);
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    return status;
  }

  void MakeCollection(const std::string& url, const std::string& path) {
    Prepare(url);
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, "MKCOL");
    const long status = Run();
    // 405: the name is taken, which for a folder of ours means that it is there.
    if (status != 201 && status != 405) FailWithStatus("MKCOL", path, status);
  }
};

WebDavStore::WebDavStore(const ServerSettings& settings, const std::string& password,
                         const std::string& ca_file)
    : state_(std::make_unique<State>()) {
  if (state_->curl == nullptr) throw std::bad_alloc();
  state_->settings = settings;
  state_->password = password;
  state_->ca_file = ca_file;
  state_->base = settings.url.ends_with('/') ? settings.url : settings.url + "/";
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

std::optional<Digest> WebDavStore::DigestOf(const std::string& path) {
  state_->Prepare(state_->UrlOf(path));
  Download download{state_->curl, {}};
  curl_easy_setopt(state_->curl, CURLOPT_WRITEFUNCTION, SumAnswer);
  curl_easy_setopt(state_->curl, CURLOPT_WRITEDATA, &download);
  const long status = state_->Run();
  if (status == 404) return std::nullopt;
  if (status != 200) FailWithStatus("GET", path, status);
  return download.sum.Finish();
}

void WebDavStore::Put(const std::string& path, const std::string& native_file) {
  native::Reader file;
  std::uint64_t size = 0;
  if (file.Open(native_file, native::Links::kAsThemselves) || file.Size(size))
    throw DeliveryError(Reach::kThisSubmission,
                        "The file " + native_file + " in the outbox cannot be read.");
  state_->Prepare(state_->UrlOf(path));
  curl_easy_setopt(state_->curl, CURLOPT_UPLOAD, 1L);
  curl_easy_setopt(state_->curl, CURLOPT_READFUNCTION, ReadBody);
  curl_easy_setopt(state_->curl, CURLOPT_READDATA, &file);
  curl_easy_setopt(state_->curl, CURLOPT_SEEKFUNCTION, SeekBody);
  curl_easy_setopt(state_->curl, CURLOPT_SEEKDATA, &file);
  curl_easy_setopt(state_->curl, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(size));
  const long status = state_->Run();
  if (status != 200 && status != 201 && status != 204) FailWithStatus("PUT", path, status);
}

void WebDavStore::Move(const std::string& from, const std::string& to) {
  state_->Prepare(state_->UrlOf(from));
  curl_easy_setopt(state_->curl, CURLOPT_CUSTOMREQUEST, "MOVE");
  const std::string destination = "Destination: " + state_->UrlOf(to);
  curl_slist* headers = curl_slist_append(nullptr, destination.c_str());
  headers = curl_slist_append(headers, "Overwrite: F");
  curl_easy_setopt(state_->curl, CURLOPT_HTTPHEADER, headers);
  const std::unique_ptr<curl_slist, void (*)(curl_slist*)> free_headers(headers,
                                                                        curl_slist_free_all);
  const long status = state_->Run();
  if (status != 201 && status != 204) FailWithStatus("MOVE", to, status);
}

}  // namespace logbook
