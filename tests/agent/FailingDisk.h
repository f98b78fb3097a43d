// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A disk that fails, or a process that dies, at one of its calls: rename, fsync, mkdir, rmdir and
// unlink of this test program are this module's and count while an object of it lives.
#pragma once

#include <functional>

namespace logbook::test {

class FailingDisk {
 public:
  enum class Manner { kFail, kDie };
  // The call of this number, from 1, fails with an input or output error, or ends the process
  // before it is made.
  FailingDisk(Manner manner, int call);
  ~FailingDisk();
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;

  // True if the number was reached.
  static bool HasFailed();
};

// Runs the action in a process of its own that dies at the disk call of this number. True if it
// has, false if the action was at its end before.
bool DiesAtCall(int call, const std::function<void()>& action);

}  // namespace logbook::test
