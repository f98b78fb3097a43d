// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Log roots of any names, in any case, with links, pipes and folders in the place of files: the
// analysing commands find the logs that the list shows, each name leads them to the file that it
// leads the logbook to, an index holds just these logs, and nothing below the root changes.

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "AllCatalogues.h"
#include "Fuzzing.h"
#include "base/Files.h"
#include "base/RunTimeError.h"
#include "insight/Check.h"
#include "insight/LogIndex.h"
#include "loglist/LogList.h"
#include "support/RootPortrait.h"
#include "support/TestServices.h"

namespace fs = std::filesystem;

namespace logbook::fuzz {
namespace {

using namespace insight;
using test::AllCatalogues;
using test::TestWorkstation;

constexpr const char* kRoot = "C:\\logs\\";
constexpr std::array kFolders = {"",    "26010100", "26010101", "logs",     "LOGS",
                                 "b.c", ".hidden",  "a b",      "\xC3\xA4", "\xC3\x84"};
constexpr std::array kNames = {"comment.txt",  "COMMENT.TXT",  "Comment.txt",  "logfile.ini",
                               "LOGFILE.INI",  "auser.txt",    "AUSER.TXT",    "sensevar.mac",
                               "SENSEVAR.MAC", "analog.rpt",   "26010100",     "LOGS",
                               ".comment.txt", "\xC3\xA4.txt", "\xED\xA0\x80", "comment.txt "};
constexpr std::array kTargets = {"comment.txt", "COMMENT.TXT", "nowhere",     ".",
                                 "..",          "26010100",    "../26010101", "auser.txt"};
constexpr std::array kSought = {"comment.txt", "logfile.ini", "auser.txt", "SenseVar.mac"};

enum class Kind { kFile, kOtherFile, kFolder, kLink, kPipe };

// One entry somewhere, or none where that cannot be.
void PutOne(const std::string& root, Input& input) {
  const std::string folder =
      root + "/" + kFolders[static_cast<std::size_t>(input.Number(kFolders.size()))];
  const std::string path =
      folder + "/" + kNames[static_cast<std::size_t>(input.Number(kNames.size()))];
  const auto kind = static_cast<Kind>(input.Number(5));
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  if (fs::symlink_status(path, ignored).type() != fs::file_type::not_found) return;
  if (kind == Kind::kFile || kind == Kind::kOtherFile) std::ofstream(path) << input.Text();
  if (kind == Kind::kFolder) fs::create_directory(path, ignored);
  if (kind == Kind::kPipe) mkfifo(path.c_str(), 0600);
  if (kind == Kind::kLink)
    fs::create_symlink(kTargets[static_cast<std::size_t>(input.Number(kTargets.size()))], path,
                       ignored);
}

// The folders that the list shows.
std::vector<std::string> Listed(TestWorkstation& station) {
  AppState& state = station.state;
  const std::int16_t count = CreateFileList(state, station.services.messages);
  std::vector<std::string> names;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(count); ++i)
    names.push_back(state.FileList[i].Name);
  std::ranges::sort(names);
  return names;
}

// Each name leads to the same file, or to none.
void AgreeOnFiles(const Machine& machine, const std::string& folder) {
  const LogFiles files = LoadLogFiles(machine, kRoot, folder);
  const std::string path = ExactFolder(kRoot + folder + "\\");
  for (const char* name : kSought) {
    std::string bytes;
    bool is_read = true;
    try {
      bytes = ReadFile(machine, path + name);
    } catch (const RunTimeError&) {
      is_read = false;
    }
    const LogFile* file = files.Find(name);
    FUZZ_REQUIRE(is_read == (file != nullptr && file->What == LogFile::Kind::kFile));
    if (is_read) FUZZ_REQUIRE(file->Bytes == bytes);
  }
}

void Try(Input input) {
  static TestWorkstation station;
  station.state.LogRoot = kRoot;
  const Machine& machine = station.disk.machine();
  const std::string root = station.disk.Native("C:\\logs");
  fs::remove_all(root);
  fs::create_directory(root);
  for (int i = 0; i < 24 && !input.Rest().empty(); ++i) PutOne(root, input);
  const auto before = test::RootPortrait(root);

  std::vector<std::string> names = ScanLogRoot(machine, kRoot);
  for (const std::string& name : names) AgreeOnFiles(machine, name);
  IndexSettings settings;
  settings.Folder.clear();
  LogIndex index(*machine.code_page, AllCatalogues(), root, settings);
  FUZZ_REQUIRE(index.Find({}).Count == names.size());
  for (const Finding& finding : CheckLogRoot(machine, AllCatalogues(), kRoot, LocalDay()))
    FUZZ_REQUIRE(FindKind(finding.code) != nullptr);
  std::ranges::sort(names);
  FUZZ_REQUIRE(names == Listed(station));
  FUZZ_REQUIRE(test::RootPortrait(root) == before);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
