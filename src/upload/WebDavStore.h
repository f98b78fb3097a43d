// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A content server that speaks WebDAV over HTTP or HTTPS. Certificates are always verified, and
// redirections are not followed: files go to the configured server or nowhere. One connection
// serves all requests, and the way to log on that the server has asked for is used from then on.
// An answer that does not end, in bytes or in time, is given up.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "upload/ContentStore.h"

namespace logbook {

// The longest that a request may take, in milliseconds: the time for an answer and that of a file
// of this size at the slowest speed that is borne. Never more than 32 bits hold, some 24 days: the
// library that carries the requests cuts what is larger.
long LongestTransfer(std::chrono::milliseconds answer, std::uint64_t file_bytes);

class WebDavStore : public ContentStore {
 public:
  // `ca_file` is a native path, or empty for the certificates that the system trusts.
  WebDavStore(const ServerSettings& settings, const std::string& password,
              const std::string& ca_file);
  ~WebDavStore() override;

  void MakeRoot() override;
  void MakeFolder(const std::string& path) override;
  std::optional<Digest> DigestOf(const std::string& path, std::uint64_t most) override;
  void Put(const std::string& path, native::Reader& file) override;
  void Move(const std::string& from, const std::string& to) override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
