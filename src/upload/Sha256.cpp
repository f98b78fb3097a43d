// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Sha256.h"

#include <openssl/evp.h>

#include <memory>

namespace logbook {

struct Sha256::State {
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  std::uint64_t size = 0;
  ~State() { EVP_MD_CTX_free(context); }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  if (state_->context == nullptr || EVP_DigestInit_ex(state_->context, EVP_sha256(), nullptr) != 1)
    throw std::bad_alloc();
}

Sha256::~Sha256() = default;

void Sha256::Add(const void* bytes, std::size_t size) {
  EVP_DigestUpdate(state_->context, bytes, size);
  state_->size += size;
}

Digest Sha256::Finish() {
  unsigned char sum[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  EVP_DigestFinal_ex(state_->context, sum, &length);
  Digest digest{.size = state_->size, .sha256 = {}};
  for (unsigned int i = 0; i < length; ++i) {
    digest.sha256 += "0123456789abcdef"[sum[i] >> 4];
    digest.sha256 += "0123456789abcdef"[sum[i] & 15];
  }
  return digest;
}

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
