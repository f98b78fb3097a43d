// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SnapshotCache.h"

#include <algorithm>

namespace logbook {

SnapshotCache::Pass::Pass(SnapshotCache& cache, std::function<void()> between_files)
    : cache_(cache) {
  if (cache_.passes_++ > 0) return;
  ++cache_.pass_number_;
  cache_.between_files_ = std::move(between_files);
}

SnapshotCache::Pass::~Pass() {
  if (--cache_.passes_ == 0) cache_.EndPass();
}

void SnapshotCache::EndPass() {
  files_.reset();
  disks_.clear();
  between_files_ = nullptr;
  // Logs that are gone, or of another root.
  constexpr std::size_t kMostLogs = 512;
  if (logs_.size() > kMostLogs) {
    std::erase_if(logs_, [this](const auto& log) { return log.second.LastPass() != pass_number_; });
  }
}

LogSnapshots& SnapshotCache::Log(const std::string& root, const std::string& name) {
  LogSnapshots& log = logs_.try_emplace(root + name, *this, root, name).first->second;
  log.SetLastPass(pass_number_);
  return log;
}

bool SnapshotCache::ShowsChanges(const FileStamp& stamp, const std::function<std::string()>& path) {
  auto disk = std::find_if(disks_.begin(), disks_.end(),
                           [&](const auto& each) { return each.first == stamp.device; });
  if (disk == disks_.end())
    disk = disks_.insert(disk, {stamp.device, TraitsOfDisk(NativePath(machine_, path()))});
  return disk->second.has_change_times;
}

FilesBelow& SnapshotCache::FilesOf(const std::string& root) {
  if (!files_ || files_root_ != root) {
    files_.emplace(machine_, root);
    files_root_ = root;
    const FileStamp stamp = files_->Stamp();
    clocks_.SeeChange(root_stamp_, stamp);
    clocks_.Take(stamp, DiskClocks::Moment::Now());
    root_stamp_ = stamp;
  }
  return *files_;
}

}  // namespace logbook
