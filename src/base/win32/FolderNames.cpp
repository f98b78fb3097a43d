// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FolderNames.h"

#include "base/RunTimeError.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

void ForEachName(const std::string& native_folder, const NameTaker& take) {
  const bool done = win32::ForEachEntry(native_folder, [&](const WIN32_FIND_DATAW& entry) {
    const std::string name = win32::Narrow(entry.cFileName);
    take(name, [&] {
      const bool is_link = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
      return is_link ? win32::IsFolder(native_folder + "/" + name)
                     : (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    });
  });
  if (done) return;
  const DWORD error = GetLastError();
  if (error == ERROR_DIRECTORY) throw RunTimeError(ErrorNumber::kPathNotFound);
  win32::RaiseFolderError(win32::ErrnoOf(error));
}

}  // namespace logbook
