// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <utility>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"
#include "base/posix/WritersFolder.h"

namespace logbook {

using posix::Descriptor;
using posix::Durability;
using posix::ParentOf;

namespace {

// The path with links followed to the end, also if the last one leads nowhere yet.
std::string FollowLinks(std::string path) {
  constexpr int kMostLinks = 40;
  for (int links = 0; links < kMostLinks; ++links) {
    char target[PATH_MAX];
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    if (length < 0) return path;
    const std::string text(target, static_cast<std::size_t>(length));
    path = !text.empty() && text[0] == '/' ? text : ParentOf(path) + "/" + text;
  }
  throw RunTimeError(ErrorNumber::kDeviceInputOutput);
}

}  // namespace

std::string ReadNativeFile(const std::string& native_path, std::size_t most) {
  return ReadToEnd(posix::OpenForReading(native_path), most);
}

struct FileReplacement::State {
  // Links have been followed.
  explicit State(std::string native_path)
      : path(std::move(native_path)),
        name(path.substr(path.rfind('/') + 1)),
        folder(ParentOf(path)) {}

  const std::string path;
  const std::string name;  // within the folder
  posix::WritersFolder folder;
};

FileReplacement::FileReplacement(const std::string& native_path) {
  if (native_path.empty()) throw RunTimeError(ErrorNumber::kPathFileAccess);
  std::string path = FollowLinks(native_path);
  if (path.ends_with('/')) throw RunTimeError(ErrorNumber::kPathFileAccess);
  state_ = std::make_unique<State>(std::move(path));
}

FileReplacement::~FileReplacement() = default;

std::optional<std::string> FileReplacement::Bytes(std::size_t most) const {
  try {
    return ReadNativeFile(state_->path, most);
  } catch (const RunTimeError& error) {
    if (error.Number() != ErrorNumber::kFileNotFound) throw;
    return std::nullopt;
  }
}

void FileReplacement::Replace(std::string_view bytes) {
  state_->folder.Replace(
      state_->name, [bytes](const Descriptor& file) { return WriteAll(file, bytes); },
      Durability::kOnDisk);
}

void FileReplacement::ReplaceMadeFile(std::string_view bytes) {
  posix::WritersFolder& folder = state_->folder;
  const auto old = folder.Look(state_->name, posix::WritersFolder::Links::kFollow);
  folder.ReplaceMadeFile(state_->name, old, bytes);
}

void FileReplacement::ReplaceByCopyOf(const std::string& native_source) {
  const Descriptor source = posix::OpenForReading(native_source);
  state_->folder.Replace(
      state_->name, [&source](const Descriptor& file) { return CopyToEnd(source, file); },
      Durability::kOnDisk);
}

}  // namespace logbook
