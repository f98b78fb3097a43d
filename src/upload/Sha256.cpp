// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Sha256.h"

#include <memory>

namespace logbook {

Digest DigestOfFile(native::Reader& file, const std::string& native_file) {
  constexpr std::size_t kBuffer = 64 * 1024;
  const auto buffer = std::make_unique_for_overwrite<char[]>(kBuffer);
  Sha256 sum;
  if (file.SeekTo(0)) FailToRead(native_file);
  while (const std::size_t count = file.Read(buffer.get(), kBuffer)) sum.Add(buffer.get(), count);
  if (file.Failure()) FailToRead(native_file);
  return sum.Finish();
}

Digest DigestOfFile(const std::string& native_file, std::uint64_t most) {
  native::Reader file;
  if (file.Open(native_file, native::Links::kFollowed)) FailToRead(native_file);
  if (file.Size() > most) return {.size = file.Size(), .sha256 = {}};
  return DigestOfFile(file, native_file);
}

void FailToRead(const std::string& native_file) {
  throw DeliveryError(DeliveryError::Reach::kThisSubmission,
                      "The file " + native_file + " cannot be read.");
}

}  // namespace logbook
