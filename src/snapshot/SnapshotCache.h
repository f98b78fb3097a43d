// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the list has read from the files of the logs, kept between cells and rebuilds. At each use
// the file's identity, size and time stamps are held against those of the time of reading, and a
// difference reads the file again; a file that changed so shortly before it was read, by the clock
// of its disk, that its stamps could hide a further change is not kept, and nothing is kept of a
// disk on which a change may not show at all. So a caller sees what reading the file at each call
// would show; within a pass, what reading it at the first call would show.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/DiskTraits.h"
#include "base/FilesBelow.h"
#include "base/Machine.h"
#include "snapshot/DiskClocks.h"
#include "snapshot/LogSnapshots.h"

namespace logbook {

class SnapshotCache {
 public:
  // While one lives, a file is looked at once, at its first use. For a rebuild of the list, which
  // comes back to the same files for each of its columns. Passes may nest.
  class Pass {
   public:
    // The outermost pass runs `between_files`, if there is one, before the first use of each file.
    explicit Pass(SnapshotCache& cache, std::function<void()> between_files = {});
    ~Pass();
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

   private:
    SnapshotCache& cache_;
  };

  explicit SnapshotCache(const Machine& machine) : machine_(machine) {}

  // The number of the pass that lives, never given again; 0 if none does.
  std::uint64_t CurrentPass() const { return passes_ > 0 ? pass_number_ : 0; }

  // What will be asked of the logs, so that one reading of a file serves all of it. What is asked
  // beyond that is added.
  void Expect(SnapshotWants wants) { wants_ = std::move(wants); }

  // The log in folder `name` of `root`, a path text with a trailing backslash. The object lives to
  // the end of the pass at least. To be used within a pass.
  LogSnapshots& Log(const std::string& root, const std::string& name);

 private:
  friend class LogSnapshots;

  // The way to the files of the logs in this root, walked once in a pass.
  FilesBelow& FilesOf(const std::string& root);
  void EndPass();
  // True if a file with this stamp and this path text lies on a disk on which each change shows.
  bool ShowsChanges(const FileStamp& stamp, const std::function<std::string()>& path);

  const Machine& machine_;
  int passes_ = 0;
  std::uint64_t pass_number_ = 0;
  std::function<void()> between_files_;
  SnapshotWants wants_;
  std::string files_root_;
  std::optional<FilesBelow> files_;
  std::vector<std::pair<std::uint64_t, DiskTraits>> disks_;  // by device, those of this pass
  FileStamp root_stamp_;                                     // when its files were used last
  DiskClocks clocks_;
  std::unordered_map<std::string, LogSnapshots> logs_;
};

}  // namespace logbook
