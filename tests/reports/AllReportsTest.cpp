// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/AllReports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::DiskCalls;
using test::Viewing;

constexpr const char* kFiles[] = {"analog.rpt", "meter.rpt",  "Sys.rpt", "bitout.rpt",
                                  "bitin.rpt",  "mainte.rpt", "tune.bin"};
constexpr MenuEntry LogView::*kEntries[] = {
    &LogView::mnuAna, &LogView::mnuMeter,  &LogView::mnuSYS, &LogView::mnuBout,
    &LogView::mnuBin, &LogView::mnuMainte, &LogView::mnuTune};

// A log with the snapshot of a build of the simulated instrument.
struct FullLog : Viewing {
  explicit FullLog(const fs::path& snapshot) {
    for (const auto& entry : fs::directory_iterator(snapshot)) {
      std::ifstream in(entry.path(), std::ios::binary);
      Put(entry.path().filename().string(), std::string(std::istreambuf_iterator<char>(in), {}));
    }
  }

  std::vector<MadeReport> Make() {
    return MakeAllReports(state.machine, state.catalogues, LogFolder(view));
  }
  void WriteAll() { WriteReports(state.machine, LogFolder(view), Make()); }

  std::map<std::string, std::string> Files() {
    std::map<std::string, std::string> files;
    for (const char* file : kFiles) files[file] = Has(file) ? Get(file) : "none";
    return files;
  }
};

std::vector<fs::path> Snapshots() {
  const fs::directory_iterator folder(fs::path(TEST_DATA_DIR) / "snapshots");
  return {begin(folder), end(folder)};
}

TEST(AllReportsTest, AreTheFilesThatTheViewerWritesOneByOne) {
  ASSERT_FALSE(Snapshots().empty());
  for (const fs::path& snapshot : Snapshots()) {
    FullLog viewed(snapshot), at_once(snapshot);
    for (MenuEntry LogView::*entry : kEntries) viewed.Choose(entry);
    at_once.WriteAll();
    EXPECT_EQ(at_once.Files(), viewed.Files()) << snapshot;
  }
}

TEST(AllReportsTest, OfALogWithoutSnapshotsAreTheFilesOfTheViewerToo) {
  Viewing viewed;
  for (MenuEntry LogView::*entry : kEntries) viewed.Choose(entry);
  Viewing at_once;
  WriteReports(
      at_once.state.machine, LogFolder(at_once.view),
      MakeAllReports(at_once.state.machine, at_once.state.catalogues, LogFolder(at_once.view)));
  for (const char* file : kFiles) EXPECT_EQ(at_once.Get(file), viewed.Get(file)) << file;
}

TEST(AllReportsTest, ReadEachFileOfTheLogOnceAndListItsFolderOnce) {
  FullLog log(Snapshots().front());
  const std::string folder = log.disk.Native(Viewing::File(""));
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(folder)) files.push_back(entry.path().string());
  const DiskCalls calls;
  log.WriteAll();
  int read = 0;
  for (const std::string& file : files) {
    EXPECT_LE(DiskCalls::Count("read " + file), 1) << file;
    read += DiskCalls::Count("read " + file);
  }
  EXPECT_EQ(read, 10) << "logfile.ini, five snapshots, four macro files";
  EXPECT_EQ(DiskCalls::Count("list "), 1);
  EXPECT_EQ(DiskCalls::Count("rename "), 7);
}

TEST(AllReportsTest, NothingOutlivesAChangeOfAFile) {
  FullLog log(Snapshots().front());
  log.WriteAll();
  log.SetOptions({{"LENS", "1"}, {"LENS2", "1"}, {"STYLEB", "1"}, {"AFC", "1"}});
  log.Put("auser.txt", test::Counting(5));
  log.WriteAll();
  const auto at_once = log.Files();
  for (MenuEntry LogView::*entry : kEntries) log.Choose(entry);
  EXPECT_EQ(at_once, log.Files());
}

TEST(AllReportsTest, OneThatCannotBeMadeOrWrittenKeepsItsOlderFileAndHindersNoOther) {
  FullLog log(Snapshots().front());
  log.Put("bout.txt", "1,2,3\r\n");
  log.Put("bitout.rpt", "older");
  log.disk.MakeFolders(Viewing::File("meter.rpt"));
  const std::vector<MadeReport> reports = log.Make();
  const auto with_failure = std::count_if(reports.begin(), reports.end(),
                                          [](const auto& report) { return report.failure; });
  EXPECT_EQ(with_failure, 1);
  EXPECT_EQ(test::ErrorOf([&] { WriteReports(log.state.machine, LogFolder(log.view), reports); }),
            ErrorNumber::kPathFileAccess)
      << "the first failure, that of meter.rpt";
  EXPECT_EQ(log.Get("bitout.rpt"), "older");
  for (const char* file : {"analog.rpt", "Sys.rpt", "bitin.rpt", "mainte.rpt", "tune.bin"})
    EXPECT_TRUE(log.Has(file)) << file;
}

}  // namespace
}  // namespace logbook
