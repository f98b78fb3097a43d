// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The two scripts behind Completion.h, each in a file of its own. Pure; they end without a line
// feed and raise nothing.
#pragma once

#include <string>
#include <vector>

#include "CompletionTable.h"

namespace logbook::cli {

std::string BashCompletion(const std::vector<CompletedVerb>& table);
std::string ZshCompletion(const std::vector<CompletedVerb>& table);

}  // namespace logbook::cli
