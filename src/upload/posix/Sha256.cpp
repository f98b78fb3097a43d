// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Sha256.h"

#include <openssl/evp.h>

#include <new>

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

}  // namespace logbook
