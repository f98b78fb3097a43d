// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Registry.h"

#include "base/NativeFile.h"
#include "base/RegistryText.h"
#include "base/RunTimeError.h"
#include "base/SystemRegistry.h"

namespace logbook {

std::optional<std::string> ReadMachineRegistry(const std::string& home, std::string_view key,
                                               std::string_view name) {
  if (home.empty()) return ReadSystemRegistry(key, name);
  try {
    return FindRegistryText(ReadNativeFile(home + "/machine.reg"), key, name);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

}  // namespace logbook
