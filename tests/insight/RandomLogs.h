// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A log root with logs of instruments of all builds, made by the simulated host's model: the same
// seed gives the same logs.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "host/History.h"
#include "support/TestMachine.h"

namespace logbook::test {

class RandomLogs {
 public:
  static constexpr const char* kRoot = "C:\\QUOREX\\inst1\\maintain\\";

  explicit RandomLogs(std::uint64_t seed, int code_page = 1252) : disk_(code_page), random_(seed) {
    host::MakeWorkstation(disk_.home(), {code_page, {}});
    disk_.MakeFolders("C:\\QUOREX\\inst1\\maintain");
  }

  // Adds logs, each of an instrument of its own: any lens family, any options, also numbers that no
  // host writes. Returns the folders' names.
  std::vector<std::string> Add(int count);

  // The same with a snapshot that a host in trouble has left.
  std::vector<std::string> AddDamaged(int count);

  // A number from 0 to `most`.
  int Pick(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

  const TestMachine& disk() const { return disk_; }
  const Machine& machine() const { return disk_.machine(); }
  // Native path of the log root.
  std::string NativeRoot() const { return disk_.Native("C:\\QUOREX\\inst1\\maintain"); }
  // Path text of a file of a log.
  static std::string PathOf(const std::string& folder, const std::string& file) {
    return kRoot + folder + "\\" + file;
  }

 private:
  std::string AddOne(std::vector<host::Damage> damages);
  host::InstrumentBuild RandomBuild();

  TestMachine disk_;
  std::mt19937_64 random_;
  int day_ = 0;
};

}  // namespace logbook::test
