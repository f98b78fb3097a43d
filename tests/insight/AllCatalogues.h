// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The catalogues, filled once for all tests of a program.
#pragma once

#include "catalogue/ItemRecord.h"

namespace logbook::test {

inline const Catalogues& AllCatalogues() {
  static const Catalogues kFilled = [] {
    Catalogues catalogues;
    FillCatalogues(catalogues);
    return catalogues;
  }();
  return kFilled;
}

}  // namespace logbook::test
