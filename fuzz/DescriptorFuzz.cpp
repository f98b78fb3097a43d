// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Upload descriptors: an entry that was added is read back as the last one, and those before it
// stay.

#include <algorithm>
#include <vector>

#include "Fuzzing.h"
#include "base/CodePage.h"
#include "base/RunTimeError.h"
#include "upload/UploadDescriptor.h"

namespace logbook::fuzz {
namespace {

constexpr const char* kFile = "C:\\staging.xml";

// What every XML reader gives back as it stands.
std::string Plain(std::string text) {
  std::erase_if(text, [](char c) { return c < ' ' || c > '~'; });
  return text;
}

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  workshop.Clear();
  UploadFile file;
  for (std::string* text : {&file.Name, &file.Source, &file.Destination, &file.Reason, &file.Owner})
    *text = Plain(input.Text());
  if (!input.Rest().empty()) workshop.Put(kFile, input.Rest());
  std::vector<UploadFile> before;
  try {
    if (!input.Rest().empty()) before = ReadUploadDescriptor(workshop.machine(), kFile);
    AddToUploadDescriptor(workshop.machine(), kFile, file);
  } catch (const RunTimeError&) {
    FUZZ_REQUIRE(workshop.Bytes(kFile) == input.Rest());
    return;
  }
  const std::vector<UploadFile> after = ReadUploadDescriptor(workshop.machine(), kFile);
  FUZZ_REQUIRE(after.size() == before.size() + 1 || (before.size() == 1 && after == before));
  if (after.size() == before.size()) return;
  FUZZ_REQUIRE(after.back() == file);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
