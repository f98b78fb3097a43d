// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Finding catalogue rows and maintenance items by what a person types: a label, its unique
// beginning, or CATALOGUE:NUMBER. Pure; none raises anything.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "insight/CatalogueRow.h"

namespace logbook::insight {

// What a name stands for. Where it stands for nothing, a sentence tells why, and the labels that
// are nearest to it follow.
struct RowSearch {
  std::vector<RowId> Rows;        // empty if there is none
  std::string Problem;            // one sentence without a full stop; empty if rows were found
  std::vector<std::string> Near;  // labels, the nearest first; at most five
};

// The rows of one catalogue (or of all) that a label names, without regard to case: those of just
// this label, else those of the only label that begins with it. Several rows can bear one label,
// each on an instrument of another kind; all of them are given, as they are one value to a person.
// A number names the row itself, if a catalogue is given.
RowSearch FindRows(const Catalogues& catalogues, std::optional<Catalogue> which,
                   std::string_view name);

// The same for ROW as the command line takes it: a label or its unique beginning, looked for in all
// catalogues, or CATALOGUE:NUMBER, CATALOGUE:LABEL. A label that rows of several catalogues bear
// needs its catalogue.
RowSearch FindRow(const Catalogues& catalogues, std::string_view text);

// The label of a maintenance item (0 to 17) as the editor shows it, such as "Clean Cones"; and
// those of all 18.
std::string TickLabel(int item);
std::vector<std::string> TickLabels();

// The maintenance item of a label, its unique beginning, or its number.
struct TickSearch {
  std::optional<int> Item;
  std::string Problem;
  std::vector<std::string> Near;
};
TickSearch FindTick(std::string_view name);

// The names among these that are nearest to a word, the nearest first; at most five, none that has
// nothing in common with it.
std::vector<std::string> NearNames(std::string_view word, const std::vector<std::string>& names);

}  // namespace logbook::insight
