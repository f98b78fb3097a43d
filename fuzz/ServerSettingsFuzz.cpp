// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Settings of the content server: no password is shown, and no component leads out of the folder.

#include <string>

#include "Fuzzing.h"
#include "base/CodePage.h"
#include "upload/ServerSettings.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFile = "C:\\arecm.cfg";

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  workshop.SetPage(AnyPage(input));
  workshop.Put(kFile, input.Rest());
  const ServerSettings settings = ReadServerSettings(workshop.machine(), kFile);
  for (const std::string& component : FolderComponents(settings.folder)) {
    FUZZ_REQUIRE(!component.empty() && component != "." && component != "..");
    FUZZ_REQUIRE(component.find_first_of("/\\") == std::string::npos);
  }
  ServerSettings secret;
  secret.url = "https://somebody:kEpTsEcReT@" + settings.url;
  if (settings.url.find("kEpTsEcReT") == std::string::npos)
    FUZZ_REQUIRE(AddressOf(secret).find("kEpTsEcReT") == std::string::npos);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
