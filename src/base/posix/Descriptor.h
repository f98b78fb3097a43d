// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A file descriptor that is closed with its object.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <utility>

#include "base/Machine.h"

namespace logbook::posix {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  void Close() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }

 private:
  int number_ = -1;
};

// Without waiting for the other end of a pipe.
inline constexpr int kOpenForReading = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

// The file opened for reading. Raises 53, 75 (a folder, a pipe or device, an empty name), 76, 70,
// 57.
Descriptor OpenForReading(const std::string& native_path);

// The same by a path text.
Descriptor OpenForReading(const Machine& machine, std::string_view path);

// The file, if it is one; raises 75 for a folder, pipe, socket or device.
Descriptor RefuseAllButFile(Descriptor file);

// Reads at most `size` bytes; 0 at the end. Raises 57.
std::size_t ReadSome(const Descriptor& file, char* buffer, std::size_t size);

// Reads up to the end. Raises 57, and 7 once there are more than `most` bytes.
std::string ReadToEnd(const Descriptor& file, std::size_t most);

// Copies up to the end, in bounded memory; false with errno set if the system refused to write.
// Raises 57 if it refuses to read.
bool CopyToEnd(const Descriptor& from, const Descriptor& to);

// Brings a folder's names to the disk. A failure is not told; it matters to a power cut alone.
void SyncFolder(const std::string& native_folder);

// Writes all bytes; false with errno set if the system refused.
bool WriteAll(const Descriptor& file, std::string_view bytes);

}  // namespace logbook::posix
