// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <memory>
#include <ostream>

#include "LogRoots.h"
#include "RowWords.h"
#include "Verbs.h"
#include "insight/ShowOutput.h"

namespace logbook::cli {
namespace {

struct ShowOptions {
  LogRootOptions roots;
  std::string log;
  std::string rows;  // CATALOGUE, CATALOGUE:ROW or a label; empty for all
  bool json = false;
};

std::vector<insight::RowId> RowsOf(const Catalogues& catalogues, const std::string& typed) {
  if (typed.empty()) return insight::RowsBySection(catalogues, std::nullopt);
  const auto catalogue = insight::FindCatalogue(typed);
  if (catalogue) return insight::RowsBySection(catalogues, catalogue);
  std::vector<insight::RowId> rows;
  for (const insight::RowGroup& group : FindRowGroups(catalogues, typed)) {
    rows.insert(rows.end(), group.begin(), group.end());
  }
  return rows;
}

int PrintLog(Call& call, const ShowOptions& options) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  const std::vector<insight::RowId> rows = RowsOf(catalogues, options.rows);
  const LogPlace place = FindLog(call, options.roots, options.log);
  const insight::LogReading reading = ReadNamedLog(call, catalogues, place);
  call.out << (options.json ? ShowJson(catalogues, reading, rows)
                            : ShowText(catalogues, reading, rows));
  return kSuccess;
}

}  // namespace

void AddShow(Frame& frame) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App& verb = frame.AddVerb("show", "Show one log, by catalogue and section",
                                 [options](Call& call) { return PrintLog(call, *options); });
  verb.add_option("LOG", options->log, "Name of its folder, or a path to it")->required();
  verb.add_option("ROWS", options->rows, "A catalogue, CATALOGUE:ROW or a label; else all rows");
  AddLogRootOption(verb, options->roots);
  verb.add_flag("--json", options->json, "Print one JSON document");
}

}  // namespace logbook::cli
