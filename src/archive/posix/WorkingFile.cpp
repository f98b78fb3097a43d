// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/posix/WorkingFile.h"

#include <cerrno>

#include "base/posix/LockedFile.h"
#include "base/posix/SystemError.h"

namespace logbook {

namespace {

// Hidden; its name has room for the number behind a name of any length.
std::string WorkingName(const std::string& zip_file, int number) {
  constexpr std::size_t kMostOfName = 200;
  const std::string name = zip_file.substr(zip_file.rfind('/') + 1).substr(0, kMostOfName);
  return posix::ParentOf(zip_file) + "/." + name + "." + std::to_string(number) + ".part";
}

// True for the working name of any zip file.
bool IsWorkingName(std::string_view name) {
  if (name.ends_with("2")) name.remove_suffix(1);
  constexpr std::string_view kEnding = ".part";
  if (!name.starts_with('.') || !name.ends_with(kEnding)) return false;
  name.remove_suffix(kEnding.size());
  const std::size_t number = name.find_last_not_of("0123456789") + 1;
  return number > 2 && number < name.size() && name[number - 1] == '.';
}

}  // namespace

posix::Descriptor MakeWorkingFile(const std::string& zip_file, std::string& path) {
  posix::RemoveLeftFiles(posix::ParentOf(zip_file), IsWorkingName, "PK");
  for (int number = 1;; ++number) {
    path = WorkingName(zip_file, number);
    posix::Descriptor file = posix::MakeLockedFile(path, 0666);
    if (file.IsOpen() || errno != EEXIST) return file;
  }
}

}  // namespace logbook
