// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All calls here go past the library's own functions, straight to the system.

#include "PowerLoss.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace logbook::faults {

namespace {

int Open(int folder, const std::string& path, int flags) {
  return static_cast<int>(syscall(SYS_openat, folder, path.c_str(), flags | O_CLOEXEC, 0600));
}

bool Status(int folder, const char* path, struct stat& status, int flags = AT_SYMLINK_NOFOLLOW) {
  return syscall(SYS_newfstatat, folder, path, &status, flags) == 0;
}

std::pair<dev_t, ino_t> IdentityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino};
}

std::string BytesOf(int descriptor) {
  std::string bytes;
  char buffer[65536];
  for (;;) {
    const long count =
        syscall(SYS_pread64, descriptor, buffer, sizeof buffer, static_cast<off_t>(bytes.size()));
    if (count <= 0) return bytes;
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
}

void SetBytes(int descriptor, const std::string& bytes) {
  syscall(SYS_ftruncate, descriptor, 0L);
  for (std::size_t done = 0; done < bytes.size();) {
    const long count = syscall(SYS_pwrite64, descriptor, bytes.data() + done, bytes.size() - done,
                               static_cast<off_t>(done));
    if (count <= 0) return;
    done += static_cast<std::size_t>(count);
  }
}

}  // namespace

PowerLoss::Place PowerLoss::PlaceOf(int folder, const char* path) {
  std::string text = path;
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  const std::size_t slash = text.rfind('/');
  Place place;
  place.name = slash == std::string::npos ? text : text.substr(slash + 1);
  const std::string above = slash == std::string::npos ? "." : text.substr(0, slash + 1);
  const int opened = Open(folder, above, O_PATH | O_DIRECTORY);
  struct stat status = {};
  if (opened >= 0) Status(opened, "", status, AT_EMPTY_PATH);
  const Identity identity = IdentityOf(status);
  const auto found = std::find_if(folders_.begin(), folders_.end(),
                                  [&](const Folder& each) { return each.identity == identity; });
  place.folder = static_cast<std::size_t>(found - folders_.begin());
  if (found == folders_.end()) {
    folders_.push_back({identity, opened});
  } else if (opened >= 0) {
    syscall(SYS_close, opened);
  }
  return place;
}

void PowerLoss::Note(Change change) {
  struct stat status = {};
  const Folder& folder = folders_[change.place.folder];
  if (change.kind != Change::Kind::kRemoved &&
      Status(folder.descriptor, change.place.name.c_str(), status))
    change.object = IdentityOf(status);
  changes_.push_back(std::move(change));
}

PowerLoss::Opening PowerLoss::WillOpen(int folder, const char* path, int flags) {
  struct stat status = {};
  const bool existed = Status(folder, path, status, 0);
  if (existed && (flags & O_TRUNC) != 0 && S_ISREG(status.st_mode)) {
    const int opened = Open(folder, path, O_RDONLY);
    if (opened >= 0) WillWrite(opened, true);
    if (opened >= 0) syscall(SYS_close, opened);
  }
  return {existed};
}

void PowerLoss::DidOpen(const Opening& opening, int folder, const char* path, int flags) {
  if (opening.existed || (flags & O_CREAT) == 0) return;
  Note({.kind = Change::Kind::kMade, .place = PlaceOf(folder, path), .from = {}, .removed = {}});
}

void PowerLoss::WillWrite(int descriptor, bool truncates) {
  struct stat status = {};
  if (!Status(descriptor, "", status, AT_EMPTY_PATH) || !S_ISREG(status.st_mode)) return;
  const Identity identity = IdentityOf(status);
  for (Data& each : data_) {
    if (each.identity != identity) continue;
    each.was_truncated |= truncates;
    return;
  }
  // A descriptor of our own: the program's locks are none of ours.
  const int own = Open(AT_FDCWD, "/proc/self/fd/" + std::to_string(descriptor), O_RDWR);
  if (own >= 0) data_.push_back({identity, own, BytesOf(own), truncates});
}

void PowerLoss::MakeNamesSafe(const Identity& object) {
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    if (changes_[i].object != object) continue;
    for (std::size_t j = 0; j <= i; ++j) {
      const Place& place = changes_[i].place;
      if (changes_[j].place.folder == place.folder && changes_[j].place.name == place.name)
        changes_[j].is_safe = true;
    }
  }
}

// Its names, and those of the folders that lead to it.
void PowerLoss::MakeSafe(const Identity& object) {
  MakeNamesSafe(object);
  std::vector<std::size_t> above;
  for (const Change& change : changes_) {
    if (change.object == object) above.push_back(change.place.folder);
  }
  for (const std::size_t index : above) {
    if (folders_[index].identity != object) MakeSafe(folders_[index].identity);
  }
}

void PowerLoss::DidSync(int descriptor) {
  struct stat status = {};
  if (!Status(descriptor, "", status, AT_EMPTY_PATH)) return;
  const Identity identity = IdentityOf(status);
  std::erase_if(data_, [&](const Data& each) {
    if (each.identity == identity) syscall(SYS_close, each.descriptor);
    return each.identity == identity;
  });
  MakeSafe(identity);
  if (!S_ISDIR(status.st_mode)) return;
  for (Change& change : changes_) {
    const bool is_here = folders_[change.place.folder].identity == identity ||
                         (change.kind == Change::Kind::kRenamed &&
                          folders_[change.from.folder].identity == identity);
    change.is_safe |= is_here;
  }
}

void PowerLoss::DidMake(int folder, const char* path) {
  Note({.kind = Change::Kind::kMade, .place = PlaceOf(folder, path), .from = {}, .removed = {}});
}

PowerLoss::Removal PowerLoss::WillRemove(int folder, const char* path) {
  struct stat status = {};
  if (!Status(folder, path, status)) return {};
  if (S_ISDIR(status.st_mode)) {
    return {.saved = {}, .folder_mode = status.st_mode & 07777, .folder = IdentityOf(status)};
  }
  const std::string saved = store_ + "/" + std::to_string(saved_++);
  syscall(SYS_linkat, folder, path, AT_FDCWD, saved.c_str(), 0);
  return {.saved = saved, .folder_mode = {}, .folder = {}};
}

void PowerLoss::DidRemove(const Removal& removal, int folder, const char* path) {
  Note({.kind = Change::Kind::kRemoved,
        .place = PlaceOf(folder, path),
        .from = {},
        .removed = removal,
        .object = removal.folder});
}

void PowerLoss::DidRename(const Removal& overwritten, int from_folder, const char* from,
                          int to_folder, const char* to) {
  Place source = PlaceOf(from_folder, from);
  Note({.kind = Change::Kind::kRenamed,
        .place = PlaceOf(to_folder, to),
        .from = std::move(source),
        .removed = overwritten});
}

void PowerLoss::LoseData(Loss loss, const Data& data) {
  if (loss == Loss::kNames) return;
  const std::string now = BytesOf(data.descriptor);
  std::string left = data.before;
  if (loss == Loss::kData && data.was_truncated) left.clear();
  if (loss == Loss::kDataZeroed) left.assign(now.size(), '\0');
  if (loss == Loss::kTorn) left = now.substr(0, now.size() / 2);
  SetBytes(data.descriptor, left);
}

void PowerLoss::Undo(const Change& change) {
  const int folder = folders_[change.place.folder].descriptor;
  const char* name = change.place.name.c_str();
  if (change.kind == Change::Kind::kMade) {
    if (syscall(SYS_unlinkat, folder, name, 0) != 0)
      syscall(SYS_unlinkat, folder, name, AT_REMOVEDIR);
    return;
  }
  if (change.kind == Change::Kind::kRenamed) {
    const int above = folders_[change.from.folder].descriptor;
    syscall(SYS_renameat2, folder, name, above, change.from.name.c_str(), 1 /* RENAME_NOREPLACE */);
  }
  if (!change.removed.saved.empty())
    syscall(SYS_linkat, AT_FDCWD, change.removed.saved.c_str(), folder, name, 0);
  if (change.kind != Change::Kind::kRemoved || !change.removed.folder_mode) return;
  // What was in the folder comes back into the new one.
  syscall(SYS_mkdirat, folder, name, *change.removed.folder_mode);
  for (Folder& each : folders_) {
    if (each.identity == change.object) each.descriptor = Open(folder, name, O_PATH | O_DIRECTORY);
  }
}

void PowerLoss::Lose(Loss loss) {
  for (const Data& data : data_) LoseData(loss, data);
  if (loss == Loss::kData || loss == Loss::kDataZeroed) return;
  std::vector<const Change*> open;
  for (const Change& change : changes_) {
    if (!change.is_safe) open.push_back(&change);
  }
  const std::size_t kept = loss == Loss::kTorn ? open.size() / 2 : 0;
  for (std::size_t i = open.size(); i > kept; --i) Undo(*open[i - 1]);
}

}  // namespace logbook::faults
