// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A content server that a workstation can be tied to, and that can be out of reach: a shared folder
// or a WebDAV server over HTTPS with an authority of its own.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace logbook::e2e {

class ContentServer {
 public:
  virtual ~ContentServer() = default;
  // Comes into reach, and goes out of it; at first it is out of reach.
  virtual void Start() = 0;
  virtual void Stop() = 0;
  // The lines of arecm.cfg that name it.
  virtual std::string Settings() const = 0;
  // What the status says while it is out of reach.
  virtual std::string OutOfReach() const = 0;
  // Native path of the folder that holds its files while it is in reach.
  virtual std::string Root() const = 0;
};

enum class ServerKind { kSharedFolder, kHttps };
// Its name in the names of tests.
std::ostream& operator<<(std::ostream& out, ServerKind kind);

// What the machine lacks for such a server; empty if it has all.
std::string MissingFor(ServerKind kind);

// `folder` is a native path where the server may put its files.
std::unique_ptr<ContentServer> MakeContentServer(ServerKind kind, const std::string& folder);

// One event as it has arrived, or as it ought to.
struct Upload {
  // What the descriptor says of each file: name, source, destination, reason and owner, with "|"
  // between.
  std::vector<std::string> described;
  // Path and bytes of each file, those of a package as what is in it.
  std::vector<std::string> files;
  auto operator<=>(const Upload&) const = default;
};

// A file in the form of Upload::files: its bytes as their number and checksum.
std::string FileLine(const std::string& path, const std::string& bytes);

// Everything below this native path as uploads, ascending. Fails the test for a descriptor that is
// not valid, a package that unzip faults and a file that belongs to no upload. `scratch` is the
// native path of a folder that is made for what is unpacked.
std::vector<Upload> ReadUploads(const std::string& root, const std::string& scratch);

}  // namespace logbook::e2e
