// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/GermanLocale.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

constexpr const char* kName = "de_DE.UTF-8";

// True if the locale could be set and writes numbers as it should.
bool Set() {
  if (std::setlocale(LC_ALL, kName) == nullptr) return false;
  char text[8];
  std::snprintf(text, sizeof text, "%.1f", 1.5);
  return text == std::string("1,5");
}

}  // namespace

GermanLocale::GermanLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
  if (Set()) return;
  why_not_ = Make();
  if (why_not_.empty() && !Set()) why_not_ = "the locale that localedef made cannot be set";
}

GermanLocale::~GermanLocale() {
  std::setlocale(LC_ALL, before_.c_str());
  if (folder_.empty()) return;
  unsetenv("LOCPATH");
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string GermanLocale::Make() {
  std::string pattern = (fs::temp_directory_path() / "logbook-locale-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) return "no temporary folder";
  folder_ = pattern;
  const std::string command =
      "localedef -i de_DE -f UTF-8 '" + folder_ + "/" + kName + "' >/dev/null 2>&1";
  // A status of 1 means warnings only.
  const int status = std::system(command.c_str());
  if (status != 0 && !fs::exists(fs::path(folder_) / kName / "LC_NUMERIC"))
    return std::string("the machine has no locale ") + kName + " and localedef cannot make it";
  setenv("LOCPATH", folder_.c_str(), 1);
  return {};
}

}  // namespace logbook::test
