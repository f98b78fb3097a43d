// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Locks between processes: one at a time holds a file locked. A process that ends, however it
// does, lets its locks go.
#pragma once

#include <memory>
#include <string>

namespace logbook {

// An exclusive lock on a file, made if it is missing; released with the object.
class FileLock {
 public:
  enum class Patience { kWait, kTry };
  // `path` is a native one. Raises RunTimeError if the file cannot be made or its disk knows no
  // locks.
  FileLock(const std::string& path, Patience patience);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  // False if somebody else holds it, which only kTry meets.
  bool IsHeld() const { return state_ != nullptr; }

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
