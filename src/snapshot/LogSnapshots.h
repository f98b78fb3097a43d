// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The files of one log as far as the list has read them (snapshot/SnapshotCache.h, which makes
// these objects and tells when they hold). Large files are read by pieces and not kept.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Files.h"
#include "catalogue/OptionGating.h"
#include "snapshot/MacroFile.h"

namespace logbook {

class SnapshotCache;

// What is asked of each log.
struct SnapshotWants {
  struct Rows {
    std::string file;
    std::vector<int> rows;  // ascending, each once
  };
  struct Variables {
    std::string file;
    std::vector<std::string> variables;
  };
  bool options = false;
  std::vector<Rows> rows;            // by file
  std::vector<Variables> variables;  // by file

  void Add(std::string_view file, int row);
  void Add(std::string_view file, std::string_view variable);
};

class LogSnapshots {
 public:
  LogSnapshots(SnapshotCache& cache, std::string root, std::string name);

  // The options in the log's logfile.ini; all 0 if it cannot be read. Raises nothing.
  const LogOptions& Options();

  // Key "Date" of section "LogFile" of logfile.ini, as GetIniString with the default "". Raises
  // nothing.
  const std::string& Date();

  // The first line of comment.txt, at most 64 KB of it; empty if there is none. Raises what
  // InputFile raises, among that kInputPastEndOfFile for a file without a byte.
  std::string Comment();

  // Number `row` (from 0) of a positional snapshot file; 0 if the file is too short, or if reading
  // up to it or the number itself fails. Nothing if the file does not exist. Raises what opening
  // an InputFile raises.
  std::optional<double> Number(std::string_view file, int row);

  // The lines of a macro file that bear on a variable, as ReadMacroLines; nothing if the file
  // exists under none of its names. Raises what ReadMacroLines raises.
  std::optional<MacroLines> Macro(const std::string& file, const std::string& variable);

  // The pass that has used the log last.
  std::uint64_t LastPass() const { return last_pass_; }
  void SetLastPass(std::uint64_t pass) { last_pass_ = pass; }

 private:
  // A file as it was when it was looked at last.
  struct Kept {
    std::uint64_t pass = 0;  // in which it was looked at last
    bool exists = false;     // as far as that pass is concerned
    bool settled = false;    // what was read stands for the stamp in later passes, too
    FileStamp stamp;
  };
  struct Numbers : Kept {
    std::string file;
    std::vector<int> rows;
    std::vector<double> numbers;  // of these rows
  };
  struct Macros : Kept {
    std::string file;
    std::vector<std::string> variables;
    std::vector<std::optional<MacroLines>>
        lines;  // of these variables; nothing if too long to keep
  };

  // Brings a file up to date: reads it by `from_bytes` (the whole file, if it is small and at hand)
  // or by `from_path` (its path text; false if the disk refused to read on, which is not kept)
  // unless what is kept stands. False if there is no file.
  template <typename FromBytes, typename FromPath>
  bool Refresh(Kept& kept, std::string_view file, const FromBytes& from_bytes,
               const FromPath& from_path);
  bool Stands(Kept& kept, std::string_view file);

  std::string PathOf(std::string_view file) const;
  void ReadDescriptor();
  Numbers& NumbersOf(std::string_view file);
  Macros& MacrosOf(std::string_view file);
  bool RefreshNumbers(Numbers& entry);
  bool RefreshMacros(Macros& entry, const std::vector<std::string>& variables);

  SnapshotCache& cache_;
  std::string root_, name_;
  std::uint64_t last_pass_ = 0;

  Kept descriptor_;
  bool has_options_ = false;
  std::string date_;
  LogOptions options_;
  Kept comment_file_;
  std::string comment_;
  std::vector<Numbers> numbers_;
  std::vector<Macros> macros_;
};

}  // namespace logbook
