// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Settling.h"

namespace logbook::insight {

Settling::Settling(const FileStamp& folder, const DiskTraits& traits)
    : device_(folder.device), traits_(traits) {
  clocks_.Take(folder, DiskClocks::Moment::Now());
}

bool Settling::IsSettled(const FileStamp& stamp, const DiskClocks::Moment& moment) {
  if (stamp == FileStamp()) return true;
  if (!traits_.has_change_times) return false;
  const bool is_ours = traits_.has_our_clock && stamp.device == device_;
  // On a disk of this machine a file that is changed now gets the time that it is now.
  if (is_ours) clocks_.Take({.device = device_, .changed_ns = moment.system_ns}, moment);
  const bool settled = clocks_.IsSettled(stamp, moment);
  if (!is_ours) clocks_.Take(stamp, DiskClocks::Moment::Now());
  return settled;
}

}  // namespace logbook::insight
