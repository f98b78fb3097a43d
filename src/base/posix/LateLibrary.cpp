// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/LateLibrary.h"

#include <dlfcn.h>

#include <stdexcept>

namespace logbook::posix {

namespace {

[[noreturn]] void RaiseLoaderError() {
  const char* words = dlerror();
  throw std::runtime_error(words == nullptr ? "a library cannot be loaded" : words);
}

}  // namespace

bool LateLibrary::IsThere() {
  if (library_ == nullptr) library_ = dlopen(name_, RTLD_NOW | RTLD_LOCAL);
  return library_ != nullptr;
}

void* LateLibrary::Address(const char* routine) {
  if (!IsThere()) RaiseLoaderError();
  void* address = dlsym(library_, routine);
  if (address == nullptr) RaiseLoaderError();
  return address;
}

}  // namespace logbook::posix
