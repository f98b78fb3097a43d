// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/DiskClocks.h"

#include <algorithm>
#include <chrono>

namespace logbook {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

template <typename Clock>
std::int64_t Nanoseconds() {
  const auto now = Clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

// The time of the last change by the disk's own clock. That of the modification can be set by
// anyone; it stands in where a file system knows no other.
std::int64_t ChangeOf(const FileStamp& stamp) {
  return stamp.changed_ns != 0 ? stamp.changed_ns : stamp.modified_ns;
}

std::int64_t GrainOf(const FileStamp& stamp) {
  const bool whole_seconds = stamp.modified_ns % kSecond == 0;
  return whole_seconds ? 2 * kSecond + kSecond / 2 : kSecond / 10;
}

auto FindDevice(auto& ahead, std::uint64_t device) {
  return std::find_if(ahead.begin(), ahead.end(),
                      [device](const auto& known) { return known.first == device; });
}

}  // namespace

DiskClocks::Moment DiskClocks::Moment::Now() {
  return {Nanoseconds<std::chrono::system_clock>(), Nanoseconds<std::chrono::steady_clock>()};
}

void DiskClocks::Take(const FileStamp& stamp, const Moment& moment) {
  if (stamp == FileStamp() || ChangeOf(stamp) > moment.system_ns) return;
  const std::int64_t ahead = ChangeOf(stamp) - moment.steady_ns;
  const auto known = FindDevice(ahead_, stamp.device);
  if (known == ahead_.end()) {
    ahead_.emplace_back(stamp.device, ahead);
  } else {
    known->second = std::max(known->second, ahead);
  }
}

void DiskClocks::SeeChange(const FileStamp& before, const FileStamp& after) {
  const bool is_same_file = before.device == after.device && before.inode == after.inode;
  if (!is_same_file || ChangeOf(after) >= ChangeOf(before)) return;
  std::erase_if(ahead_, [&](const auto& known) { return known.first == after.device; });
}

bool DiskClocks::IsSettled(const FileStamp& stamp, const Moment& moment) const {
  const auto known = FindDevice(ahead_, stamp.device);
  if (known == ahead_.end()) return false;
  const std::int64_t disk_ns = moment.steady_ns + known->second;
  return std::max(stamp.modified_ns, stamp.changed_ns) + GrainOf(stamp) <
         std::min(disk_ns, moment.system_ns);
}

}  // namespace logbook
