// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "base/Files.h"
#include "base/PathParts.h"
#include "base/UpperCase.h"
#include "base/posix/Descriptor.h"
#include "base/posix/OpenFolder.h"
#include "base/posix/Stamp.h"

namespace logbook {

namespace {

struct Component {
  explicit Component(std::string_view text)
      : name(WithoutQuotes(text)), is_exact(name.size() != text.size()) {}

  std::string name;
  bool is_exact;
};

template <typename Take>
void ForEachComponent(std::string_view path, Take take) {
  std::size_t start = 0;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i < path.size() && !IsSeparator(path[i])) continue;
    if (i > start) take(Component(path.substr(start, i - start)));
    start = i + 1;
  }
}

std::vector<Component> ComponentsOf(std::string_view path) {
  std::vector<Component> components;
  ForEachComponent(path, [&](Component component) { components.push_back(std::move(component)); });
  return components;
}

// The drive's letter in lower case.
char DriveOf(std::string_view path) {
  return static_cast<char>(path[0] | 0x20);
}

// The components from the machine's home, if the path has a drive, or from the root.
std::vector<Component> WithDrive(std::string_view path) {
  if (!HasDrive(path)) return ComponentsOf(path);
  std::vector<Component> components = ComponentsOf(path.substr(2));
  const char drive[] = {DriveOf(path)};
  components.insert(components.begin(), {Component("drives"), Component({drive, 1})});
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
  std::string found;
  while (const dirent* entry = readdir(scan.get())) {
    const std::string_view candidate = entry->d_name;
    if ((found.empty() || candidate < found) && EqualIgnoringCase(candidate, name)) {
      found = candidate;
    }
  }
  return found.empty() ? name : found;
}

// The native path with every component as it is given.
std::string ExactPath(const Machine& machine, std::string_view path) {
  std::string native_path;
  if (HasDrive(path)) {
    native_path = machine.home;
    native_path += "/drives/";
    native_path += DriveOf(path);
    path.remove_prefix(2);
  }
  ForEachComponent(path, [&native_path](const Component& component) {
    native_path += '/';
    native_path += component.name;
  });
  return native_path.empty() ? "/" : native_path;
}

std::string Joined(std::string folder, const std::string& name) {
  folder += '/';
  return folder += name;
}

// The path of the longest run of components that exist exactly as they are given, and its number
// of components. Looked for from the end, where a difference is likeliest.
std::pair<std::string, std::size_t> LongestExact(const std::string& start,
                                                 const std::vector<Component>& components) {
  std::vector<std::string> paths = {start};
  for (const Component& component : components) {
    paths.push_back(Joined(paths.back(), component.name));
  }
  std::size_t count = components.size();
  while (count > 0 && !IsThere(paths[count])) --count;
  return {paths[count], count};
}

// Once a component is missing, those behind it stand as they are given.
std::string FindComponents(const std::string& start, const std::vector<Component>& components) {
  auto [native_path, exact_count] = LongestExact(start, components);
  bool found = true;
  for (std::size_t i = exact_count; i < components.size(); ++i) {
    const auto& [name, is_exact] = components[i];
    std::string next = Joined(native_path, name);
    // The first of these is known to be missing.
    if (found && (i == exact_count || !IsThere(next))) {
      if (!is_exact) next = Joined(native_path, SpellingOf(native_path, name));
      found = IsThere(next);
    }
    native_path = std::move(next);
  }
  return native_path;
}

// The folder of the drives, as the disk spells it.
std::string DrivesFolder(const Machine& machine) {
  const std::string drive = NativePath(machine, "A:\\");
  return drive.substr(0, drive.rfind('/'));
}

// The letters of the drives that may be in this folder, in capitals; all if it cannot be listed.
// Most letters have no drive, and each look at one that has none is a reading of the folder.
std::string DrivesIn(const std::string& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> scan(opendir(folder.c_str()), closedir);
  constexpr const char* kAll = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  if (scan == nullptr) return kAll;
  std::string letters;
  errno = 0;
  while (const dirent* entry = readdir(scan.get())) {
    const std::string_view name = entry->d_name;
    if (name.size() == 1 && IsLetter(name[0])) letters += static_cast<char>(name[0] & ~0x20);
    errno = 0;
  }
  return errno == 0 ? letters : kAll;
}

// True for the folder itself too.
bool LiesIn(const std::string& folder, const std::string& native_path) {
  return native_path == folder || native_path.starts_with(folder + "/");
}

// False for pipes, sockets and devices too: nobody here can wait for what they give.
bool Status(const Machine& machine, std::string_view path, struct stat& status) {
  const bool found = stat(ExactPath(machine, path).c_str(), &status) == 0 ||
                     stat(NativePath(machine, path).c_str(), &status) == 0;
  return found && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
}

}  // namespace

std::string NativePath(const Machine& machine, std::string_view path) {
  if (path.empty()) return {};
  const std::vector<Component> components = WithDrive(path);
  if (components.empty()) return "/";
  return FindComponents(HasDrive(path) ? machine.home : std::string(), components);
}

posix::NameInFolder posix::ExactName(const Machine& machine, std::string_view path) {
  std::vector<Component> components = WithDrive(path);
  if (components.empty()) return {"/", ""};
  std::string name = std::move(components.back().name);
  components.pop_back();
  std::string start = HasDrive(path) ? machine.home : std::string();
  std::string folder = FindComponents(start, components);
  return {folder.empty() ? "/" : std::move(folder), std::move(name)};
}

std::string PathText(const std::string& native_path) {
  std::error_code ignored;
  const std::filesystem::path full = std::filesystem::absolute(native_path, ignored);
  return WithBackslashes(ignored ? native_path : full.lexically_normal().string());
}

posix::Descriptor posix::OpenForReading(const Machine& machine, std::string_view path) {
  // The common case, at the cost of one call.
  if (!path.empty()) {
    Descriptor file(open(ExactPath(machine, path).c_str(), kOpenForReading));
    if (file.IsOpen()) return RefuseAllButFile(std::move(file));
  }
  return OpenForReading(NativePath(machine, path));
}

std::string DrivePathText(const Machine& machine, const std::string& native_path) {
  const std::string drives = DrivesFolder(machine);
  const std::string there = DrivesIn(drives);
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string drive = {letter, ':'};
    const bool is_there = there.find(letter) != std::string::npos;
    const std::string root =
        is_there ? NativePath(machine, drive + "\\") : Joined(drives, {DriveOf(drive)});
    std::error_code missing;
    const std::string target =
        is_there ? std::filesystem::canonical(root, missing).string() : std::string();
    for (const std::string& folder : {root, target}) {
      if (folder.empty() || !LiesIn(folder, native_path)) continue;
      const std::string text = drive + WithBackslashes(native_path.substr(folder.size()));
      return text.size() == 2 ? text + "\\" : text;
    }
  }
  return PathText(native_path);
}

bool Exists(const Machine& machine, std::string_view path) {
  struct stat status = {};
  return !path.empty() && Status(machine, path, status);
}

bool NameIsTaken(const Machine& machine, std::string_view path) {
  return !path.empty() && IsThere(NativePath(machine, path));
}

bool FolderExists(const Machine& machine, std::string_view path) {
  struct stat status = {};
  return !path.empty() && Status(machine, path, status) && S_ISDIR(status.st_mode);
}

FileStamp StampOf(const Machine& machine, std::string_view path) {
  struct stat status = {};
  if (path.empty() || !Status(machine, path, status)) return {};
  return posix::StampFrom(status);
}

}  // namespace logbook
