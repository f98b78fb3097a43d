// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What a program asks of its disk, and a disk that refuses: fsync, renameat, unlinkat, openat,
// flock, fchmod, read, pread, opendir, fdopendir and readdir of a test program whose sources hold
// DiskCalls.cpp are this module's.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace logbook::test {

// Records the calls of the program while it lives.
class DiskCalls {
 public:
  DiskCalls();
  ~DiskCalls();
  DiskCalls(const DiskCalls&) = delete;
  DiskCalls& operator=(const DiskCalls&) = delete;

  // The calls so far: "fsync PATH", "read PATH", "rename NAME" (the new one), "delete NAME",
  // "list PATH" for the names in a folder, "wait PATH" for a lock that may be waited for, "try
  // PATH" for one that is taken only if it is free.
  static const std::vector<std::string>& Calls();
  // How many of them begin like this.
  static int Count(const std::string& beginning);

  // From here on, reading this file from this byte on is an input or output error, until the object
  // goes.
  static void FailReads(const std::string& native_path, std::size_t from);

  // From here on every call of this kind fails with this error, until the object goes: "list",
  // "next" for the next name of a list, "wait", "try", "pread", "rename", "fchmod".
  static void Refuse(const std::string& kind, int error);

  // Does this once, right before the next call of a kind as above, or "openat": what somebody else
  // may do between two calls.
  static void BeforeTheNext(const std::string& kind, std::function<void()> action);

  // From here on a wait for a lock lasts until the lock is free, whatever interrupts it, until the
  // object goes.
  static void WaitForEveryLock();

  // From here on the clock that only ever runs stands still, but that the next wait for a lock is
  // interrupted when so much time has passed by it. The wait after that one gets the lock.
  static void InterruptTheNextWaitAfter(std::chrono::nanoseconds time);
};

}  // namespace logbook::test
