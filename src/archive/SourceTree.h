// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A log folder as the zip writer reads it. Everything is reached from the opened folder and through
// no link, so that nothing outside it can come into an archive, also if somebody puts a link in the
// place of a folder meanwhile. A place is the path of a file or folder below the log, components
// separated by slashes; the log itself is the empty place.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "archive/FileFacts.h"

namespace logbook {

// Something of a log that is opened for reading.
class SourceFile {
 public:
  SourceFile();
  ~SourceFile();
  SourceFile(SourceFile&&) noexcept;
  SourceFile& operator=(SourceFile&&) noexcept;

  bool IsOpen() const;
  void Close();
  // Reads at most so many bytes; 0 at the end, -1 with errno set.
  std::int64_t Read(void* buffer, std::uint64_t size);
  // False with errno set.
  bool Look(FileFacts& facts) const;

  struct State;
  explicit SourceFile(std::unique_ptr<State> state);

 private:
  std::unique_ptr<State> state_;
};

class SourceTree {
 public:
  // Opens the folder of this native path, which may be a link to one. Raises ZipFailure.
  explicit SourceTree(const std::string& native);
  ~SourceTree();
  SourceTree(const SourceTree&) = delete;
  SourceTree& operator=(const SourceTree&) = delete;

  // Opens what stands at this place for reading. Not open, with errno set, if it cannot be opened
  // or a link stands on the way.
  SourceFile Open(const std::string& place) const;
  // What the disk tells of the folder at this place. Raises ZipFailure if it cannot be read.
  FileFacts LookAtFolder(const std::string& place) const;

  // What goes into an archive under `name`: the folder or file at `place`.
  struct Child {
    std::string name;
    std::string place;
    FileFacts facts;
  };
  // What the folder at this place holds, ascending by the bytes of the names: its files and
  // folders, and the links that lead to a file of this tree, with the place of that file. Every
  // other link is left out, and so is what is neither file nor folder, what a writer that was
  // killed has left, and what is gone by now. Raises ZipFailure if the folder cannot be read.
  std::vector<Child> ChildrenOf(const std::string& place) const;
  // The native path of a place, for the eye.
  std::string PathOf(const std::string& place) const;

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

}  // namespace logbook
