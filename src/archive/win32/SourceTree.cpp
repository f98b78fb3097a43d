// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Links are rare here, and making one takes a right of its own, so a place is opened by its path
// after a look at every folder on the way.

#include "archive/SourceTree.h"

#include <algorithm>
#include <cerrno>

#include "archive/ZipFailure.h"
#include "archive/win32/Facts.h"
#include "base/NativeDisk.h"
#include "base/TemporaryName.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

using win32::Follow;
using win32::Status;

namespace {

std::string Below(const std::string& place, const std::string& name) {
  return place.empty() ? name : place + "/" + name;
}

}  // namespace

struct SourceFile::State {
  win32::Handle handle;
};

SourceFile::SourceFile() = default;
SourceFile::SourceFile(std::unique_ptr<State> state) : state_(std::move(state)) {}
SourceFile::~SourceFile() = default;
SourceFile::SourceFile(SourceFile&&) noexcept = default;
SourceFile& SourceFile::operator=(SourceFile&&) noexcept = default;

bool SourceFile::IsOpen() const {
  return state_ != nullptr;
}

void SourceFile::Close() {
  state_.reset();
}

std::int64_t SourceFile::Read(void* buffer, std::uint64_t size) {
  constexpr std::uint64_t kMost = 1 << 30;
  DWORD count = 0;
  const auto most = static_cast<DWORD>(std::min(size, kMost));
  if (::ReadFile(state_->handle.Value(), buffer, most, &count, nullptr)) return count;
  errno = win32::LastErrno();
  return -1;
}

bool SourceFile::Look(FileFacts& facts) const {
  Status status;
  if (!StatusOf(state_->handle, status)) {
    errno = win32::LastErrno();
    return false;
  }
  facts = win32::FactsFrom(status);
  return true;
}

struct SourceTree::State {
  std::string root;
};

SourceTree::SourceTree(const std::string& native) : state_(std::make_unique<State>()) {
  if (!win32::IsFolder(native))
    FailWithSystem(ZipResult::kSourceUnreadable, native, win32::LastErrno());
  state_->root = native;
}

SourceTree::~SourceTree() = default;

std::string SourceTree::PathOf(const std::string& place) const {
  return Below(state_->root, place);
}

SourceFile SourceTree::Open(const std::string& place) const {
  for (std::size_t slash = place.find('/'); slash != std::string::npos;
       slash = place.find('/', slash + 1)) {
    Status status;
    if (StatusOf(PathOf(place.substr(0, slash)), Follow::kNo, status) && !status.IsLink()) continue;
    errno = ENOENT;
    return {};
  }
  const std::string path = place.empty() ? state_->root : PathOf(place);
  auto state = std::make_unique<SourceFile::State>();
  state->handle = win32::OpenToRead(path, place.empty() ? Follow::kYes : Follow::kNo);
  Status status;
  if (!state->handle.IsOpen() || !StatusOf(state->handle, status)) {
    errno = win32::LastErrno();
    return {};
  }
  if (!place.empty() && status.IsLink()) {
    errno = ELOOP;
    return {};
  }
  return SourceFile(std::move(state));
}

FileFacts SourceTree::LookAtFolder(const std::string& place) const {
  FileFacts facts;
  const SourceFile folder = Open(place);
  if (!folder.IsOpen() || !folder.Look(facts))
    FailWithSystem(ZipResult::kSourceUnreadable, PathOf(place), errno);
  return facts;
}

std::vector<SourceTree::Child> SourceTree::ChildrenOf(const std::string& place) const {
  std::vector<std::string> names;
  if (const auto error = native::NamesIn(place.empty() ? state_->root : PathOf(place), names))
    FailWithSystem(ZipResult::kSourceUnreadable, PathOf(place), error.value());
  std::vector<Child> children;
  for (std::string& name : names) {
    Child child{.name = name, .place = Below(place, name), .facts = {}};
    Status status;
    if (!StatusOf(PathOf(child.place), Follow::kNo, status)) {
      if (win32::LastErrno() == ENOENT) continue;
      FailWithSystem(ZipResult::kSourceUnreadable, PathOf(child.place), win32::LastErrno());
    }
    // What a writer that was killed has left is no file of the log.
    if (IsTemporaryName(name) && !status.IsLink() && !status.IsFolder()) continue;
    if (status.IsLink()) {
      // The path of a file of this tree begins as the tree's own does once links are followed.
      const std::string behind = native::FileBehind(PathOf(child.place), state_->root);
      const std::string inner = behind.substr(std::min(behind.size(), behind.rfind('\\') + 1));
      if (behind.empty() || !StatusOf(PathOf(Below(place, inner)), Follow::kNo, status)) continue;
      child.place = Below(place, inner);
    }
    child.facts = win32::FactsFrom(status);
    children.push_back(std::move(child));
  }
  return children;
}

}  // namespace logbook
