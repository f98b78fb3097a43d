// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/GermanLocale.h"

#include <clocale>
#include <cstdio>

namespace logbook::test {

GermanLocale::GermanLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
  why_not_ = Make();
}

GermanLocale::~GermanLocale() {
  std::setlocale(LC_ALL, before_.c_str());
}

// The system has it or has it not.
std::string GermanLocale::Make() {
  char text[8] = {};
  if (std::setlocale(LC_ALL, "German_Germany") != nullptr)
    std::snprintf(text, sizeof text, "%.1f", 1.5);
  return text == std::string("1,5") ? "" : "the system has no German locale";
}

}  // namespace logbook::test
