// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/Fonts.h"

#include "resources/ResourceText.h"
#include "resources/Resources.h"
#include "text/LeadingNumber.h"

namespace logbook {

namespace {

Font FontOf(int name_number, int size_number) {
  return {ResourceText(name_number), LeadingNumber(LoadResString(size_number))};
}

}  // namespace

Font FormFont() {
  return FontOf(101, 102);
}
Font FixedPitchFont() {
  return FontOf(103, 104);
}
Font SheetFont() {
  return FontOf(105, 106);
}

}  // namespace logbook
