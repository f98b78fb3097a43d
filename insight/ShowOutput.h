// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What logbookctl show prints of one log: the whole of it by catalogue and section, or some rows
// (docs/insight.md). Pure; UTF-8.
#pragma once

#include <string>
#include <vector>

#include "insight/LogReading.h"

namespace logbook::insight {

// The rows of a catalogue, or of all, in the order of their sections as they first come.
std::vector<RowId> RowsBySection(const Catalogues& catalogues, std::optional<Catalogue> which);

// Head and values as text for a person.
std::string ShowText(const Catalogues& catalogues, const LogReading& reading,
                     const std::vector<RowId>& rows);

// One JSON document, ended by a line feed.
std::string ShowJson(const Catalogues& catalogues, const LogReading& reading,
                     const std::vector<RowId>& rows);

}  // namespace logbook::insight
