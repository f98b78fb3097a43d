// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the disk tells of files and folders, and opening them.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "base/Files.h"
#include "base/win32/System.h"

namespace logbook::win32 {

enum class Follow { kNo, kYes };

struct Status {
  DWORD attributes = 0;
  FileStamp stamp;

  bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  // A link, or another folder's mounting place.
  bool IsLink() const { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }
  bool IsReadOnly() const { return !IsFolder() && (attributes & FILE_ATTRIBUTE_READONLY) != 0; }
};

// False with the system's last error set.
bool StatusOf(const std::string& native_path, Follow follow, Status& status);
bool StatusOf(const Handle& file, Status& status);

// True if the path leads to a folder, through links too.
bool IsFolder(const std::string& native_path);

// True if anything bears the name, a link that leads nowhere too.
bool IsThere(const std::string& native_path);

// Opens for reading, also while others write, rename or delete. Not open, with the last error set,
// on failure.
Handle OpenToRead(const std::string& native_path, Follow follow);

// Opens a file, and nothing else, for reading. Raises 53, 75 (a folder, a pipe or device, an empty
// name), 76, 70, 57.
Handle OpenForReading(const std::string& native_path);

// Reads at most `size` bytes; 0 at the end. Raises 57.
std::size_t ReadSome(const Handle& file, char* buffer, std::size_t size);

// Writes all bytes; false with the last error set.
bool WriteAll(const Handle& file, std::string_view bytes);

// Gives each entry of a folder but "." and "..". False with the last error set if the folder cannot
// be read to its end.
bool ForEachEntry(const std::string& native_folder,
                  const std::function<void(const WIN32_FIND_DATAW&)>& take);

}  // namespace logbook::win32
