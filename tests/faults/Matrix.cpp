// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Matrix.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>

#include "ShortMemory.h"
#include "loglist/LogList.h"
#include "records/LogCommands.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

using faults::Act;
using faults::Calls;
using faults::Loss;
using faults::Times;
using std::chrono::steady_clock;

constexpr std::chrono::seconds kLongest(5);
constexpr int kErrorGotOut = 2;  // of a command, through the frame around it

// Thousands of points wait thousands of times for a disk; one in memory does the same faster.
const bool has_disk_in_memory = [] {
  constexpr const char* kFolder = "/dev/shm";
  return access(kFolder, W_OK) == 0 && setenv("TMPDIR", kFolder, 0) == 0;
}();

// What a process tells its parent through a pipe before it ends.
struct Outcome {
  bool finished = false;
  bool hung = false;
  int signal = 0;
  std::string told;
};

// The time that a process has waited for a processor: on a busy machine it is not to blame for it.
std::chrono::nanoseconds QueueTime(pid_t process) {
  std::ifstream in("/proc/" + std::to_string(process) + "/schedstat");
  std::int64_t run = 0, waited = 0;
  in >> run >> waited;
  return std::chrono::nanoseconds(waited);
}

bool TakesTooLong(pid_t process, steady_clock::time_point begin) {
  return steady_clock::now() - begin - QueueTime(process) > kLongest;
}

// Reads what the child writes until it closes the pipe; true if it hangs.
bool ReadAll(int pipe, pid_t child, std::string& text) {
  const auto begin = steady_clock::now();
  for (;;) {
    pollfd waiting{.fd = pipe, .events = POLLIN, .revents = 0};
    const int ready = poll(&waiting, 1, 200);
    if (ready == 0 && TakesTooLong(child, begin)) return true;
    if (ready <= 0) continue;
    char buffer[4096];
    const ssize_t count = read(pipe, buffer, sizeof buffer);
    if (count <= 0) return false;
    text.append(buffer, static_cast<std::size_t>(count));
  }
}

Outcome RunInChild(const std::function<std::string()>& work) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    std::string text;
    try {
      text = work();
    } catch (...) {
      _exit(kErrorGotOut);
    }
    const ssize_t written = write(ends[1], text.data(), text.size());
    _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
  }
  close(ends[1]);
  Outcome outcome;
  outcome.hung = ReadAll(ends[0], child, outcome.told);
  close(ends[0]);
  if (outcome.hung) kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  outcome.finished = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
  return outcome;
}

// Point numbers of a run that is short of memory count allocations.
struct Point {
  Act act;
  Calls calls;
  long at;
  int error = 0;
  Times times = Times::kOnce;
  Loss loss = Loss::kAll;
};

std::string TextOf(const Point& point) {
  constexpr const char* kActs[] = {"count", "kill", "half write", "power loss", "answer"};
  constexpr const char* kLossNames[] = {"all", "data", "zeros", "torn", "names"};
  std::string text = kActs[static_cast<int>(point.act)];
  if (point.act == Act::kPowerLoss)
    text += std::string(" ") + kLossNames[static_cast<int>(point.loss)];
  if (point.act == Act::kAnswer) text += std::string(" ") + strerrorname_np(point.error);
  if (point.times == Times::kForEver) text += " for ever";
  return text + (point.calls == Calls::kReading ? " at reading call " : " at changing call ") +
         std::to_string(point.at);
}

std::vector<Point> AllPoints(long changing, long reading) {
  std::vector<Point> points;
  for (long at = 1; at <= changing; ++at) {
    for (const Act act : {Act::kKill, Act::kHalfWrite})
      points.push_back({act, Calls::kChanging, at});
    for (int loss = 0; loss < faults::kLosses; ++loss) {
      points.push_back({.act = Act::kPowerLoss,
                        .calls = Calls::kChanging,
                        .at = at,
                        .loss = static_cast<Loss>(loss)});
    }
    for (const int error : {ENOSPC, EIO, EACCES, EROFS, EMFILE, EDQUOT}) {
      for (const Times times : {Times::kOnce, Times::kForEver})
        points.push_back({Act::kAnswer, Calls::kChanging, at, error, times});
    }
  }
  for (long at = 1; at <= reading; ++at) {
    for (const int error : {EIO, EMFILE}) {
      for (const Times times : {Times::kOnce, Times::kForEver})
        points.push_back({Act::kAnswer, Calls::kReading, at, error, times});
    }
  }
  return points;
}

// The power is cut when the command has come to its end: what it promises is on the disk then.
std::vector<Point> PointsBehind(long changing) {
  std::vector<Point> points;
  for (int loss = 0; loss < faults::kLosses; ++loss)
    points.push_back({.act = Act::kPowerLoss,
                      .calls = Calls::kChanging,
                      .at = changing + 1,
                      .loss = static_cast<Loss>(loss)});
  return points;
}

// Evenly spread, and the same ones in every run.
std::vector<Point> Sample(const std::vector<Point>& all, int most) {
  if (most <= 0 || all.size() <= static_cast<std::size_t>(most)) return all;
  std::vector<Point> some;
  for (int i = 0; i < most; ++i)
    some.push_back(all[static_cast<std::size_t>(i) * all.size() / static_cast<std::size_t>(most)]);
  return some;
}

// Random and running parts of names, which differ from run to run.
std::string KeyOf(const std::string& path) {
  static const std::regex submission("-[0-9]{4}-[0-9a-f]{8}");
  static const std::regex log("maintain/26111[5-9][0-9A-F]{2}");
  static const std::regex seconds("2611150509[0-9]{2}");
  std::string key = std::regex_replace(path, submission, "-N");
  key = std::regex_replace(key, log, "maintain/NEW");
  return std::regex_replace(key, seconds, "TIME");
}

// The name of a submission's file before the submission's last renaming, which the next start
// repeats.
std::string BeforeItsLastName(const std::string& key) {
  static const std::regex submission("(/outbox/[^/]+)/");
  return std::regex_replace(key, submission, "$1.new/");
}

// A name of a file that is on its way.
bool IsWorkingName(const std::string& path) {
  static const std::regex working(
      "(^|.*/)(\\.logbook-new~[0-9-]*|\\..*\\.[0-9]+\\.part2?|.*\\.xml\\.[0-9a-z]{6}|.*\\.part~?|"
      "note\\.new|.*\\.(new|done)/.*|.*\\.(new|done)/)");
  return std::regex_match(path, working);
}

std::string Cut(const std::string& bytes) {
  constexpr std::size_t kMost = 120;
  std::string text = std::to_string(bytes.size()) + " bytes: " + bytes.substr(0, kMost);
  for (char& byte : text) byte = static_cast<unsigned char>(byte) < 0x20 ? ' ' : byte;
  return text;
}

// Archives hold the times of what they are made of.
void SetTimes(const std::string& folder) {
  static const fs::file_time_type now = fs::file_time_type::clock::now();
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    fs::last_write_time(entry.path(), now);
}

class Matrix {
 public:
  explicit Matrix(const Command& command) : command_(command) {
    memory_ = mmap(nullptr, sizeof(faults::Report), PROT_READ | PROT_WRITE,
                   MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory_ == MAP_FAILED) throw std::runtime_error("no shared memory");
    report_ = new (memory_) faults::Report;
    command_.prepare(station_);
    before_ = ReadDisk(station_.disk.home());
    fs::copy(station_.disk.home(), template_.home(), fs::copy_options::recursive);
    store_ = station_.disk.home() + ".store";
    RunHonestly();
  }
  ~Matrix() {
    munmap(memory_, sizeof(faults::Report));
    fs::remove_all(store_);
  }
  Matrix(const Matrix&) = delete;
  Matrix& operator=(const Matrix&) = delete;

  Figures RunShortOfMemory(int most_points) {
    Figures figures;
    Reset();
    long count = 0;
    const Outcome honest = RunInChild([&] {
      command_.script(station_);
      const ShortMemory memory(0);
      command_.run(station_);
      return std::to_string(ShortMemory::Allocations());
    });
    EXPECT_TRUE(honest.finished) << command_.name;
    count = std::atol(honest.told.c_str());
    EXPECT_GT(count, 0);
    figures.changing = count;
    const long step = most_points > 0 ? std::max(1L, count / most_points) : 1;
    for (long at = 1; at <= count; at += step) {
      ++figures.points;
      const std::string fault = TryWithout(at);
      if (fault.empty()) {
        ++figures.survived;
      } else if (figures.points - figures.survived <= kMostFailures) {
        ADD_FAILURE() << command_.name << ", without allocation " << at << ": " << fault;
      }
    }
    EXPECT_EQ(figures.survived, figures.points) << command_.name;
    return figures;
  }

  Figures Run(int most_points) {
    Figures figures;
    Count();
    figures.changing = report_->changing;
    figures.reading = report_->reading;
    EXPECT_GT(figures.changing + figures.reading, 0);
    changing_ = figures.changing;
    std::vector<Point> points = Sample(AllPoints(figures.changing, figures.reading), most_points);
    for (const Point& point : PointsBehind(changing_)) points.push_back(point);
    for (const Point& point : points) {
      ++figures.points;
      const std::string fault = Try(point);
      if (fault.empty()) {
        ++figures.survived;
      } else if (figures.points - figures.survived <= kMostFailures) {
        ADD_FAILURE() << command_.name << ", " << TextOf(point) << " (" << report_->call
                      << "): " << fault;
      }
    }
    EXPECT_EQ(figures.survived, figures.points) << command_.name;
    return figures;
  }

 private:
  static constexpr int kMostFailures = 12;

  // Brings the workstation back to the beginning.
  void Reset() {
    if (command_.reset) command_.reset();
    for (const auto& entry : fs::directory_iterator(station_.disk.home()))
      fs::remove_all(entry.path());
    fs::copy(template_.home(), station_.disk.home(), fs::copy_options::recursive);
    SetTimes(station_.disk.home());
    fs::remove_all(store_);
    fs::create_directory(store_);
  }

  // What the command leaves, and what is on the disk at its milestones, once and again.
  void RunHonestly() {
    Reset();
    Station& judged = reference_;
    fs::copy(template_.home(), judged.disk.home(),
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    SetTimes(judged.disk.home());
    judged.on_milestone = [&] { milestones_.push_back(ReadDisk(judged.disk.home())); };
    command_.script(judged);
    judged.Milestone();
    command_.run(judged);
    EXPECT_EQ(judged.Told(), command_.says) << command_.name << " on an honest disk";
    done_ = ReadDisk(judged.disk.home());
  }

  Outcome RunWith(const faults::Plan& plan) {
    return RunInChild([&] {
      command_.script(station_);
      faults::Arm(plan);
      command_.run(station_);
      // A call of nobody's, for the fault that waits behind the last one.
      if (plan.at > changing_ && plan.act == Act::kPowerLoss)
        mkdir((station_.disk.home() + "/behind").c_str(), 0700);
      faults::Disarm();
      return station_.Told();
    });
  }

  void Count() {
    Reset();
    const Outcome outcome = RunWith({.tree = station_.disk.home(), .report = report_});
    EXPECT_TRUE(outcome.finished) << command_.name;
  }

  // One allocation fails; what follows finds memory again.
  std::string TryWithout(long allocation) {
    Reset();
    const Outcome outcome = RunInChild([&] {
      command_.script(station_);
      {
        const ShortMemory memory(allocation);
        command_.run(station_);
      }
      return station_.Told();
    });
    if (outcome.hung) return "did not come to an end";
    if (!outcome.finished) return "ended by signal " + std::to_string(outcome.signal);
    const Disk now = ReadDisk(station_.disk.home());
    const Aftermath after{before_, done_, milestones_, now, true, outcome.told};
    const Point point = {.act = Act::kAnswer, .calls = Calls::kReading, .at = 0};
    std::string fault = JudgeFiles(after, point);
    if (fault.empty()) fault = JudgeTold(after, point);
    if (fault.empty() && command_.judge) fault = command_.judge(after);
    return fault;
  }

  std::string Try(const Point& point) {
    Reset();
    report_->struck = false;
    std::memset(report_->call, 0, sizeof report_->call);
    const Outcome outcome = RunWith({.tree = station_.disk.home(),
                                     .act = point.act,
                                     .calls = point.calls,
                                     .at = point.at,
                                     .error = point.error,
                                     .times = point.times,
                                     .loss = point.loss,
                                     .store = store_,
                                     .trace = {},
                                     .report_file = {},
                                     .report = report_});
    if (outcome.hung) return "did not come to an end";
    if (!report_->struck) return "the call was not met";
    if (!outcome.finished && outcome.signal != SIGKILL)
      return "ended by signal " + std::to_string(outcome.signal);
    const Disk now = ReadDisk(station_.disk.home());
    const Aftermath after{before_, done_, milestones_, now, outcome.finished, outcome.told};
    std::string fault = JudgeFiles(after, point);
    if (fault.empty() && point.at > changing_ && point.act == Act::kPowerLoss)
      fault = JudgeSynced(after);
    if (fault.empty()) fault = JudgeTold(after, point);
    if (fault.empty() && command_.judge) fault = command_.judge(after);
    if (fault.empty()) fault = JudgeNextRun();
    return fault;
  }

  bool IsKnown(const std::string& key, const std::string& bytes) const {
    const auto holds = [&](const Disk& disk) {
      return std::any_of(disk.begin(), disk.end(), [&](const auto& each) {
        return KeyOf(each.first) == key && each.second == bytes;
      });
    };
    return holds(before_) || holds(done_) ||
           std::any_of(milestones_.begin(), milestones_.end(), holds);
  }

  bool IsAbsentInSome(const std::string& path) const {
    return !done_.contains(path) ||
           std::any_of(milestones_.begin(), milestones_.end(),
                       [&](const Disk& disk) { return !disk.contains(path); });
  }

  // Whether the file may hold less as something could not be read: a call that reads has failed, or
  // may have behind one that changes and keeps failing.
  bool FollowsReading(const std::string& path, const Point& point) const {
    const bool fails_reading =
        point.calls == Calls::kReading ||
        (point.times == Times::kForEver && (point.error == EIO || point.error == EMFILE));
    return fails_reading && command_.follows_reading && command_.follows_reading(path);
  }

  // Of what can be made again at any time: a power cut may take it, and where something could not
  // be read it is a whole text of what could.
  bool IsGoodEnough(const std::string& path, const std::string& bytes, const Point& point) const {
    const bool is_made = command_.is_made && command_.is_made(path);
    if (point.act == Act::kPowerLoss) return is_made;
    return point.act == Act::kAnswer && (is_made || FollowsReading(path, point)) &&
           bytes.ends_with("\r\n");
  }

  // Every file under its own name is whole: as before, as at a milestone or as at the end.
  std::string JudgeFiles(const Aftermath& after, const Point& point) const {
    for (const auto& [path, bytes] : after.now) {
      if (IsWorkingName(path) || path.ends_with('/') || path.ends_with("/.agent")) continue;
      if (IsGoodEnough(path, bytes, point)) continue;
      if (command_.is_whole && command_.is_whole(path, bytes)) continue;
      if (!IsKnown(KeyOf(path), bytes)) return path + " is neither old nor new, " + Cut(bytes);
    }
    for (const auto& [path, bytes] : after.before) {
      const bool may_be_gone = command_.may_be_gone && command_.may_be_gone(path);
      if (!after.now.contains(path) && !may_be_gone && !IsAbsentInSome(path))
        return path + " is lost";
    }
    return {};
  }

  // What cannot be made again is on the disk when the command has come to its end.
  std::string JudgeSynced(const Aftermath& after) const {
    Disk now;
    for (const auto& [path, bytes] : after.now) now[KeyOf(path)] = bytes;
    for (const auto& [path, bytes] : done_) {
      if (IsWorkingName(path) || path.ends_with('/') || path.ends_with("/.agent")) continue;
      if (command_.is_made && command_.is_made(path)) continue;
      auto found = now.find(KeyOf(path));
      if (found == now.end()) found = now.find(BeforeItsLastName(KeyOf(path)));
      if (found == now.end()) return path + " is not on the disk behind the end";
      if (command_.is_whole && command_.is_whole(path, found->second)) continue;
      if (found->second != bytes) return path + " is old behind the end";
    }
    return {};
  }

  // Who is told nothing believes that all is done.
  std::string JudgeTold(const Aftermath& after, const Point& point) const {
    if (!after.finished || after.told != command_.says) return {};
    Disk now, done;
    const auto keep = [&](const Disk& from, Disk& to) {
      for (const auto& [path, bytes] : from) {
        if (IsWorkingName(path) || (command_.is_silent && command_.is_silent(path))) continue;
        to[KeyOf(path)] = bytes;
      }
    };
    keep(after.now, now);
    keep(done_, done);
    for (const auto& [key, bytes] : done) {
      if (!now.contains(key)) return "nobody is told that " + key + " was not made";
      if (command_.is_whole && command_.is_whole(key, now[key])) continue;
      if (now[key] == bytes) continue;
      const auto old = after.before.find(key);
      const bool is_old = old != after.before.end() && old->second == now[key];
      if (!is_old && FollowsReading(key, point)) continue;
      return "nobody is told that " + key + " is not new, " + Cut(now[key]);
    }
    for (const auto& [key, bytes] : now) {
      if (!done.contains(key)) return "nobody is told that " + key + " is there";
    }
    return {};
  }

  // The program starts and lists, the command works again, new logs can be deleted, and nothing is
  // left behind.
  std::string JudgeNextRun() {
    const Outcome outcome = RunInChild([&] {
      Init_FileList(station_.state, station_.services);
      if (station_.state.LogCount != LogFolders())
        return std::string("the list shows ") + std::to_string(station_.state.LogCount) + " logs";
      station_.clock.now.Minute += 1;
      command_.script(station_);
      command_.run(station_);
      if (command_.afterwards) command_.afterwards(station_);
      const std::string told = station_.Told();
      DeleteNewLogs();
      return told;
    });
    if (outcome.hung) return "the next run hangs";
    if (!outcome.finished) return "the next run ends by signal " + std::to_string(outcome.signal);
    if (outcome.told != command_.says) return "the next run tells: " + outcome.told;
    const Disk rest = ReadDisk(station_.disk.home());
    for (const auto& [path, bytes] : rest) {
      if (IsWorkingName(path) && !(command_.may_stay && command_.may_stay(path)))
        return "left behind: " + path;
    }
    return command_.judge_rest ? command_.judge_rest(rest) : std::string();
  }

  // What a user does about the log of a recording that failed: what is in its folder goes with it.
  void DeleteNewLogs() {
    constexpr const char* kToday = "261115";
    RebuildList(station_.state, station_.messages);
    for (ListRow& row : station_.state.ListView1.Rows)
      row.Selected = row.SubItem(1).starts_with(kToday);
    DeleteSelectedLogs(station_.state, station_.services);
  }

  int LogFolders() const {
    int count = 0;
    for (const auto& entry :
         fs::directory_iterator(station_.disk.Native(TestWorkstation::kLogRoot)))
      count += entry.is_directory() ? 1 : 0;
    return count;
  }

  const Command& command_;
  void* memory_;
  faults::Report* report_;
  Station station_;    // at the beginning always; children run on copies of it
  Station reference_;  // has run the command
  TestMachine template_;
  std::string store_;
  Disk before_, done_;
  std::vector<Disk> milestones_;
  long changing_ = 0;  // calls of the command on an honest disk
};

}  // namespace

Figures RunShortOfMemory(const Command& command, int most_points) {
  const Figures figures = Matrix(command).RunShortOfMemory(most_points);
  std::printf("| %s | %ld | %d | %d |\n", command.name.c_str(), figures.changing, figures.points,
              figures.survived);
  return figures;
}

Figures RunMatrix(const Command& command, int most_points) {
  const Figures figures = Matrix(command).Run(most_points);
  std::printf("| %s | %ld | %ld | %d | %d |\n", command.name.c_str(), figures.changing,
              figures.reading, figures.points, figures.survived);
  return figures;
}

}  // namespace logbook::test
