// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The files of one log folder as bytes (docs/store.md): what a reading of the log is made from.
// Loading them is apart from reading them, so that a reading needs no disk.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"

namespace logbook::insight {

struct LogFile {
  // kRefused: it is there, and the system would not open it, or it is a folder. kNothing: a name
  // that leads to no file (a broken link, a pipe); it stands in the way of the same name in
  // another case, and counts as missing.
  enum class Kind { kFile, kRefused, kNothing };
  std::string Name;  // as the disk spells it
  Kind What = Kind::kFile;
  std::string Bytes;       // at most kMostFileBytes of it
  std::uint64_t Size = 0;  // of the whole file
};

// Of a longer file only the beginning is read. No file of the host comes near.
inline constexpr std::size_t kMostFileBytes = 16 * 1024 * 1024;

struct LogFiles {
  std::string Root;            // native path of the log root, without trailing slash
  std::string Folder;          // name of the log folder
  std::vector<LogFile> Files;  // ascending by the bytes of their names

  // The file that a path text with this name leads to: the exact name, else the first without
  // regard to case. Null if there is none.
  const LogFile* Find(std::string_view name) const;
};

// True if any of the files is one that a log consists of, whatever becomes of reading it.
bool HoldsLog(const LogFiles& files);

// True for the files that the viewer writes anew when a report is shown: *.rpt of its reports and
// tune.bin. They say nothing of the log.
bool IsWrittenByViewer(std::string_view name);

// What identifies the contents of a log: 64 bits over names, sizes and bytes of its files, without
// those that the viewer writes. The same on every machine. Raises nothing.
std::uint64_t FingerprintOf(const LogFiles& files);

// The names of the logs of a root (a path text or a native path made one by PathText): every
// sub-folder is one, whatever its name. In ascending order without regard to case, which for names
// given by the logbook is that of the days. There is no limit of their number. Raises
// kPathNotFound if the root cannot be found.
std::vector<std::string> ScanLogRoot(const Machine& machine, std::string_view root);

// Sorts names in that order.
void SortLogNames(std::vector<std::string>& names);

// The files of a log. A folder that is gone or cannot be read has none. The bytes of what the
// viewer writes are left out. Raises nothing.
LogFiles LoadLogFiles(const Machine& machine, std::string_view root, std::string_view folder);

}  // namespace logbook::insight
