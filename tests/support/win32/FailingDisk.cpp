// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/FailingDisk.h"

#include "support/win32/SkipCase.h"

namespace logbook::test {

FailingDisk::FailingDisk(Manner, int) {
  SkipCase("the system's calls cannot be made to fail");
}

FailingDisk::~FailingDisk() = default;

bool FailingDisk::HasFailed() {
  return false;
}

std::vector<std::string> FailingDisk::Calls() {
  return {};
}

bool DiesAtCall(int, const std::function<void()>&) {
  SkipCase("a process cannot be forked");
}

}  // namespace logbook::test
