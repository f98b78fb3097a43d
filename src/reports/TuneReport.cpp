// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/TuneReport.h"

#include <cstdint>
#include <map>
#include <optional>

#include "catalogue/OptionGating.h"
#include "snapshot/MacroFile.h"
#include "text/NumberFormat.h"

namespace logbook {
namespace {

// The macro files of one log, each looked up and read when it is first asked for.
class MacroFiles {
 public:
  MacroFiles(const Machine& machine, std::string_view folder)
      : machine_(machine), folder_(folder) {}

  // The lines that bear on a variable; nothing if the file does not exist.
  std::optional<MacroLines> Find(const std::string& file, const std::string& var) {
    auto entry = files_.find(file);
    if (entry == files_.end()) entry = files_.emplace(file, Read(file)).first;
    if (!entry->second) return std::nullopt;
    return FindMacroLines(*entry->second, var);
  }

 private:
  std::optional<std::vector<std::string>> Read(const std::string& file) const {
    const std::optional<std::string> path = FindMacroFile(machine_, folder_, file);
    if (!path) return std::nullopt;
    return ReadAssignments(machine_, *path);
  }

  const Machine& machine_;
  std::string_view folder_;
  std::map<std::string, std::optional<std::vector<std::string>>> files_;
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
  MacroFiles files(machine, log_folder);
  std::vector<TuneCell> cells;
  for (int row = 0; row < kTuneRowCount; ++row) {
    const TuneItemRecord& item = RowAt(catalogues.TuneItems, row);
    const std::optional<MacroLines> lines = files.Find(item.File, item.Var);
    if (lines) cells.push_back({item.Name, CellOf(row, item, *lines, options)});
  }
  return cells;
}

}  // namespace logbook
