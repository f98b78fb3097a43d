// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogRootWalk.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "base/NativeFile.h"
#include "base/RunTimeError.h"
#include "base/TemporaryName.h"
#include "base/win32/Status.h"
#include "insight/Settling.h"

namespace logbook::insight {
namespace {

using win32::Follow;
using win32::Status;

// An entry that is no file in the making. A folder or a link never is one, whatever its name.
bool Counts(std::string_view name, DWORD attributes) {
  constexpr DWORD kNoPlainFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  return !IsTemporaryName(name) || (attributes & kNoPlainFile) != 0;
}

std::uint64_t Mixed(std::uint64_t state, std::uint64_t word) {
  state = (state ^ word) * 0xBF58476D1CE4E5B9ULL;
  return std::rotl(state, 27) + 0x9E3779B97F4A7C15ULL;
}

std::uint64_t DigestOf(std::string_view name, const FileStamp& stamp) {
  std::uint64_t digest = name.size();
  for (const char byte : name) digest = Mixed(digest, static_cast<unsigned char>(byte));
  digest = Mixed(digest, stamp.inode);
  digest = Mixed(digest, stamp.size);
  digest = Mixed(digest, static_cast<std::uint64_t>(stamp.modified_ns));
  return Mixed(digest, static_cast<std::uint64_t>(stamp.changed_ns));
}

// The status is that of the file before its bytes were read; all zeros where there is none.
LogFile LoadFile(const std::string& folder, const std::string& name, Status& status) {
  LogFile file;
  file.Name = name;
  const std::string path = folder + "/" + name;
  const bool viewed = IsWrittenByViewer(name);
  win32::Handle opened;
  if (!viewed) opened = win32::OpenToRead(path, Follow::kYes);
  const bool known =
      opened.IsOpen() ? StatusOf(opened, status) : StatusOf(path, Follow::kYes, status);
  if (!known) status = {};
  file.What = !known              ? LogFile::Kind::kNothing
              : status.IsFolder() ? LogFile::Kind::kRefused
                                  : LogFile::Kind::kFile;
  if (file.What != LogFile::Kind::kFile) return file;
  file.Size = status.stamp.size;
  if (viewed) return file;
  try {
    if (!opened.IsOpen()) throw RunTimeError(ErrorNumber::kPermissionDenied);
    file.Bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(file.Size, kMostFileBytes)));
    std::size_t done = 0;
    while (done < file.Bytes.size()) {
      const std::size_t count =
          win32::ReadSome(opened, file.Bytes.data() + done, file.Bytes.size() - done);
      if (count == 0) break;
      done += count;
    }
    file.Bytes.resize(done);
  } catch (const RunTimeError&) {
    return {file.Name, LogFile::Kind::kRefused, {}, 0};
  }
  return file;
}

// The stamp of a folder, entry by entry. A sum, since folders need not give their entries in one
// order.
class StampInMaking {
 public:
  StampInMaking(const FileStamp& folder, Settling& settling)
      : stamp_{Mixed(0, folder.inode), true}, settling_(settling) {}

  void Add(std::string_view name, const FileStamp& file) {
    stamp_.Digest += DigestOf(name, file);
    stamp_.Settled = stamp_.Settled && settling_.IsSettled(file, begin_);
  }
  LogStamp Result() const { return {stamp_.Digest == 0 ? 1 : stamp_.Digest, stamp_.Settled}; }

 private:
  LogStamp stamp_;
  Settling& settling_;
  const DiskClocks::Moment begin_ = DiskClocks::Moment::Now();
};

// The names of what counts in a folder. False if it cannot be read to its end.
bool NamesThatCount(const std::string& folder, std::vector<std::string>& names) {
  return win32::ForEachEntry(folder, [&names](const WIN32_FIND_DATAW& entry) {
    std::string name = win32::Narrow(entry.cFileName);
    if (Counts(name, entry.dwFileAttributes)) names.push_back(std::move(name));
  });
}

}  // namespace

struct LogRootWalk::State {
  std::string root;
  std::optional<Settling> settling;

  Settling& Enter(const FileStamp& folder, const std::string& name) {
    settling->Enter(folder, [&] { return TraitsOfDisk(root + "/" + name); });
    return *settling;
  }
};

LogRootWalk::LogRootWalk(const std::string& native_root) : state_(std::make_unique<State>()) {
  state_->root = native_root;
  if (!win32::IsFolder(native_root)) throw RunTimeError(ErrorNumber::kPathNotFound);
  Status status;
  const bool known = StatusOf(native_root, Follow::kYes, status);
  state_->settling.emplace(known ? status.stamp : FileStamp(), TraitsOfDisk(native_root));
}

LogRootWalk::~LogRootWalk() = default;

const std::string& LogRootWalk::Root() const {
  return state_->root;
}

std::uint64_t LogRootWalk::Identity() const {
  Status status;
  return StatusOf(state_->root, Follow::kYes, status) ? status.stamp.inode : 0;
}

std::vector<std::string> LogRootWalk::Names() const {
  std::vector<std::string> all;
  if (!NamesThatCount(state_->root, all)) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  std::erase_if(
      all, [this](const std::string& name) { return !win32::IsFolder(state_->root + "/" + name); });
  return all;
}

bool LogRootWalk::HasForeignClock() const {
  return state_->settling->HasForeignClock();
}

std::optional<LogStamp> LogRootWalk::Stamp(const std::string& name) const {
  const std::string folder = state_->root + "/" + name;
  Status status;
  std::vector<std::string> names;
  if (!StatusOf(folder, Follow::kYes, status) || !status.IsFolder()) return std::nullopt;
  if (!NamesThatCount(folder, names)) return StampOfClosed(name);
  StampInMaking stamp(status.stamp, state_->Enter(status.stamp, name));
  for (const std::string& each : names) {
    if (IsWrittenByViewer(each)) continue;
    Status file;
    if (!StatusOf(folder + "/" + each, Follow::kNo, file)) file = {};
    stamp.Add(each, file.stamp);
  }
  return stamp.Result();
}

// A folder that may not be entered is a log all the same, with nothing in it.
std::optional<LogStamp> LogRootWalk::StampOfClosed(const std::string& name) const {
  Status status;
  const bool there = StatusOf(state_->root + "/" + name, Follow::kYes, status);
  if (!there || !status.IsFolder()) return std::nullopt;
  return LogStamp{status.stamp.inode | 1, false};
}

LogFiles LogRootWalk::Load(const std::string& name) const {
  std::optional<StampedFiles> loaded = LoadStamped(name);
  if (loaded) return std::move(loaded->Files);
  return {state_->root, name, {}};
}

std::optional<LogRootWalk::StampedFiles> LogRootWalk::LoadStamped(const std::string& name) const {
  StampedFiles loaded = {{}, {state_->root, name, {}}};
  const std::string folder = state_->root + "/" + name;
  Status status;
  std::vector<std::string> names;
  if (!StatusOf(folder, Follow::kYes, status) || !status.IsFolder()) return std::nullopt;
  if (!NamesThatCount(folder, names)) {
    const std::optional<LogStamp> stamp = StampOfClosed(name);
    if (!stamp) return std::nullopt;
    loaded.Stamp = *stamp;
    return loaded;
  }
  StampInMaking stamp(status.stamp, state_->Enter(status.stamp, name));
  std::vector<LogFile>& files = loaded.Files.Files;
  for (const std::string& each : names) {
    Status file;
    files.push_back(LoadFile(folder, each, file));
    if (!IsWrittenByViewer(each)) stamp.Add(each, file.stamp);
  }
  loaded.Stamp = stamp.Result();
  std::sort(files.begin(), files.end(),
            [](const LogFile& a, const LogFile& b) { return a.Name < b.Name; });
  return loaded;
}

}  // namespace logbook::insight
