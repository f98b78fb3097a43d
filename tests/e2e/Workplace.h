// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A whole workstation for one test: desktop, drives, simulated host and logbook, the last two as
// the real programs. Path texts are on drive C:, such as
// "C:\\QUOREX\\inst1\\maintain\\listlog.csv".
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Desktop.h"
#include "ScreenReader.h"
#include "support/TestMachine.h"

namespace logbook::e2e {

inline constexpr char kHostId[] = "QUOREX";
inline constexpr char kExePath[] = "C:\\QUOREX\\qrxexe\\";
inline constexpr char kLogRoot[] = "C:\\QUOREX\\inst1\\maintain\\";
inline constexpr char kMainTitle[] = "Maintenance LogBook";
inline constexpr char kSeed[] = "7";

class Workplace {
 public:
  explicit Workplace(const DesktopKind& kind = {});

  Desktop& desktop() { return desktop_; }
  const test::TestMachine& machine() const { return machine_; }
  Environment Variables() const;

  // Runs quorex-host to its end ("init", "fill", "snapshot"); fails the test on another status
  // than 0.
  void RunHost(std::vector<std::string> arguments);
  // Starts quorex-host run with these arguments behind its id, and waits until it is ready.
  ChildProcess& StartHost(const std::vector<std::string>& arguments = {});
  // The same, and the host starts the logbook.
  ChildProcess& StartHostWithLogbook(const std::vector<std::string>& arguments = {});
  // Starts the logbook with this command line.
  std::unique_ptr<ChildProcess> StartLogbook(const std::vector<std::string>& arguments);

  ChildProcess& host() { return *host_; }

  // Makes the logs "26010100", "26010200" and so on, each finished, without snapshot.
  void PutPlainLogs(int count);
  // Names of the folders in the log root, in order.
  std::vector<std::string> Logs() const;
  // All files below a folder by their names relative to it, with their bytes.
  std::map<std::string, std::string> FilesIn(const std::string& folder) const;

 private:
  test::TestMachine machine_;
  Desktop desktop_;
  std::unique_ptr<ChildProcess> host_;
};

// Base of the tests of whole programs. A machine without the programs that a desktop is made of
// skips them; after a failure a picture of the screen lies in the build tree.
class WholeProgram : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // The desktop that the tests of a suite need.
  virtual DesktopKind Kind() const { return {}; }

  Workplace& work() { return *work_; }
  Desktop& desktop() { return work_->desktop(); }

 private:
  std::unique_ptr<Workplace> work_;
};

// The same, with a screen reader that was there before the program.
class ReadableProgram : public WholeProgram {
 protected:
  void SetUp() override;
  void TearDown() override;

  ScreenReader& reader() { return *reader_; }
  // The row of the list that shows this log, as its folder's cell.
  Readable Row(const std::string& log) { return reader().WaitFor("tree item", log); }
  void ClickRow(const std::string& log, const std::string& key = "");
  // Waits until the button is enabled, or, told so, disabled.
  void WaitForButton(const std::string& caption, bool enabled = true);

 private:
  std::unique_ptr<ScreenReader> reader_;
};

// Folder base YYMMDD of a time, and the time that a "Date" text names.
std::string DayName(std::time_t time);
std::time_t TimeOfDate(const std::string& date);

}  // namespace logbook::e2e
