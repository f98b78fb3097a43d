// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Rows and queries as they are typed on the command line and in settings files. What cannot be
// understood raises UserError with the names that may have been meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/IndexSearch.h"
#include "insight/Query.h"
#include "insight/RowNames.h"

namespace logbook::cli {

// A problem with what may have been meant instead: "PROBLEM; perhaps A, B".
std::string Suggesting(const std::string& problem, const std::vector<std::string>& near);

// The rows that ROW names, by catalogue: rows of one label in one catalogue are one value to a
// person, those of two catalogues are two.
std::vector<insight::RowGroup> FindRowGroups(const Catalogues& catalogues,
                                             const std::string& typed);

// The rows that a line of a settings file names.
std::vector<insight::RowId> FindSettingsRows(const Catalogues& catalogues, std::string_view file,
                                             int line, const std::string& name);

// The query of a text; an empty text finds every log.
insight::Query QueryOf(const Catalogues& catalogues, const std::string& typed);

}  // namespace logbook::cli
