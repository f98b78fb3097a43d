// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/LockedFile.h"

#include <algorithm>
#include <vector>

#include "base/NativeDisk.h"
#include "base/RunTimeError.h"
#include "base/win32/Status.h"

namespace logbook::win32 {

namespace {

bool BeginsWith(const Handle& file, std::string_view beginning) {
  std::string bytes(beginning.size(), '\0');
  try {
    bytes.resize(ReadSome(file, bytes.data(), bytes.size()));
  } catch (const RunTimeError&) {
    return false;
  }
  return beginning.starts_with(bytes) ||
         std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

}  // namespace

Handle MakeLockedFile(const std::string& path, SECURITY_ATTRIBUTES* rights) {
  return Handle(CreateFileW(WidePath(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                            FILE_SHARE_READ, rights, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void RemoveLeftFiles(const std::string& folder,
                     const std::function<bool(std::string_view)>& is_working_name,
                     std::string_view beginning) {
  std::vector<std::string> names;
  native::NamesIn(folder, names);
  for (const std::string& name : names) {
    if (!is_working_name(name)) continue;
    const std::wstring path = WidePath(folder + "/" + name);
    // Refused while its writer has it open; nobody else opens it as long as we look at it.
    Handle file(CreateFileW(path.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING,
                            FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    Status status;
    if (!file.IsOpen() || !StatusOf(file, status) || status.IsFolder() || status.IsLink() ||
        !BeginsWith(file, beginning))
      continue;
    FILE_DISPOSITION_INFO gone = {TRUE};
    SetFileInformationByHandle(file.Value(), FileDispositionInfo, &gone, sizeof gone);
  }
}

}  // namespace logbook::win32
