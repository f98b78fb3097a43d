// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A string of the resources as a text of its own, to be put together with others.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "resources/Resources.h"

namespace logbook {

// What LoadResString gives for this number.
inline std::string ResourceText(int number) {
  return std::string(LoadResString(number));
}

// The same with "%1" to "%9" replaced by the texts, in this order. What stands in their place is
// not looked at again; a place without a text stays.
std::string ResourceText(int number, std::initializer_list<std::string_view> texts);

}  // namespace logbook
