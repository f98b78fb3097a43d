// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/SystemRegistry.h"

namespace logbook {

std::optional<std::string> ReadSystemRegistry(std::string_view, std::string_view) {
  return std::nullopt;
}

std::optional<int> SystemCodePage() {
  return std::nullopt;
}

}  // namespace logbook
