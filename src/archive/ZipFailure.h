// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The failures of the zip writer, which never leave it.
#pragma once

#include <string>

#include "archive/Archive.h"

namespace logbook {

// Why a run of the writer failed.
struct ZipFailure {
  ZipResult code;
  std::string reason;
};

[[noreturn]] void FailWith(ZipResult code, std::string reason);
// With the reason that errno's number stands for; a full disk has a code of its own.
[[noreturn]] void FailWithSystem(ZipResult code, const std::string& what, int error);

}  // namespace logbook
