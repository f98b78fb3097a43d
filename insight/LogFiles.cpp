// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogFiles.h"

#include <algorithm>
#include <array>
#include <bit>

#include "base/UpperCase.h"
#include "insight/LittleEndian.h"

namespace logbook::insight {
namespace {

constexpr auto kViewerFiles = std::to_array<std::string_view>(
    {"analog.rpt", "meter.rpt", "Sys.rpt", "bitout.rpt", "bitin.rpt", "mainte.rpt", "tune.bin"});

constexpr auto kLogNames = std::to_array<std::string_view>(
    {"logfile.ini", "comment.txt", "auser.txt", "aall.txt", "sys.txt", "bout.txt", "bin.txt",
     "sensevar.mac", "senseva2.mac", "othervar.mac", "otherva2.mac", "resovar.mac", "paramvar.mac",
     "acqlog.txt", "sequence.log", "chnseq.log", "errlog.txt", "ceerrlog.txt", "tune.rpt"});

// A mixing of words of eight bytes, in the order of their bytes whatever the machine.
class Mixer {
 public:
  void Add(std::uint64_t word) {
    state_ ^= word * 0x9E3779B97F4A7C15ULL;
    state_ = std::rotl(state_, 29) * 0xBF58476D1CE4E5B9ULL;
  }

  void Add(std::string_view bytes) {
    Add(bytes.size());
    while (bytes.size() >= 8) {
      Add(WordOf(bytes.substr(0, 8)));
      bytes.remove_prefix(8);
    }
    Add(WordOf(bytes));
  }

  std::uint64_t Result() const {
    std::uint64_t result = state_ ^ (state_ >> 31);
    result *= 0x94D049BB133111EBULL;
    return result ^ (result >> 29);
  }

 private:
  std::uint64_t state_ = 0x243F6A8885A308D3ULL;
};

// False for most names that are not the same in another case, at a glance.
bool MayBeSame(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) return a.empty() == b.empty();
  const auto first = static_cast<unsigned char>(a.front());
  const auto other = static_cast<unsigned char>(b.front());
  return first >= 0x80 || other >= 0x80 || (first | 0x20) == (other | 0x20);
}

// False for nearly all names that do not end as those of the viewer do, at a glance. Characters
// beyond ASCII may be the same as a letter in another case.
bool MayBeViewers(std::string_view name) {
  if (name.size() < 3) return false;
  const std::string_view end = name.substr(name.size() - 3);
  const auto is = [&](std::string_view wanted) {
    return (end[0] | 0x20) == wanted[0] && (end[1] | 0x20) == wanted[1] &&
           (end[2] | 0x20) == wanted[2];
  };
  const bool ascii = ((end[0] | end[1] | end[2]) & 0x80) == 0;
  return !ascii || is("rpt") || is("bin");
}

}  // namespace

const LogFile* LogFiles::Find(std::string_view name) const {
  const LogFile* found = nullptr;
  for (const LogFile& file : Files) {
    if (!MayBeSame(file.Name, name)) continue;
    if (file.Name == name) return &file;
    if (found == nullptr && EqualIgnoringCase(file.Name, name)) found = &file;
  }
  return found;
}

bool HoldsLog(const LogFiles& files) {
  return std::any_of(kLogNames.begin(), kLogNames.end(),
                     [&](std::string_view name) { return files.Find(name) != nullptr; });
}

bool IsWrittenByViewer(std::string_view name) {
  if (!MayBeViewers(name)) return false;
  return std::any_of(kViewerFiles.begin(), kViewerFiles.end(),
                     [name](std::string_view each) { return EqualIgnoringCase(each, name); });
}

std::uint64_t FingerprintOf(const LogFiles& files) {
  Mixer mixer;
  for (const LogFile& file : files.Files) {
    if (file.What != LogFile::Kind::kFile || IsWrittenByViewer(file.Name)) continue;
    mixer.Add(file.Name);
    mixer.Add(file.Size);
    mixer.Add(file.Bytes);
  }
  return mixer.Result();
}

}  // namespace logbook::insight
