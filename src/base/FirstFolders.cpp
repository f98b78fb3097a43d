// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>

#include "base/Files.h"
#include "base/FolderNames.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"

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
  Smallest smallest(limit);
  ForEachName(NativePath(machine, folder),
              [&smallest](std::string_view name, const std::function<bool()>& is_folder) {
                // A name that no path text can bear is no folder of a log.
                const bool counts = name.find('\\') == std::string_view::npos;
                if (counts && !smallest.Excludes(name) && is_folder()) smallest.Take(name);
              });
  return std::move(smallest).Ascending();
}

}  // namespace logbook
