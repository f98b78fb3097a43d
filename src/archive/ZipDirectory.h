// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The central directory at the end of a zip file, as bytes. A run of many additions writes each as
// an archive of its own behind the others and joins their directories at its end; having the zip
// library read and write the growing directory for each addition takes quadratic time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace logbook {

struct ZipDirectoryPlace {
  std::uint64_t offset = 0;  // of the directory, from the start of the archive
  std::uint64_t size = 0;    // in bytes
  std::uint64_t count = 0;   // entries
};

// So many of an archive's last bytes are enough to find its directory.
inline constexpr std::size_t kZipEndBytes = 56 + 20 + 22;

// Reads the place of the directory from the last bytes of an archive without comment; nothing if
// they are no such end.
std::optional<ZipDirectoryPlace> FindZipDirectory(std::string_view end);

// The directory of an archive whose files lie so many bytes further behind; nothing if it is no
// directory.
std::optional<std::string> MoveZipDirectory(std::string_view directory, std::uint64_t distance);

// What stands behind the directory.
std::string ZipEnd(const ZipDirectoryPlace& place);

}  // namespace logbook
