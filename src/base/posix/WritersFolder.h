// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// An opened folder in which files are replaced, one or several in turn: what all of them need, the
// lock, the names that stand there, the removal of what killed writers have left, is had once.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/posix/Descriptor.h"

namespace logbook::posix {

// Writes the new contents; false with errno set if the system refused.
using ContentWriter = std::function<bool(const Descriptor&)>;

// Whether a replacement waits until the disk holds it.
enum class Durability { kOnDisk, kInMemory };

class WritersFolder {
 public:
  // Waits for the lock, at most two seconds, and goes without it after that. Raises 76, 70, 57.
  explicit WritersFolder(const std::string& native_folder);

  // The status of what bears a name, links followed or not; nothing if the name is free. Raises 70,
  // 57.
  enum class Links { kFollow, kLeave };
  std::optional<struct stat> Look(const std::string& name, Links links) const;

  // All names as they were when they were first needed, and those written since; none if the folder
  // cannot be listed. Raises nothing.
  const std::vector<std::string>& Names();

  // Replaces the file of this name, which is no link, or makes it; an existing one keeps its mode
  // and owner. Raises 75 for a folder or a read-only file, 70, 61, 57; the old file is then
  // unchanged.
  void Replace(const std::string& name, const ContentWriter& write, Durability durability);

  // The same with these bytes, not waiting for the disk, for a name with this status; nothing is
  // written if the file holds the bytes already.
  void ReplaceMadeFile(const std::string& name, const std::optional<struct stat>& old,
                       std::string_view bytes);

 private:
  void RequireReplaceable(const std::string& name, const struct stat& status) const;
  bool Holds(const std::string& name, const struct stat& status, std::string_view bytes) const;
  void Write(const std::string& name, const std::optional<struct stat>& old,
             const ContentWriter& write, Durability durability);
  std::string PathOf(const std::string& name) const { return path_ + "/" + name; }

  const std::string path_;
  Descriptor folder_;
  bool locked_ = false;
  bool is_tidy_ = false;  // what killed writers have left is removed
  std::optional<std::vector<std::string>> names_;
};

}  // namespace logbook::posix
