// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/SourceTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "archive/ZipFailure.h"
#include "archive/posix/Facts.h"
#include "base/posix/Descriptor.h"
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

struct SourceFile::State {
  Descriptor descriptor;
};

SourceFile::SourceFile() = default;
SourceFile::SourceFile(std::unique_ptr<State> state) : state_(std::move(state)) {}
SourceFile::~SourceFile() = default;
SourceFile::SourceFile(SourceFile&&) noexcept = default;
SourceFile& SourceFile::operator=(SourceFile&&) noexcept = default;

bool SourceFile::IsOpen() const {
  return state_ != nullptr && state_->descriptor.IsOpen();
}

void SourceFile::Close() {
  state_.reset();
}

std::int64_t SourceFile::Read(void* buffer, std::uint64_t size) {
  for (;;) {
    const ssize_t count = read(state_->descriptor.Number(), buffer, size);
    if (count >= 0 || errno != EINTR) return count;
  }
}

bool SourceFile::Look(FileFacts& facts) const {
  struct stat status {};
  if (fstat(state_->descriptor.Number(), &status) != 0) return false;
  facts = posix::FactsFrom(status);
  return true;
}

struct SourceTree::State {
  std::string root;  // links followed
  Descriptor folder;

  Descriptor Open(const std::string& place) const;
  bool FindChild(const Descriptor& above, Child& child) const;
  bool FollowLink(Child& child) const;
};

SourceTree::SourceTree(const std::string& native) : state_(std::make_unique<State>()) {
  state_->folder = Descriptor(open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!state_->folder.IsOpen()) FailWithSystem(ZipResult::kSourceUnreadable, native, errno);
  std::error_code error;
  state_->root = fs::canonical(native, error).string();
  if (error) FailWithSystem(ZipResult::kSourceUnreadable, native, error.value());
}

SourceTree::~SourceTree() = default;

std::string SourceTree::PathOf(const std::string& place) const {
  return Below(state_->root, place);
}

SourceFile SourceTree::Open(const std::string& place) const {
  Descriptor opened = state_->Open(place);
  if (!opened.IsOpen()) return {};
  return SourceFile(std::make_unique<SourceFile::State>(SourceFile::State{std::move(opened)}));
}

Descriptor SourceTree::State::Open(const std::string& place) const {
  if (place.empty()) return Descriptor(openat(folder.Number(), ".", kOpen));
  Descriptor above;
  for (std::size_t start = 0;;) {
    const std::size_t slash = place.find('/', start);
    const std::string component = place.substr(start, slash - start);
    const int from = above.IsOpen() ? above.Number() : folder.Number();
    Descriptor next(openat(from, component.c_str(), kOpen));
    if (slash == std::string::npos || !next.IsOpen()) return next;
    above = std::move(next);
    start = slash + 1;
  }
}

FileFacts SourceTree::LookAtFolder(const std::string& place) const {
  FileFacts facts;
  const SourceFile folder = Open(place);
  if (!folder.IsOpen() || !folder.Look(facts))
    FailWithSystem(ZipResult::kSourceUnreadable, PathOf(place), errno);
  return facts;
}

std::vector<SourceTree::Child> SourceTree::ChildrenOf(const std::string& place) const {
  const Descriptor folder = state_->Open(place);
  if (!folder.IsOpen()) FailWithSystem(ZipResult::kSourceUnreadable, PathOf(place), errno);
  std::vector<Child> children;
  for (std::string& name : NamesIn(folder, PathOf(place))) {
    Child child{.name = name, .place = Below(place, name), .facts = {}};
    if (state_->FindChild(folder, child)) children.push_back(std::move(child));
  }
  return children;
}

bool SourceTree::State::FindChild(const Descriptor& above, Child& child) const {
  struct stat status {};
  if (fstatat(above.Number(), child.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return false;
    FailWithSystem(ZipResult::kSourceUnreadable, Below(root, child.place), errno);
  }
  if (S_ISLNK(status.st_mode)) return FollowLink(child);
  child.facts = posix::FactsFrom(status);
  return child.facts.kind != FileFacts::Kind::kOther;
}

bool SourceTree::State::FollowLink(Child& child) const {
  std::error_code nowhere;
  const std::string target = fs::canonical(Below(root, child.place), nowhere).string();
  if (nowhere || !target.starts_with(root + "/")) return false;
  child.place = target.substr(root.size() + 1);
  const Descriptor file = Open(child.place);
  struct stat status {};
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) return false;
  child.facts = posix::FactsFrom(status);
  return child.facts.kind == FileFacts::Kind::kFile;
}

}  // namespace logbook
