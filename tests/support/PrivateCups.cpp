// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/PrivateCups.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "support/PdfTools.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

constexpr char kScheduler[] = "/usr/sbin/cupsd";
constexpr char kServerParts[] = "/usr/lib/cups";

void Put(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

void Require(const std::string& command) {
  if (std::system((command + " >/dev/null 2>&1").c_str()) != 0)
    throw std::runtime_error("failed: " + command);
}

}  // namespace

std::string PrivateCups::Missing() {
  if (access(kScheduler, X_OK) != 0) return "cupsd";
  for (const char* tool : {"lpadmin", "lpstat", "cupsreject"}) {
    if (!HasTool(tool)) return tool;
  }
  return fs::exists(kServerParts) ? "" : kServerParts;
}

PrivateCups::PrivateCups() {
  std::string pattern = (fs::temp_directory_path() / "cups-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = pattern;
  for (const char* name :
       {"etc", "spool", "cache", "state", "tmp", "parts", "parts/backend", "out"})
    fs::create_directories(InFolder(name));
  fs::permissions(folder_, fs::perms(0755));
  WriteSettings();
  WriteBackend();

  scheduler_ = fork();
  if (scheduler_ == 0) {
    const int log = open(InFolder("scheduler.log").c_str(), O_CREAT | O_WRONLY, 0600);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    execl(kScheduler, kScheduler, "-f", "-c", InFolder("etc/cupsd.conf").c_str(), "-s",
          InFolder("etc/cups-files.conf").c_str(), nullptr);
    _exit(127);
  }
  setenv("CUPS_SERVER", InFolder("socket").c_str(), 1);
  setenv("HOME", folder_.c_str(), 1);
  const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (std::system("lpstat -r 2>/dev/null | grep -q 'is running'") != 0) {
    if (std::chrono::steady_clock::now() > limit)
      throw std::runtime_error("the scheduler does not come up: " + Log());
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

PrivateCups::~PrivateCups() {
  Stop();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void PrivateCups::WriteSettings() const {
  Put(InFolder("etc/cupsd.conf"), "Listen " + InFolder("socket") +
                                      "\n"
                                      "Browsing No\n"
                                      "DefaultAuthType None\n"
                                      "WebInterface No\n"
                                      "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                                      "<Location /admin>\n  Order allow,deny\n  Allow all\n"
                                      "</Location>\n"
                                      "<Policy default>\n  <Limit All>\n    Order allow,deny\n"
                                      "  </Limit>\n</Policy>\n");
  Put(InFolder("etc/cups-files.conf"),
      "ServerRoot " + InFolder("etc") + "\nServerBin " + InFolder("parts") + "\nRequestRoot " +
          InFolder("spool") + "\nCacheDir " + InFolder("cache") + "\nStateDir " +
          InFolder("state") + "\nTempDir " + InFolder("tmp") + "\nAccessLog " +
          InFolder("access.log") + "\nPageLog " + InFolder("page.log") + "\nErrorLog " +
          InFolder("error.log") + "\n");
}

// The device of the queues, "keep:NAME": copies the document to out/NAME.
void PrivateCups::WriteBackend() const {
  for (const char* part : {"daemon", "filter", "cgi-bin", "driver", "notifier"})
    fs::create_symlink(std::string(kServerParts) + "/" + part, InFolder("parts/") + part);
  const std::string backend = InFolder("parts/backend/keep");
  const std::string out = InFolder("out");
  Put(backend,
      "#!/bin/sh\n"
      "[ $# -eq 0 ] && exit 0\n"
      "name=${DEVICE_URI#keep:}\n"
      "cat \"${6:--}\" > \"" +
          out + "/$name.part\" && mv \"" + out + "/$name.part\" \"" + out + "/$name\"\n");
  // Only its owner may run it: the scheduler then does so under its own name.
  fs::permissions(backend, fs::perms(0700));
}

void PrivateCups::AddQueue(const std::string& name) {
  Require("lpadmin -p " + name + " -E -v keep:" + name + " -m raw");
}

void PrivateCups::SetDefault(const std::string& name) {
  Require("lpadmin -d " + name);
}

void PrivateCups::RejectJobs(const std::string& name) {
  Require("cupsreject " + name);
}

void PrivateCups::Stop() {
  if (scheduler_ < 0) return;
  kill(scheduler_, SIGTERM);
  waitpid(scheduler_, nullptr, 0);
  scheduler_ = -1;
}

std::string PrivateCups::PrintedBy(const std::string& name) const {
  return InFolder("out/" + name);
}

std::string PrivateCups::Log() const {
  std::string text;
  for (const char* name : {"scheduler.log", "error.log"}) {
    std::ifstream in(InFolder(name), std::ios::binary);
    text.append(std::istreambuf_iterator<char>(in), {});
  }
  return text;
}

}  // namespace logbook::test
