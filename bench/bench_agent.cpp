// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The upload of many small packages: ecm-agent on the one side, on the other what makes the same
// requests and does nothing else: one run of the curl program, and, for the eye, one bare handle of
// its library. All are measured from outside.
//
//   bench_agent make HOME URL PACKAGES   a home whose outbox holds so many packages, and arecm.cfg
//   bench_agent requests HOME URL        prints the agent's requests for that outbox for "curl -K"
//   bench_agent handle HOME URL          makes them with one handle
//   bench_agent serve                    a WebDAV server in memory; prints its address
//   bench_agent expect URL PACKAGES UNKNOWN
//                                        fails unless the server holds the files of so many
//                                        packages below this address, no half one, and has had the
//                                        requests for them there: of each kind as many as they
//                                        need, no other, and so many without the password

#include <arpa/inet.h>
#include <curl/curl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kUser = "station";
constexpr const char* kPassword = "secret";
constexpr const char* kLogOn = "c3RhdGlvbjpzZWNyZXQ=";  // both, as the server gets them

fs::path OutboxOf(const std::string& home) {
  return fs::path(home) / "drives/c/Norvane.Quorex.ECM/outbox";
}

void Put(const fs::path& file, const std::string& bytes) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

// As recordings leave them: a small package, the list, and the descriptor.
void Make(const std::string& home, const std::string& url, int packages) {
  const fs::path application = fs::path(home) / "drives/c/QUOREX/qrxexe";
  const fs::path password = application / "password";
  Put(password, kPassword);
  chmod(password.c_str(), 0600);
  Put(application / "arecm.cfg", "[Content Server]\r\nUrl=" + url + "\r\nUser=" + kUser +
                                     "\r\nPasswordFile=" + password.string() + "\r\n");
  for (int package = 0; package < packages; ++package) {
    char name[64];
    std::snprintf(name, sizeof name, "26111505%02d%02d4711_LOGBK-0000-%08x", package / 60,
                  package % 60, package);
    const fs::path folder = OutboxOf(home) / name;
    Put(folder / "files/26111500.qkvzip", std::string(3000, 'p'));
    Put(folder / "files/listlog.csv", std::string(2000, 'l'));
    Put(folder / "upload.xml", "<Upload/>" + std::string(600, ' '));
  }
}

// The requests.

std::size_t Drop(char*, std::size_t size, std::size_t count, void*) {
  return size * count;
}

std::size_t ReadFile(char* buffer, std::size_t size, std::size_t count, void* file) {
  return std::fread(buffer, size, count, static_cast<std::FILE*>(file));
}

class Handle {
 public:
  explicit Handle(std::string url) : url_(std::move(url)) {
    curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, Drop);
    curl_easy_setopt(curl_, CURLOPT_READFUNCTION, ReadFile);
    curl_easy_setopt(curl_, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    curl_easy_setopt(curl_, CURLOPT_USERNAME, kUser);
    curl_easy_setopt(curl_, CURLOPT_PASSWORD, kPassword);
  }
  ~Handle() {
    curl_easy_cleanup(curl_);
    curl_slist_free_all(unasked_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  void Plain(const char* method, const std::string& path, const curl_slist* lines = nullptr) {
    curl_easy_setopt(curl_, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(curl_, CURLOPT_CUSTOMREQUEST, method);
    curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, lines);
    Run(path);
  }
  void Send(const std::string& path, const fs::path& native) {
    std::FILE* file = std::fopen(native.c_str(), "rb");
    if (file == nullptr) throw std::runtime_error(native);
    curl_easy_setopt(curl_, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(curl_, CURLOPT_CUSTOMREQUEST, nullptr);
    curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, unasked_);
    curl_easy_setopt(curl_, CURLOPT_READDATA, file);
    curl_easy_setopt(curl_, CURLOPT_INFILESIZE_LARGE,
                     static_cast<curl_off_t>(fs::file_size(native)));
    Run(path);
    std::fclose(file);
  }
  void Deliver(const std::string& path, const fs::path& native) {
    Plain("GET", path);
    Send(path + ".part", native);
    Plain("GET", path + ".part");
    curl_slist* lines = curl_slist_append(nullptr, ("Destination: " + url_ + path).c_str());
    lines = curl_slist_append(lines, "Overwrite: F");
    Plain("MOVE", path + ".part", lines);
    curl_slist_free_all(lines);
  }

 private:
  void Run(const std::string& path) {
    curl_easy_setopt(curl_, CURLOPT_URL, (url_ + path).c_str());
    if (curl_easy_perform(curl_) != CURLE_OK) throw std::runtime_error(path);
  }

  CURL* curl_ = curl_easy_init();
  curl_slist* unasked_ = curl_slist_append(nullptr, "Expect:");  // as the agent sends small files
  const std::string url_;
};

// The same as lines of a configuration file of the curl program.
class Printer {
 public:
  explicit Printer(std::string url) : url_(std::move(url)) {}

  void Plain(const char* method, const std::string& path) {
    Begin(path);
    std::cout << "request = " << method << "\n";
  }
  void Deliver(const std::string& path, const fs::path& native) {
    Begin(path);
    Begin(path + ".part");
    std::cout << "upload-file = " << native << "\nheader = \"Expect:\"\n";
    Begin(path + ".part");
    Plain("MOVE", path + ".part");
    std::cout << "header = \"Destination: " << url_ << path << "\"\nheader = \"Overwrite: F\"\n";
  }

 private:
  void Begin(const std::string& path) {
    if (!is_first_) std::cout << "next\n";
    is_first_ = false;
    std::cout << "url = \"" << url_ << path << "\"\nuser = " << kUser << ":" << kPassword
              << "\nbasic\noutput = /dev/null\nsilent\n";
  }

  const std::string url_;
  bool is_first_ = true;
};

std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

template <typename Client>
void DeliverAll(Client& client, const std::string& home) {
  const fs::path outbox = OutboxOf(home);
  for (const std::string& package : NamesIn(outbox)) {
    client.Plain("MKCOL", package + "/");
    for (const std::string& name : NamesIn(outbox / package / "files"))
      client.Deliver(package + "/" + name, outbox / package / "files" / name);
    client.Deliver(package + ".xml", outbox / package / "upload.xml");
  }
}

std::size_t Keep(char* bytes, std::size_t size, std::size_t count, void* text) {
  static_cast<std::string*>(text)->append(bytes, size * count);
  return size * count;
}

// What the server tells of packages that have arrived (Server::CountBelow): for each a folder, and
// for each of its three files a look, the sending, another look and the renaming.
std::string CountsOf(int packages, int unknown) {
  const int files = 3 * packages;
  return std::to_string(files) + " 0" + (unknown > 0 ? " 401=" + std::to_string(unknown) : "") +
         " GET=" + std::to_string(2 * files) + " MKCOL=" + std::to_string(packages) +
         " MOVE=" + std::to_string(files) + " PUT=" + std::to_string(files);
}

bool ServerHolds(const std::string& url, const std::string& wanted) {
  CURL* const curl = curl_easy_init();
  std::string counted;
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, "COUNT");
  curl_easy_setopt(curl, CURLOPT_USERNAME, kUser);
  curl_easy_setopt(curl, CURLOPT_PASSWORD, kPassword);
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, Keep);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &counted);
  const bool answered = curl_easy_perform(curl) == CURLE_OK;
  curl_easy_cleanup(curl);
  if (answered && counted == wanted) return true;
  std::cerr << "bench_agent: the server has \"" << counted << "\", not \"" << wanted << "\"\n";
  return false;
}

// The server, for one connection after the other.

class Server {
 public:
  void Serve(int socket) {
    socket_ = socket;
    bytes_.clear();
    while (ReadThrough("\r\n\r\n")) {
      const std::string head = Take(bytes_.find("\r\n\r\n") + 4);
      if (!Line(head, "Expect").empty()) Write("HTTP/1.1 100 Continue\r\n\r\n");
      const auto length = static_cast<std::size_t>(std::atol(Line(head, "Content-Length").c_str()));
      while (bytes_.size() < length && ReadMore()) continue;
      const std::string body = Take(length);
      Write(AnswerTo(head, body));
    }
  }

 private:
  void Write(const std::string& answer) {
    // A client that has gone is seen at the next reading.
    if (write(socket_, answer.data(), answer.size()) < 0) bytes_.clear();
  }
  bool ReadMore() {
    char buffer[65536];
    const ssize_t count = read(socket_, buffer, sizeof buffer);
    if (count > 0) bytes_.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
  }
  bool ReadThrough(const char* text) {
    while (bytes_.find(text) == std::string::npos) {
      if (!ReadMore()) return false;
    }
    return true;
  }
  std::string Take(std::size_t count) {
    std::string taken = bytes_.substr(0, count);
    bytes_.erase(0, count);
    return taken;
  }
  static std::string Line(const std::string& head, const std::string& name) {
    const std::size_t start = head.find("\r\n" + name + ": ");
    if (start == std::string::npos) return {};
    const std::size_t value = start + name.size() + 4;
    return head.substr(value, head.find("\r\n", value) - value);
  }
  static std::string Status(const char* status, const std::string& lines = {}) {
    return std::string("HTTP/1.1 ") + status + "\r\n" + lines + "Content-Length: 0\r\n\r\n";
  }
  static std::string Whole(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  }
  // The first folder of a path: each side of a comparison has one of its own.
  static std::string TopOf(const std::string& path) {
    return path.substr(0, path.find('/', 1) + 1);
  }
  // "WHOLE HALF METHOD=REQUESTS...": how many files with an end and without one, and the requests
  // by method; those without the password under "401".
  std::string CountBelow(const std::string& folder) const {
    std::size_t whole = 0, half = 0;
    for (const auto& [path, bytes] : files_) {
      if (!path.starts_with(folder)) continue;
      ++(path.ends_with(".part") || bytes.empty() ? half : whole);
    }
    std::string counts = std::to_string(whole) + " " + std::to_string(half);
    const auto requests = requests_.find(TopOf(folder));
    if (requests == requests_.end()) return counts;
    for (const auto& [method, number] : requests->second)
      counts += " " + method + "=" + std::to_string(number);
    return counts;
  }
  std::string AnswerTo(const std::string& head, const std::string& body) {
    const std::size_t blank = head.find(' ');
    const std::string method = head.substr(0, blank);
    const std::string path = head.substr(blank + 1, head.find(' ', blank + 1) - blank - 1);
    const bool is_known = Line(head, "Authorization") == std::string("Basic ") + kLogOn;
    if (method != "COUNT") ++requests_[TopOf(path)][is_known ? method : "401"];
    if (!is_known) return Status("401 Unauthorized", "WWW-Authenticate: Basic realm=\"bench\"\r\n");
    if (method == "MKCOL") return Status("201 Created");
    if (method == "PUT") {
      files_[path] = body;
      return Status("201 Created");
    }
    if (method == "COUNT") return Whole(CountBelow(path));
    const auto file = files_.find(path);
    if (file == files_.end()) return Status("404 Not Found");
    if (method == "MOVE") {
      const std::string target = Line(head, "Destination");
      std::string moved = std::move(file->second);
      files_.erase(file);
      files_[target.substr(target.find('/', target.find("//") + 2))] = std::move(moved);
      return Status("201 Created");
    }
    return Whole(file->second);
  }

  int socket_ = -1;
  std::string bytes_;
  std::unordered_map<std::string, std::string> files_;
  std::map<std::string, std::map<std::string, int>> requests_;  // by top folder and method
};

int RunServer() {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const place = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (bind(listener, place, size) != 0 || listen(listener, 16) != 0 ||
      getsockname(listener, place, &size) != 0)
    return 1;
  std::cout << "http://127.0.0.1:" << ntohs(address.sin_port) << "/" << std::endl;
  Server server;
  for (;;) {
    const int socket = accept(listener, nullptr, nullptr);
    server.Serve(socket);
    close(socket);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string job = argc > 1 ? argv[1] : "";
  if (job == "serve") return RunServer();
  if (job == "expect" && argc == 5)
    return ServerHolds(argv[2], CountsOf(std::atoi(argv[3]), std::atoi(argv[4]))) ? 0 : 1;
  if (job == "make" && argc == 5) {
    Make(argv[2], argv[3], std::atoi(argv[4]));
  } else if (job == "requests" && argc == 4) {
    Printer printer(argv[3]);
    DeliverAll(printer, argv[2]);
  } else if (job == "handle" && argc == 4) {
    Handle handle(argv[3]);
    DeliverAll(handle, argv[2]);
  } else {
    std::cerr << "usage: bench_agent make HOME URL PACKAGES | requests|handle HOME URL | serve "
                 "| expect URL PACKAGES UNKNOWN\n";
    return 2;
  }
  return 0;
}
