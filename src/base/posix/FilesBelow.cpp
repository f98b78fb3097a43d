// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FilesBelow.h"

#include <dirent.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <optional>
#include <vector>

#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/posix/Descriptor.h"
#include "base/posix/Stamp.h"

namespace logbook {

using posix::Descriptor;

namespace {

// No name in a folder, or one that a path text would read as two.
bool IsNoName(std::string_view name) {
  return name.empty() || name.find_first_of(std::string_view("\\/\0", 3)) != std::string_view::npos;
}

// The name in capitals; nothing if that says nothing new, or if it has letters beyond ASCII.
std::optional<std::string> InCapitals(std::string_view name) {
  std::string capitals(name);
  for (char& byte : capitals) {
    if (static_cast<unsigned char>(byte) >= 0x80) return std::nullopt;
    if (byte >= 'a' && byte <= 'z') byte = static_cast<char>(byte - 'a' + 'A');
  }
  if (capitals == name) return std::nullopt;
  return capitals;
}

// A try of one spelling: 0 or the system's error.
using Try = int;

}  // namespace

struct FilesBelow::State {
  Descriptor folder;
  std::string path;  // of the last try, below the folder
  std::string scanned;
  std::optional<std::vector<std::string>> names;  // in the folder scanned last
  std::array<char, kMostBytes + 1> buffer;

  const char* PathOf(std::string_view sub, std::string_view name) {
    path.assign(sub).append("/").append(name);
    return path.c_str();
  }

  // All names in a folder, read once for as long as it is the one that is asked for.
  bool Scan(std::string_view sub) {
    if (names && scanned == sub) return true;
    names.reset();
    scanned = sub;
    const int opened = openat(folder.Number(), scanned.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> scan(opened < 0 ? nullptr : fdopendir(opened),
                                                   closedir);
    if (scan == nullptr) return false;
    std::vector<std::string> found;
    errno = 0;
    while (const dirent* entry = readdir(scan.get())) found.emplace_back(entry->d_name);
    if (errno != 0) return false;
    names = std::move(found);
    return true;
  }

  // The first spelling on the disk by its bytes; empty if there is none.
  std::string SpellingOf(std::string_view name) const {
    std::string found;
    for (const std::string& candidate : *names) {
      if ((found.empty() || candidate < found) && EqualIgnoringCase(candidate, name)) {
        found = candidate;
      }
    }
    return found;
  }

  // Tries the spellings in turn until one is there.
  template <typename Attempt>
  Found Find(std::string_view sub, std::string_view name, const Attempt& attempt) {
    if (!folder.IsOpen() || IsNoName(sub) || IsNoName(name)) return Found::kUnclear;
    Try error = attempt(PathOf(sub, name));
    if (error == ENOENT) {
      if (const auto capitals = InCapitals(name)) error = attempt(PathOf(sub, *capitals));
    }
    if (error == ENOENT) {
      if (!Scan(sub)) return Found::kUnclear;
      const std::string spelling = SpellingOf(name);
      if (spelling.empty()) return Found::kMissing;
      error = attempt(PathOf(sub, spelling));
    }
    return error == 0 ? Found::kFile : Found::kUnclear;
  }

  static bool IsSmallFile(mode_t mode, std::uint64_t size) {
    return S_ISREG(mode) && size <= kMostBytes;
  }

  // The bytes of an open file; nothing on failure, or if it has grown too large meanwhile.
  std::optional<std::string_view> ReadAll(const Descriptor& file, off_t expected) {
    std::size_t size = 0;
    try {
      while (size < buffer.size()) {
        const std::size_t count = posix::ReadSome(file, buffer.data() + size, buffer.size() - size);
        size += count;
        // All that the file had; a further call would only say so.
        if (count == 0 || (expected > 0 && size == static_cast<std::size_t>(expected))) break;
      }
    } catch (const RunTimeError&) {
      return std::nullopt;
    }
    if (size == buffer.size()) return std::nullopt;
    return std::string_view(buffer.data(), size);
  }
};

FilesBelow::FilesBelow(const Machine& machine, std::string_view folder)
    : state_(std::make_unique_for_overwrite<State>()) {
  state_->folder =
      Descriptor(open(NativePath(machine, folder).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

FilesBelow::~FilesBelow() = default;

FileStamp FilesBelow::Stamp() const {
  struct stat status = {};
  const bool found = state_->folder.IsOpen() && fstat(state_->folder.Number(), &status) == 0;
  return found ? posix::StampFrom(status) : FileStamp();
}

FilesBelow::Found FilesBelow::Look(std::string_view sub, std::string_view name, FileStamp& stamp) {
  // On a network drive the server is asked, as it is when a file is opened: what the system has
  // kept of the file may be older than a change by another machine.
  constexpr int kFlags = AT_SYMLINK_NOFOLLOW | AT_STATX_FORCE_SYNC;
  struct statx status = {};
  const Found found = state_->Find(sub, name, [&](const char* path) -> Try {
    const int folder = state_->folder.Number();
    return statx(folder, path, kFlags, STATX_BASIC_STATS, &status) == 0 ? 0 : errno;
  });
  if (found != Found::kFile) return found;
  if (!State::IsSmallFile(status.stx_mode, status.stx_size)) return Found::kUnclear;
  stamp = posix::StampFrom(status);
  return found;
}

FilesBelow::Found FilesBelow::Read(std::string_view sub, std::string_view name, FileStamp& stamp,
                                   std::string_view& bytes) {
  Descriptor file;
  // A link is left alone: one that leads nowhere is there all the same, and no other spelling
  // takes its place.
  const Found found = state_->Find(sub, name, [&](const char* path) -> Try {
    file = Descriptor(openat(state_->folder.Number(), path, posix::kOpenForReading | O_NOFOLLOW));
    return file.IsOpen() ? 0 : errno;
  });
  if (found != Found::kFile) return found;
  struct stat status = {};
  if (fstat(file.Number(), &status) != 0 ||
      !State::IsSmallFile(status.st_mode, static_cast<std::uint64_t>(status.st_size)))
    return Found::kUnclear;
  const auto read = state_->ReadAll(file, status.st_size);
  if (!read) return Found::kUnclear;
  stamp = posix::StampFrom(status);
  bytes = *read;
  return found;
}

}  // namespace logbook
