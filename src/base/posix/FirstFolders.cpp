// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"
#include "base/posix/SystemError.h"

namespace logbook {

namespace {

struct Candidate {
  std::u16string upper;
  std::string name;
  bool operator<(const Candidate& other) const {
    return upper != other.upper ? upper < other.upper : name < other.name;
  }
};

// The upper-case form of an ASCII character.
char16_t UnitOf(char byte) {
  return static_cast<char16_t>(byte >= 'a' && byte <= 'z' ? byte - 'a' + 'A' : byte);
}

// True if the name comes behind all that is kept, as far as that can be told without a copy of it.
bool IsSurelyBehind(std::string_view name, const Candidate& last) {
  if (!IsAscii(name)) return false;
  const auto [ours, theirs] =
      std::mismatch(name.begin(), name.end(), last.upper.begin(), last.upper.end(),
                    [](char a, char16_t b) { return UnitOf(a) == b; });
  if (ours == name.end() || theirs == last.upper.end()) return false;
  return UnitOf(*ours) > *theirs;
}

// A link is what it leads to.
bool IsFolder(DIR* scan, const dirent& entry) {
  if (entry.d_type == DT_DIR) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat status = {};
  return fstatat(dirfd(scan), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

// A name that no path text can bear is no folder of a log.
bool IsNameOfAnEntry(std::string_view name) {
  return name != "." && name != ".." && name.find('\\') == std::string_view::npos;
}

// The smallest names so far, the largest of them on top.
class Smallest {
 public:
  explicit Smallest(std::size_t limit) : limit_(limit) {}

  // True if a name can be told to be none of them.
  bool Excludes(std::string_view name) const {
    return heap_.size() == limit_ && (limit_ == 0 || IsSurelyBehind(name, heap_.front()));
  }
  void Take(std::string_view name) {
    Candidate candidate{Utf16Of(UpperCaseText(name)), std::string(name)};
    if (heap_.size() == limit_) {
      if (!(candidate < heap_.front())) return;
      std::pop_heap(heap_.begin(), heap_.end());
      heap_.pop_back();
    }
    heap_.push_back(std::move(candidate));
    std::push_heap(heap_.begin(), heap_.end());
  }
  std::vector<std::string> Ascending() && {
    std::sort_heap(heap_.begin(), heap_.end());
    std::vector<std::string> names;
    for (Candidate& candidate : heap_) names.push_back(std::move(candidate.name));
    return names;
  }

 private:
  std::size_t limit_;
  std::vector<Candidate> heap_;
};

}  // namespace

std::vector<std::string> FirstFoldersIn(const Machine& machine, std::string_view folder,
                                        std::size_t limit) {
  const std::string native = NativePath(machine, folder);
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(opendir(native.c_str()), closedir);
  if (scan == nullptr && errno == ENOTDIR) throw RunTimeError(ErrorNumber::kPathNotFound);
  if (scan == nullptr) posix::RaiseFolderError(errno);
  Smallest smallest(limit);
  while (true) {
    errno = 0;
    const dirent* entry = readdir(scan.get());
    if (entry == nullptr && errno != 0) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (IsNameOfAnEntry(name) && !smallest.Excludes(name) && IsFolder(scan.get(), *entry)) {
      smallest.Take(name);
    }
  }
  return std::move(smallest).Ascending();
}

}  // namespace logbook
