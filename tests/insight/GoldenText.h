// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Texts held against files that a person has read. What the program makes stays in the build tree,
// below insight/actual; accept_insight.sh copies it over after a person has looked.
#pragma once

#include <string>

namespace logbook::test {

// Fails the test, with the first line that differs, unless data/insight/NAME holds exactly this
// text.
void ExpectGolden(const std::string& name, const std::string& actual);

// Native path of a golden file.
std::string GoldenPath(const std::string& name);

}  // namespace logbook::test
