// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogRootWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <chrono>
#include <string_view>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"

namespace logbook::insight {
namespace {

using posix::Descriptor;

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

OpenFolder OpenBelow(int folder, const char* name) {
  const int descriptor = openat(folder, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  OpenFolder opened(fdopendir(descriptor));
  if (opened == nullptr) close(descriptor);
  return opened;
}

// A name that a path text can hold, and that is no part of a file in the making.
bool Counts(std::string_view name) {
  return name != "." && name != ".." && !name.starts_with(kTemporaryName) &&
         name.find('\\') == std::string_view::npos;
}

// Calls with each entry that counts. False if the folder cannot be read to its end.
template <typename Sink>
bool EachEntry(DIR* folder, Sink sink) {
  while (true) {
    errno = 0;
    const dirent* entry = readdir(folder);
    if (entry == nullptr) return errno == 0;
    if (Counts(entry->d_name)) sink(*entry);
  }
}

std::int64_t Nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

std::uint64_t Mixed(std::uint64_t state, std::uint64_t word) {
  state = (state ^ word) * 0xBF58476D1CE4E5B9ULL;
  return std::rotl(state, 27) + 0x9E3779B97F4A7C15ULL;
}

std::uint64_t DigestOf(std::string_view name, const struct stat& status) {
  std::uint64_t digest = name.size();
  for (const char byte : name) digest = Mixed(digest, static_cast<unsigned char>(byte));
  digest = Mixed(digest, status.st_ino);
  digest = Mixed(digest, static_cast<std::uint64_t>(status.st_size));
  digest = Mixed(digest, static_cast<std::uint64_t>(Nanoseconds(status.st_mtim)));
  return Mixed(digest, static_cast<std::uint64_t>(Nanoseconds(status.st_ctim)));
}

// Time stamps have a grain: some milliseconds on file systems that keep fractions of seconds, up to
// two seconds on others.
bool IsSettled(const struct stat& status, std::int64_t now) {
  constexpr std::int64_t kSecond = 1'000'000'000;
  const bool whole_seconds = status.st_mtim.tv_nsec == 0;
  const std::int64_t grain = whole_seconds ? 2 * kSecond + kSecond / 2 : kSecond / 10;
  return std::max(Nanoseconds(status.st_mtim), Nanoseconds(status.st_ctim)) + grain < now;
}

std::int64_t Now() {
  using std::chrono::nanoseconds;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<nanoseconds>(now).count();
}

void ReadBytes(const Descriptor& descriptor, LogFile& file) {
  char buffer[16384];
  while (const std::size_t count = posix::ReadSome(descriptor, buffer, sizeof buffer)) {
    const std::size_t room = kMostFileBytes - std::min(kMostFileBytes, file.Bytes.size());
    file.Bytes.append(buffer, std::min(count, room));
    file.Size += count;
    if (room == 0) break;
  }
}

LogFile LoadFile(int folder, std::string name) {
  LogFile file;
  file.Name = std::move(name);
  const Descriptor descriptor(openat(folder, file.Name.c_str(), posix::kOpenForReading));
  struct stat status = {};
  if (!descriptor.IsOpen()) {
    file.What =
        errno == ENOENT || errno == ENXIO ? LogFile::Kind::kNothing : LogFile::Kind::kRefused;
    return file;
  }
  if (fstat(descriptor.Number(), &status) != 0 || !S_ISREG(status.st_mode)) {
    file.What = S_ISDIR(status.st_mode) ? LogFile::Kind::kRefused : LogFile::Kind::kNothing;
    return file;
  }
  file.Size = static_cast<std::uint64_t>(status.st_size);
  if (IsWrittenByViewer(file.Name)) return file;
  try {
    file.Size = 0;
    ReadBytes(descriptor, file);
    if (file.Bytes.size() == kMostFileBytes) file.Size = static_cast<std::uint64_t>(status.st_size);
  } catch (const RunTimeError&) {
    return {file.Name, LogFile::Kind::kRefused, {}, 0};
  }
  return file;
}

}  // namespace

struct LogRootWalk::State {
  std::string root;
  Descriptor descriptor;
};

LogRootWalk::LogRootWalk(const std::string& native_root) : state_(std::make_unique<State>()) {
  state_->root = native_root;
  state_->descriptor = Descriptor(open(native_root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!state_->descriptor.IsOpen()) throw RunTimeError(ErrorNumber::kPathNotFound);
}

LogRootWalk::~LogRootWalk() = default;

const std::string& LogRootWalk::Root() const {
  return state_->root;
}

std::uint64_t LogRootWalk::Identity() const {
  struct stat status = {};
  return fstat(state_->descriptor.Number(), &status) == 0 ? status.st_ino : 0;
}

std::vector<std::string> LogRootWalk::Names() const {
  const int root = state_->descriptor.Number();
  const OpenFolder folder = OpenBelow(root, ".");
  if (folder == nullptr) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  std::vector<std::string> names;
  const bool whole = EachEntry(folder.get(), [&](const dirent& entry) {
    struct stat status = {};
    const bool known = entry.d_type == DT_DIR || entry.d_type == DT_REG;
    if (known ? entry.d_type == DT_DIR
              : fstatat(root, entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode)) {
      names.emplace_back(entry.d_name);
    }
  });
  if (!whole) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  return names;
}

std::optional<LogStamp> LogRootWalk::Stamp(const std::string& name) const {
  const OpenFolder folder = OpenBelow(state_->descriptor.Number(), name.c_str());
  struct stat status = {};
  if (folder == nullptr || fstat(dirfd(folder.get()), &status) != 0) {
    // A folder that may not be entered is a log all the same, with nothing in it.
    const bool there = fstatat(state_->descriptor.Number(), name.c_str(), &status, 0) == 0;
    if (!there || !S_ISDIR(status.st_mode)) return std::nullopt;
    return LogStamp{status.st_ino | 1, false};
  }
  LogStamp stamp = {Mixed(0, status.st_ino), true};
  const std::int64_t now = Now();
  // A sum, since folders need not give their entries in one order.
  EachEntry(folder.get(), [&](const dirent& entry) {
    if (IsWrittenByViewer(entry.d_name)) return;
    struct stat file = {};
    if (fstatat(dirfd(folder.get()), entry.d_name, &file, 0) != 0) file = {};
    stamp.Digest += DigestOf(entry.d_name, file);
    stamp.Settled = stamp.Settled && IsSettled(file, now);
  });
  if (stamp.Digest == 0) stamp.Digest = 1;
  return stamp;
}

LogFiles LogRootWalk::Load(const std::string& name) const {
  LogFiles files;
  files.Root = state_->root;
  files.Folder = name;
  const OpenFolder folder = OpenBelow(state_->descriptor.Number(), name.c_str());
  if (folder == nullptr) return files;
  EachEntry(folder.get(), [&](const dirent& entry) {
    files.Files.push_back(LoadFile(dirfd(folder.get()), entry.d_name));
  });
  std::sort(files.Files.begin(), files.Files.end(),
            [](const LogFile& a, const LogFile& b) { return a.Name < b.Name; });
  return files;
}

}  // namespace logbook::insight
