// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// An input of the target ZipAddition: what the addition is to do, and the bytes of the archive that
// is there. The mutator takes the archive apart and leaves the rest to the library.
#pragma once

#include <array>
#include <string>
#include <utility>

#include "Fuzzing.h"

namespace logbook::fuzz {

struct ZipInput {
  static constexpr int kFileCount = 3;

  std::uint8_t options = 0;
  std::array<std::pair<std::string, std::string>, kFileCount> files;  // names and contents
  std::string archive;

  static ZipInput From(Input input) {
    ZipInput zip;
    zip.options = input.Byte();
    for (auto& [name, content] : zip.files) {
      name = input.Text();
      content = input.Text();
    }
    zip.archive = input.Rest();
    return zip;
  }

  std::string Bytes() const {
    std::string bytes(1, static_cast<char>(options));
    for (const auto& [name, content] : files) bytes += name + '\0' + content + '\0';
    return bytes + archive;
  }
};

}  // namespace logbook::fuzz
