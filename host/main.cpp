// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// quorex-host: the simulated control panel of the workstation. docs/simulated-host.md describes the
// command line.

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <cstdio>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/CommandLine.h"
#include "base/EndSignal.h"
#include "base/Files.h"
#include "base/NativeProgram.h"
#include "host/Calendar.h"
#include "host/Demonstration.h"
#include "host/DemonstrationRun.h"
#include "host/Disk.h"
#include "host/History.h"
#include "host/HostRun.h"
#include "host/Session.h"
#include "host/Workstation.h"

namespace {

using namespace logbook;
using namespace logbook::host;

constexpr int kUsage = 2;

// The command line as it was typed.
struct CommandLine {
  std::string home = DefaultHome();
  std::optional<std::string> build;
  std::optional<std::uint64_t> seed;
  std::optional<int> code_page;
  std::optional<std::string> manual;
  std::vector<std::string> damages;
  std::size_t log_kilobytes = 0;

  std::string id;
  std::string start_logbook;
  bool ce = false, auto_rec = false, for_logbook_lifetime = false;
  bool dead = false, deaf = false;
  int slow = 0, busy = 0;

  int logs = 0;
  std::optional<std::string> until;
  std::string folder;
  std::optional<int> log_number;
  std::optional<std::string> date;

  std::string demonstration = DefaultDemonstrationFolder();
  bool fresh = false, yes = false;
};

Instrument ChosenInstrument(const CommandLine& line, Instrument instrument) {
  if (line.build) instrument.build = ParseBuild(*line.build);
  if (line.seed) instrument.seed = *line.seed;
  return instrument;
}

std::vector<Damage> ChosenDamages(const CommandLine& line) {
  std::vector<Damage> damages;
  for (const std::string& text : line.damages) damages.push_back(ParseDamage(text));
  return damages;
}

LocalTime ChosenTime(const std::optional<std::string>& text) {
  if (!text) return Now();
  const auto time = ParseTime(*text);
  if (!time) throw std::invalid_argument("no date: \"" + *text + "\"");
  return *time;
}

// What is missing of the workstation; the instrument counts only where none is set up yet.
void Prepare(const CommandLine& line) {
  const Instrument fresh{ParseBuild(kDemonstrationBuild), 1};
  MakeWorkstation(line.home, {line.code_page, ChosenInstrument(line, fresh)});
}

int Init(const CommandLine& line) {
  Prepare(line);
  if (line.manual) InstallManual(OpenWorkstation(line.home), *line.manual);
  std::printf("quorex-host: workstation in %s\n", line.home.c_str());
  return 0;
}

int Fill(const CommandLine& line) {
  Prepare(line);
  const Workstation workstation = OpenWorkstation(line.home);
  const History history{ChosenInstrument(line, InstrumentOf(workstation)), line.logs,
                        ChosenTime(line.until), ChosenDamages(line), line.log_kilobytes * 1024};
  const auto names = MakeHistory(workstation, history);
  std::printf("quorex-host: %zu logs, %s to %s\n", names.size(), names.front().c_str(),
              names.back().c_str());
  return 0;
}

int Snapshot(const CommandLine& line) {
  const Workstation workstation = OpenWorkstation(line.home);
  Machine machine = workstation.machine;
  if (line.code_page) {
    machine.code_page = CodePage::Find(*line.code_page);
    if (machine.code_page == nullptr) {
      throw std::invalid_argument("unknown code page " + std::to_string(*line.code_page));
    }
  }
  const std::string folder = TypedPathText(line.folder);
  const auto damages = ChosenDamages(line);
  const LogMoment moment{ChosenInstrument(line, InstrumentOf(workstation)),
                         line.log_number ? *line.log_number : LogNumberOf(machine, folder),
                         ChosenTime(line.date), line.log_kilobytes * 1024};
  PutFolder(machine, folder);
  WriteSnapshot(machine, folder, MakeSnapshot(moment), damages);
  WriteOptions(machine, folder, moment.instrument.build);
  return 0;
}

int Run(const CommandLine& line, int argc, char** argv) {
  const EndSignal end_signal;
  QCoreApplication application(argc, argv);
  HostOptions options;
  options.id = line.id;
  options.workstation = OpenWorkstation(line.home);
  options.instrument = ChosenInstrument(line, InstrumentOf(options.workstation));
  options.damages = ChosenDamages(line);
  options.least_log_bytes = line.log_kilobytes * 1024;
  if (line.dead) options.attention = Attention::kDead;
  if (line.deaf) options.attention = Attention::kDeaf;
  options.slow = std::chrono::milliseconds(line.slow);
  options.busy = std::chrono::milliseconds(line.busy);
  options.start_logbook = line.start_logbook;
  options.ce = line.ce;
  options.auto_rec = line.auto_rec;
  options.for_logbook_lifetime = line.for_logbook_lifetime;
  return RunHost(options, end_signal);
}

// The command line of a demonstration again, with what has been decided since.
std::vector<std::string> WordsFor(int argc, char** argv, bool auto_rec) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (auto_rec) words.emplace_back("--autorec");
  return words;
}

int Demo(const CommandLine& line, int argc, char** argv) {
  DemonstrationOptions options;
  options.folder = line.demonstration;
  options.programs = OwnProgramFolder();
  options.manual = line.manual.value_or(options.programs + "/manual");
  if (line.build) options.build = ParseBuild(*line.build);
  options.code_page = line.code_page;
  options.fresh = line.fresh;
  options.unasked = line.yes;
  options.ce = line.ce;
  options.auto_rec = line.auto_rec;
  if (!line.auto_rec && !HasDisplay()) {
    std::printf(
        "There is no display (neither DISPLAY nor WAYLAND_DISPLAY is set): instead of "
        "showing the\nlogbook's window, this makes one automatic record.\n");
    std::fflush(stdout);
    options.auto_rec = true;
  }
  if (!HasSessionBus()) {
    RestartInOwnBus(WordsFor(argc, argv, options.auto_rec && !line.auto_rec));
    throw std::runtime_error("there is no session bus, and dbus-run-session cannot be started");
  }
  const EndSignal end_signal;
  QCoreApplication application(argc, argv);
  return RunDemonstration(options, end_signal);
}

void AddInstrument(CLI::App& command, CommandLine& line) {
  command.add_option("--build", line.build,
                     "Instrument: plain, lumarin, trz-cs or trz-ce,\n"
                     "then +OPTION for each of security styleb\n"
                     "new_rf qptype afc sc opgs pmp2 colopgs");
}

void AddCommonOptions(CLI::App& command, CommandLine& line) {
  command.add_option("--home", line.home, "Home of the workstation's drives and hive")
      ->capture_default_str();
  AddInstrument(command, line);
  command.add_option("--seed", line.seed, "Number that the instrument's values grow from");
}

void AddSnapshotOptions(CLI::App& command, CommandLine& line) {
  command.add_option("--broken", line.damages,
                     "Write damaged files: short, truncated, empty,\n"
                     "binary or missing, then :FILE for a single\n"
                     "one; may be given several times");
  command.add_option("--log-kilobytes", line.log_kilobytes,
                     "Let the running logs grow to so many kilobytes");
}

void AddInit(CLI::App& app, CommandLine& line) {
  CLI::App* init = app.add_subcommand("init", "Make the demonstration workstation");
  AddCommonOptions(*init, line);
  init->add_option("--code-page", line.code_page, "The workstation's code page (1252)");
  init->add_option("--manual", line.manual, "Folder of a help book to copy into the help folder");
}

void AddFill(CLI::App& app, CommandLine& line) {
  CLI::App* fill = app.add_subcommand("fill", "Fill the workstation with past logs");
  AddCommonOptions(*fill, line);
  AddSnapshotOptions(*fill, line);
  fill->add_option("--logs", line.logs, "How many logs")->required()->check(CLI::Range(1, 10000));
  fill->add_option("--until", line.until, "Day of the last log, YYYY-MM-DD (today)");
}

void AddSnapshot(CLI::App& app, CommandLine& line) {
  CLI::App* snapshot = app.add_subcommand("snapshot", "Write one snapshot into a folder");
  AddCommonOptions(*snapshot, line);
  AddSnapshotOptions(*snapshot, line);
  snapshot->add_option("--folder", line.folder, "The folder; made if it is missing")->required();
  snapshot
      ->add_option("--log-number", line.log_number,
                   "Age of the instrument in logs (the number\nof folders beside)")
      ->check(CLI::NonNegativeNumber);
  snapshot->add_option("--date", line.date, "Moment, YYYY-MM-DD[THH:MM:SS] (now)");
  snapshot->add_option("--code-page", line.code_page, "Code page of the files (the home's)");
}

void AddRun(CLI::App& app, CommandLine& line) {
  CLI::App* run = app.add_subcommand("run", std::string("Be the host ") + MeetingPlace());
  AddCommonOptions(*run, line);
  AddSnapshotOptions(*run, line);
  run->add_option("--id", line.id, "Host id that the logbook is started with")->required();
  run->add_option("--start-logbook", line.start_logbook, "Logbook program to start and end with");
  run->add_flag("--ce", line.ce, "Start the logbook with the word CE");
  run->add_flag("--autorec", line.auto_rec, "Start the logbook with the word AutoRec");
  run->add_flag("--for-logbook-lifetime", line.for_logbook_lifetime,
                "End when a logbook has come and gone");
  run->add_option("--slow", line.slow, "Milliseconds that a job takes")
      ->check(CLI::NonNegativeNumber);
  run->add_option("--busy", line.busy,
                  "Milliseconds that the cell is held at the\nlogbook's start and after a job")
      ->check(CLI::NonNegativeNumber);
  auto* dead = run->add_flag("--dead", line.dead, "Answer requests and never touch the cell");
  run->add_flag("--deaf", line.deaf, "Never answer anything")->excludes(dead);
}

void AddDemo(CLI::App& app, CommandLine& line) {
  CLI::App* demo = app.add_subcommand("demo", "Start host and logbook at a demonstration");
  demo->add_option("--home", line.demonstration,
                   "Folder of the demonstration, which is kept\n($LOGBOOK_DEMO)")
      ->capture_default_str();
  AddInstrument(*demo, line);
  demo->add_option("--code-page", line.code_page, "Code page of a new demonstration (1252)");
  demo->add_option("--manual", line.manual, "Folder of the help book (beside the program)");
  auto* fresh =
      demo->add_flag("--fresh", line.fresh, "Make a new demonstration and throw the\nold one away");
  demo->add_flag("--yes", line.yes, "Throw it away without a question")->needs(fresh);
  demo->add_flag("--autorec", line.auto_rec,
                 "Make one automatic record, which is also\nwhat happens without a display");
  demo->add_flag("--ce", line.ce, "Start the logbook with the word CE");
}

int Dispatch(const CLI::App& app, const CommandLine& line, int argc, char** argv) {
  if (app.got_subcommand("run")) return Run(line, argc, argv);
  if (HasDemonstrations() && app.got_subcommand("demo")) return Demo(line, argc, argv);
  // Without a home the drives are the machine's own, which no invented files belong on.
  if (line.home.empty())
    throw std::runtime_error("there is no home: give --home, or set LOGBOOK_HOME");
  if (app.got_subcommand("init")) return Init(line);
  if (app.got_subcommand("fill")) return Fill(line);
  return Snapshot(line);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Simulated control panel of the workstation", "quorex-host");
  app.set_version_flag("--version", "quorex-host " LOGBOOK_VERSION);
  app.require_subcommand(1);
  CommandLine line;
  AddInit(app, line);
  AddFill(app, line);
  AddSnapshot(app, line);
  AddRun(app, line);
  if (HasDemonstrations()) AddDemo(app, line);
  try {
    const CommandWords words(argc, argv);
    app.parse(words.Count(), words.Words());
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsage;
  }
  try {
    return Dispatch(app, line, argc, argv);
  } catch (const std::invalid_argument& error) {
    std::fprintf(stderr, "quorex-host: %s\n", error.what());
    return kUsage;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quorex-host: %s\n", error.what());
    return 1;
  }
}
