// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <ostream>

#include "Verbs.h"
#include "resources/Resources.h"

namespace logbook::cli {

void AddStrings(Frame& frame) {
  frame.AddVerb("strings", "Print the string table: number, tab, text", [](Call& call) {
    for (const StringResource& each : AllStrings())
      call.out << each.number << '\t' << each.text << '\n';
    return kSuccess;
  });
}

}  // namespace logbook::cli
