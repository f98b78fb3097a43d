// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SystemParameters.h"

#include <cstddef>

#include "catalogue/ItemRecord.h"

namespace logbook {

std::vector<SystemParameter> ReadSystemParameters(SequentialReader& file) {
  std::vector<SystemParameter> fields;
  for (int row = 0; row < kSysRowCount && !file.AtEnd(); ++row) {
    if (row == kStampRow) {
      fields.emplace_back(file.ReadText());
    } else {
      fields.emplace_back(file.ReadNumber());
    }
  }
  return fields;
}

std::vector<double> ReadNumbers(SequentialReader& file, int count) {
  std::vector<double> numbers;
  while (static_cast<int>(numbers.size()) < count && !file.AtEnd()) {
    numbers.push_back(file.ReadNumber());
  }
  return numbers;
}

}  // namespace logbook
