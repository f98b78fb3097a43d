// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/LanguageChoice.h"

#include "base/Profile.h"
#include "base/UpperCase.h"
#include "resources/Resources.h"

namespace logbook {

namespace {

constexpr std::size_t kLongestId = 32;

bool CanBeUsed(const Machine& machine, std::string_view id) {
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    if (EqualIgnoringCase(LanguageAt(i).id, id))
      return IsWrittenIn(LanguageAt(i), machine.code_page->Number());
  }
  return false;
}

}  // namespace

void TakeLanguage(const Machine& machine, const std::string& app_path, std::string_view built_in) {
  const std::string file = app_path + (app_path.ends_with('\\') ? "" : "\\") + kLanguageFile;
  const std::string named =
      GetPrivateProfileString(machine, "Language", "Use", "", kLongestId, file);
  for (const std::string_view id : {std::string_view(named), built_in}) {
    if (CanBeUsed(machine, id) && ChooseLanguage(id)) return;
  }
  ChooseLanguage(LanguageAt(0).id);
}

}  // namespace logbook
