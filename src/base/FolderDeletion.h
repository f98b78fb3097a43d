// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What came of the deletion of all files in a folder. Used inside this folder only.
#pragma once

#include <optional>

#include "base/RunTimeError.h"

namespace logbook {

// What came of one name: deleted, spared since it is read-only, or a folder and so no file.
enum class Deletion { kDone, kSpared, kIsFolder };

// One failure keeps no other file from being deleted; what is to be told is told at the end.
class FolderDeletion {
 public:
  // Deletes one name; `remove` returns a Deletion or raises a run-time error.
  template <typename Remove>
  void Try(Remove remove) {
    try {
      const Deletion result = remove();
      matched_ |= result != Deletion::kIsFolder;
      read_only_stayed_ |= result == Deletion::kSpared;
    } catch (const RunTimeError& error) {
      matched_ = true;
      if (!first_failure_) first_failure_ = error;
    }
  }

  // Raises 53 where there was no file, 75 where a read-only one stayed, else the first failure.
  void Finish() const {
    if (!matched_) throw RunTimeError(ErrorNumber::kFileNotFound);
    if (read_only_stayed_) throw RunTimeError(ErrorNumber::kPathFileAccess);
    if (first_failure_) throw RunTimeError(*first_failure_);
  }

 private:
  bool matched_ = false;
  bool read_only_stayed_ = false;
  std::optional<RunTimeError> first_failure_;
};

}  // namespace logbook
