// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A disk on which nothing gets another name while an object of this class lives: rename of this
// test program is this module's.
#pragma once

namespace logbook::test {

class FailingRename {
 public:
  FailingRename();
  ~FailingRename();
  FailingRename(const FailingRename&) = delete;
  FailingRename& operator=(const FailingRename&) = delete;
};

}  // namespace logbook::test
