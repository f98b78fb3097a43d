// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Whether what was read of a file stands for its stamp: one decision for all systems, by the disk's
// clock where that is another machine's (snapshot/DiskClocks.h).
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "base/DiskTraits.h"
#include "base/Files.h"
#include "snapshot/DiskClocks.h"

namespace logbook::insight {

class Settling {
 public:
  // For the files of a root, which lies on a disk with these traits.
  Settling(const FileStamp& root, const DiskTraits& traits);

  // A folder whose files will be asked about. One that lies on a disk not met before, behind a
  // link, has the traits that `find` gives for it.
  void Enter(const FileStamp& folder, const std::function<DiskTraits()>& find);

  // True if the root's disk is judged by what its stamps have shown.
  bool HasForeignClock() const { return !disks_.front().second.has_our_clock; }

  // True if no change after that moment can leave the stamp as it is. Each stamp that is asked
  // about tells of its disk's clock, too. The default stamp, of no file, is settled; a file on a
  // disk of which no folder was entered never is.
  bool IsSettled(const FileStamp& stamp, const DiskClocks::Moment& moment);

 private:
  std::vector<std::pair<std::uint64_t, DiskTraits>> disks_;  // by device, the root's first
  DiskClocks clocks_;
};

}  // namespace logbook::insight
