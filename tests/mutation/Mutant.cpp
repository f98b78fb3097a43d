// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Mutant.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace mutant {

constexpr std::size_t kMost = 1 << 16;

int now = 0;
static unsigned char nowhere[kMost];
unsigned char* reached = nowhere;

// Before all other statics of the program. Shared memory: what a child of the test reaches counts.
__attribute__((constructor(101))) static void Begin() {
  if (const char* number = std::getenv("MUTANT")) now = std::atoi(number);
  const char* const file = std::getenv("MUTANT_REACHED");
  const int descriptor = file == nullptr ? -1 : open(file, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor < 0 || ftruncate(descriptor, kMost) != 0) return;
  void* const place = mmap(nullptr, kMost, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  if (place != MAP_FAILED) reached = static_cast<unsigned char*>(place);
  close(descriptor);
}

}  // namespace mutant
