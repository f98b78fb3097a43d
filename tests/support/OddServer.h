// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A small WebDAV server in memory that behaves oddly where a test wants it: a process of its own on
// a free port of 127.0.0.1 that serves one connection at a time.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace logbook::test {

class OddServer {
 public:
  struct Request {
    std::string method;
    std::string path;  // as it came, with its escapes
  };
  // What to do for a request, in the server's process: writes to the socket and returns true, which
  // ends the connection, or returns false to leave the request to the server.
  using Manner = std::function<bool(int socket, const Request& request)>;

  explicit OddServer(Manner manner);
  ~OddServer();
  OddServer(const OddServer&) = delete;
  OddServer& operator=(const OddServer&) = delete;

  std::string Url() const;

  // For manners: writes all bytes; false if the other side has gone.
  static bool Write(int socket, const std::string& bytes);
  // Writes these bytes again and again until the other side has gone, this long apart.
  static void WriteForEver(int socket, const std::string& bytes, int milliseconds);
  // An answer without a body.
  static std::string Status(int status, const std::string& lines = {});

 private:
  int port_ = 0;
  pid_t process_ = -1;
};

}  // namespace logbook::test
