// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Whether one log answers a query, from its reading alone: what the meaning of a query is. The
// index gives the same answer without reading the logs. Pure; raises nothing.
#pragma once

#include <string>
#include <vector>

#include "insight/LogReading.h"
#include "insight/Query.h"

namespace logbook::insight {

// All that words are looked for in: comment, text logs and text values, one behind the other with
// kTextBreak between them.
std::string SearchedText(const CodePage& code_page, const Catalogues& catalogues,
                         const LogFiles& files, const LogReading& reading);

// A log as queries see it.
struct SearchedLog {
  LogReading Reading;
  std::vector<std::string> Words;  // of SearchedText
};

bool Matches(const Query& query, const SearchedLog& log);

}  // namespace logbook::insight
