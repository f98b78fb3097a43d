// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The matrix: one command of the program, run again and again from the same beginning, each time
// with another fault at another of its calls to the disk, and looked at afterwards. A run is a
// process of its own. Behind it a second one, on an honest disk, starts, lists the logs and runs
// the command once more, as the user would.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Faults.h"
#include "Station.h"

namespace logbook::test {

// What one faulty run has left.
struct Aftermath {
  const Disk& before;                   // the run
  const Disk& done;                     // what the command leaves on an honest disk
  const std::vector<Disk>& milestones;  // and what is there at its milestones
  const Disk& now;
  bool finished;     // the process came to its end
  std::string told;  // to the user, if it did
};

struct Command {
  std::string name;
  // Makes the files of the beginning.
  std::function<void(Station&)> prepare;
  // Gives the user and the host their scripts, on an honest disk.
  std::function<void(Station&)> script;
  // The command itself.
  std::function<void(Station&)> run;
  // What it tells the user when all goes well.
  std::string says = {};
  // Files that can be made again at any time: a power cut may leave any bytes of them.
  std::function<bool(const std::string& path)> is_made = {};
  // Files that are whole, but hold what could be read where something could not.
  std::function<bool(const std::string& path)> follows_reading = {};
  // Whether bytes that the matrix does not know are a whole file all the same.
  std::function<bool(const std::string& path, const std::string& bytes)> is_whole = {};
  // Files of the beginning that the command takes away before it has the new ones.
  std::function<bool(const std::string& path)> may_be_gone = {};
  // Files that may differ from a complete run although nobody is told, as the command promises.
  std::function<bool(const std::string& path)> is_silent = {};
  // Working files that may stay although the command has run again.
  std::function<bool(const std::string& path)> may_stay = {};
  // More that has to hold; what is wrong, or nothing. The second is for the disk after the next
  // run.
  std::function<std::string(const Aftermath&)> judge = {};
  std::function<std::string(const Disk& rest)> judge_rest = {};
  // What the next run does behind the command, such as the agent's work.
  std::function<void(Station&)> afterwards = {};
  // Brings what lies outside of the workstation back to the beginning.
  std::function<void()> reset = {};
};

struct Figures {
  long changing = 0, reading = 0;  // calls of the command on an honest disk
  int points = 0, survived = 0;
};

// What becomes of the command when one allocation after the other fails, each in a run of its own:
// run-time error 7, another word to the user, or nothing at all, and never the end of the process.
// Counts the allocations as changing calls.
Figures RunShortOfMemory(const Command& command, int most_points = 0);

// Runs the command at all points, or at so many of them, evenly spread. Each failure fails the
// test. The figures are printed as a line of the table in docs/reliability.md.
Figures RunMatrix(const Command& command, int most_points = 0);

}  // namespace logbook::test
