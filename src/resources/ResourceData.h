// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What make_resources makes of the data files; use resources/Resources.h instead.
#pragma once

#include <span>
#include <string_view>

#include "resources/Resources.h"

namespace logbook {

// A custom resource of type "LOGBOOK_RES".
struct DataResource {
  std::string_view id;
  std::string_view bytes;
};

struct LanguageData {
  Language facts;
  std::span<const StringResource> strings;
  std::span<const DataResource> data;
};

// English first, and never empty.
std::span<const LanguageData> LanguageTables();

}  // namespace logbook
