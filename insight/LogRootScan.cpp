// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The routines of LogFiles.h that touch the disk. They open files for reading and nothing else.

#include <algorithm>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "insight/LogFiles.h"

namespace logbook::insight {
namespace {

std::string WithBackslash(std::string_view folder) {
  std::string path(folder);
  if (!path.ends_with('\\')) path += '\\';
  return path;
}

void ReadBytes(const Machine& machine, const std::string& path, LogFile& file) {
  InputFile input(machine, path);
  while (!input.AtEnd()) {
    const std::string_view bytes = input.Buffered();
    file.Size += bytes.size();
    file.Bytes.append(bytes.substr(0, kMostFileBytes - file.Bytes.size()));
    input.Skip(bytes.size());
  }
}

LogFile LoadFile(const Machine& machine, const std::string& folder, const FolderEntry& entry) {
  LogFile file;
  file.Name = entry.name;
  const std::string path = folder + entry.name;
  if (!Exists(machine, path)) {
    file.What = LogFile::Kind::kNothing;
    return file;
  }
  try {
    ReadBytes(machine, path, file);
  } catch (const RunTimeError&) {
    file = {entry.name, LogFile::Kind::kRefused, {}, 0};
  }
  return file;
}

}  // namespace

std::vector<std::string> ScanLogRoot(const Machine& machine, std::string_view root) {
  std::vector<std::string> logs;
  for (FolderEntry& entry : ScanFolder(machine, root)) {
    if (entry.kind == FolderEntry::Kind::kFolder) logs.push_back(std::move(entry.name));
  }
  return logs;
}

LogFiles LoadLogFiles(const Machine& machine, std::string_view root, std::string_view folder) {
  LogFiles files;
  files.Root = NativePath(machine, root);
  files.Folder = folder;
  const std::string path = WithBackslash(root) + files.Folder + "\\";
  try {
    for (const FolderEntry& entry : ScanFolder(machine, path)) {
      files.Files.push_back(LoadFile(machine, path, entry));
    }
  } catch (const RunTimeError&) {
    // Nothing can be read of a folder that has gone.
  }
  std::sort(files.Files.begin(), files.Files.end(),
            [](const LogFile& a, const LogFile& b) { return a.Name < b.Name; });
  return files;
}

}  // namespace logbook::insight
