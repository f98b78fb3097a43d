// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The number of a raised error.
#pragma once

#include <optional>

#include "base/RunTimeError.h"

namespace logbook::test {

// The number of the run-time error that the call raises; nothing if it raises none.
template <typename Call>
std::optional<int> NumberRaisedBy(Call call) {
  try {
    call();
    return std::nullopt;
  } catch (const RunTimeError& error) {
    return static_cast<int>(error.Number());
  }
}

// The same as the number's name.
template <typename Call>
std::optional<ErrorNumber> ErrorOf(Call call) {
  const std::optional<int> number = NumberRaisedBy(call);
  return number ? std::optional(static_cast<ErrorNumber>(*number)) : std::nullopt;
}

}  // namespace logbook::test
