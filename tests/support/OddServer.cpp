// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/OddServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <stdexcept>

namespace logbook::test {

namespace {

// One connection: what has come of it and is not used yet.
struct Connection {
  int socket;
  std::string bytes;

  bool ReadMore() {
    char buffer[65536];
    const ssize_t count = read(socket, buffer, sizeof buffer);
    if (count > 0) bytes.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
  }
  // The bytes up to this text and with it; empty if the connection ends before.
  std::string TakeThrough(const std::string& text) {
    while (bytes.find(text) == std::string::npos) {
      if (!ReadMore()) return {};
    }
    const std::size_t end = bytes.find(text) + text.size();
    std::string taken = bytes.substr(0, end);
    bytes.erase(0, end);
    return taken;
  }
  std::string Take(std::size_t count) {
    while (bytes.size() < count && ReadMore()) continue;
    std::string taken = bytes.substr(0, count);
    bytes.erase(0, count);
    return taken;
  }
};

// What follows a header's name; empty if there is no such header.
std::string HeaderOf(const std::string& head, const std::string& name) {
  const std::size_t start = head.find("\r\n" + name + ": ");
  if (start == std::string::npos) return {};
  const std::size_t value = start + name.size() + 4;
  return head.substr(value, head.find("\r\n", value) - value);
}

std::string PathOfUrl(const std::string& url) {
  return url.substr(url.find('/', url.find("//") + 2));
}

class Service {
 public:
  explicit Service(OddServer::Manner manner) : manner_(std::move(manner)) {}

  void Serve(int socket) {
    Connection connection{socket, {}};
    for (;;) {
      const std::string head = connection.TakeThrough("\r\n\r\n");
      if (head.empty() || !Answer(connection, head)) break;
    }
  }

 private:
  bool Answer(Connection& connection, const std::string& head) {
    const std::size_t blank = head.find(' ');
    const OddServer::Request request{head.substr(0, blank),
                                     head.substr(blank + 1, head.find(' ', blank + 1) - blank - 1)};
    if (!HeaderOf(head, "Expect").empty())
      OddServer::Write(connection.socket, "HTTP/1.1 100 Continue\r\n\r\n");
    const std::string body = connection.Take(
        static_cast<std::size_t>(std::atol(HeaderOf(head, "Content-Length").c_str())));
    if (manner_(connection.socket, request)) return false;
    return OddServer::Write(connection.socket, AnswerTo(request, head, body));
  }

  std::string AnswerTo(const OddServer::Request& request, const std::string& head,
                       const std::string& body) {
    if (request.method == "MKCOL") return OddServer::Status(201);
    if (request.method == "PUT") {
      files_[request.path] = body;
      return OddServer::Status(201);
    }
    const auto file = files_.find(request.path);
    if (file == files_.end()) return OddServer::Status(404);
    if (request.method == "GET")
      return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(file->second.size()) +
             "\r\n\r\n" + file->second;
    files_[PathOfUrl(HeaderOf(head, "Destination"))] = file->second;
    files_.erase(file);
    return OddServer::Status(201);
  }

  const OddServer::Manner manner_;
  std::map<std::string, std::string> files_;
};

[[noreturn]] void ServeForEver(int listener, const OddServer::Manner& manner) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  signal(SIGPIPE, SIG_IGN);
  Service service(manner);
  for (;;) {
    const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    service.Serve(socket);
    close(socket);
  }
}

}  // namespace

OddServer::OddServer(Manner manner) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const place = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (bind(listener, place, size) != 0 || listen(listener, 16) != 0 ||
      getsockname(listener, place, &size) != 0)
    throw std::runtime_error("no free port");
  port_ = ntohs(address.sin_port);
  process_ = fork();
  if (process_ == 0) ServeForEver(listener, manner);
  close(listener);
}

OddServer::~OddServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

std::string OddServer::Url() const {
  return "http://127.0.0.1:" + std::to_string(port_) + "/";
}

bool OddServer::Write(int socket, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = write(socket, bytes.data() + done, bytes.size() - done);
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

void OddServer::WriteForEver(int socket, const std::string& bytes, int milliseconds) {
  pollfd other_side{.fd = socket, .events = POLLRDHUP, .revents = 0};
  while (Write(socket, bytes) && poll(&other_side, 1, milliseconds) == 0) continue;
}

std::string OddServer::Status(int status, const std::string& lines) {
  return "HTTP/1.1 " + std::to_string(status) + " Odd\r\nContent-Length: 0\r\n" + lines + "\r\n";
}

}  // namespace logbook::test
