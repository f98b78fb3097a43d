// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The catalogues as tab-separated text in UTF-8, for logbookctl.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "catalogue/ItemRecord.h"

namespace logbook {

inline constexpr std::array<std::string_view, 7> kCatalogueNames = {
    "items", "meter", "analog", "tune", "sys", "bout", "bin"};

// The filled rows of one catalogue: a header line, then row number and fields in the record's
// order. Lines end in a line feed. Empty for an unknown name.
std::string CatalogueText(const Catalogues& catalogues, std::string_view name);

}  // namespace logbook
