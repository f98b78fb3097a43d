// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/posix/SourceTree.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "archive/posix/ZipAddition.h"
#include "base/posix/TemporaryFile.h"

namespace fs = std::filesystem;

namespace logbook {

using posix::Descriptor;

namespace {

// Pipes are not waited for.
constexpr int kOpen = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

std::string Below(const std::string& place, const std::string& name) {
  return place.empty() ? name : place + "/" + name;
}

std::vector<std::string> NamesIn(const Descriptor& folder, const std::string& path) {
  const int copy = openat(folder.Number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(copy >= 0 ? fdopendir(copy) : nullptr, closedir);
  if (scan == nullptr) FailWithSystem(ZipResult::kSourceUnreadable, path, errno);
  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(scan.get());
    if (entry == nullptr) break;
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    // What a writer that was killed has left is no file of the log.
    if (!posix::IsTemporaryFile(folder, name)) names.push_back(name);
  }
  if (errno != 0) FailWithSystem(ZipResult::kSourceUnreadable, path, errno);
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

SourceTree::SourceTree(const std::string& native)
    : folder_(open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (!folder_.IsOpen()) FailWithSystem(ZipResult::kSourceUnreadable, native, errno);
  std::error_code error;
  root_ = fs::canonical(native, error).string();
  if (error) FailWithSystem(ZipResult::kSourceUnreadable, native, error.value());
}

std::string SourceTree::PathOf(const std::string& place) const {
  return Below(root_, place);
}

Descriptor SourceTree::Open(const std::string& place) const {
  if (place.empty()) return Descriptor(openat(folder_.Number(), ".", kOpen));
  Descriptor above;
  for (std::size_t start = 0;;) {
    const std::size_t slash = place.find('/', start);
    const std::string component = place.substr(start, slash - start);
    const int from = above.IsOpen() ? above.Number() : folder_.Number();
    Descriptor next(openat(from, component.c_str(), kOpen));
    if (slash == std::string::npos || !next.IsOpen()) return next;
    above = std::move(next);
    start = slash + 1;
  }
}

struct stat SourceTree::FolderStatus(const std::string& place) const {
  const Descriptor folder = Open(place);
  struct stat status {};
  if (!folder.IsOpen() || fstat(folder.Number(), &status) != 0)
    FailWithSystem(ZipResult::kSourceUnreadable, PathOf(place), errno);
  return status;
}

std::vector<SourceTree::Child> SourceTree::ChildrenOf(const std::string& place) const {
  const Descriptor folder = Open(place);
  if (!folder.IsOpen()) FailWithSystem(ZipResult::kSourceUnreadable, PathOf(place), errno);
  std::vector<Child> children;
  for (std::string& name : NamesIn(folder, PathOf(place))) {
    Child child{.name = name, .place = Below(place, name), .status = {}};
    if (FindChild(folder, child)) children.push_back(std::move(child));
  }
  return children;
}

bool SourceTree::FindChild(const Descriptor& folder, Child& child) const {
  if (fstatat(folder.Number(), child.name.c_str(), &child.status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return false;
    FailWithSystem(ZipResult::kSourceUnreadable, PathOf(child.place), errno);
  }
  if (S_ISLNK(child.status.st_mode)) return FollowLink(child);
  return S_ISREG(child.status.st_mode) || S_ISDIR(child.status.st_mode);
}

bool SourceTree::FollowLink(Child& child) const {
  std::error_code nowhere;
  const std::string target = fs::canonical(PathOf(child.place), nowhere).string();
  if (nowhere || !target.starts_with(root_ + "/")) return false;
  child.place = target.substr(root_.size() + 1);
  const Descriptor file = Open(child.place);
  return file.IsOpen() && fstat(file.Number(), &child.status) == 0 && S_ISREG(child.status.st_mode);
}

}  // namespace logbook
