// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "CatalogueText.h"
#include "Verbs.h"
#include "catalogue/ItemRecord.h"

namespace logbook::cli {
namespace {

int PrintCatalogue(Call& call, const std::string& name) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  if (!name.empty()) {
    call.out << CatalogueText(catalogues, name);
    return kSuccess;
  }
  for (const std::string_view each : kCatalogueNames) {
    if (each != kCatalogueNames.front()) call.out << '\n';
    call.out << CatalogueText(catalogues, each);
  }
  return kSuccess;
}

}  // namespace

void AddCatalogue(Frame& frame) {
  const auto name = std::make_shared<std::string>();  // empty: all of them
  CLI::App& verb = frame.AddVerb(
      "catalogue", "Print a catalogue, or all of them, as tab-separated rows with a header line",
      [name](Call& call) { return PrintCatalogue(call, *name); });
  verb.add_option("NAME", *name, "Which one")
      ->check(
          CLI::IsMember(std::vector<std::string>(kCatalogueNames.begin(), kCatalogueNames.end())));
}

}  // namespace logbook::cli
