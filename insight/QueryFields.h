// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The single conditions of the query language: words, phrases, and FIELD:... Used by Query alone.
#pragma once

#include "insight/Query.h"
#include "insight/QueryScanner.h"

namespace logbook::insight {

// The condition in front, and the blanks behind it. Raises QueryError.
Query ParseCondition(const Catalogues& catalogues, QueryScanner& scanner);

}  // namespace logbook::insight
