// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Path texts: a native path lies on its drive, and naming the same file again ends there.

#include "Fuzzing.h"
#include "base/Files.h"

namespace logbook::fuzz {
namespace {

void Try(Input input) {
  const Machine& machine = Workshop::Get().machine();
  const std::string path = input.Text();
  const std::string native = NativePath(machine, path);
  FUZZ_REQUIRE(NativePath(machine, path) == native);
  TypedPathText(path);
  if (path.find("..") != std::string::npos) return;
  const bool has_drive =
      path.size() >= 2 && path[1] == ':' && (path[0] | 0x20) >= 'a' && (path[0] | 0x20) <= 'z';
  if (!has_drive) return;
  const std::string drive = machine.home + "/drives/" + static_cast<char>(path[0] | 0x20);
  FUZZ_REQUIRE(native == drive || native.starts_with(drive + "/"));
  FUZZ_REQUIRE(native.find('\\') == std::string::npos);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
