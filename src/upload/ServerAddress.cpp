// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ServerAddress.h"

#include <algorithm>
#include <charconv>

#include "base/Files.h"
#include "upload/ContentStore.h"

namespace logbook {

namespace {

constexpr std::size_t kNone = std::string::npos;

bool IsOfFolder(const std::string& url) {
  return SchemeOf(url) == "file";
}

// Where the host begins, or the user name before it: behind the scheme and any separators.
std::size_t StartOfHost(const std::string& url) {
  const std::string scheme = SchemeOf(url);
  const bool has_scheme = scheme == "http" || scheme == "https" || scheme == "file" ||
                          url.compare(std::min(scheme.size(), url.size()), 3, "://") == 0;
  const std::size_t start = has_scheme ? scheme.size() + 1 : 0;
  return std::min(url.find_first_not_of("/\\", start), url.size());
}

bool IsPort(const std::string& text) {
  return text.find_first_not_of("0123456789") == kNone;
}

// The last sign of a user name and a password that stand before the host, or none. A password may
// hold separators that end a host elsewhere; then what stands behind the colon is no port.
std::size_t EndOfUser(const std::string& url, std::size_t start) {
  const std::string host = url.substr(start, url.find_first_of("/\\?#", start) - start);
  const std::size_t at = host.rfind('@');
  if (at != kNone) return start + at;
  const std::size_t colon = host.find(':');
  const bool is_odd = !host.starts_with('[') && colon != kNone && !IsPort(host.substr(colon + 1));
  const std::size_t last = url.rfind('@');
  return is_odd && !IsOfFolder(url) && last != kNone && last > start ? last : kNone;
}

// Escaped signs as themselves; what is no escape stands as it is.
std::string Unescaped(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned char byte = 0;
    const char* const digits = text.data() + i + 1;
    const bool escaped = text[i] == '%' && i + 2 < text.size() &&
                         std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
    plain += escaped ? static_cast<char>(byte) : text[i];
    if (escaped) i += 2;
  }
  return plain;
}

bool IsDrive(const std::string& text) {
  return text.size() == 2 && text[1] == ':';
}

}  // namespace

std::string SchemeOf(const std::string& url) {
  std::string scheme = url.substr(0, url.find(':'));
  for (char& byte : scheme) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return scheme;
}

std::string AddressForTheEye(const std::string& url) {
  std::string shown = url;
  const std::size_t start = StartOfHost(url);
  const bool may_have_user = !IsOfFolder(url) || url.compare(4, 3, "://") == 0;
  if (const std::size_t end = EndOfUser(url, start); may_have_user && end != kNone)
    shown.erase(start, end + 1 - start);
  if (!IsOfFolder(url)) shown.resize(std::min(shown.find_first_of("?#"), shown.size()));
  return shown;
}

std::string FolderOfFileUrl(const Machine& machine, const std::string& url) {
  std::string rest = url.substr(std::string("file:").size());
  if (rest.starts_with("//")) {
    const std::string host = rest.substr(2, rest.find_first_of("/\\", 2) - 2);
    const bool is_local = host.empty() || host == "localhost";
    if (!is_local && !IsDrive(host))
      throw DeliveryError(DeliveryError::Reach::kWholeServer,
                          "The address " + AddressForTheEye(url) +
                              " names another machine; mount its folder here and set Url to "
                              "file:///folder.");
    rest.erase(0, 2 + (is_local ? host.size() : 0));
  }
  std::string path = Unescaped(rest);
  if (path.size() > 2 && path[0] == '/' && path[2] == ':') path.erase(0, 1);  // "/C:/share"
  return NativePath(machine, path);
}

void CheckAddress(const std::string& url) {
  const std::string scheme = SchemeOf(url);
  const auto fail = [&](const std::string& what) {
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The address " + AddressForTheEye(url) + what);
  };
  const bool has_scheme = url.find(':') != kNone;
  if (has_scheme && scheme == "file") return;
  if (!has_scheme || (scheme != "http" && scheme != "https"))
    fail(" is neither http:, https: nor file:.");
  if (url.find_first_of("?#") != kNone)
    fail(" goes on with a ? or #; set Url to the folder alone, with %3F and %23 for such signs.");
}

}  // namespace logbook
