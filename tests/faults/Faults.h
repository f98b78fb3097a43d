// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A disk that fails when it is told to. The library behind this header stands before the system's
// own one, linked into a test program or preloaded into any other, and sees every call that changes
// or reads what lies below one folder, the tree. It counts the calls and, at the one that a plan
// names, kills the process, tears a write, takes the power away or answers with an error.
//
// A preloaded program takes its plan from the variable LOGBOOK_FAULTS, as PlanAsText writes it;
// what it starts in its turn runs on an honest disk.
#pragma once

#include <atomic>
#include <string>

namespace logbook::faults {

enum class Act {
  kCount,      // nothing happens
  kKill,       // the process is killed before the call
  kHalfWrite,  // the same, after half of what the call was to write; at other calls as kKill
  kPowerLoss,  // the same, and the disk loses what Loss says of what was not synced
  kAnswer,     // the call fails with an error
};

enum class Calls { kChanging, kReading };
enum class Times { kOnce, kForEver };  // for ever: all later calls that can give this error, too

// What a power cut leaves of what was not synced, as a file system with a journal may. Synced data
// and the names that lead to it are safe, and so is what a synced folder holds.
enum class Loss {
  kAll,         // names and data are as they were synced
  kData,        // names are new, the data behind them never came: files are empty or as before
  kDataZeroed,  // names and sizes are new, the data are zeros
  kTorn,        // the newer half of the names is lost, and the second half of the data
  kNames,       // the data are there, the names are as they were synced
};
inline constexpr int kLosses = 5;

// What a process in a shared memory or a file tells of its calls.
struct Report {
  std::atomic<long> changing = 0, reading = 0;
  std::atomic<bool> struck = false;
  char call[240] = {};  // the one that was struck: its name and path
};

struct Plan {
  std::string tree;  // native path, without a slash at its end
  Act act = Act::kCount;
  Calls calls = Calls::kChanging;
  long at = 0;  // number of the call among those of its sort, from 1; 0 for none
  int error = 0;
  Times times = Times::kOnce;
  Loss loss = Loss::kAll;
  std::string store;         // kPowerLoss: an empty folder beside the tree, on the same disk
  std::string trace;         // a file for one line a call; empty for none
  std::string report_file;   // of preloaded programs: a file of the size of Report
  Report* report = nullptr;  // of linked programs; memory shared with whoever reads it
};

// The value of LOGBOOK_FAULTS that makes a preloaded program follow the plan.
std::string PlanAsText(const Plan& plan);

// From now on the calls of this process follow the plan; the library's counts begin anew.
void Arm(const Plan& plan);
void Disarm();

// While an object lives, what this process does is done by somebody else, whose disk is honest.
class Aside {
 public:
  Aside();
  ~Aside();
  Aside(const Aside&) = delete;
  Aside& operator=(const Aside&) = delete;
};

}  // namespace logbook::faults
