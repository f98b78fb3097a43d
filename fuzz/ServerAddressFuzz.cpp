// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Addresses of content servers: none raises anything but a delivery error, and a password never
// comes to the eye.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "Fuzzing.h"
#include "upload/ContentStore.h"
#include "upload/ServerAddress.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kSecret = "kEpTsEcReT";

bool IsDigits(const std::string& text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

void OpenAny(const Machine& machine, const std::string& url) {
  try {
    CheckAddress(url);
    const std::string scheme = SchemeOf(url);
    FUZZ_REQUIRE(scheme == "http" || scheme == "https" || scheme == "file");
    if (scheme == "file") FolderOfFileUrl(machine, url);
  } catch (const DeliveryError& error) {
    FUZZ_REQUIRE(std::strlen(error.what()) > 0);
  }
}

// What can stand in an address: a user without separators, a password that is not read as a port
// where it has some, a host and a path.
void HideThePassword(Input& input) {
  constexpr std::array kSchemes = {"http", "https", "HTTP", "hTTps", "ftp"};
  const std::string scheme = kSchemes[static_cast<std::size_t>(input.Number(kSchemes.size()))];
  std::string user = input.Text();
  std::erase_if(user, [](char c) { return std::strchr("/\\?#:@[", c) != nullptr; });
  std::string before = input.Text();
  std::string behind = input.Text();
  std::string path = input.Text();
  for (std::string* text : {&before, &behind, &path}) std::erase(*text, '@');
  if (IsDigits(before.substr(0, before.find_first_of("/\\?#")))) before = "x" + before;
  const std::string shown =
      AddressForTheEye(scheme + "://" + user + ":" + before + kSecret + behind + "@host/" + path);
  FUZZ_REQUIRE(path.find(kSecret) != std::string::npos || shown.find(kSecret) == std::string::npos);
  FUZZ_REQUIRE(shown.starts_with(scheme + "://host/"));
}

void Try(Input input) {
  const std::string url = input.Text();
  const std::string shown = AddressForTheEye(url);
  FUZZ_REQUIRE(shown.size() <= url.size());
  OpenAny(Workshop::Get().machine(), url);
  HideThePassword(input);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
