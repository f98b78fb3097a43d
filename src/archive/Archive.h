// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The zip writer of the workstation: the archives that a user saves and the packages that go to
// the content server. What a zip file of ours holds is described in docs/file-formats.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/Machine.h"

namespace logbook {

// Results of arZip; 0 is success.
enum class ZipResult : std::int16_t {
  kOk = 0,
  kBadOptions = 1,        // unknown option, no file or no source named
  kSourceMissing = 2,     // the source is no folder
  kSourceUnreadable = 3,  // a file or folder below the source cannot be read
  kNoZipFile = 4,         // the file to add to is no zip file
  kCannotWrite = 5,       // the zip file cannot be written: no folder, read-only, refused
  kDiskFull = 6,
  kFailed = 7,  // any other failure
};

inline constexpr std::size_t kZipResultBuffer = 256;

// One run of the zip writer. The zip file grows in a working file beside it, named
// ".<name>.<number>.part", and gets its own name when the run ends or turns to another zip file:
// until then whatever bore that name is untouched. A run takes away the working files of that
// folder that runs cut short have left. After each call the working file holds all that
// the successful calls put there, so a failed call takes nothing away from the earlier ones. Memory
// does not grow with the size of the files.
class ZipWriter {
 public:
  // Runs `between_files`, if there is one, between files and parts of large ones.
  explicit ZipWriter(const Machine& machine, std::function<void()> between_files = {});
  // Finishes; a failure of it is lost.
  ~ZipWriter();
  ZipWriter(const ZipWriter&) = delete;
  ZipWriter& operator=(const ZipWriter&) = delete;

  // Puts the folder `source` into the zip file under the folder's own name, files deflated, dates
  // and times kept, names flagged as UTF-8. A link to a file of the same folder or below is that
  // file; every other link is left out. `options` are words: "-r" takes all that lies below the
  // folder, empty folders too, and without it only the folder's own files; "-a" adds to a file
  // that exists, replacing entries of the same name, and without it the file starts anew. Calls
  // for the same zip file in one run always add. `number` has no meaning here and is 0. On failure
  // `result` holds a reason, cut to its size, which stays as it is. Texts end at their first NUL.
  // Raises nothing.
  std::int16_t arZip(std::int32_t number, std::string_view zip_file, std::string_view source,
                     std::string_view options, std::string& result);

  // Gives the zip file its name, if a call has succeeded since it was begun; nothing is left of it
  // otherwise. 0, or the code of the failure, the working file being gone then. Raises nothing.
  std::int16_t Finish(std::string& result);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// A run of a single call.
std::int16_t arZip(const Machine& machine, std::int32_t number, std::string_view zip_file,
                   std::string_view source, std::string_view options, std::string& result);

}  // namespace logbook
