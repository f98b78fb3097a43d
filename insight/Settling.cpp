// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Settling.h"

#include <algorithm>

namespace logbook::insight {

Settling::Settling(const FileStamp& root, const DiskTraits& traits)
    : disks_({{root.device, traits}}) {
  clocks_.Take(root, DiskClocks::Moment::Now());
}

void Settling::Enter(const FileStamp& folder, const std::function<DiskTraits()>& find) {
  const auto is_same = [&](const auto& disk) { return disk.first == folder.device; };
  if (std::none_of(disks_.begin(), disks_.end(), is_same))
    disks_.emplace_back(folder.device, find());
}

bool Settling::IsSettled(const FileStamp& stamp, const DiskClocks::Moment& moment) {
  if (stamp == FileStamp()) return true;
  const auto disk = std::find_if(disks_.begin(), disks_.end(),
                                 [&](const auto& each) { return each.first == stamp.device; });
  if (disk == disks_.end() || !disk->second.has_change_times) return false;
  // On a disk of this machine a file that is changed now gets the time that it is now.
  const bool is_ours = disk->second.has_our_clock;
  if (is_ours) clocks_.Take({.device = stamp.device, .changed_ns = moment.system_ns}, moment);
  const bool settled = clocks_.IsSettled(stamp, moment);
  if (!is_ours) clocks_.Take(stamp, DiskClocks::Moment::Now());
  return settled;
}

}  // namespace logbook::insight
