// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the list columns have read from the files of the logs, kept between cells and rebuilds. At
// each use the file's identity, size and time stamps are held against those of the time of
// reading, and a difference reads the file again; a file that changed so shortly before it was
// read that its stamps could hide a further change is not kept. So a caller sees what reading the
// file at each call would show; within a pass, what reading it at the first call would show.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/Files.h"
#include "base/Machine.h"
#include "catalogue/OptionGating.h"
#include "snapshot/MacroFile.h"

namespace logbook {

class SnapshotCache {
 public:
  // While one lives, the stamps of a file are looked up once, at its first use. For a rebuild of
  // the list, which comes back to the same files for each of its columns. Passes may nest.
  class Pass {
   public:
    // The outermost pass runs `between_files`, if there is one, before the first use of each file.
    explicit Pass(SnapshotCache& cache, std::function<void()> between_files = {}) : cache_(cache) {
      if (cache_.passes_++ == 0) cache_.between_files_ = std::move(between_files);
    }
    ~Pass() {
      if (--cache_.passes_ != 0) return;
      cache_.stamps_.clear();
      cache_.between_files_ = nullptr;
    }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

   private:
    SnapshotCache& cache_;
  };

  explicit SnapshotCache(const Machine& machine) : machine_(machine) {}

  // The options of a log by the path of its logfile.ini, as ReadLogOptions. Raises nothing.
  LogOptions Options(const std::string& logfile_ini);

  // Key "Date" of section "LogFile" of a logfile.ini, as GetIniString with the default "". Raises
  // nothing.
  std::string Date(const std::string& logfile_ini);

  // Number `row` (from 0) of a positional snapshot file; 0 if the file is too short, or if reading
  // up to it or the number itself fails. Nothing if the file does not exist. Raises what opening
  // an InputFile raises. Rows from 0 to 250.
  std::optional<double> Number(const std::string& path, int row);

  // The path of a macro file in a log folder, as FindMacroFile, in the disk's spelling. Raises
  // nothing.
  std::optional<std::string> FindMacro(const std::string& folder, const std::string& file);

  // The lines of a macro file that bear on a variable, as ReadMacroLines. Raises what that raises.
  MacroLines Macro(const std::string& path, const std::string& var);

 private:
  struct Descriptor {
    std::string date;
    LogOptions options;
  };
  struct DescriptorEntry {
    FileStamp stamp;
    Descriptor descriptor;
  };
  // A folder's stamp changes with every name in it.
  struct FolderEntry {
    FileStamp stamp;
    std::map<std::string, std::string> paths;
  };
  struct NumbersEntry {
    FileStamp stamp;
    std::vector<double> numbers;
  };
  struct MacroEntry {
    FileStamp stamp;
    // The assignment lines, if the file is small.
    std::optional<std::vector<std::string>> lines;
    std::map<std::string, MacroLines, std::less<>> found;
  };

  // The stamps at this moment, or at that of the first use in a pass.
  FileStamp Stamp(const std::string& path);
  Descriptor ReadDescriptor(const std::string& logfile_ini) const;
  // The descriptor that is known or has been read into `fresh`.
  const Descriptor& DescriptorOf(const std::string& logfile_ini, Descriptor& fresh);
  std::optional<std::string> SpelledMacro(const std::string& folder, const std::string& file);
  MacroLines FindIn(MacroEntry& entry, const std::string& path, const std::string& var);

  const Machine& machine_;
  int passes_ = 0;
  std::function<void()> between_files_;
  std::unordered_map<std::string, FileStamp> stamps_;
  std::unordered_map<std::string, DescriptorEntry> descriptors_;
  std::unordered_map<std::string, FolderEntry> folders_;
  std::unordered_map<std::string, NumbersEntry> numbers_;
  std::unordered_map<std::string, MacroEntry> macros_;
};

}  // namespace logbook
