// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogRootWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <string_view>

#include "base/RunTimeError.h"
#include "base/TemporaryName.h"
#include "base/posix/Descriptor.h"
#include "base/posix/Stamp.h"
#include "insight/Settling.h"

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
bool Counts(const dirent& entry) {
  const std::string_view name = entry.d_name;
  const bool in_the_making =
      IsTemporaryName(name) && entry.d_type != DT_DIR && entry.d_type != DT_LNK;
  return name != "." && name != ".." && !in_the_making && name.find('\\') == std::string_view::npos;
}

// Calls with each entry that counts. False if the folder cannot be read to its end.
template <typename Sink>
bool EachEntry(DIR* folder, Sink sink) {
  while (true) {
    errno = 0;
    const dirent* entry = readdir(folder);
    if (entry == nullptr) return errno == 0;
    if (Counts(*entry)) sink(*entry);
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

// A file that does not grow meanwhile takes one call.
void ReadBytes(const Descriptor& descriptor, std::uint64_t size, LogFile& file) {
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, kMostFileBytes));
  file.Bytes.resize(wanted);
  std::size_t done = 0;
  while (done < wanted) {
    const std::size_t count = posix::ReadSome(descriptor, file.Bytes.data() + done, wanted - done);
    if (count == 0) break;
    done += count;
  }
  file.Bytes.resize(done);
}

LogFile::Kind KindOf(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return LogFile::Kind::kFile;
  return S_ISDIR(status.st_mode) ? LogFile::Kind::kRefused : LogFile::Kind::kNothing;
}

// The status is that of the file before its bytes were read; all zeros where there is none.
LogFile LoadFile(int folder, const char* name, struct stat& status) {
  LogFile file;
  file.Name = name;
  const bool viewed = IsWrittenByViewer(name);
  const Descriptor descriptor(viewed ? -1 : openat(folder, name, posix::kOpenForReading));
  const bool known = descriptor.IsOpen() ? fstat(descriptor.Number(), &status) == 0
                                         : fstatat(folder, name, &status, 0) == 0;
  const bool refused = !known && errno == EACCES;
  if (!known) status = {};
  file.What = known ? KindOf(status) : refused ? LogFile::Kind::kRefused : LogFile::Kind::kNothing;
  file.Size = file.What == LogFile::Kind::kFile ? static_cast<std::uint64_t>(status.st_size) : 0;
  if (file.What != LogFile::Kind::kFile || viewed) return file;
  try {
    if (!descriptor.IsOpen()) throw RunTimeError(ErrorNumber::kPermissionDenied);
    ReadBytes(descriptor, file.Size, file);
  } catch (const RunTimeError&) {
    return {file.Name, LogFile::Kind::kRefused, {}, 0};
  }
  return file;
}

// The stamp of a folder, entry by entry. A sum, since folders need not give their entries in one
// order.
class StampInMaking {
 public:
  StampInMaking(const struct stat& folder, Settling& settling)
      : stamp_{Mixed(0, folder.st_ino), true}, settling_(settling) {}

  void Add(const char* name, const struct stat& file) {
    stamp_.Digest += DigestOf(name, file);
    stamp_.Settled = stamp_.Settled && settling_.IsSettled(posix::StampFrom(file), begin_);
  }
  LogStamp Result() const { return {stamp_.Digest == 0 ? 1 : stamp_.Digest, stamp_.Settled}; }

 private:
  LogStamp stamp_;
  Settling& settling_;
  const DiskClocks::Moment begin_ = DiskClocks::Moment::Now();
};

}  // namespace

struct LogRootWalk::State {
  std::string root;
  Descriptor descriptor;
  std::optional<Settling> settling;

  Settling& Enter(const struct stat& folder, const std::string& name) {
    settling->Enter(posix::StampFrom(folder), [&] { return TraitsOfDisk(root + "/" + name); });
    return *settling;
  }
};

LogRootWalk::LogRootWalk(const std::string& native_root) : state_(std::make_unique<State>()) {
  state_->root = native_root;
  state_->descriptor = Descriptor(open(native_root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!state_->descriptor.IsOpen()) throw RunTimeError(ErrorNumber::kPathNotFound);
  struct stat status = {};
  const bool known = fstat(state_->descriptor.Number(), &status) == 0;
  state_->settling.emplace(known ? posix::StampFrom(status) : FileStamp(),
                           TraitsOfDisk(native_root));
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

bool LogRootWalk::HasForeignClock() const {
  return state_->settling->HasForeignClock();
}

std::optional<LogStamp> LogRootWalk::Stamp(const std::string& name) const {
  const OpenFolder folder = OpenBelow(state_->descriptor.Number(), name.c_str());
  if (folder == nullptr) return StampOfClosed(name);
  struct stat status = {};
  if (fstat(dirfd(folder.get()), &status) != 0) return std::nullopt;
  StampInMaking stamp(status, state_->Enter(status, name));
  EachEntry(folder.get(), [&](const dirent& entry) {
    if (IsWrittenByViewer(entry.d_name)) return;
    struct stat file = {};
    if (fstatat(dirfd(folder.get()), entry.d_name, &file, 0) != 0) file = {};
    stamp.Add(entry.d_name, file);
  });
  return stamp.Result();
}

// A folder that may not be entered is a log all the same, with nothing in it.
std::optional<LogStamp> LogRootWalk::StampOfClosed(const std::string& name) const {
  struct stat status = {};
  const bool there = fstatat(state_->descriptor.Number(), name.c_str(), &status, 0) == 0;
  if (!there || !S_ISDIR(status.st_mode)) return std::nullopt;
  return LogStamp{status.st_ino | 1, false};
}

LogFiles LogRootWalk::Load(const std::string& name) const {
  std::optional<StampedFiles> loaded = LoadStamped(name);
  if (loaded) return std::move(loaded->Files);
  return {state_->root, name, {}};
}

std::optional<LogRootWalk::StampedFiles> LogRootWalk::LoadStamped(const std::string& name) const {
  StampedFiles loaded = {{}, {state_->root, name, {}}};
  const OpenFolder folder = OpenBelow(state_->descriptor.Number(), name.c_str());
  if (folder == nullptr) {
    const std::optional<LogStamp> stamp = StampOfClosed(name);
    if (!stamp) return std::nullopt;
    loaded.Stamp = *stamp;
    return loaded;
  }
  struct stat status = {};
  if (fstat(dirfd(folder.get()), &status) != 0) return std::nullopt;
  StampInMaking stamp(status, state_->Enter(status, name));
  std::vector<LogFile>& files = loaded.Files.Files;
  EachEntry(folder.get(), [&](const dirent& entry) {
    struct stat file = {};
    files.push_back(LoadFile(dirfd(folder.get()), entry.d_name, file));
    if (!IsWrittenByViewer(entry.d_name)) stamp.Add(entry.d_name, file);
  });
  loaded.Stamp = stamp.Result();
  std::sort(files.begin(), files.end(),
            [](const LogFile& a, const LogFile& b) { return a.Name < b.Name; });
  return loaded;
}

}  // namespace logbook::insight
