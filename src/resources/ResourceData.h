// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What make_resources makes of the data files; use resources/Resources.h instead.
#pragma once

#include <span>
#include <string_view>

#include "resources/Resources.h"

namespace logbook {

std::span<const StringResource> StringData();
std::string_view ArrangementData();

}  // namespace logbook
