// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system's calls cannot be stood in for here, so none is recorded; the cases that count them
// are named in packaging/windows/skipped.

#include "support/DiskCalls.h"

namespace logbook::test {

DiskCalls::DiskCalls() = default;
DiskCalls::~DiskCalls() = default;

const std::vector<std::string>& DiskCalls::Calls() {
  static const std::vector<std::string> none;
  return none;
}

int DiskCalls::Count(const std::string&) {
  return 0;
}

void DiskCalls::FailReads(const std::string&, std::size_t) {}

}  // namespace logbook::test
