// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A string of the resources as a text of its own, to be put together with others.
#pragma once

#include <string>

#include "resources/Resources.h"

namespace logbook {

// What LoadResString gives for this number.
inline std::string ResourceText(int number) {
  return std::string(LoadResString(number));
}

}  // namespace logbook
