// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/ecm/FolderStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/Files.h"
#include "platform/posix/Descriptor.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

constexpr std::size_t kBuffer = 256 * 1024;

[[noreturn]] void Fail(const std::string& path, int error) {
  if (error == ENOSPC || error == EDQUOT)
    throw DeliveryError(DeliveryError::Reach::kThisSubmission,
                        "The disk of the shared folder is full: " + path + ".");
  throw DeliveryError(DeliveryError::Reach::kWholeServer,
                      "The shared folder refuses " + path + ": " + std::strerror(error) + ".");
}

void Sync(const std::string& folder) {
  const posix::Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.IsOpen()) fsync(descriptor.Number());
}

}  // namespace

std::string FolderOfFileUrl(const Machine& machine, const std::string& url) {
  std::string path;
  std::string rest = url.substr(std::string("file:").size());
  if (rest.starts_with("//")) rest = rest.substr(2);
  for (std::size_t i = 0; i < rest.size(); ++i) {
    const bool escaped = rest[i] == '%' && i + 2 < rest.size() && isxdigit(rest[i + 1]) != 0 &&
                         isxdigit(rest[i + 2]) != 0;
    path += escaped ? static_cast<char>(std::stoi(rest.substr(i + 1, 2), nullptr, 16)) : rest[i];
    if (escaped) i += 2;
  }
  if (path.size() > 2 && path[0] == '/' && path[2] == ':') path.erase(0, 1);  // "/C:/share"
  return NativePath(machine, path);
}

FolderStore::FolderStore(const std::string& base, const std::string& folder)
    : base_(base), root_(base) {
  for (const std::string& component : FolderComponents(folder)) root_ += "/" + component;
}

void FolderStore::MakeRoot() {
  // The base is not made: a share that is not mounted must not be taken for an empty one.
  if (!fs::is_directory(base_))
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The shared folder " + base_ + " is not there.");
  std::error_code error;
  fs::create_directories(root_, error);
  if (error) Fail(root_, error.value());
}

void FolderStore::MakeFolder(const std::string& path) {
  const std::string native = root_ + "/" + path;
  if (mkdir(native.c_str(), 0777) != 0 && errno != EEXIST) Fail(native, errno);
  Sync(root_);
}

std::optional<Digest> FolderStore::DigestOf(const std::string& path) {
  const std::string native = root_ + "/" + path;
  if (!fs::exists(native)) return std::nullopt;
  return DigestOfFile(native);
}

void FolderStore::Put(const std::string& path, const std::string& native_file) {
  const std::string native = root_ + "/" + path;
  const posix::Descriptor in(open(native_file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!in.IsOpen()) Fail(native_file, errno);
  const posix::Descriptor out(open(native.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!out.IsOpen()) Fail(native, errno);
  std::string buffer(kBuffer, '\0');
  while (const std::size_t count = ReadSome(in, buffer.data(), buffer.size())) {
    if (!WriteAll(out, std::string_view(buffer.data(), count))) {
      const int error = errno;
      unlink(native.c_str());
      Fail(native, error);
    }
  }
  if (fsync(out.Number()) != 0) Fail(native, errno);
}

void FolderStore::Move(const std::string& from, const std::string& to) {
  const std::string target = root_ + "/" + to;
  if (fs::exists(target)) Fail(target, EEXIST);
  if (std::rename((root_ + "/" + from).c_str(), target.c_str()) != 0) Fail(target, errno);
  Sync(fs::path(target).parent_path().string());
}

}  // namespace logbook
