// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A log root as the disk has it now: its log folders, a stamp of each that tells whether any of its
// files changed, and their bytes. Opens files for reading and nothing else. Names that a walk gave
// are used exactly, relative to the root that it opened.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "insight/LogFiles.h"

namespace logbook::insight {

// Names, sizes, times and identities of a folder and all its files but those that the viewer
// writes. Equal stamps of a settled folder mean unchanged files.
struct LogStamp {
  std::uint64_t Digest = 0;  // never 0
  // False if a file changed so short a time ago that a further change could leave the stamp as it
  // is.
  bool Settled = false;
};

class LogRootWalk {
 public:
  // Opens the root, a native path. Raises kPathNotFound if it cannot be opened as a folder.
  explicit LogRootWalk(const std::string& native_root);
  ~LogRootWalk();
  LogRootWalk(const LogRootWalk&) = delete;
  LogRootWalk& operator=(const LogRootWalk&) = delete;

  const std::string& Root() const;
  // A number that tells this root from another that comes to stand at its path.
  std::uint64_t Identity() const;

  // The names of all log folders, in no order. Raises kDeviceInputOutput if the root cannot be read
  // to its end.
  std::vector<std::string> Names() const;

  // True if the clock of the root's disk is known by the stamps alone that are taken here: whether
  // one has settled shows only when later ones have been taken.
  bool HasForeignClock() const;

  // The stamp of a log folder; nothing if it is gone. Raises nothing.
  std::optional<LogStamp> Stamp(const std::string& name) const;

  // Its files; none if it is gone. The bytes of what the viewer writes are left out. Raises
  // nothing.
  LogFiles Load(const std::string& name) const;

  // Both in one go, each file's stamp taken before its bytes; nothing if the folder is gone.
  struct StampedFiles {
    LogStamp Stamp;
    LogFiles Files;
  };
  std::optional<StampedFiles> LoadStamped(const std::string& name) const;

 private:
  std::optional<LogStamp> StampOfClosed(const std::string& name) const;

  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook::insight
