// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Leaving the rights of root, and a disk that fills up, for the tests of files.
#pragma once

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <exception>
#include <stdexcept>

namespace logbook::test {

// Root may do everything, so what the system refuses is tried as an ordinary user while this
// object lives.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser() : was_root_(geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    if (was_root_ && seteuid(kNobody) != 0) throw std::runtime_error("cannot leave root");
  }
  ~AsOrdinaryUser() {
    if (was_root_ && seteuid(0) != 0) std::terminate();
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

 private:
  bool was_root_;
};

// Files may grow to so many bytes only while this object lives, as on a disk that fills up.
class SmallFilesOnly {
 public:
  explicit SmallFilesOnly(rlim_t bytes) : old_handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const rlimit limit{bytes, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SmallFilesOnly() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    signal(SIGXFSZ, old_handler_);
  }
  SmallFilesOnly(const SmallFilesOnly&) = delete;
  SmallFilesOnly& operator=(const SmallFilesOnly&) = delete;

 private:
  rlimit old_limit_ = {};
  void (*old_handler_)(int);
};

}  // namespace logbook::test
