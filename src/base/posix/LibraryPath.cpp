// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/LibraryPath.h"

namespace logbook {

std::string PathForLibraries(const std::string& native_path) {
  return native_path;
}

}  // namespace logbook
