// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The program "ecm-agent": carries what the logbook has put into its outbox to the content server.
// The logbook starts it; it ends when the outbox is empty. It may be killed at any moment.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "base/CommandLine.h"
#include "base/Files.h"
#include "base/Machine.h"
#include "base/NativeProgram.h"
#include "base/RunTimeError.h"
#include "state/AppState.h"
#include "upload/AgentStatus.h"
#include "upload/Delivery.h"
#include "upload/ECMSub.h"

namespace {

using logbook::DrainResult;
using logbook::Rounds;

constexpr int kSomethingWaits = 1;  // or nobody can tell, for want of an outbox that can be read
constexpr int kWrongUse = 2;

int ShowStatus(const logbook::Machine& machine, const std::string& area,
               const std::string& settings_file) {
  std::cout << logbook::StatusText(machine, area, settings_file);
  const bool is_empty = logbook::HomeExists(machine) && !logbook::SomethingWaits(area);
  return is_empty ? 0 : kSomethingWaits;
}

int Work(const logbook::Machine& machine, const std::string& area, const std::string& settings_file,
         Rounds rounds) {
  if (!logbook::HomeExists(machine)) {
    std::cerr << "ecm-agent: the home " << machine.home << " does not exist\n";
    return kSomethingWaits;
  }
  const DrainResult result = logbook::Drain(machine, area, settings_file, rounds);
  const bool waits = result == DrainResult::kWaiting || result == DrainResult::kDisabled;
  return waits ? kSomethingWaits : 0;
}

// What the command line asks for.
struct Options {
  std::string home = logbook::DefaultHome();
  std::string application = logbook::OwnProgramFolder();
  bool status = false;
  bool once = false;
};

int Run(const Options& options) {
  const logbook::Machine machine = logbook::OpenMachine(options.home);
  logbook::AppState state(machine);
  state.AppPath = logbook::DrivePathText(machine, options.application);
  const std::string settings_file = state.AppPath + "\\arecm.cfg";
  const std::string area = logbook::NativePath(machine, logbook::GetEcmTempArea(state));
  const Rounds rounds = options.once ? Rounds::kOne : Rounds::kUntilEmpty;
  try {
    return options.status ? ShowStatus(machine, area, settings_file)
                          : Work(machine, area, settings_file, rounds);
  } catch (const logbook::RunTimeError& error) {
    std::cerr << "ecm-agent: the outbox in " << area << ": " << error.Description() << "\n";
    return kSomethingWaits;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    CLI::App app("Carries uploads of the maintenance logbook to the content server.", "ecm-agent");
    Options options;
    app.add_option("--home", options.home,
                   "Home of the logbook, with its drives and\nits registry hive")
        ->type_name("FOLDER");
    app.add_option("--app", options.application, "Folder of the logbook's program, with arecm.cfg")
        ->type_name("FOLDER");
    app.add_flag("--status", options.status, "List what waits and why, and end");
    app.add_flag("--once", options.once, "Try everything once and end");
    app.set_version_flag("--version", "ecm-agent " LOGBOOK_VERSION);
    try {
      const logbook::CommandWords words(argc, argv);
      app.parse(words.Count(), words.Words());
    } catch (const CLI::ParseError& error) {
      return app.exit(error) == 0 ? 0 : kWrongUse;
    }
    return Run(options);
  } catch (const std::exception& error) {
    // What was in the outbox is in it still.
    std::cerr << "ecm-agent: " << error.what() << "\n";
  }
  return kSomethingWaits;
}
