// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/FolderStore.h"

#include <system_error>

#include "base/NativeDisk.h"
#include "base/RunTimeError.h"

namespace logbook {

namespace {

using Reach = DeliveryError::Reach;

// Failures that lie in a name or in what bears it; the other submissions have other names.
bool IsOfThisName(const std::error_code& error) {
  for (const std::errc each :
       {std::errc::filename_too_long, std::errc::invalid_argument, std::errc::illegal_byte_sequence,
        std::errc::file_exists, std::errc::is_a_directory, std::errc::not_a_directory,
        std::errc::file_too_large}) {
    if (error == each) return true;
  }
  return false;
}

[[noreturn]] void Fail(const std::string& path, const std::error_code& error) {
  if (error == std::errc::no_space_on_device)
    throw DeliveryError(Reach::kThisSubmission,
                        "The disk of the shared folder is full: " + path + ".");
  throw DeliveryError(IsOfThisName(error) ? Reach::kThisSubmission : Reach::kWholeServer,
                      "The shared folder refuses " + path + ": " + error.message() + ".");
}

// Whether something bears the name. A share that does not answer is not an empty one.
bool IsThere(const std::string& path) {
  auto kind = native::Kind::kNothing;
  if (const auto error = native::LookAt(path, native::Links::kFollowed, kind)) Fail(path, error);
  return kind != native::Kind::kNothing;
}

// Makes a folder unless it exists; true if it is new.
bool MakeOneFolder(const std::string& path) {
  const auto error = native::MakeFolder(path, native::Audience::kUsers);
  if (error && error != std::errc::file_exists) Fail(path, error);
  return !error;
}

}  // namespace

FolderStore::FolderStore(const std::string& base, const std::string& folder)
    : base_(base), components_(FolderComponents(folder)), root_(base) {
  for (const std::string& component : components_) root_ += "/" + component;
}

void FolderStore::MakeRoot() {
  // The base is not made: a share that is not mounted must not be taken for an empty one.
  auto kind = native::Kind::kNothing;
  native::LookAt(base_, native::Links::kFollowed, kind);
  if (kind != native::Kind::kFolder)
    throw DeliveryError(Reach::kWholeServer, "The shared folder " + base_ + " is not there.");
  std::string made = base_;
  for (const std::string& component : components_) {
    const std::string parent = made;
    made += "/" + component;
    if (MakeOneFolder(made)) native::Sync(parent);
  }
}

void FolderStore::MakeFolder(const std::string& path) {
  MakeOneFolder(root_ + "/" + path);
  native::Sync(root_);
}

std::optional<Digest> FolderStore::DigestOf(const std::string& path, std::uint64_t most) {
  const std::string file = root_ + "/" + path;
  if (!IsThere(file)) return std::nullopt;
  return DigestOfFile(file, most);
}

void FolderStore::Put(const std::string& path, native::Reader& file) {
  const std::string native_file = root_ + "/" + path;
  file.SeekTo(0);
  const auto error = native::CopyAndSync(file, native_file);
  if (file.Failure()) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  if (error) Fail(native_file, error);
}

void FolderStore::Move(const std::string& from, const std::string& to) {
  const std::string target = root_ + "/" + to;
  if (IsThere(target)) Fail(target, std::make_error_code(std::errc::file_exists));
  if (const auto error = native::Rename(root_ + "/" + from, target)) Fail(target, error);
  native::Sync(target.substr(0, target.rfind('/')));
}

}  // namespace logbook
