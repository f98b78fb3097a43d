// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The failing disk itself: it misses no call, and loses what a power cut would take.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "Commands.h"
#include "Faults.h"
#include "support/RunProgram.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

// System calls that change the disk, and the names that a trace of ours has for them.
const std::map<std::string, std::string> kChanging = {
    {"write", "write"},         {"pwrite64", "pwrite"},     {"writev", "writev"},
    {"fsync", "fsync"},         {"fdatasync", "fdatasync"}, {"ftruncate", "ftruncate"},
    {"rename", "rename"},       {"renameat", "rename"},     {"renameat2", "rename"},
    {"unlink", "unlink"},       {"unlinkat", "unlink"},     {"rmdir", "unlink"},
    {"mkdir", "mkdir"},         {"mkdirat", "mkdir"},       {"flock", "flock"},
    {"fchmod", "fchmod"},       {"fchown", "fchown"},       {"link", "link"},
    {"linkat", "link"},         {"truncate", "none"},       {"pwritev", "none"},
    {"fallocate", "none"},      {"sendfile", "none"},       {"copy_file_range", "none"},
    {"symlink", "symlink"},     {"symlinkat", "symlink"},   {"utimensat", "none"},
    {"chmod", "chmod"},         {"fchmodat", "chmod"},      {"pwritev2", "none"},
    {"sync_file_range", "none"}};
const std::map<std::string, std::string> kReading = {
    {"read", "read"}, {"pread64", "pread"}, {"readv", "none"}, {"preadv", "none"}};

// What the shim's names are summed up as.
std::string SumOf(const std::string& call) {
  for (const char* name : {"rename", "mkdir", "link", "fchmod"}) {
    if (call.starts_with(name)) return name;
  }
  if (call.starts_with("unlink") || call == "rmdir" || call == "remove") return "unlink";
  if (call == "creat" || call == "openat" || call == "fopen") return "open";
  return call;
}

std::map<std::string, int> CallsOfTrace(const std::string& file) {
  std::map<std::string, int> counts;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) ++counts[SumOf(line.substr(0, line.find(' ')))];
  return counts;
}

// A line is "PID CALL(ARGUMENTS) = RESULT", with the paths of descriptors in angle brackets.
std::map<std::string, int> CallsOfSystem(const std::string& file, const std::string& tree) {
  std::map<std::string, int> counts;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    const std::size_t begin = line.find(' ') + 1;
    const std::size_t end = line.find('(');
    if (end == std::string::npos || line.find(tree) == std::string::npos) continue;
    const std::string call = line.substr(line.find_first_not_of(' ', begin - 1),
                                         end - line.find_first_not_of(' ', begin - 1));
    // The C library removes a folder in two tries.
    if (call == "unlink" && line.find("= -1 EISDIR") != std::string::npos) continue;
    if (const auto found = kChanging.find(call); found != kChanging.end()) ++counts[found->second];
    if (const auto found = kReading.find(call); found != kReading.end()) ++counts[found->second];
    const bool creates = line.find("O_CREAT") != std::string::npos;
    if (call.starts_with("open") && creates) ++counts["open that makes"];
  }
  return counts;
}

// The programs that write, under a tracer that sees all calls of the system.
TEST(FaultShim, NoCallOnTheDiskPassesItBy) {
  if (!HasProgram("strace")) GTEST_SKIP() << "strace is not installed";
  Station station;
  station.TieTo("file://" + station.disk.Native("C:\\share"));
  station.disk.MakeFolders("C:\\share");
  station.disk.Put("C:\\Norvane.Quorex.ECM\\outbox\\one\\files\\listlog.csv", "a list\r\n");
  station.disk.Put("C:\\Norvane.Quorex.ECM\\outbox\\one\\upload.xml", "<Upload/>");
  const TestMachine aside;
  const std::string report = aside.home() + "/report";
  std::ofstream(report) << std::string(sizeof(faults::Report), '\0');
  const std::string plan = faults::PlanAsText({.tree = station.disk.home(),
                                               .store = {},
                                               .trace = aside.home() + "/ours",
                                               .report_file = report});
  const auto run = RunProgram(
      "strace -f -y -s 0 -o " + aside.home() + "/system -E LOGBOOK_FAULTS=" + Quoted(plan) +
      " -E LD_PRELOAD=" + FAULTS_LIBRARY + " " + Quoted(ECM_AGENT) + " --once --home " +
      Quoted(station.disk.home()) + " --app " + Quoted(station.disk.Native("C:\\QUOREX\\qrxexe")));
  ASSERT_EQ(run.status, 0) << run.output;
  ASSERT_TRUE(station.disk.Has("C:\\share\\station\\one.xml"));
  const auto ours = CallsOfTrace(aside.home() + "/ours");
  EXPECT_FALSE(ours.empty());
  for (const auto& [call, count] : CallsOfSystem(aside.home() + "/system", station.disk.home())) {
    if (call == "open that makes") {
      EXPECT_GE(ours.contains("open") ? ours.at("open") : 0, count);
    } else {
      EXPECT_EQ(ours.contains(call) ? ours.at(call) : 0, count) << call;
    }
  }
}

// What is left of some work on a disk that loses its power behind it.
class PowerCut : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(In(""));
    fs::create_directories(machine_.home() + "/store");
  }
  std::string In(const std::string& name) const { return machine_.home() + "/tree/" + name; }

  void Write(const std::string& name, const std::string& bytes, bool sync) const {
    const int file = open(In(name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_EQ(write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    if (sync) fsync(file);
    close(file);
  }
  void SyncFolder(const std::string& name) const {
    const int folder = open(In(name).c_str(), O_RDONLY | O_DIRECTORY);
    fsync(folder);
    close(folder);
  }
  std::string Bytes(const std::string& name) const {
    std::ifstream in(In(name), std::ios::binary);
    if (!in) return "(none)";
    return {std::istreambuf_iterator<char>(in), {}};
  }

  // The power goes behind so many changing calls of the work.
  void CutBehind(long calls, faults::Loss loss, const std::function<void()>& work) {
    Write("old", "old bytes", true);
    const pid_t child = fork();
    if (child == 0) {
      faults::Arm({.tree = machine_.home() + "/tree",
                   .act = faults::Act::kPowerLoss,
                   .at = calls + 1,
                   .loss = loss,
                   .store = machine_.home() + "/store",
                   .trace = {},
                   .report_file = {}});
      work();
      mkdir(In("end").c_str(), 0777);
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    fs::remove_all(machine_.home() + "/store");
    fs::create_directories(machine_.home() + "/store");
  }

 private:
  TestMachine machine_;
};

TEST_F(PowerCut, WhatIsSyncedStays) {
  for (int loss = 0; loss < faults::kLosses; ++loss) {
    CutBehind(3, static_cast<faults::Loss>(loss), [&] { Write("old", "new bytes", true); });
    EXPECT_EQ(Bytes("old"), "new bytes") << loss;
  }
}

TEST_F(PowerCut, DataThatWereNotSyncedAreLost) {
  const auto work = [&] { Write("old", "new bytes", false); };
  CutBehind(2, faults::Loss::kAll, work);
  EXPECT_EQ(Bytes("old"), "old bytes");
  CutBehind(2, faults::Loss::kData, work);
  EXPECT_EQ(Bytes("old"), "");
  CutBehind(2, faults::Loss::kDataZeroed, work);
  EXPECT_EQ(Bytes("old"), std::string(9, '\0'));
  CutBehind(2, faults::Loss::kTorn, work);
  EXPECT_EQ(Bytes("old"), "new ");
}

TEST_F(PowerCut, AReplacementWithoutASyncOfTheFolderIsUndone) {
  const auto work = [&] {
    Write("made", "new bytes", true);
    rename(In("made").c_str(), In("old").c_str());
  };
  CutBehind(4, faults::Loss::kAll, work);
  EXPECT_EQ(Bytes("old"), "old bytes");
  EXPECT_EQ(Bytes("made"), "new bytes");  // a synced file keeps the name that it had
}

TEST_F(PowerCut, AReplacementWithASyncOfTheFolderStays) {
  CutBehind(5, faults::Loss::kAll, [&] {
    Write("made", "new bytes", true);
    rename(In("made").c_str(), In("old").c_str());
    SyncFolder("");
  });
  EXPECT_EQ(Bytes("old"), "new bytes");
  EXPECT_EQ(Bytes("made"), "(none)");
}

TEST_F(PowerCut, DeletedFilesAndFoldersComeBackUntilTheFolderAboveIsSynced) {
  fs::create_directories(In("folder"));
  Write("folder/inside", "its bytes", true);
  const auto work = [&] {
    unlink(In("folder/inside").c_str());
    rmdir(In("folder").c_str());
  };
  CutBehind(2, faults::Loss::kAll, work);
  EXPECT_EQ(Bytes("folder/inside"), "its bytes");
  CutBehind(3, faults::Loss::kAll, [&] {
    work();
    SyncFolder("");
  });
  EXPECT_FALSE(fs::exists(In("folder")));
}

TEST_F(PowerCut, ASyncedFileKeepsTheFoldersThatLeadToIt) {
  CutBehind(4, faults::Loss::kAll, [&] {
    mkdir(In("new").c_str(), 0777);
    Write("new/inside", "its bytes", true);
  });
  EXPECT_EQ(Bytes("new/inside"), "its bytes");
}

}  // namespace
}  // namespace logbook::test
