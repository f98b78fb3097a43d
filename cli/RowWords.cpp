// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "RowWords.h"

#include <algorithm>

#include "LogRoots.h"
#include "insight/SettingsText.h"

namespace logbook::cli {

using insight::RowGroup;
using insight::RowId;

std::string Suggesting(const std::string& problem, const std::vector<std::string>& near) {
  std::string words = problem;
  for (std::size_t i = 0; i < near.size(); ++i) words += (i == 0 ? "; perhaps " : ", ") + near[i];
  return words;
}

std::vector<RowGroup> FindRowGroups(const Catalogues& catalogues, const std::string& typed) {
  if (typed.empty()) {
    throw WrongUse("a name is missing: expected a label, its beginning, or CATALOGUE:NUMBER");
  }
  const insight::RowSearch found = insight::FindRow(catalogues, typed);
  if (found.Rows.empty()) throw WrongUse(Suggesting(found.Problem, found.Near));
  std::vector<RowGroup> groups;
  for (const RowId& id : found.Rows) {
    const auto same = std::find_if(groups.begin(), groups.end(), [&](const RowGroup& group) {
      return group.front().Which == id.Which;
    });
    same == groups.end() ? groups.push_back({id}) : same->push_back(id);
  }
  return groups;
}

std::vector<RowId> FindSettingsRows(const Catalogues& catalogues, std::string_view file, int line,
                                    const std::string& name) {
  insight::RowSearch found = insight::FindRow(catalogues, name);
  if (found.Rows.empty()) {
    throw insight::SettingsError(file, line, Suggesting(found.Problem, found.Near));
  }
  return std::move(found.Rows);
}

insight::Query QueryOf(const Catalogues& catalogues, const std::string& typed) {
  try {
    return insight::ParseQuery(catalogues, typed);
  } catch (const insight::QueryError& error) {
    throw WrongUse(Explain(error, typed));
  }
}

}  // namespace logbook::cli
