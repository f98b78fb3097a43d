// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A real WebDAV server (Apache with mod_dav) on a free port of 127.0.0.1, with its files in a
// temporary folder of its own.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace logbook::test {

// True if the server program and its modules are installed.
bool HasDavServer();

class DavServer {
 public:
  enum class Scheme { kHttp, kHttps };
  enum class LogOn { kBasic, kDigest };
  static constexpr const char* kUser = "station 7";
  static constexpr const char* kPassword = "s:cret pässword";

  // Prepares; Start starts.
  explicit DavServer(Scheme scheme = Scheme::kHttp, LogOn log_on = LogOn::kBasic);
  ~DavServer();
  DavServer(const DavServer&) = delete;
  DavServer& operator=(const DavServer&) = delete;

  void Start();
  void Stop();

  // Makes the served folder a disk of this many bytes, or gives that disk another size. False if
  // this user may not do that.
  bool LimitDisk(int bytes);

  std::string Url() const;
  // Native path of the served folder.
  std::string Root() const { return folder_ + "/root"; }
  // The certificate of the authority that signed the server's.
  std::string CaFile() const { return folder_ + "/ca.pem"; }
  // All files that the server holds: paths below the served folder, ascending.
  std::vector<std::string> Files() const;
  // Lines of the access log: "METHOD /path status".
  std::vector<std::string> Requests() const;
  // So many connections brought these requests.
  int Connections() const;

 private:
  void WriteConfiguration();
  void MakeCertificates();
  std::string TlsLines() const;
  void WriteUsers() const;

  Scheme scheme_;
  LogOn log_on_;
  std::string folder_;
  int reserved_port_ = -1;  // open socket that keeps the port while the server is down
  int port_ = 0;
  pid_t process_ = -1;
  bool has_disk_ = false;
};

}  // namespace logbook::test
