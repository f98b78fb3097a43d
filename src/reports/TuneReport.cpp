// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/TuneReport.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "catalogue/OptionGating.h"
#include "snapshot/MacroSearch.h"
#include "text/NumberFormat.h"

namespace logbook {
namespace {

// The macro files of one log, each looked up and read when a row first asks for it, and then for
// all rows that are going to.
class MacroFiles {
 public:
  MacroFiles(const Machine& machine, const Catalogues& catalogues, std::string_view folder)
      : machine_(machine), catalogues_(catalogues), folder_(folder) {}

  // The lines that bear on a tune row; nothing if its file does not exist.
  const MacroLines* Find(int row) {
    const TuneItemRecord& item = RowAt(catalogues_.TuneItems, row);
    const auto known = files_.find(item.File);
    const File& file = known != files_.end()
                           ? known->second
                           : files_.emplace(item.File, Read(item.File)).first->second;
    return file ? &file->at(row) : nullptr;
  }

 private:
  using File = std::optional<std::map<int, MacroLines>>;  // by row; nothing if it does not exist

  File Read(const std::string& file) const {
    const std::optional<std::string> path = FindMacroFile(machine_, folder_, file);
    if (!path) return std::nullopt;
    std::vector<int> rows;
    std::vector<std::string> vars;
    for (int row = 0; row < kTuneRowCount; ++row) {
      const TuneItemRecord& item = RowAt(catalogues_.TuneItems, row);
      if (item.File != file) continue;
      rows.push_back(row);
      vars.push_back(item.Var);
    }
    std::vector<MacroLines> found = ReadMacroLines(machine_, *path, vars);
    std::map<int, MacroLines> lines;
    for (std::size_t i = 0; i < rows.size(); ++i) lines.emplace(rows[i], std::move(found[i]));
    return lines;
  }

  const Machine& machine_;
  const Catalogues& catalogues_;
  std::string_view folder_;
  std::map<std::string, File> files_;
};

// The first rule that applies gives the cell.
std::string CellOf(int row, const TuneItemRecord& item, const MacroLines& lines,
                   const LogOptions& options) {
  const MacroFlags flags = {MacroFlag(lines.ColOpgs), MacroFlag(lines.Clmd)};
  if (lines.Value.empty()) return {};
  const std::string not_applicable = "N/A";
  if (IsDisabledTuneRow(row, item.Group, options, flags)) return not_applicable;
  if (item.Format.empty()) return MacroText(lines.Value);
  const double number = MacroNumber(lines.Value);
  if (number < 0 && NegativeMeansUnused(item.Group)) return not_applicable;
  return FormatNumber(number, item.Format);
}

}  // namespace

std::vector<TuneCell> TuneCells(const Machine& machine, const Catalogues& catalogues,
                                std::string_view log_folder) {
  const LogOptions options = ReadLogOptions(machine, std::string(log_folder) + "logfile.ini");
  MacroFiles files(machine, catalogues, log_folder);
  std::vector<TuneCell> cells;
  for (int row = 0; row < kTuneRowCount; ++row) {
    const TuneItemRecord& item = RowAt(catalogues.TuneItems, row);
    const MacroLines* const lines = files.Find(row);
    if (lines != nullptr) cells.push_back({item.Name, CellOf(row, item, *lines, options)});
  }
  return cells;
}

}  // namespace logbook
