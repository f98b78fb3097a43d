// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is known of the clocks by which file systems stamp their files. A network drive stamps by
// the clock of its server, which may be behind that of this machine: a file that was written a
// moment ago looks old there, and a second change may leave its stamp as it is. So a disk's clock
// is taken from the stamps that the disk has shown; nothing is written to ask for it.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "base/Files.h"

namespace logbook {

class DiskClocks {
 public:
  // A moment by the clocks of this machine, in nanoseconds: one that can be set, from the epoch of
  // the stamps, and one that only ever runs.
  struct Moment {
    std::int64_t system_ns = 0, steady_ns = 0;
    static Moment Now();
  };

  // The disk has shown this stamp before that moment: its clock is not behind the time of the
  // change, and from then on runs like this machine's. The default stamp says nothing.
  void Take(const FileStamp& stamp, const Moment& moment);

  // A file that had the one stamp has the other now. If its disk gave the later of its times first,
  // that disk's clock has been set back, and what was known of it is forgotten.
  void SeeChange(const FileStamp& before, const FileStamp& after);

  // True if no change of the file after that moment can leave the stamp as it is, by the disk's
  // clock as far as it is known, and by this machine's: stamps of the future prove nothing. Time
  // stamps have a grain: some milliseconds on file systems that keep fractions of seconds, up to
  // two seconds on others.
  bool IsSettled(const FileStamp& stamp, const Moment& moment) const;

 private:
  // By device: how far its clock is ahead of the steady one, at least.
  std::vector<std::pair<std::uint64_t, std::int64_t>> ahead_;
};

}  // namespace logbook
