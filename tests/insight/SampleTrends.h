// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Series made by hand for the tests of trends.
#pragma once

#include <string_view>
#include <vector>

#include "insight/Trend.h"

namespace logbook::test {

// The local moment "YYYY-MM-DD", noon.
insight::LocalTime Noon(std::string_view day);

// A value a day from 2026-01-01 noon on; a NaN stands for a gap.
insight::Series DailySeries(const std::vector<double>& values);

// A mark at noon of a day.
insight::MaintenanceMark MarkAt(std::string_view day, std::vector<std::string> labels);

// Forty logs over a year: an oxide ratio that rises until the cones are cleaned, two gaps, and one
// value beyond the control limits, with limits of its own; and a gas flow that never changes.
std::vector<insight::Trend> OxideAndGas();

}  // namespace logbook::test
