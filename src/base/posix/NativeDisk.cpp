// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/NativeDisk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>
#include <utility>

#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

namespace fs = std::filesystem;

namespace logbook::native {

using posix::Descriptor;

namespace {

std::error_code ErrorOf(int error) {
  return {error == EDQUOT ? ENOSPC : error, std::generic_category()};
}

// Of a call that gives 0 for success.
std::error_code ResultOf(int result) {
  return result == 0 ? std::error_code() : ErrorOf(errno);
}

Kind KindOf(mode_t mode) {
  if (S_ISREG(mode)) return Kind::kFile;
  if (S_ISDIR(mode)) return Kind::kFolder;
  return S_ISLNK(mode) ? Kind::kLink : Kind::kOther;
}

using OpenFolder = std::unique_ptr<DIR, int (*)(DIR*)>;

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

OpenFolder OpenInside(int folder, const char* name) {
  const int opened = openat(folder, name, kOpenFolder | O_NOFOLLOW);
  DIR* const stream = opened < 0 ? nullptr : fdopendir(opened);
  if (stream == nullptr && opened >= 0) {
    const int error = errno;
    close(opened);
    errno = error;
  }
  return {stream, closedir};
}

// The names in an opened folder. The library's own iterators end the process where there is no
// memory for a name.
std::error_code ReadNames(const OpenFolder& folder, std::vector<std::string>& names) {
  if (folder == nullptr) return ErrorOf(errno);
  while (true) {
    errno = 0;
    const dirent* entry = readdir(folder.get());
    if (entry == nullptr) return errno == 0 ? std::error_code() : ErrorOf(errno);
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
}

// Removes what bears the name, links as themselves, from an opened folder.
std::error_code RemoveIn(int folder, const char* name) {
  if (unlinkat(folder, name, 0) == 0 || errno == ENOENT) return {};
  if (errno != EISDIR && errno != EPERM) return ErrorOf(errno);
  const OpenFolder inner = OpenInside(folder, name);
  std::vector<std::string> names;
  std::error_code error = ReadNames(inner, names);
  for (const std::string& each : names) {
    if (const auto refused = RemoveIn(dirfd(inner.get()), each.c_str()); !error) error = refused;
  }
  return error ? error : ResultOf(unlinkat(folder, name, AT_REMOVEDIR));
}

}  // namespace

std::error_code LookAt(const std::string& path, Links links, Kind& kind) {
  struct stat status = {};
  kind = Kind::kNothing;
  const int result =
      links == Links::kFollowed ? stat(path.c_str(), &status) : lstat(path.c_str(), &status);
  if (result != 0) return errno == ENOENT ? std::error_code() : ErrorOf(errno);
  kind = KindOf(status.st_mode);
  return {};
}

std::string FileBehind(const std::string& link, const std::string& folder) {
  std::error_code error;
  const std::string target = fs::canonical(link, error).string();
  if (error || !fs::is_regular_file(target, error)) return {};
  const std::string place = fs::canonical(folder, error).string();
  return !error && target.starts_with(place + "/") ? target : std::string();
}

std::error_code MakeFolder(const std::string& path, Audience audience) {
  return ResultOf(mkdir(path.c_str(), audience == Audience::kOwner ? 0700 : 0777));
}

std::error_code RemoveFolder(const std::string& path) {
  return ResultOf(rmdir(path.c_str()));
}

std::error_code RemoveTree(const std::string& path) {
  return RemoveIn(AT_FDCWD, path.c_str());
}

std::error_code Rename(const std::string& from, const std::string& to) {
  return ResultOf(std::rename(from.c_str(), to.c_str()));
}

std::error_code Sync(const std::string& path) {
  const Descriptor file(open(path.c_str(), posix::kOpenForReading));
  return file.IsOpen() ? ResultOf(fsync(file.Number())) : ErrorOf(errno);
}

std::error_code EntriesIn(const std::string& folder, std::vector<Entry>& entries) {
  entries.clear();
  const OpenFolder opened(opendir(folder.c_str()), closedir);
  std::vector<std::string> names;
  if (const auto error = ReadNames(opened, names)) return error;
  std::sort(names.begin(), names.end());
  for (std::string& name : names) {
    struct stat status = {};
    const bool is_seen =
        fstatat(dirfd(opened.get()), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    entries.push_back({std::move(name), is_seen ? KindOf(status.st_mode) : Kind::kNothing});
  }
  return {};
}

struct Reader::State {
  Descriptor file;
  std::uint64_t size = 0;
  std::error_code failure;
};

Reader::Reader() : state_(std::make_unique<State>()) {}

Reader::~Reader() = default;

std::error_code Reader::Open(const std::string& path, Links links) {
  const int flags = links == Links::kFollowed ? 0 : O_NOFOLLOW;
  state_->failure = {};
  state_->file = Descriptor(open(path.c_str(), posix::kOpenForReading | flags));
  struct stat status = {};
  if (!state_->file.IsOpen() || fstat(state_->file.Number(), &status) != 0) return ErrorOf(errno);
  state_->size = static_cast<std::uint64_t>(status.st_size);
  if (S_ISREG(status.st_mode)) return {};
  state_->file.Close();
  return ErrorOf(S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP);
}

std::uint64_t Reader::Size() const {
  return state_->size;
}

std::size_t Reader::Read(char* buffer, std::size_t size) {
  for (;;) {
    const ssize_t count = read(state_->file.Number(), buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EINTR) continue;
    state_->failure = ErrorOf(errno);
    return 0;
  }
}

std::error_code Reader::SeekTo(std::uint64_t offset) {
  const bool done = lseek(state_->file.Number(), static_cast<off_t>(offset), SEEK_SET) >= 0;
  return done ? std::error_code() : ErrorOf(errno);
}

std::error_code Reader::Failure() const {
  return state_->failure;
}

std::error_code CopyAndSync(Reader& from, const std::string& to) {
  const Descriptor out(open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!out.IsOpen()) return ErrorOf(errno);
  constexpr std::size_t kBuffer = 256 * 1024;
  std::string buffer(kBuffer, '\0');
  std::error_code error;
  while (const std::size_t count = from.Read(buffer.data(), buffer.size())) {
    if (!posix::WriteAll(out, std::string_view(buffer.data(), count))) error = ErrorOf(errno);
    if (error) break;
  }
  if (!error && !from.Failure()) error = ResultOf(fsync(out.Number()));
  if (error || from.Failure()) unlink(to.c_str());
  return error;
}

void RaiseFileError(const std::error_code& error, const std::string& path) {
  posix::RaiseFileError(error.value(), path);
}

void RaiseFolderError(const std::error_code& error) {
  posix::RaiseFolderError(error.value());
}

}  // namespace logbook::native
