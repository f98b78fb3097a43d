// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/ZipStore.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "archive/ZipCommands.h"
#include "archive/ZipDirectory.h"

namespace logbook {

namespace {

constexpr std::size_t kBuffer = 64 * 1024;

constexpr zip_int64_t kCommands = ZipCommands(
    {ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR,
     ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, ZIP_SOURCE_SUPPORTS, ZIP_SOURCE_BEGIN_WRITE,
     ZIP_SOURCE_BEGIN_WRITE_CLONING, ZIP_SOURCE_COMMIT_WRITE, ZIP_SOURCE_ROLLBACK_WRITE,
     ZIP_SOURCE_SEEK_WRITE, ZIP_SOURCE_TELL_WRITE, ZIP_SOURCE_REMOVE, ZIP_SOURCE_WRITE});

}  // namespace

ZipStore::ZipStore(WorkingFile file) : file_(std::move(file)) {}

zip_source_t* ZipStore::MakeSource() {
  zip_error_init(&error_);
  read_position_ = 0;
  read_buffer_.clear();
  replacing_ = false;
  return zip_source_function_create(&ZipStore::Command, this, nullptr);
}

bool ZipStore::BeginPart() {
  base_ = 0;
  return FileSize(base_);
}

bool ZipStore::EndPart() {
  try {
    if (TakeDirectory()) return true;
  } catch (...) {
    file_.Resize(base_);
    throw;
  }
  const int error = errno;
  if (!file_.Resize(base_)) errno = error;
  return false;
}

bool ZipStore::TakeDirectory() {
  std::uint64_t size = 0;
  if (!FileSize(size)) return false;
  std::string end(std::min<std::uint64_t>(size, kZipEndBytes), '\0');
  errno = EIO;  // unless a call says otherwise
  if (file_.ReadAt(end.data(), end.size(), base_ + size - end.size()) !=
      static_cast<std::int64_t>(end.size()))
    return false;
  const auto place = FindZipDirectory(end);
  std::string directory(place ? place->size : 0, '\0');
  if (!place || file_.ReadAt(directory.data(), directory.size(), base_ + place->offset) !=
                    static_cast<std::int64_t>(directory.size()))
    return false;
  const auto moved = MoveZipDirectory(directory, base_);
  if (!moved) return false;
  std::string all = directory_ + *moved;
  if (!file_.Resize(base_ + place->offset)) return false;
  directory_ = std::move(all);
  entries_ += place->count;
  return true;
}

bool ZipStore::JoinParts() {
  base_ = 0;
  if (entries_ == 0) return true;
  std::uint64_t size = 0;
  if (!FileSize(size)) return false;
  const std::string end = ZipEnd({.offset = size, .size = directory_.size(), .count = entries_});
  if (!file_.WriteAt(directory_.data(), directory_.size(), size) ||
      !file_.WriteAt(end.data(), end.size(), size + directory_.size()))
    return false;
  directory_.clear();
  entries_ = 0;
  return true;
}

zip_int64_t ZipStore::Command(void* store, void* data, zip_uint64_t length,
                              zip_source_cmd_t command) {
  return static_cast<ZipStore*>(store)->Run(data, length, command);
}

zip_int64_t ZipStore::Run(void* data, zip_uint64_t length, zip_source_cmd_t command) {
  switch (command) {
    case ZIP_SOURCE_OPEN:
      read_position_ = 0;
      return 0;
    case ZIP_SOURCE_READ:
      return Read(data, length);
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_FREE:
      return 0;
    case ZIP_SOURCE_STAT:
      return Stat(data, length);
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&error_, data, length);
    case ZIP_SOURCE_SEEK:
      return SeekRead(data, length);
    case ZIP_SOURCE_TELL:
      return static_cast<zip_int64_t>(read_position_);
    case ZIP_SOURCE_BEGIN_WRITE:
      return BeginRewriting();
    case ZIP_SOURCE_BEGIN_WRITE_CLONING:
      return BeginAppending(length);
    case ZIP_SOURCE_WRITE:
      return Write(data, length);
    case ZIP_SOURCE_SEEK_WRITE:
      return SeekWrite(data, length);
    case ZIP_SOURCE_TELL_WRITE:
      return static_cast<zip_int64_t>(write_position_ + write_buffer_.size());
    case ZIP_SOURCE_COMMIT_WRITE:
      return Commit();
    case ZIP_SOURCE_ROLLBACK_WRITE:
      return Rollback();
    case ZIP_SOURCE_REMOVE:
      return file_.Resize(base_) ? 0 : Fail(ZIP_ER_REMOVE);
    case ZIP_SOURCE_SUPPORTS:
      return kCommands;
    default:
      zip_error_set(&error_, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

zip_int64_t ZipStore::Fail(int code) {
  zip_error_set(&error_, code, errno);
  return -1;
}

bool ZipStore::FileSize(std::uint64_t& size) {
  std::uint64_t whole = 0;
  if (!file_.Size(whole)) return false;
  size = whole - base_;  // which may be the base itself
  return true;
}

zip_int64_t ZipStore::Stat(void* data, zip_uint64_t length) {
  auto* status = ZIP_SOURCE_GET_ARGS(zip_stat_t, data, length, &error_);
  if (status == nullptr) return -1;
  std::uint64_t size = 0;
  if (!FileSize(size)) return Fail(ZIP_ER_READ);
  zip_stat_init(status);
  status->size = size;
  status->valid = ZIP_STAT_SIZE;
  return sizeof(zip_stat_t);
}

zip_int64_t ZipStore::Read(void* data, zip_uint64_t length) {
  const std::uint64_t read_end = read_begin_ + read_buffer_.size();
  if (read_position_ < read_begin_ || read_position_ >= read_end) {
    read_buffer_.resize(kBuffer);
    const std::int64_t count = file_.ReadAt(read_buffer_.data(), kBuffer, base_ + read_position_);
    if (count < 0) return Fail(ZIP_ER_READ);
    read_buffer_.resize(static_cast<std::size_t>(count));
    read_begin_ = read_position_;
  }
  const std::size_t place = read_position_ - read_begin_;
  const std::size_t count = std::min<std::size_t>(length, read_buffer_.size() - place);
  std::memcpy(data, read_buffer_.data() + place, count);
  read_position_ += count;
  return static_cast<zip_int64_t>(count);
}

zip_int64_t ZipStore::SeekRead(void* data, zip_uint64_t length) {
  std::uint64_t size = 0;
  if (!FileSize(size)) return Fail(ZIP_ER_SEEK);
  const zip_int64_t place =
      zip_source_seek_compute_offset(read_position_, size, data, length, &error_);
  if (place < 0) return -1;
  read_position_ = static_cast<std::uint64_t>(place);
  return 0;
}

zip_int64_t ZipStore::SeekWrite(void* data, zip_uint64_t length) {
  if (!Flush()) return Fail(ZIP_ER_WRITE);
  const zip_int64_t place =
      zip_source_seek_compute_offset(write_position_, written_end_, data, length, &error_);
  if (place < 0) return -1;
  write_position_ = static_cast<std::uint64_t>(place);
  return 0;
}

zip_int64_t ZipStore::BeginAppending(std::uint64_t offset) {
  std::uint64_t size = 0;
  if (!FileSize(size)) return Fail(ZIP_ER_READ);
  if (replacing_ || offset > size) {
    // The library then writes the archive as a whole.
    zip_error_set(&error_, ZIP_ER_OPNOTSUPP, 0);
    return -1;
  }
  old_tail_.resize(size - offset);
  const std::int64_t count = file_.ReadAt(old_tail_.data(), old_tail_.size(), base_ + offset);
  if (count != static_cast<std::int64_t>(old_tail_.size())) return Fail(ZIP_ER_READ);
  target_ = &file_;
  kept_ = write_position_ = written_end_ = offset;
  return 0;
}

zip_int64_t ZipStore::BeginRewriting() {
  std::uint64_t size = 0;
  if (!FileSize(size)) return Fail(ZIP_ER_READ);
  if (size == 0) return BeginAppending(0);
  second_ = file_.MakeSecond();
  if (!second_.IsOpen()) return Fail(ZIP_ER_TMPOPEN);
  target_ = &second_;
  write_position_ = written_end_ = 0;
  return 0;
}

zip_int64_t ZipStore::Write(const void* data, zip_uint64_t length) {
  const char* bytes = static_cast<const char*>(data);
  write_buffer_.insert(write_buffer_.end(), bytes, bytes + length);
  if (write_buffer_.size() >= kBuffer && !Flush()) return Fail(ZIP_ER_WRITE);
  return static_cast<zip_int64_t>(length);
}

bool ZipStore::Flush() {
  if (!target_->WriteAt(write_buffer_.data(), write_buffer_.size(), base_ + write_position_))
    return false;
  write_position_ += write_buffer_.size();
  written_end_ = std::max(written_end_, write_position_);
  write_buffer_.clear();
  return true;
}

zip_int64_t ZipStore::Commit() {
  if (!Flush() || !target_->Resize(base_ + written_end_)) return Fail(ZIP_ER_WRITE);
  if (second_.IsOpen() && !file_.BecomeSecond(std::exchange(second_, {})))
    return Fail(ZIP_ER_RENAME);
  target_ = nullptr;
  old_tail_.clear();
  return 0;
}

zip_int64_t ZipStore::Rollback() {
  write_buffer_.clear();
  target_ = nullptr;
  if (second_.IsOpen()) {
    second_.Remove();
    return 0;
  }
  // Shorten first: the old end needs the room that a failed addition may have used up.
  const bool restored = file_.Resize(base_ + kept_) &&
                        file_.WriteAt(old_tail_.data(), old_tail_.size(), base_ + kept_);
  old_tail_.clear();
  return restored ? 0 : Fail(ZIP_ER_WRITE);
}

}  // namespace logbook
