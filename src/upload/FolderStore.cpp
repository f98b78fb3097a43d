// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/FolderStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>

#include "base/Files.h"
#include "base/posix/Descriptor.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

using Reach = DeliveryError::Reach;

// Failures that lie in a name or in what bears it; the other submissions have other names.
bool IsOfThisName(int error) {
  for (const int each : {ENAMETOOLONG, EINVAL, EILSEQ, EEXIST, EISDIR, ENOTDIR, EFBIG}) {
    if (error == each) return true;
  }
  return false;
}

[[noreturn]] void Fail(const std::string& path, int error) {
  if (error == ENOSPC || error == EDQUOT)
    throw DeliveryError(Reach::kThisSubmission,
                        "The disk of the shared folder is full: " + path + ".");
  throw DeliveryError(IsOfThisName(error) ? Reach::kThisSubmission : Reach::kWholeServer,
                      "The shared folder refuses " + path + ": " + std::strerror(error) + ".");
}

// Whether something bears the name. A share that does not answer is not an empty one.
bool IsThere(const std::string& native) {
  struct stat status = {};
  if (stat(native.c_str(), &status) == 0) return true;
  if (errno != ENOENT) Fail(native, errno);
  return false;
}

}  // namespace

std::string FolderOfFileUrl(const Machine& machine, const std::string& url) {
  std::string path;
  std::string rest = url.substr(std::string("file:").size());
  if (rest.starts_with("//")) rest = rest.substr(2);
  for (std::size_t i = 0; i < rest.size(); ++i) {
    unsigned char byte = 0;
    const char* const digits = rest.data() + i + 1;
    const bool escaped = rest[i] == '%' && i + 2 < rest.size() &&
                         std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
    path += escaped ? static_cast<char>(byte) : rest[i];
    if (escaped) i += 2;
  }
  if (path.size() > 2 && path[0] == '/' && path[2] == ':') path.erase(0, 1);  // "/C:/share"
  return NativePath(machine, path);
}

FolderStore::FolderStore(const std::string& base, const std::string& folder)
    : base_(base), components_(FolderComponents(folder)), root_(base) {
  for (const std::string& component : components_) root_ += "/" + component;
}

void FolderStore::MakeRoot() {
  // The base is not made: a share that is not mounted must not be taken for an empty one.
  std::error_code error;
  if (!fs::is_directory(base_, error))
    throw DeliveryError(Reach::kWholeServer, "The shared folder " + base_ + " is not there.");
  std::string made = base_;
  for (const std::string& component : components_) {
    const std::string parent = made;
    made += "/" + component;
    if (mkdir(made.c_str(), 0777) == 0) {
      posix::SyncFolder(parent);
    } else if (errno != EEXIST) {
      Fail(made, errno);
    }
  }
}

void FolderStore::MakeFolder(const std::string& path) {
  const std::string native = root_ + "/" + path;
  if (mkdir(native.c_str(), 0777) != 0 && errno != EEXIST) Fail(native, errno);
  posix::SyncFolder(root_);
}

std::optional<Digest> FolderStore::DigestOf(const std::string& path) {
  const std::string native = root_ + "/" + path;
  if (!IsThere(native)) return std::nullopt;
  return DigestOfFile(native);
}

void FolderStore::Put(const std::string& path, const std::string& native_file) {
  const std::string native = root_ + "/" + path;
  const posix::Descriptor in(open(native_file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!in.IsOpen()) Fail(native_file, errno);
  const posix::Descriptor out(open(native.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!out.IsOpen()) Fail(native, errno);
  if (!CopyToEnd(in, out)) {
    const int error = errno;
    unlink(native.c_str());
    Fail(native, error);
  }
  if (fsync(out.Number()) != 0) Fail(native, errno);
}

void FolderStore::Move(const std::string& from, const std::string& to) {
  const std::string target = root_ + "/" + to;
  if (IsThere(target)) Fail(target, EEXIST);
  if (std::rename((root_ + "/" + from).c_str(), target.c_str()) != 0) Fail(target, errno);
  posix::SyncFolder(fs::path(target).parent_path().string());
}

}  // namespace logbook
