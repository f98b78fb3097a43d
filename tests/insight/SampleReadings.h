// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Readings of logs made by hand, and those of a root of random logs.
#pragma once

#include <string>
#include <vector>

#include "RandomLogs.h"
#include "insight/LogReading.h"

namespace logbook::test {

// The catalogues, filled once.
const Catalogues& AllCatalogues();

// A confirmed log with a date, a comment and no ticks, all of whose rows are zero or empty texts.
insight::LogReading QuietReading(const std::string& folder, const std::string& date);

// Sets a number (or the text of a text row), or a state without one.
void SetNumber(insight::LogReading& reading, const insight::RowId& id, double number);
void SetState(insight::LogReading& reading, const insight::RowId& id, insight::ValueState state);

// The readings of these logs of a root.
std::vector<insight::LogReading> ReadAll(const RandomLogs& logs,
                                         const std::vector<std::string>& folders);

// Random logs, the second half of them damaged.
std::vector<insight::LogReading> RandomReadings(RandomLogs& logs, int count);

}  // namespace logbook::test
