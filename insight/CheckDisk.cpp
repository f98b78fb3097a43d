// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The routines of Check.h that look at the disk. They read names, attributes and files.

#include <algorithm>
#include <filesystem>

#include "base/Files.h"
#include "base/Registry.h"
#include "base/RunTimeError.h"
#include "base/Utf8Path.h"
#include "insight/Check.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;

constexpr const char* kWorkstationKey =
    "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";
constexpr const char* kUsualArea = "C:\\Norvane.Quorex.ECM\\";

// The names in the temporary area of the upload; none if there is no such area.
std::vector<std::string> StagedNames(const Machine& machine) {
  const auto set = ReadMachineRegistry(machine.home, kWorkstationKey, "ECM_TEMP");
  std::vector<std::string> names;
  try {
    for (const FolderEntry& entry :
         ScanFolder(machine, set && !set->empty() ? *set : std::string(kUsualArea))) {
      names.push_back(entry.name);
    }
  } catch (const RunTimeError&) {
    // Nothing was ever staged here.
  }
  return names;
}

}  // namespace

std::vector<EntryFacts> LookAtLog(const std::string& native_folder) {
  std::vector<EntryFacts> entries;
  std::error_code error;
  for (fs::directory_iterator each(Utf8Path(native_folder), error), end; !error && each != end;
       each.increment(error)) {
    std::error_code unknown;
    const fs::file_status status = each->symlink_status(unknown);
    EntryFacts facts;
    facts.name = each->path().filename().string();
    facts.folder = status.type() == fs::file_type::directory;
    facts.read_only = !unknown && status.type() == fs::file_type::regular &&
                      (status.permissions() & fs::perms::owner_write) == fs::perms::none;
    entries.push_back(std::move(facts));
  }
  std::sort(entries.begin(), entries.end(),
            [](const EntryFacts& a, const EntryFacts& b) { return a.name < b.name; });
  return entries;
}

std::vector<Finding> CheckLogRoot(const Machine& machine, const Catalogues& catalogues,
                                  std::string_view root, LocalDay today) {
  RootFacts facts;
  std::vector<Finding> of_logs;
  for (const FolderEntry& entry : ScanFolder(machine, root)) {
    if (entry.kind == FolderEntry::Kind::kFile) facts.files.push_back(entry.name);
  }
  for (const std::string& folder : ScanLogRoot(machine, root)) {
    const LogFiles files = LoadLogFiles(machine, root, folder);
    std::error_code closed;
    if (fs::directory_iterator(Utf8Path(files.Root + "/" + folder), closed); closed) {
      facts.logs.push_back({folder, std::nullopt});
      of_logs.push_back({"file-unreadable", folder, "the folder itself"});
      continue;
    }
    const LogReading reading = ReadLog(*machine.code_page, catalogues, files);
    facts.logs.push_back({folder, reading.Date});
    const std::vector<Finding> found =
        CheckLog(*machine.code_page, files, reading, LookAtLog(files.Root + "/" + folder));
    of_logs.insert(of_logs.end(), found.begin(), found.end());
  }
  facts.staged = StagedNames(machine);
  std::vector<Finding> findings = CheckRoot(facts, today);
  findings.insert(findings.end(), of_logs.begin(), of_logs.end());
  return findings;
}

}  // namespace logbook::insight
