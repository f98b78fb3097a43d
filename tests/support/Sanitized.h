// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// For tests of what a sanitizer changes about a program beside what it watches: what it is linked
// with, how much memory it takes. They skip themselves there and say so.
#pragma once

namespace logbook::test {

// Whether the programs of this build watch their memory themselves.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kSanitized = __has_feature(address_sanitizer);
#else
inline constexpr bool kSanitized = false;
#endif

}  // namespace logbook::test
