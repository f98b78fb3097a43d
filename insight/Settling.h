// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Whether what was read of a file stands for its stamp: one decision for all systems, by the disk's
// clock where that is another machine's (snapshot/DiskClocks.h).
#pragma once

#include "base/DiskTraits.h"
#include "base/Files.h"
#include "snapshot/DiskClocks.h"

namespace logbook::insight {

class Settling {
 public:
  // For the files on the disk of this folder, which has these traits. What lies elsewhere, behind a
  // link, is taken to have a clock of its own.
  Settling(const FileStamp& folder, const DiskTraits& traits);

  // True if the folder's disk is judged by what its stamps have shown.
  bool HasForeignClock() const { return !traits_.has_our_clock; }

  // True if no change after that moment can leave the stamp as it is. Each stamp that is asked
  // about tells of its disk's clock, too. The default stamp, of no file, is settled.
  bool IsSettled(const FileStamp& stamp, const DiskClocks::Moment& moment);

 private:
  std::uint64_t device_;
  DiskTraits traits_;
  DiskClocks clocks_;
};

}  // namespace logbook::insight
