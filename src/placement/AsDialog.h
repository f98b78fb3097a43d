// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Placement of the program's windows: centred on the work area or on a host window, in or out of
// the topmost band, and optionally inside a host.
#pragma once

#include <cstdint>

#include "state/Services.h"

namespace logbook {

inline constexpr std::uint32_t kPlaceNormalBand = 1;  // clear: topmost band
inline constexpr std::uint32_t kPlaceInsideHost = 4;  // make the window a child of the host

// Sets the window's band, parents it if asked to and the host is at least 1, and centres it.
void PlaceDialog(WindowSystem& windows, std::uint32_t flags, std::intptr_t form,
                 std::intptr_t host);

// Centres a window on the host's surface, or on the work area if the host is 0. The origin of the
// area is not added. Nothing for window 0. Raises kOverflow if a size or the new place does not fit
// 32 bits.
void CenterOnHost(WindowSystem& windows, std::intptr_t window, std::intptr_t host);

// Makes the host's surface the window's parent. Nothing for window 0 or host 1.
void ParentToHost(WindowSystem& windows, std::intptr_t window, std::intptr_t host);

// What every caller does when a window comes up: PlaceDialog with flags 1 and host 0, then raising
// to the top of the normal band.
void PlaceAndRaise(WindowSystem& windows, std::intptr_t form);

}  // namespace logbook
