// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/TuneReport.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "catalogue/OptionGating.h"
#include "snapshot/MacroIndex.h"
#include "text/NumberFormat.h"

namespace logbook {
namespace {

// The macro files of one log, each looked up and read when a row first asks for it, and then for
// all rows that are going to.
class MacroFiles {
 public:
  MacroFiles(ReportSource& log, const Catalogues& catalogues)
      : log_(log), catalogues_(catalogues), lines_(kTuneRowCount) {}

  // The lines that bear on a tune row; nothing if its file does not exist.
  const MacroLines* Find(int row) {
    const std::string& file = RowAt(catalogues_.TuneItems, row).File;
    auto known = exists_.find(file);
    if (known == exists_.end()) known = exists_.emplace(file, Read(file)).first;
    return known->second ? &lines_.at(static_cast<std::size_t>(row)) : nullptr;
  }

 private:
  // Reads a file for its rows; false if it does not exist.
  bool Read(const std::string& file) {
    std::vector<std::size_t> rows;
    std::vector<std::string> vars;
    for (int row = 0; row < kTuneRowCount; ++row) {
      const TuneItemRecord& item = RowAt(catalogues_.TuneItems, row);
      if (item.File != file) continue;
      rows.push_back(static_cast<std::size_t>(row));
      vars.push_back(item.Var);
    }
    std::optional<std::vector<MacroLines>> found = LinesOf(file, vars);
    if (!found) return false;
    for (std::size_t i = 0; i < rows.size(); ++i) lines_[rows[i]] = std::move((*found)[i]);
    return true;
  }

  // The lines for these variables; nothing if the file exists under none of its names.
  std::optional<std::vector<MacroLines>> LinesOf(const std::string& file,
                                                 const std::vector<std::string>& vars) {
    FileStamp stamp;
    std::string_view bytes;
    for (const std::string& name : MacroFileNames(file)) {
      const FilesBelow::Found found = log_.Below().Read(".", name, stamp, bytes);
      if (found == FilesBelow::Found::kFile)
        return MacroIndex(*log_.TheMachine().code_page, bytes).Find(vars);
      if (found == FilesBelow::Found::kMissing) continue;
      const auto path = FindMacroFile(log_.TheMachine(), log_.Folder(), file);
      if (!path) return std::nullopt;
      return ReadMacroLines(log_.TheMachine(), *path, vars);
    }
    return std::nullopt;
  }

  ReportSource& log_;
  const Catalogues& catalogues_;
  std::map<std::string, bool> exists_;
  std::vector<MacroLines> lines_;  // by row
};

// The flag of a line. Most rows of a file have the same one.
class FlagReader {
 public:
  std::int16_t Of(const std::string& line) {
    if (line != line_) flag_ = MacroFlag(line);
    line_ = line;
    return flag_;
  }

 private:
  std::string line_;
  std::int16_t flag_ = 0;
};

// The cells of one log.
class Cells {
 public:
  explicit Cells(const LogOptions& options) : options_(options) {}

  // The first rule that applies gives the cell.
  std::string Of(int row, const TuneItemRecord& item, const MacroLines& lines) {
    const MacroFlags flags = {col_opgs_.Of(lines.ColOpgs), clmd_.Of(lines.Clmd)};
    if (lines.Value.empty()) return {};
    if (IsDisabledTuneRow(row, item.Group, options_, flags)) return "N/A";
    if (item.Format.empty()) return MacroText(lines.Value);
    const double number = MacroNumber(lines.Value);
    if (number < 0 && NegativeMeansUnused(item.Group)) return "N/A";
    return FormatNumber(number, item.Format);
  }

 private:
  const LogOptions options_;
  FlagReader col_opgs_, clmd_;
};

}  // namespace

std::vector<TuneCell> TuneCells(ReportSource& log, const Catalogues& catalogues) {
  Cells values(log.Options());
  MacroFiles files(log, catalogues);
  std::vector<TuneCell> cells;
  cells.reserve(kTuneRowCount);
  for (int row = 0; row < kTuneRowCount; ++row) {
    const TuneItemRecord& item = RowAt(catalogues.TuneItems, row);
    const MacroLines* const lines = files.Find(row);
    if (lines != nullptr) cells.push_back({item.Name, values.Of(row, item, *lines)});
  }
  return cells;
}

std::vector<TuneCell> TuneCells(const Machine& machine, const Catalogues& catalogues,
                                std::string_view log_folder) {
  ReportSource log(machine, log_folder);
  return TuneCells(log, catalogues);
}

}  // namespace logbook
