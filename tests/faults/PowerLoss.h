// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What a disk would lose if the power went now. Each change of a name and the first change of a
// file's data since its last sync is noted with what undoes it. A sync of a file makes its data
// safe, its names and those of the folders above it; a sync of a folder the names in it. Folders
// are held open, so that a place is known whatever becomes of the names above it.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Faults.h"

namespace logbook::faults {

class PowerLoss {
 public:
  explicit PowerLoss(std::string store) : store_(std::move(store)) {}

  // Each pair stands around the system's call; Did after a success alone.
  struct Opening {
    bool existed = false;
  };
  Opening WillOpen(int folder, const char* path, int flags);
  void DidOpen(const Opening& opening, int folder, const char* path, int flags);
  void WillWrite(int descriptor, bool truncates);
  void DidSync(int descriptor);
  void DidMake(int folder, const char* path);  // a folder, a link
  struct Removal {
    std::string saved;
    std::optional<mode_t> folder_mode;
    std::pair<dev_t, ino_t> folder{};
  };
  Removal WillRemove(int folder, const char* path);
  void DidRemove(const Removal& removal, int folder, const char* path);
  void DidRename(const Removal& overwritten, int from_folder, const char* from, int to_folder,
                 const char* to);

  // Brings the disk to what is left after the cut.
  void Lose(Loss loss);

 private:
  using Identity = std::pair<dev_t, ino_t>;
  struct Place {
    std::size_t folder = 0;  // index in folders_
    std::string name;
  };
  struct Folder {
    Identity identity;
    int descriptor;
  };
  struct Change {
    enum class Kind { kMade, kRemoved, kRenamed } kind;
    Place place;  // kRenamed: the new one
    Place from;
    Removal removed;    // what bore the name before
    Identity object{};  // what bears it now, or bore it
    bool is_safe = false;
  };
  struct Data {
    Identity identity;
    int descriptor;
    std::string before;
    bool was_truncated;
  };

  Place PlaceOf(int folder, const char* path);
  void Note(Change change);
  void MakeSafe(const Identity& object);
  void MakeNamesSafe(const Identity& object);
  void LoseData(Loss loss, const Data& data);
  void Undo(const Change& change);

  const std::string store_;
  int saved_ = 0;
  std::vector<Folder> folders_;
  std::vector<Change> changes_;
  std::vector<Data> data_;
};

}  // namespace logbook::faults
