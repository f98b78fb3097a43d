// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system's calls cannot be stood in for here: a case that counts them, or lets one fail, is
// skipped.

#include "support/DiskCalls.h"

#include "support/win32/SkipCase.h"

namespace logbook::test {

DiskCalls::DiskCalls() {
  SkipCase("the system's calls cannot be counted, and none can be made to fail");
}

DiskCalls::~DiskCalls() = default;

const std::vector<std::string>& DiskCalls::Calls() {
  static const std::vector<std::string> none;
  return none;
}

int DiskCalls::Count(const std::string&) {
  return 0;
}

void DiskCalls::FailReads(const std::string&, std::size_t) {}

void DiskCalls::Refuse(const std::string&, int) {}

void DiskCalls::BeforeTheNext(const std::string&, std::function<void()>) {}

void DiskCalls::WaitForEveryLock() {}

}  // namespace logbook::test
