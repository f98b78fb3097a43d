// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FilesBelow.h"

#include <array>
#include <cerrno>

#include "base/RunTimeError.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

using win32::Status;

namespace {

// No name in a folder, or one that a path text would read as two.
bool IsNoName(std::string_view name) {
  return name.empty() || name.find_first_of(std::string_view("\\/\0", 3)) != std::string_view::npos;
}

bool IsSmallFile(const Status& status) {
  return !status.IsFolder() && !status.IsLink() && status.stamp.size <= FilesBelow::kMostBytes;
}

}  // namespace

struct FilesBelow::State {
  std::string folder;
  bool is_open = false;
  std::array<char, kMostBytes + 1> buffer;

  std::string PathOf(std::string_view sub, std::string_view name) const {
    return folder + "/" + std::string(sub) + "/" + std::string(name);
  }

  // What it means that the system did not find or open something.
  static Found AfterFailure() {
    // A folder that is missing is told by another error.
    return GetLastError() == ERROR_FILE_NOT_FOUND ? Found::kMissing : Found::kUnclear;
  }
};

FilesBelow::FilesBelow(const Machine& machine, std::string_view folder)
    : state_(std::make_unique_for_overwrite<State>()) {
  state_->folder = NativePath(machine, folder);
  state_->is_open = win32::IsFolder(state_->folder);
}

FilesBelow::~FilesBelow() = default;

FileStamp FilesBelow::Stamp() const {
  Status status;
  const bool found = state_->is_open && StatusOf(state_->folder, win32::Follow::kYes, status);
  return found ? status.stamp : FileStamp();
}

FilesBelow::Found FilesBelow::Look(std::string_view sub, std::string_view name, FileStamp& stamp) {
  if (!state_->is_open || IsNoName(sub) || IsNoName(name)) return Found::kUnclear;
  Status status;
  if (!StatusOf(state_->PathOf(sub, name), win32::Follow::kNo, status))
    return State::AfterFailure();
  if (!IsSmallFile(status)) return Found::kUnclear;
  stamp = status.stamp;
  return Found::kFile;
}

FilesBelow::Found FilesBelow::Read(std::string_view sub, std::string_view name, FileStamp& stamp,
                                   std::string_view& bytes) {
  if (!state_->is_open || IsNoName(sub) || IsNoName(name)) return Found::kUnclear;
  const win32::Handle file = win32::OpenToRead(state_->PathOf(sub, name), win32::Follow::kNo);
  if (!file.IsOpen()) return State::AfterFailure();
  Status status;
  if (!StatusOf(file, status) || !IsSmallFile(status)) return Found::kUnclear;
  auto& buffer = state_->buffer;
  std::size_t size = 0;
  try {
    while (const std::size_t count =
               win32::ReadSome(file, buffer.data() + size, buffer.size() - size)) {
      size += count;
      if (size == buffer.size()) return Found::kUnclear;  // it has grown meanwhile
    }
  } catch (const RunTimeError&) {
    return Found::kUnclear;
  }
  stamp = status.stamp;
  bytes = {buffer.data(), size};
  return Found::kFile;
}

}  // namespace logbook
