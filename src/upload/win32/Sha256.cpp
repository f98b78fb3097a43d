// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Sha256.h"

#include <algorithm>
#include <new>

#include "base/win32/System.h"

#include <bcrypt.h>

namespace logbook {

struct Sha256::State {
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
  std::uint64_t size = 0;
  ~State() {
    if (hash != nullptr) BCryptDestroyHash(hash);
    if (algorithm != nullptr) BCryptCloseAlgorithmProvider(algorithm, 0);
  }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  if (BCryptOpenAlgorithmProvider(&state_->algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) != 0 ||
      BCryptCreateHash(state_->algorithm, &state_->hash, nullptr, 0, nullptr, 0, 0) != 0)
    throw std::bad_alloc();
}

Sha256::~Sha256() = default;

void Sha256::Add(const void* bytes, std::size_t size) {
  constexpr std::size_t kMost = 1 << 30;
  state_->size += size;
  auto* next = static_cast<unsigned char*>(const_cast<void*>(bytes));
  while (size > 0) {
    const std::size_t count = std::min(size, kMost);
    BCryptHashData(state_->hash, next, static_cast<ULONG>(count), 0);
    next += count;
    size -= count;
  }
}

Digest Sha256::Finish() {
  unsigned char sum[32] = {};
  BCryptFinishHash(state_->hash, sum, sizeof sum, 0);
  Digest digest{.size = state_->size, .sha256 = {}};
  for (const unsigned char byte : sum) {
    digest.sha256 += "0123456789abcdef"[byte >> 4];
    digest.sha256 += "0123456789abcdef"[byte & 15];
  }
  return digest;
}

}  // namespace logbook
