// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/MadeFiles.h"

#include "base/Files.h"
#include "base/RunTimeError.h"

namespace logbook {

// Names need no search here, as the system knows no case, so each file is written by itself.
struct MadeFiles::State {
  const Machine& machine;
  const std::string path;  // of the folder, as a path text
};

MadeFiles::MadeFiles(const Machine& machine, std::string_view folder)
    : state_(new State{machine, std::string(folder)}) {
  if (folder.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  if (!FolderExists(machine, folder)) throw RunTimeError(ErrorNumber::kPathNotFound);
}

MadeFiles::~MadeFiles() = default;

void MadeFiles::Write(std::string_view name, std::string_view bytes) {
  WriteMadeFile(state_->machine, state_->path + "\\" + std::string(name), bytes);
}

}  // namespace logbook
