// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ArCmmn.h"

#include "archive/Archive.h"
#include "base/Files.h"
#include "upload/ECMSub.h"

namespace logbook {

std::int16_t ZipLogFolder(const AppState& state, const std::string& log_folder,
                          std::string& package) {
  std::string folder = log_folder;
  if (EndsWithBackslash(folder)) folder.pop_back();
  package = folder + ".qkvzip";
  std::string result(kZipResultBuffer, '\0');
  return arZip(state.machine, 0, package, ExactFolder(folder), "-r", result);
}

}  // namespace logbook
