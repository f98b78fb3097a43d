// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Findings in the forms that the command "check" gives them. Pure; UTF-8.
#pragma once

#include <string>
#include <vector>

#include "insight/Check.h"

namespace logbook::insight {

struct RootFindings {
  std::string root;  // native path
  std::vector<Finding> findings;
};

// The findings of each code under what it means and what to do; "no finding" for none. Lines end in
// a line feed.
std::string FindingsText(const RootFindings& findings);

// One JSON document, an object with the list "roots"; ended by a line feed.
std::string FindingsJson(const std::vector<RootFindings>& roots);

}  // namespace logbook::insight
