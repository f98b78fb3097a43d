// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace logbook::e2e {
namespace {

constexpr int kNotFound = 127;
constexpr int kSignalBase = 128;

// Environment of a child in the form NAME=VALUE.
std::vector<std::string> Merged(const Environment& changes) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (changes.count(text.substr(0, text.find('='))) == 0) result.push_back(text);
  }
  for (const auto& [name, value] : changes) {
    if (value) result.push_back(name + "=" + *value);
  }
  return result;
}

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

std::string FoundAlongPath(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  const char* path = std::getenv("PATH");
  std::istringstream folders(path == nullptr ? "/usr/bin:/bin" : path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::string file = folder + "/" + name;
    if (access(file.c_str(), X_OK) == 0) return file;
  }
  return {};
}

// Runs in the child, between fork and exec: system calls only.
[[noreturn]] void BecomeProgram(const char* file, char** arguments, char** environment, int input,
                                int output) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(input, 0);
  dup2(output, 1);
  dup2(output, 2);
  execve(file, arguments, environment);
  _exit(kNotFound);
}

int StatusOf(int wait_status) {
  return WIFSIGNALED(wait_status) ? kSignalBase + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Environment& environment,
                           const std::string& output_file)
    : name_(command.at(0)), output_file_(output_file) {
  const std::string file = FoundAlongPath(name_);
  if (file.empty()) throw std::runtime_error("no program " + name_);
  const std::vector<std::string> variables = Merged(environment);
  const std::vector<char*> argv = Pointers(command), envp = Pointers(variables);
  const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
  const int output =
      open(output_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
  id_ = fork();
  if (id_ == 0)
    BecomeProgram(file.c_str(), const_cast<char**>(argv.data()), const_cast<char**>(envp.data()),
                  input, output);
  close(input);
  close(output);
  if (id_ < 0) throw std::runtime_error("cannot start " + name_);
  setpgid(id_, id_);
}

ChildProcess::~ChildProcess() {
  const bool ran = Runs();
  kill(-id_, SIGKILL);  // its own children too, which may have outlived it
  if (ran) waitpid(id_, nullptr, 0);
}

bool ChildProcess::Runs() {
  if (status_) return false;
  int wait_status = 0;
  if (waitpid(id_, &wait_status, WNOHANG) != id_) return true;
  status_ = StatusOf(wait_status);
  return false;
}

int ChildProcess::WaitForEnd(std::chrono::milliseconds limit) {
  WaitFor(
      "the end of " + name_, [this] { return !Runs(); }, limit);
  return *status_;
}

std::string ChildProcess::Output() const {
  std::ifstream in(output_file_, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void ChildProcess::Signal(int number) const {
  kill(id_, number);
}

CommandResult RunCommand(const std::vector<std::string>& command, const Environment& environment,
                         const std::string& output_file) {
  ChildProcess process(command, environment, output_file);
  const int status = process.WaitForEnd();
  return {status, process.Output()};
}

bool ProgramExists(const std::string& name) {
  return !FoundAlongPath(name).empty();
}

}  // namespace logbook::e2e
