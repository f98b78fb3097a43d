// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The index of a log root: making it, looking for what changed, and asking it.
//
//   bench_index FOLDER make LOGS      makes logs of the simulated host in FOLDER/root
//   bench_index FOLDER many LOGS      makes FOLDER/many with so many logs, links to those of root
//   bench_index FOLDER rounds ROUNDS  samples, in turn, of index.base (each file of root opened,
//                                     read and closed once), index.cold (the index made), walk.base
//                                     (each name of root listed, each file's status taken) and
//                                     index.again (an unchanged root looked through)
//   bench_index FOLDER size           bytes of the snapshot files (size.base) and of the index
//                                     (size.index)
//   bench_index FOLDER find ROUNDS    samples of find.NAME over FOLDER/many: a query and its first
//                                     page, from opening an index that is up to date on, without a
//                                     look at the folders; and one of look.base (many walked as
//                                     above) and of look (the same looked through)
//   bench_index FOLDER links LOGS     makes FOLDER/links-LOGS, links to the logs of root
//   bench_index FOLDER cold LOGS      the index of FOLDER/links-LOGS made once: for counting
//                                     instructions from outside; of root without LOGS

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "Samples.h"
#include "host/History.h"
#include "insight/IndexSearch.h"
#include "insight/LogIndex.h"

namespace {

namespace fs = std::filesystem;
using namespace logbook;
using namespace logbook::bench;
using namespace logbook::insight;

constexpr std::size_t kPage = 50;

const Catalogues& AllCatalogues() {
  static const Catalogues kFilled = [] {
    Catalogues catalogues;
    FillCatalogues(catalogues);
    return catalogues;
  }();
  return kFilled;
}

class Roots {
 public:
  explicit Roots(const std::string& folder) : folder_(fs::absolute(folder).string()) {}

  std::string Root() const { return folder_ + "/root"; }
  std::string Many() const { return folder_ + "/many"; }
  std::string Links(int logs) const { return folder_ + "/links-" + std::to_string(logs); }
  std::string Cache() const { return folder_ + "/cache"; }
  std::string Home() const { return folder_ + "/home"; }

 private:
  std::string folder_;
};

// The host writes its logs on a drive of its own; they are brought to FOLDER/root, a day old.
void Make(const Roots& roots, int logs) {
  host::MakeWorkstation(roots.Home(), {1252, {}});
  const host::Instrument instrument = {host::ParseBuild(host::kDemonstrationBuild), 1};
  MakeHistory(host::OpenWorkstation(roots.Home()),
              {instrument, logs, *host::ParseTime("2026-11-15"), {}, 0});
  fs::rename(roots.Home() + "/drives/c/QUOREX/inst1/maintain", roots.Root());
  const auto yesterday = fs::file_time_type::clock::now() - std::chrono::hours(24);
  for (const auto& entry : fs::recursive_directory_iterator(roots.Root())) {
    fs::last_write_time(entry.path(), yesterday);
  }
}

void MakeLinks(const Roots& roots, const std::string& target, int logs) {
  std::vector<fs::path> folders;
  for (const auto& entry : fs::directory_iterator(roots.Root())) folders.push_back(entry.path());
  fs::create_directory(target);
  for (int log = 0; log < logs; ++log) {
    const fs::path name = target + "/" + std::to_string(10000000 + log);
    fs::create_directory_symlink(folders[static_cast<std::size_t>(log) % folders.size()], name);
  }
}

std::vector<std::string> FilesOf(const std::string& root) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_regular_file()) files.push_back(entry.path().string());
  }
  return files;
}

void WalkBare(const std::string& folder) {
  DIR* const scan = opendir(folder.c_str());
  if (scan == nullptr) throw std::runtime_error(folder);
  while (const dirent* entry = readdir(scan)) {
    if (entry->d_name[0] == '.') continue;
    const std::string path = folder + "/" + entry->d_name;
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) throw std::runtime_error(path);
    if (S_ISDIR(status.st_mode)) WalkBare(path);
  }
  closedir(scan);
}

// Opens the index, brings it up to date unless that is not wanted, and asks it.
FindResult Ask(const std::string& root, const std::string& cache, const FindRequest& request,
               IndexLook look = IndexLook::kAtFolders) {
  IndexSettings settings;
  settings.Folder = cache;
  settings.Look = look;
  LogIndex index(*CodePage::Find(1252), AllCatalogues(), root, settings);
  return index.Find(request);
}

FindRequest FirstPage(const std::string& query) {
  FindRequest request;
  request.What = ParseQuery(AllCatalogues(), query);
  request.Limit = kPage;
  return request;
}

void Rounds(const Roots& roots, int rounds) {
  const std::vector<std::string> files = FilesOf(roots.Root());
  const FindRequest nothing = FirstPage("nothing");
  Ask(roots.Root(), roots.Cache(), nothing);
  for (int round = 0; round < rounds; ++round) {
    Measure("index.base", [&] { ReadBare(files); });
    fs::remove_all(roots.Cache());
    Measure("index.cold", [&] { Ask(roots.Root(), roots.Cache(), nothing); });
    Measure("walk.base", [&] { WalkBare(roots.Root()); });
    Measure("index.again", [&] { Ask(roots.Root(), roots.Cache(), nothing); });
  }
  const auto logs = std::distance(fs::directory_iterator(roots.Root()), fs::directory_iterator());
  const auto found = Ask(roots.Root(), roots.Cache(), FirstPage("")).Count;
  Expect(static_cast<std::size_t>(found) == static_cast<std::size_t>(logs),
         "each log in the index");
}

void Find(const Roots& roots, int rounds) {
  const std::string cache = roots.Cache() + "-many";
  Ask(roots.Many(), cache, FirstPage("nothing"));
  Measure("look.base", [&] { WalkBare(roots.Many()); });
  Measure("look", [&] { Ask(roots.Many(), cache, FirstPage("nothing")); });
  const std::pair<const char*, const char*> queries[] = {
      {"find.all", ""},
      {"find.word", "autosampler"},
      {"find.rare", "\"does not answer\" L29S001"},
      {"find.row", "analog:\"Analog HV\">1700 NOT tick:\"Clean Cones\""},
      {"find.mixed", "tune:\"Oxide\">=1 after:2020 (option:LENS=1 OR normal) auto:no"},
  };
  for (int round = 0; round < rounds; ++round) {
    for (const auto& [name, query] : queries) {
      FindRequest request = FirstPage(query);
      request.Columns = {{RowAtPlace(30)}, {RowAtPlace(300)}};
      Measure(name, [&] { Ask(roots.Many(), cache, request, IndexLook::kNone); });
    }
  }
}

void Size(const Roots& roots) {
  Ask(roots.Root(), roots.Cache(), FirstPage("nothing"));
  double snapshots = 0;
  double index = 0;
  for (const std::string& file : FilesOf(roots.Root())) snapshots += double(fs::file_size(file));
  for (const std::string& file : FilesOf(roots.Cache())) index += double(fs::file_size(file));
  Report("size.base", snapshots);
  Report("size.index", index);
}

int Run(const Roots& roots, const std::string& what, int number) {
  if (what == "make") Make(roots, number);
  if (what == "many") MakeLinks(roots, roots.Many(), number);
  if (what == "links") MakeLinks(roots, roots.Links(number), number);
  if (what == "rounds") Rounds(roots, number);
  if (what == "find") Find(roots, number);
  if (what == "size") Size(roots);
  if (what == "cold") {
    const std::string root = number > 0 ? roots.Links(number) : roots.Root();
    Ask(root, roots.Cache() + "-cold-" + std::to_string(number), FirstPage("nothing"));
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "bench_index FOLDER make|many|links|rounds|find|size|cold [NUMBER]\n";
    return 2;
  }
  return Run(Roots(argv[1]), argv[2], argc > 3 ? std::atoi(argv[3]) : 0);
}
