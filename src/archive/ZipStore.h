// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The working file of a zip archive as the zip library sees it: a source that it reads and writes.
// The library's own sources copy the whole archive for each addition. This one appends in place,
// which is safe because the file is nobody's but ours, and puts the old end back when an addition
// fails. Or it shows the library an empty file behind what is there, and joins the directories of
// all these parts at the end.
#pragma once

#include <zip.h>

#include <cstdint>
#include <string>
#include <vector>

#include "archive/WorkingFile.h"

namespace logbook {

class ZipStore {
 public:
  // Over an open file.
  explicit ZipStore(WorkingFile file);
  ~ZipStore() = default;
  ZipStore(const ZipStore&) = delete;
  ZipStore& operator=(const ZipStore&) = delete;

  // A library source over this store, or null. The store must outlive it.
  zip_source_t* MakeSource();
  // Says that entries will be replaced: the next writing makes a second file, from old and new.
  void ExpectReplacing() { replacing_ = true; }

  // Starts a part: until it is ended, the library sees an empty file, which begins where the
  // working file ends now.
  bool BeginPart();
  // Ends a part after the library has written it: keeps its directory in memory and cuts it off
  // the file. If that fails, the part is gone.
  bool EndPart();
  // Writes one directory for all parts behind them; without parts nothing happens. From then on the
  // library sees the whole archive. These three return false with errno set on failure.
  bool JoinParts();

  WorkingFile& File() { return file_; }

 private:
  static zip_int64_t Command(void* store, void* data, zip_uint64_t length,
                             zip_source_cmd_t command);
  zip_int64_t Run(void* data, zip_uint64_t length, zip_source_cmd_t command);

  zip_int64_t Stat(void* data, zip_uint64_t length);
  zip_int64_t Read(void* data, zip_uint64_t length);
  zip_int64_t SeekRead(void* data, zip_uint64_t length);
  zip_int64_t SeekWrite(void* data, zip_uint64_t length);
  zip_int64_t BeginAppending(std::uint64_t offset);
  zip_int64_t BeginRewriting();
  zip_int64_t Write(const void* data, zip_uint64_t length);
  zip_int64_t Commit();
  zip_int64_t Rollback();

  bool Flush();
  // The directory of the part that ends now goes from the file into memory.
  bool TakeDirectory();
  bool FileSize(std::uint64_t& size);
  zip_int64_t Fail(int code);

  WorkingFile file_;
  bool replacing_ = false;

  std::uint64_t base_ = 0;  // where what the library sees begins; all positions count from there
  std::string directory_;   // of all ended parts, with offsets for the whole file
  std::uint64_t entries_ = 0;

  std::uint64_t read_position_ = 0;
  std::uint64_t read_begin_ = 0;  // place in the file of the first byte of read_buffer_
  std::vector<char> read_buffer_;

  WorkingFile second_;                // open while the archive is written as a whole
  WorkingFile* target_ = nullptr;     // where writing goes: the file or the second one
  std::uint64_t write_position_ = 0;  // of the first byte of write_buffer_
  std::uint64_t written_end_ = 0;
  std::vector<char> write_buffer_;

  // While appending: what stood behind the kept part.
  std::uint64_t kept_ = 0;
  std::vector<char> old_tail_;

  zip_error_t error_{};
};

}  // namespace logbook
