// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A disk that fails, or a process that dies, at one of its calls: rename, fsync, mkdir, rmdir and
// unlink of this test program are this module's and count while an object of it lives.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace logbook::test {

class FailingDisk {
 public:
  enum class Manner { kFail, kDie };
  // The call of this number, from 1, fails with an input or output error, or ends the process
  // before it is made. 0 is no call: they are recorded only.
  FailingDisk(Manner manner, int call);
  ~FailingDisk();
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;

  // True if the number was reached.
  static bool HasFailed();
  // The calls so far, such as "fsync /a/b" and "rename /a /b", with native paths.
  static std::vector<std::string> Calls();
};

// Runs the action in a process of its own that dies at the disk call of this number. True if it
// has, false if the action was at its end before.
bool DiesAtCall(int call, const std::function<void()>& action);

}  // namespace logbook::test
