// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A print system of the test's own: a scheduler on a socket in a temporary folder, with queues that
// keep what they print as files. The machine's own print system is not touched.
#pragma once

#include <sys/types.h>

#include <string>

namespace logbook::test {

class PrivateCups {
 public:
  // What this machine lacks to run one; empty if nothing.
  static std::string Missing();

  // Starts the scheduler and names it in the environment for this process and its children. Must
  // come before the first look at a printer. Throws std::runtime_error with the scheduler's log if
  // it does not come up.
  PrivateCups();
  ~PrivateCups();
  PrivateCups(const PrivateCups&) = delete;
  PrivateCups& operator=(const PrivateCups&) = delete;

  // Adds a queue.
  void AddQueue(const std::string& name);
  void SetDefault(const std::string& name);
  // Has a queue refuse new jobs.
  void RejectJobs(const std::string& name);
  // Ends the scheduler; its queues are no longer to be seen.
  void Stop();
  // Native path of the last document that a queue has printed.
  std::string PrintedBy(const std::string& name) const;
  // The scheduler's log.
  std::string Log() const;

 private:
  void WriteSettings() const;
  void WriteBackend() const;
  std::string InFolder(const std::string& name) const { return folder_ + "/" + name; }

  std::string folder_;
  pid_t scheduler_ = -1;
};

}  // namespace logbook::test
