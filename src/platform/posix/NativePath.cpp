// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <dirent.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <vector>

#include "platform/Files.h"
#include "platform/UpperCase.h"

namespace logbook {

namespace {

bool IsSeparator(char byte) {
  return byte == '\\' || byte == '/';
}

bool IsLetter(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

std::vector<std::string> ComponentsOf(std::string_view path) {
  std::vector<std::string> components;
  std::string component;
  for (const char byte : path) {
    if (!IsSeparator(byte)) {
      component.push_back(byte);
    } else if (!component.empty()) {
      components.push_back(std::move(component));
      component.clear();
    }
  }
  if (!component.empty()) components.push_back(std::move(component));
  return components;
}

bool IsThere(const std::string& native_path) {
  struct stat status = {};
  return lstat(native_path.c_str(), &status) == 0;
}

// The disk's spelling of a name that differs in case; of several the first in the order of their
// bytes. The name itself if there is none.
std::string SpellingOf(const std::string& folder, const std::string& name) {
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(opendir(folder.empty() ? "/" : folder.c_str()),
                                                 closedir);
  if (scan == nullptr) return name;
  const std::string wanted = UpperCaseText(name);
  std::string found;
  while (const dirent* entry = readdir(scan.get())) {
    const std::string_view candidate = entry->d_name;
    if ((found.empty() || candidate < found) && UpperCaseText(candidate) == wanted) {
      found = candidate;
    }
  }
  return found.empty() ? name : found;
}

// Once a component is missing, those behind it stand as they are given.
std::string FindComponents(std::string native_path, const std::vector<std::string>& components) {
  bool found = true;
  for (const std::string& component : components) {
    const std::string exact = native_path + "/" + component;
    if (!found || IsThere(exact)) {
      native_path = exact;
      continue;
    }
    native_path += "/" + SpellingOf(native_path, component);
    found = IsThere(native_path);
  }
  return native_path;
}

bool Status(const Machine& machine, std::string_view path, struct stat& status) {
  return stat(NativePath(machine, path).c_str(), &status) == 0;
}

}  // namespace

std::string NativePath(const Machine& machine, std::string_view path) {
  if (path.empty()) return {};
  std::string start;
  std::vector<std::string> components;
  if (path.size() >= 2 && path[1] == ':' && IsLetter(path[0])) {
    start = machine.home;
    components = ComponentsOf(path.substr(2));
    const char drive = static_cast<char>(path[0] | 0x20);
    components.insert(components.begin(), {"drives", std::string(1, drive)});
  } else {
    components = ComponentsOf(path);
    if (components.empty()) return "/";
  }
  return FindComponents(start, components);
}

std::string PathText(const std::string& native_path) {
  std::error_code ignored;
  const std::filesystem::path full = std::filesystem::absolute(native_path, ignored);
  std::string text = (ignored ? native_path : full.lexically_normal().string());
  for (char& byte : text) {
    if (byte == '/') byte = '\\';
  }
  return text;
}

bool Exists(const Machine& machine, std::string_view path) {
  struct stat status = {};
  return !path.empty() && Status(machine, path, status);
}

bool FolderExists(const Machine& machine, std::string_view path) {
  struct stat status = {};
  return !path.empty() && Status(machine, path, status) && S_ISDIR(status.st_mode);
}

FileStamp StampOf(const Machine& machine, std::string_view path) {
  struct stat status = {};
  if (path.empty() || !Status(machine, path, status)) return {};
  constexpr std::int64_t kNanoseconds = 1000000000;
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = static_cast<std::uint64_t>(status.st_size),
          .modified_ns = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec,
          .changed_ns = status.st_ctim.tv_sec * kNanoseconds + status.st_ctim.tv_nsec};
}

}  // namespace logbook
