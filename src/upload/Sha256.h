// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// SHA-256 of bytes that come piece by piece.
#pragma once

#include <cstddef>
#include <memory>

#include "upload/ContentStore.h"

namespace logbook {

class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void Add(const void* bytes, std::size_t size);
  // Of all bytes so far; nothing may be added afterwards.
  Digest Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
