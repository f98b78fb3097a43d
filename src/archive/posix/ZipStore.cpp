// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/posix/ZipStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "archive/posix/ZipCommands.h"
#include "archive/posix/ZipDirectory.h"
#include "base/posix/LockedFile.h"

namespace logbook {

namespace {

constexpr std::size_t kBuffer = 64 * 1024;

constexpr zip_int64_t kCommands = ZipCommands(
    {ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR,
     ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, ZIP_SOURCE_SUPPORTS, ZIP_SOURCE_BEGIN_WRITE,
     ZIP_SOURCE_BEGIN_WRITE_CLONING, ZIP_SOURCE_COMMIT_WRITE, ZIP_SOURCE_ROLLBACK_WRITE,
     ZIP_SOURCE_SEEK_WRITE, ZIP_SOURCE_TELL_WRITE, ZIP_SOURCE_REMOVE, ZIP_SOURCE_WRITE});

// pwrite until all is written; false with errno set.
bool WriteAll(int descriptor, const char* data, std::uint64_t length, std::uint64_t position) {
  while (length > 0) {
    const ssize_t count = pwrite(descriptor, data, length, static_cast<off_t>(position));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    data += count;
    length -= static_cast<std::uint64_t>(count);
    position += static_cast<std::uint64_t>(count);
  }
  return true;
}

// pread until the buffer is full or the file ends; the number of bytes, or -1 with errno set.
ssize_t ReadAll(int descriptor, char* data, std::size_t length, std::uint64_t position) {
  std::size_t done = 0;
  while (done < length) {
    const ssize_t count =
        pread(descriptor, data + done, length - done, static_cast<off_t>(position + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(done);
}

}  // namespace

ZipStore::ZipStore(posix::Descriptor file, std::string path)
    : file_(std::move(file)), path_(std::move(path)) {}

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
  std::uint64_t size = 0;
  if (!FileSize(size)) return false;
  std::string end(std::min<std::uint64_t>(size, kZipEndBytes), '\0');
  errno = EIO;  // unless a call says otherwise
  if (ReadAll(file_.Number(), end.data(), end.size(), base_ + size - end.size()) ==
      static_cast<ssize_t>(end.size())) {
    const auto place = FindZipDirectory(end);
    std::string directory(place ? place->size : 0, '\0');
    if (place && ReadAll(file_.Number(), directory.data(), directory.size(),
                         base_ + place->offset) == static_cast<ssize_t>(directory.size())) {
      const auto moved = MoveZipDirectory(directory, base_);
      if (moved && ftruncate(file_.Number(), static_cast<off_t>(base_ + place->offset)) == 0) {
        directory_ += *moved;
        entries_ += place->count;
        return true;
      }
    }
  }
  const int error = errno;
  if (ftruncate(file_.Number(), static_cast<off_t>(base_)) != 0) errno = error;
  return false;
}

bool ZipStore::JoinParts() {
  base_ = 0;
  if (entries_ == 0) return true;
  std::uint64_t size = 0;
  if (!FileSize(size)) return false;
  const std::string end = ZipEnd({.offset = size, .size = directory_.size(), .count = entries_});
  if (!WriteAll(file_.Number(), directory_.data(), directory_.size(), size) ||
      !WriteAll(file_.Number(), end.data(), end.size(), size + directory_.size()))
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
      return ftruncate(file_.Number(), static_cast<off_t>(base_)) == 0 ? 0 : Fail(ZIP_ER_REMOVE);
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
  struct stat status {};
  if (fstat(file_.Number(), &status) != 0) return false;
  size = static_cast<std::uint64_t>(status.st_size) - base_;
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
    const ssize_t count =
        ReadAll(file_.Number(), read_buffer_.data(), kBuffer, base_ + read_position_);
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
  const ssize_t count = ReadAll(file_.Number(), old_tail_.data(), old_tail_.size(), base_ + offset);
  if (count != static_cast<ssize_t>(old_tail_.size())) return Fail(ZIP_ER_READ);
  target_ = file_.Number();
  kept_ = write_position_ = written_end_ = offset;
  return 0;
}

zip_int64_t ZipStore::BeginRewriting() {
  std::uint64_t size = 0;
  if (!FileSize(size)) return Fail(ZIP_ER_READ);
  if (size == 0) return BeginAppending(0);
  // Nobody's but ours, as the first one, and no easier to read than that.
  struct stat status {};
  if (fstat(file_.Number(), &status) != 0) return Fail(ZIP_ER_TMPOPEN);
  unlink((path_ + "2").c_str());
  second_ = posix::MakeLockedFile(path_ + "2", 0600);
  if (!second_.IsOpen()) return Fail(ZIP_ER_TMPOPEN);
  target_ = second_.Number();
  if (fchmod(target_, status.st_mode & 07777) != 0) {
    const int error = errno;
    Rollback();
    errno = error;
    return Fail(ZIP_ER_TMPOPEN);
  }
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
  if (!WriteAll(target_, write_buffer_.data(), write_buffer_.size(), base_ + write_position_))
    return false;
  write_position_ += write_buffer_.size();
  written_end_ = std::max(written_end_, write_position_);
  write_buffer_.clear();
  return true;
}

zip_int64_t ZipStore::Commit() {
  if (!Flush() || ftruncate(target_, static_cast<off_t>(base_ + written_end_)) != 0)
    return Fail(ZIP_ER_WRITE);
  if (second_.IsOpen()) {
    if (std::rename((path_ + "2").c_str(), path_.c_str()) != 0) return Fail(ZIP_ER_RENAME);
    file_ = std::move(second_);
    second_.Close();  // the old file, which the move has left there
  }
  target_ = -1;
  old_tail_.clear();
  return 0;
}

zip_int64_t ZipStore::Rollback() {
  write_buffer_.clear();
  target_ = -1;
  if (second_.IsOpen()) {
    second_.Close();
    unlink((path_ + "2").c_str());
    return 0;
  }
  // Shorten first: the old end needs the room that a failed addition may have used up.
  const bool restored = ftruncate(file_.Number(), static_cast<off_t>(base_ + kept_)) == 0 &&
                        WriteAll(file_.Number(), old_tail_.data(), old_tail_.size(), base_ + kept_);
  old_tail_.clear();
  return restored ? 0 : Fail(ZIP_ER_WRITE);
}

}  // namespace logbook
