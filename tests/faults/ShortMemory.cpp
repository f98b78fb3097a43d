// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ShortMemory.h"

#include <cerrno>
#include <cstddef>

extern "C" {
// The C library's own, behind the names that programs may replace.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace logbook::test {

namespace {

bool counts = false;
long failing_one = 0;
long allocations = 0;

bool Fails() {
  if (!counts || ++allocations != failing_one) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace

ShortMemory::ShortMemory(long failing) {
  failing_one = failing;
  allocations = 0;
  counts = true;
}

ShortMemory::~ShortMemory() {
  counts = false;
}

ShortMemory::Pause::Pause() : before_(counts) {
  counts = false;
}

ShortMemory::Pause::~Pause() {
  counts = before_;
}

long ShortMemory::Allocations() {
  return allocations;
}

}  // namespace logbook::test

using logbook::test::Fails;

extern "C" {

void* malloc(std::size_t size) noexcept {
  return Fails() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  return Fails() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) noexcept {
  return Fails() ? nullptr : __libc_realloc(memory, size);
}

}  // extern "C"
