// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The content server as the agent sees it: a tree of folders that takes files. One implementation
// speaks WebDAV, the other writes into a shared folder.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "base/Machine.h"
#include "base/NativeDisk.h"
#include "upload/ServerSettings.h"

namespace logbook {

// Why something did not arrive, as one English sentence for the reader of the status.
class DeliveryError : public std::runtime_error {
 public:
  // Whether there is sense in trying the other submissions now.
  enum class Reach { kWholeServer, kThisSubmission };

  DeliveryError(Reach reach, const std::string& message)
      : std::runtime_error(message), reach_(reach) {}
  Reach reach() const { return reach_; }

 private:
  Reach reach_;
};

// Size and SHA-256 of a file's bytes.
struct Digest {
  std::uint64_t size = 0;
  std::string sha256;  // 64 hexadecimal digits
  bool operator==(const Digest&) const = default;
};

// Paths are relative to the configured folder, components separated by slashes, UTF-8, not escaped.
// All functions raise DeliveryError.
class ContentStore {
 public:
  virtual ~ContentStore() = default;
  // Makes the configured folder, all its levels, if it is missing.
  virtual void MakeRoot() = 0;
  // Makes a folder; one that exists is fine.
  virtual void MakeFolder(const std::string& path) = 0;
  // Size and checksum of what the server holds, read back from it; nothing if it holds no such
  // file. A file of more than `most` bytes is not read to its end: its size is beyond `most` and
  // its checksum is empty.
  virtual std::optional<Digest> DigestOf(const std::string& path, std::uint64_t most) = 0;
  // Sends an open file from its start, and replaces what bears the name.
  virtual void Put(const std::string& path, native::Reader& file) = 0;
  // Gives a file another name, which must be free.
  virtual void Move(const std::string& from, const std::string& to) = 0;
};

// The store that the settings name. Raises DeliveryError for an address of another kind.
std::unique_ptr<ContentStore> OpenContentStore(const Machine& machine,
                                               const ServerSettings& settings);

// Size and checksum of an open file from its start, of this native path. Raises DeliveryError if it
// cannot be read.
Digest DigestOfFile(native::Reader& file, const std::string& native_file);

// The same for a file that is not open, links followed, or of a larger one than `most` bytes its
// size alone.
Digest DigestOfFile(const std::string& native_file,
                    std::uint64_t most = std::numeric_limits<std::uint64_t>::max());

// Raises the DeliveryError for a file that cannot be read.
[[noreturn]] void FailToRead(const std::string& native_file);

}  // namespace logbook
