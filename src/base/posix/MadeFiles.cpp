// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/MadeFiles.h"

#include <sys/stat.h>

#include <optional>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/posix/WritersFolder.h"

namespace logbook {

using posix::WritersFolder;

namespace {

// A name on the disk that differs in case, of several the first in the order of their bytes; the
// name itself if there is none.
std::string SpellingOf(WritersFolder& folder, const std::string& name) {
  const std::string* found = nullptr;
  for (const std::string& candidate : folder.Names()) {
    if ((found == nullptr || candidate < *found) && EqualIgnoringCase(candidate, name))
      found = &candidate;
  }
  return found == nullptr ? name : *found;
}

}  // namespace

struct MadeFiles::State {
  const Machine& machine;
  const std::string path;  // of the folder, as a path text
  std::optional<WritersFolder> folder;

  WritersFolder& Folder() {
    if (!folder) {
      const std::string native = NativePath(machine, path);
      if (native.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
      folder.emplace(native);
    }
    return *folder;
  }
};

MadeFiles::MadeFiles(const Machine& machine, std::string_view folder)
    : state_(new State{machine, std::string(folder), {}}) {
  state_->Folder();
}

MadeFiles::~MadeFiles() = default;

void MadeFiles::Write(std::string_view name, std::string_view bytes) {
  WritersFolder& folder = state_->Folder();
  std::string spelling(name);
  auto status = folder.Look(spelling, WritersFolder::Links::kLeave);
  if (!status) {
    spelling = SpellingOf(folder, spelling);
    if (spelling != name) status = folder.Look(spelling, WritersFolder::Links::kLeave);
  }
  if (!status || !S_ISLNK(status->st_mode)) return folder.ReplaceMadeFile(spelling, status, bytes);
  // What a link leads to may lie in another folder, or in this one, whose lock we hold.
  state_->folder.reset();
  WriteMadeFile(state_->machine, state_->path + "\\" + std::string(name), bytes);
}

}  // namespace logbook
