// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The memory that reading takes does not depend on the size of what is read: each reader over a log
// whose files have grown a thousand times, and over one twice as large. And what becomes of work
// for which there is none.

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "Faults.h"
#include "Station.h"
#include "base/Files.h"
#include "base/Profile.h"
#include "loglist/LogList.h"
#include "support/Errors.h"
#include "support/RunProgram.h"
#include "viewer/LogView.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

constexpr std::size_t kLargeFile = 2'000'000;  // bytes of each file of the log
constexpr long kNoise = 512;                   // KiB

long Kilobytes(const std::string& figure) {
  std::ifstream in("/proc/self/status");
  for (std::string name; in >> name;) {
    long value = 0;
    if (name == figure + ":" && in >> value) return value;
  }
  return -1;
}

// The most memory that the call has beyond what was there before, in KiB; -1 if it failed. It runs
// in a process of its own, behind another one that brings the program's own pages in.
long PeakOf(const std::function<void()>& first, const std::function<void()>& call) {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    long peak = -1;
    try {
      first();
      malloc_trim(0);
      const long before = Kilobytes("VmRSS");
      std::ofstream("/proc/self/clear_refs") << "5";  // the peak is counted anew
      call();
      peak = Kilobytes("VmHWM") - before;
    } catch (...) {
    }
    _exit(write(ends[1], &peak, sizeof peak) == sizeof peak ? 0 : 1);
  }
  close(ends[1]);
  long peak = -1;
  if (read(ends[0], &peak, sizeof peak) != sizeof peak) peak = -1;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return peak;
}

// The host's files of the log go on and on with what they hold.
void Grow(Station& station, std::size_t size) {
  for (const auto& entry :
       fs::directory_iterator(station.disk.Native(TestWorkstation::InLog("26111400", "")))) {
    const std::string name = entry.path().filename();
    if (name == "logfile.ini" || name == "comment.txt") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string once{std::istreambuf_iterator<char>(in), {}};
    std::ofstream out(entry.path(), std::ios::binary | std::ios::app);
    for (std::size_t have = once.size(); have < size && !once.empty(); have += once.size())
      out << once;
  }
}

void View(Station& station, const char* name) {
  LogView view;
  LoadLogView(station.state, view);
  int found = 0;
  for (const ViewCommand& command : kViewCommands) {
    if ((view.*command.Entry).Name != name) continue;
    command.Run(station.state, station.real, view);
    ++found;
  }
  if (found != 1 || view.ReportText.empty()) throw std::runtime_error(name);
}

struct Reader {
  const char* name;
  long most;  // KiB
  std::function<void(Station&)> read;
  std::function<void(Station&)> first = read;  // over a log of the usual size
};

class MemoryTest : public ::testing::TestWithParam<Reader> {};

TEST_P(MemoryTest, DoesNotGrowWithWhatIsRead) {
  const auto peak = [&](std::size_t size) {
    Station station;
    station.state.CEMode = true;
    for (const char* log : {"26111400", "26111401"}) {
      station.PutSample(log, "trz-ce", "A comment");
      for (const char* file :
           {"acqlog.txt", "sequence.log", "chnseq.log", "errlog.txt", "ceerrlog.txt"})
        station.disk.Put(TestWorkstation::InLog(log, file), "11/15 05:09  a line of a log\r\n");
    }
    Init_FileList(station.state, station.real);
    Grow(station, size);
    const auto read = [&](std::int16_t row, const std::function<void(Station&)>& reader) {
      station.state.CurrentLog = row;
      reader(station);
    };
    return PeakOf([&] { read(2, GetParam().first); }, [&] { read(1, GetParam().read); });
  };
  const long once = peak(kLargeFile);
  const long twice = peak(2 * kLargeFile);
  std::printf("| %s | %ld | %ld |\n", GetParam().name, once, twice);
  EXPECT_GE(once, 0);
  EXPECT_LE(once, GetParam().most) << "KiB";
  EXPECT_LE(twice, once + kNoise) << "KiB";
}

Reader ViewOf(const char* name, const char* entry, long most) {
  return {name, most, [entry](Station& station) { View(station, entry); }};
}

INSTANTIATE_TEST_SUITE_P(
    Limits, MemoryTest,
    ::testing::Values(Reader{"List", 4096,
                             [](Station& station) { Init_FileList(station.state, station.real); }},
                      ViewOf("Tune", "mnuTune", 4096), ViewOf("Meter", "mnuMeter", 4096),
                      ViewOf("Analog", "mnuAna", 4096), ViewOf("BitsOut", "mnuBout", 4096),
                      ViewOf("BitsIn", "mnuBin", 4096), ViewOf("System", "mnuSYS", 4096),
                      ViewOf("AcquisitionLog", "mnuACQlog", 4096),
                      ViewOf("ErrorLog", "mnuErrLog", 4096)),
    [](const auto& each) { return std::string(each.param.name); });

// The comment is shown whole, however long it is.
TEST(MemoryOfAComment, IsAtMostFourTimesItsSize) {
  Station station;
  for (const char* log : {"26111400", "26111401"}) station.PutSample(log, "plain", "A comment");
  std::string comment;
  while (comment.size() < kLargeFile) comment += "a line of a comment\r\n";
  station.disk.Put(TestWorkstation::InLog("26111400", "comment.txt"), comment);
  Init_FileList(station.state, station.real);
  const auto load = [&](std::int16_t row, std::size_t least) {
    station.state.CurrentLog = row;
    LogView view;
    LoadLogView(station.state, view);
    if (view.CommentText.size() < least) throw std::runtime_error("not whole");
  };
  const long peak = PeakOf([&] { load(2, 1); }, [&] { load(1, comment.size()); });
  std::printf("| Comment | %ld |\n", peak);
  EXPECT_GE(peak, 0);
  EXPECT_LE(peak, 4 * static_cast<long>(comment.size() / 1024));
}

// A profile is held as a whole, and so is limited.
TEST(MemoryOfAProfile, IsSomeTimesItsLargestSize) {
  const TestMachine disk;
  std::string bytes = "[Header3]\r\n";
  while (bytes.size() < kLargestProfile - 100)
    bytes += "Key" + std::to_string(bytes.size()) + "=1\r\n";
  disk.Put("C:\\logbook.ini", bytes + "Cat=Meter\r\n");
  const auto read = [&](const std::string& file) {
    if (GetPrivateProfileString(disk, "Header3", "Cat", "", 260, file) != "Meter")
      throw std::runtime_error("not read");
  };
  disk.Put("C:\\small.ini", "[Header3]\r\nCat=Meter\r\n");
  const long peak = PeakOf([&] { read("C:\\small.ini"); }, [&] { read("C:\\logbook.ini"); });
  std::printf("| Profile | %ld |\n", peak);
  EXPECT_GE(peak, 0);
  EXPECT_LE(peak, 3 * static_cast<long>(kLargestProfile / 1024));
}

// The system has no memory for a call on the disk: the platform's number for that, or the work is
// done all the same.
TEST(NoMemoryForACall, IsRunTimeErrorSeven) {
  const auto number_at = [](faults::Calls calls, long at, const std::function<void()>& work,
                            const std::string& tree) {
    faults::Report report;
    faults::Arm({.tree = tree,
                 .act = faults::Act::kAnswer,
                 .calls = calls,
                 .at = at,
                 .error = ENOMEM,
                 .store = {},
                 .trace = {},
                 .report_file = {},
                 .report = &report});
    const int number = NumberRaisedBy(work).value_or(0);
    faults::Disarm();
    return report.struck ? number : -1;
  };
  const TestMachine disk;
  disk.Put("C:\\log\\comment.txt", "bytes");
  const std::string folder = disk.Native("C:\\log\\folder");
  const std::map<std::string, std::function<void()>> works = {
      {"read", [&] { ReadFile(disk, "C:\\log\\comment.txt"); }},
      {"write", [&] { WriteFile(disk, "C:\\log\\comment.txt", "bytes"); }},
      {"scan", [&] { ScanFolder(disk, "C:\\log"); }},
      {"make",
       [&] {
         const auto make_room = [&] {
           const faults::Aside by_another;
           rmdir(folder.c_str());
         };
         make_room();
         MakeFolder(disk, "C:\\log\\folder");
       }},
  };
  for (const auto& [name, work] : works) {
    int sevens = 0;
    for (const faults::Calls calls : {faults::Calls::kChanging, faults::Calls::kReading}) {
      int number = 0;
      for (long at = 1; (number = number_at(calls, at, work, disk.home())) >= 0; ++at) {
        EXPECT_TRUE(number == 0 || number == 7) << name << " call " << at << ": " << number;
        sevens += number == 7 ? 1 : 0;
      }
    }
    EXPECT_GT(sevens, 0) << name;
  }
}

// An agent whose memory is used up says so.
TEST(AgentWithoutMemory, EndsWithAWordAndStatusOne) {
  Station station;
  const std::string settings = "C:\\QUOREX\\qrxexe\\arecm.cfg";
  station.disk.Put(settings, "[Content Server]\r\n");
  const auto run = [&](int kilobytes) {
    return RunProgram("ulimit -v " + std::to_string(kilobytes) + "; exec " + Quoted(ECM_AGENT) +
                      " --status --home " + Quoted(station.disk.home()) + " --app " +
                      Quoted(station.disk.Native("C:\\QUOREX\\qrxexe")));
  };
  // Just enough for an agent without anything to do; what follows is more than the rest of it.
  constexpr int kStep = 2048, kMost = 1 << 20;
  int enough = kStep;
  while (enough < kMost && run(enough).status != 0) enough += kStep;
  ASSERT_LT(enough, kMost);
  station.disk.Put(settings, "[Content Server]\r\n;" + std::string(15 << 20, 'x') + "\r\n");
  const ProgramResult without = run(enough);
  EXPECT_EQ(without.status, 1) << without.output;
  EXPECT_TRUE(without.output.starts_with("ecm-agent: ")) << without.output;
}

}  // namespace
}  // namespace logbook::test
