// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <array>
#include <cstdlib>
#include <sstream>

#include "Commands.h"
#include "Verbs.h"

namespace logbook::test {

namespace {

// The export goes by the environment alone: home, and the folder of its lock.
void PutEnvironment(Station& station) {
  const std::string& home = station.disk.home();
  setenv("LOGBOOK_HOME", home.c_str(), 1);
  setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), 1);
}

void RunExport(Station& station) {
  const std::string root = station.disk.Native("C:\\QUOREX\\inst1\\maintain");
  const std::string file = station.disk.Native("C:\\out\\values.csv");
  const std::array words = {"logbookctl", "export",  "--log-root", root.c_str(), "--format",
                            "csv",        "--shape", "wide",       file.c_str()};
  std::ostringstream out, err;
  cli::Frame frame(out, err);
  cli::AddExport(frame);
  if (frame.Run(static_cast<int>(words.size()), words.data()) != 0)
    station.messages.Show({.Text = err.str()});
}

}  // namespace

Command ExportValues() {
  const auto is_export = [](const std::string& path) { return path.ends_with("/values.csv"); };
  const auto is_lock = [](const std::string& path) { return path.starts_with("cache/"); };
  return {.name = "export",
          .prepare =
              [](Station& station) {
                PutLogs(station);
                station.disk.Put("C:\\out\\values.csv", "an older export\r\n");
              },
          .script = PutEnvironment,
          .run = [](Station& station) { station.Handle([&] { RunExport(station); }); },
          .is_made = is_lock,
          // A value that cannot be read is told beside the others, by its state.
          .follows_reading = is_export,
          .is_silent = is_lock};
}

}  // namespace logbook::test
