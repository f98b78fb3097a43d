// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What files, profiles and the hive rest on, by native paths: reading a whole file, and replacing
// one so that readers and crashes meet the old file or the new one and never a part. Used inside
// this folder only; the rest of the program goes by path texts.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/Files.h"
#include "base/TemporaryName.h"

namespace logbook {

// The whole file as bytes. Raises 53, 75 (a folder, an empty name), 76, 70, 57, and 7 for a file of
// more than `most` bytes.
std::string ReadNativeFile(const std::string& native_path, std::size_t most = kNoLimit);

// The right to replace one file. Writers of a folder wait for each other in all processes, from
// the making of this object to its end, so what is read here cannot change before it is replaced;
// on a disk without locks, and where the lock is held for longer than a writer needs it, they go
// without. A link is followed: its target is replaced and the link stays.
class FileReplacement {
 public:
  // Waits for the folder, at most two seconds. Raises 76 if it is missing, 75 for an empty name,
  // 70, 57.
  explicit FileReplacement(const std::string& native_path);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  // The file's present bytes; nothing if there is no file. Raises 75, 70, 57, and 7 for a file of
  // more than `most` bytes.
  std::optional<std::string> Bytes(std::size_t most = kNoLimit) const;

  // Replaces the file or makes it; an existing one keeps its mode and owner. Raises 75 for a
  // folder or a read-only file, 70, 61, 57; the old file is then unchanged.
  void Replace(std::string_view bytes);

  // As Replace for a file that can be made again at any time: nothing is written if it holds these
  // bytes already, and nothing waits for the disk. Readers meet the old file or the new one; after
  // a power cut the file may be gone or empty.
  void ReplaceMadeFile(std::string_view bytes);

  // As Replace with the bytes of another file, of any size in bounded memory. Raises 53, 75, 76,
  // 70, 57 for that file too.
  void ReplaceByCopyOf(const std::string& native_source);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
