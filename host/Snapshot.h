// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The snapshot: the files that the host leaves in a log folder, and how they get there. Their
// formats are described in docs/file-formats.md.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"
#include "host/RunningLogs.h"

namespace logbook::host {

struct SnapshotFile {
  std::string name;
  std::string text;  // UTF-8, CR LF
};

// All snapshot files of the moment, in the order in which the host writes them.
std::vector<SnapshotFile> MakeSnapshot(const LogMoment& moment);

// What a host in trouble does to a file: half of its lines, cut in the middle of a line, no bytes,
// bytes that are no text, no file at all.
enum class DamageKind { kShort, kTruncated, kEmpty, kBinary, kMissing };

struct Damage {
  DamageKind kind = DamageKind::kShort;
  std::string file;  // name without regard to case; empty for every file
};

// The damage that a word names: "short", "truncated", "empty", "binary" or "missing", for a single
// file followed by ":" and its name. Raises std::invalid_argument with a sentence for the user,
// also for a file that no snapshot has.
Damage ParseDamage(std::string_view text);

// True if the folder holds a file of a snapshot, or the options that are written with one.
bool HoldsSnapshot(const Machine& machine, std::string_view folder);

// Writes the files into a folder, in the machine's code page, each changed by the damages that
// concern it; a missing one is not written, and one that is there already stays. Raises
// std::runtime_error, with the files before the failing one written.
void WriteSnapshot(const Machine& machine, std::string_view folder,
                   const std::vector<SnapshotFile>& files, const std::vector<Damage>& damages);

}  // namespace logbook::host
