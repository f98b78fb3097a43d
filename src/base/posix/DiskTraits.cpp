// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/DiskTraits.h"

#include <sys/vfs.h>

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace logbook {
namespace {

// The numbers of file systems, as the system's manual has them. What is made of programs (FUSE) may
// be anything: some of these know no time of changes.
constexpr std::uint32_t kOnThisMachine[] = {
    0xEF53,      // ext2, ext3, ext4
    0x58465342,  // XFS
    0x9123683E,  // Btrfs
    0x01021994,  // tmpfs
    0x794C7630,  // overlayfs
    0xF2F52010,  // F2FS
    0x2FC12FC1,  // ZFS
    0xCA451A4E,  // bcachefs
    0x3153464A,  // JFS
    0x7366746E,  // NTFS
};
constexpr std::uint32_t kOnServers[] = {
    0x6969,      // NFS
    0xFF534D42,  // CIFS
    0xFE534D42,  // SMB 2
    0x00C36400,  // Ceph
    0x6B414653,  // AFS
    0x01021997,  // 9P
};

template <typename Numbers>
bool IsOneOf(const Numbers& numbers, std::uint32_t number) {
  return std::find(std::begin(numbers), std::end(numbers), number) != std::end(numbers);
}

}  // namespace

DiskTraits TraitsOfDisk(const std::string& native_path) {
  struct statfs status = {};
  if (statfs(native_path.c_str(), &status) != 0) return {};
  const auto number = static_cast<std::uint32_t>(status.f_type);
  const bool is_ours = IsOneOf(kOnThisMachine, number);
  return {.has_our_clock = is_ours, .has_change_times = is_ours || IsOneOf(kOnServers, number)};
}

}  // namespace logbook
