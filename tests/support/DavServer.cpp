// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/DavServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "support/RunProgram.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

constexpr const char* kProgram = "/usr/sbin/apache2";
constexpr const char* kModules = "/usr/lib/apache2/modules";
constexpr const char* kRealm = "Content server";
constexpr int kNobody = 65534;  // whom the server runs as if the test runs as the administrator

sockaddr_in LocalAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// A socket with a port that nobody else gets while it is open; a server may listen there.
int ReservePort() {
  const int reserved = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  const sockaddr_in address = LocalAddress(0);
  if (setsockopt(reserved, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
      bind(reserved, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("no free port");
  return reserved;
}

int PortOf(int reserved) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (getsockname(reserved, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    throw std::runtime_error("no port");
  return ntohs(address.sin_port);
}

bool Answers(int port) {
  const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = LocalAddress(port);
  const bool connected =
      connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(probe);
  return connected;
}

void GiveAway(const std::string& path) {
  if (geteuid() == 0 && chown(path.c_str(), kNobody, kNobody) != 0)
    throw std::runtime_error("chown " + path);
}

void Must(const std::string& command) {
  const ProgramResult result = RunProgram(command);
  if (result.status != 0) throw std::runtime_error(command + ": " + result.output);
}

}  // namespace

bool HasDavServer() {
  return access(kProgram, X_OK) == 0 && fs::exists(std::string(kModules) + "/mod_dav_fs.so");
}

DavServer::DavServer(Scheme scheme, LogOn log_on) : scheme_(scheme), log_on_(log_on) {
  std::string pattern = (fs::temp_directory_path() / "logbook-dav-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = pattern;
  fs::permissions(folder_, fs::perms(0755));
  for (const char* name : {"/root", "/lock"}) {
    fs::create_directory(folder_ + name);
    GiveAway(folder_ + name);
  }
  reserved_port_ = ReservePort();
  port_ = PortOf(reserved_port_);
  if (scheme_ == Scheme::kHttps) MakeCertificates();
  WriteConfiguration();
}

DavServer::~DavServer() {
  Stop();
  if (has_disk_) umount2(Root().c_str(), MNT_DETACH);
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
  close(reserved_port_);
}

void DavServer::MakeCertificates() {
  const std::string in_folder = "cd " + Quoted(folder_) + " && ";
  Must(in_folder +
       "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -keyout ca.key -out ca.pem "
       "-subj '/CN=Logbook test authority'");
  Must(in_folder +
       "openssl req -newkey rsa:2048 -nodes -keyout server.key -out server.csr "
       "-subj '/CN=127.0.0.1'");
  std::ofstream(folder_ + "/server.ext") << "subjectAltName=IP:127.0.0.1\n";
  Must(in_folder +
       "openssl x509 -req -in server.csr -CA ca.pem -CAkey ca.key -CAcreateserial "
       "-days 2 -extfile server.ext -out server.pem");
}

std::string DavServer::TlsLines() const {
  if (scheme_ == Scheme::kHttp) return {};
  return std::string("LoadModule ssl_module ") + kModules + "/mod_ssl.so\n" +
         "SSLEngine on\nSSLCertificateFile " + folder_ + "/server.pem\n" +
         "SSLCertificateKeyFile " + folder_ + "/server.key\n";
}

void DavServer::WriteUsers() const {
  std::ofstream out(folder_ + "/users");
  const std::string who = std::string(kUser) + ":" + kRealm + ":";
  if (log_on_ == LogOn::kBasic) {
    out << kUser << ':'
        << RunProgram(std::string("openssl passwd -apr1 ") + Quoted(kPassword)).output;
  } else {
    out << who
        << RunProgram("printf %s " + Quoted(who + kPassword) + " | md5sum | cut -c1-32").output;
  }
}

void DavServer::WriteConfiguration() {
  WriteUsers();
  std::ofstream out(folder_ + "/httpd.conf");
  out << "ServerRoot " << folder_ << "\nPidFile " << folder_ << "/pid\nServerName 127.0.0.1\n"
      << "Listen 127.0.0.1:" << port_ << "\nErrorLog " << folder_ << "/error.log\n";
  for (const char* name : {"mpm_event", "authn_core", "authn_file", "authz_core", "authz_user",
                           "auth_basic", "auth_digest", "dav", "dav_fs"})
    out << "LoadModule " << name << "_module " << kModules << "/mod_" << name << ".so\n";
  if (geteuid() == 0) out << "User #" << kNobody << "\nGroup #" << kNobody << "\n";
  out << "DocumentRoot " << Root() << "\nDavLockDB " << folder_ << "/lock/db\n"
      << "CustomLog " << folder_ << "/access.log \"%m %U %>s\"\n"
      << "CustomLog " << folder_ << "/connections.log %k\nMaxKeepAliveRequests 0\n"
      << "<Directory " << Root() << ">\n  Dav On\n  AuthType "
      << (log_on_ == LogOn::kBasic ? "Basic" : "Digest") << "\n  AuthName \"" << kRealm << "\"\n"
      << "  AuthUserFile " << folder_ << "/users\n  Require valid-user\n</Directory>\n"
      << TlsLines();
}

void DavServer::Start() {
  if (process_ >= 0) return;
  const std::string configuration = folder_ + "/httpd.conf";
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    execl(kProgram, kProgram, "-D", "FOREGROUND", "-f", configuration.c_str(), nullptr);
    _exit(127);
  }
  for (int look = 0; look < 3000; ++look) {  // a minute
    if (Answers(port_)) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  throw std::runtime_error("the server does not start: " +
                           RunProgram("cat " + Quoted(folder_ + "/error.log")).output);
}

void DavServer::Stop() {
  if (process_ < 0) return;
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

bool DavServer::LimitDisk(int bytes) {
  const std::string options = "size=" + std::to_string(bytes);
  const unsigned long flags = has_disk_ ? MS_REMOUNT : 0;
  if (mount("tmpfs", Root().c_str(), "tmpfs", flags, options.c_str()) != 0) return false;
  if (has_disk_) return true;
  has_disk_ = true;
  GiveAway(Root());
  return true;
}

std::string DavServer::Url() const {
  return std::string(scheme_ == Scheme::kHttps ? "https" : "http") +
         "://127.0.0.1:" + std::to_string(port_) + "/";
}

std::vector<std::string> DavServer::Files() const {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(Root())) {
    const std::string path = fs::relative(entry.path(), Root()).string();
    // The server's own store of properties.
    if (entry.is_regular_file() && path.find(".DAV") == std::string::npos) files.push_back(path);
  }
  std::sort(files.begin(), files.end());
  return files;
}

int DavServer::Connections() const {
  int count = 0;
  std::ifstream in(folder_ + "/connections.log");
  // Each line is the number of requests that the connection had brought before.
  for (std::string line; std::getline(in, line);) count += line == "0" ? 1 : 0;
  return count;
}

std::vector<std::string> DavServer::Requests() const {
  std::vector<std::string> lines;
  std::ifstream in(folder_ + "/access.log");
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace logbook::test
