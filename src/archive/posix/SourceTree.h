// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A log folder as the zip writer reads it. Everything is reached from the opened folder, component
// by component and through no link, so that nothing outside it can come into an archive, also if
// somebody puts a link in the place of a folder meanwhile. A place is the path of a file or folder
// below the log, components separated by slashes; the log itself is the empty place.
#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

#include "base/posix/Descriptor.h"

namespace logbook {

class SourceTree {
 public:
  // Opens the folder of this native path, which may be a link to one. Raises ZipFailure.
  explicit SourceTree(const std::string& native);

  // Opens what stands at this place for reading. Not open, with errno set, if it cannot be opened
  // or a link stands on the way.
  posix::Descriptor Open(const std::string& place) const;
  // The status of the folder at this place. Raises ZipFailure if it cannot be read.
  struct stat FolderStatus(const std::string& place) const;

  // What goes into an archive under `name`: the folder or file at `place`.
  struct Child {
    std::string name;
    std::string place;
    struct stat status;
  };
  // What the folder at this place holds, ascending by the bytes of the names: its files and
  // folders, and the links that lead to a file of this tree, with the place of that file. Every
  // other link is left out, and so is what is neither file nor folder, what a writer that was
  // killed has left, and what is gone by now. Raises ZipFailure if the folder cannot be read.
  std::vector<Child> ChildrenOf(const std::string& place) const;
  // The native path of a place, for the eye.
  std::string PathOf(const std::string& place) const;

 private:
  bool FindChild(const posix::Descriptor& folder, Child& child) const;
  bool FollowLink(Child& child) const;

  std::string root_;  // links followed
  posix::Descriptor folder_;
};

}  // namespace logbook
