// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Archiving of a full list: 256 logs into one zip file, beside `zip -r` on the same folders. The
// archive shall take at most 1.15 times as long.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "archive/Archive.h"
#include "base/Machine.h"

namespace fs = std::filesystem;

namespace {

constexpr int kLogs = 256;

// Logs as a recording leaves them: snapshots full of numbers, running logs full of words.
class Logs {
 public:
  Logs() {
    std::string pattern = (fs::temp_directory_path() / "logbook-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    machine.home = pattern;
    root = pattern + "/drives/c/maintain";
    for (int log = 0; log < kLogs; ++log) MakeLog(log);
  }
  ~Logs() { fs::remove_all(machine.home); }

  static std::string NameOf(int log) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    return std::string("261115") + kDigits[log / 16] + kDigits[log % 16];
  }

  logbook::Machine machine;
  std::string root;  // native

 private:
  void MakeLog(int log) {
    const std::string folder = root + "/" + NameOf(log);
    fs::create_directories(folder);
    Put(folder + "/logfile.ini", "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n");
    Put(folder + "/comment.txt", "Cones cleaned, torch changed.\r\n");
    for (const char* name : {"aall.txt", "auser.txt", "sys.txt", "bin.txt", "bout.txt"})
      Put(folder + "/" + name, Numbers(400));
    for (const char* name : {"SENSEVAR.MAC", "SENSEVA2.MAC", "OTHERVAR.MAC", "OTHERVA2.MAC"})
      Put(folder + "/" + name, Numbers(800));
    for (const char* name : {"acqlog.txt", "sequence.log", "errlog.txt", "tune.rpt"})
      Put(folder + "/" + name, Words(600));
  }
  static void Put(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  std::string Numbers(int lines) {
    std::string text;
    for (int line = 0; line < lines; ++line)
      text += std::to_string(random_() % 1000) + "," + std::to_string(random_() % 65536) + "\r\n";
    return text;
  }
  std::string Words(int lines) {
    static constexpr const char* kWords[] = {"plasma", "on", "gas",  "flow",
                                             "set",    "to", "pump", "ok"};
    std::string text;
    for (int line = 0; line < lines; ++line) {
      text += "11/15/2026 05:" + std::to_string(random_() % 60) + " ";
      for (int word = 0; word < 6; ++word) text += std::string(kWords[random_() % 8]) + " ";
      text += "\r\n";
    }
    return text;
  }

  std::mt19937 random_{7};
};

void ArchiveOf256Logs(benchmark::State& run) {
  const Logs logs;
  std::string result(logbook::kZipResultBuffer, '\0');
  for (auto _ : run) {
    fs::remove(logs.root + "/../out.zip");
    logbook::ZipWriter writer(logs.machine);
    for (int log = 0; log < kLogs; ++log) {
      if (writer.arZip(0, "C:\\out.zip", "C:\\maintain\\" + Logs::NameOf(log), "-a -r", result) !=
          0)
        return run.SkipWithError(result.c_str());
    }
    if (writer.Finish(result) != 0) return run.SkipWithError(result.c_str());
  }
  run.counters["bytes"] = static_cast<double>(fs::file_size(logs.root + "/../out.zip"));
}
BENCHMARK(ArchiveOf256Logs)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

void ZipProgramOn256Logs(benchmark::State& run) {
  const Logs logs;
  const std::string command = "cd '" + logs.root + "' && rm -f ../out.zip && zip -qr ../out.zip .";
  for (auto _ : run) {
    if (std::system(command.c_str()) != 0) return run.SkipWithError("zip is not installed");
  }
  run.counters["bytes"] = static_cast<double>(fs::file_size(logs.root + "/../out.zip"));
}
BENCHMARK(ZipProgramOn256Logs)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
