// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The descriptor of an upload: the XML document that stands beside a staging folder and tells of
// each file in it where it came from and why it is sent (docs/file-formats.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"

namespace logbook {

// One `file` element. Texts are UTF-8.
struct UploadFile {
  std::string Name;  // attribute `name`: file name with extension, no path
  std::string Source;
  std::string Destination;
  std::string Reason;
  std::string Owner;
  bool operator==(const UploadFile&) const = default;
};

// Adds an entry at the end of the descriptor and makes the descriptor if it is missing. Nothing
// changes if the descriptor has exactly one entry and that bears the same name, case ignored.
// Characters that XML cannot hold are left out, and bytes that are no UTF-8. The file is replaced
// as a whole and is readable by its owner alone. Raises kInternalError if the descriptor is no such
// document, otherwise what reading and writing a file raise.
void AddToUploadDescriptor(const Machine& machine, std::string_view descriptor,
                           const UploadFile& file);

// The entries in their order. Raises kFileNotFound if the descriptor is missing, kInternalError if
// it is no such document.
std::vector<UploadFile> ReadUploadDescriptor(const Machine& machine, std::string_view descriptor);

}  // namespace logbook
