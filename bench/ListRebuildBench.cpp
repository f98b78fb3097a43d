// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rebuild of the list over a full store: 256 logs, six columns of all three categories, both
// passes over the columns. The measure is a loop that merely opens, reads and closes once each
// file that the rebuild needs; a rebuild should cost at most 2.5 times as much.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "loglist/LogList.h"
#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

constexpr int kLogs = 256;
constexpr const char* kRoot = "drives/c/QUOREX/inst1/maintain";

class IgnoredMessages : public MessageBoxes {
 public:
  MessageAnswer Show(const Message&) override { return MessageAnswer::kOk; }
};

std::string Numbers(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(i) + "." + std::to_string(i % 7) + "\r\n";
  return text;
}

// A macro file with a line for each variable of the catalogue that lies in it.
std::string Macro(const Catalogues& catalogues, const std::string& file) {
  std::string text = "OPT_COLOPGS=1\r\nCLMD=1\r\n";
  for (const TuneItemRecord& item : catalogues.TuneItems) {
    if (item.File != file) continue;
    text += item.Var + (item.Format.empty() ? "=\"140/70\"\r\n" : "=12.345\r\n");
  }
  return text;
}

// A store in a temporary folder, removed with the object.
class Store {
 public:
  Store() {
    FillCatalogues(catalogues_);
    std::string pattern = (fs::temp_directory_path() / "logbook-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    machine.home = pattern;
    for (int log = 0; log < kLogs; ++log) MakeLog(log);
    Write(fs::path(machine.home) / "drives/c/QUOREX/logbook.ini",
          "[Header3]\r\nCat=Meter\r\nItem=4\r\n[Header4]\r\nCat=Tune\r\nItem=0\r\n"
          "[Header5]\r\nCat=Analog\r\nItem=214\r\n[Header6]\r\nCat=Meter\r\nItem=22\r\n"
          "[Header7]\r\nCat=Tune\r\nItem=106\r\n[Header8]\r\nCat=Analog\r\nItem=33\r\n");
    // A store is older than what looks at it: files that changed a moment ago are read each time.
    std::this_thread::sleep_for(std::chrono::seconds(1));
  }
  ~Store() {
    std::error_code ignored;
    fs::remove_all(machine.home, ignored);
  }
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  std::unique_ptr<AppState> NewState() const {
    auto state = std::make_unique<AppState>(machine);
    FillCatalogues(state->catalogues);
    state->LogRoot = "C:\\QUOREX\\inst1\\maintain\\";
    state->IniFile = "C:\\QUOREX\\logbook.ini";
    return state;
  }

  Machine machine;
  std::vector<std::string> needed;  // native paths of the files that the rebuild needs

 private:
  void Write(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }

  void MakeLog(int log) {
    const fs::path folder = fs::path(machine.home) / kRoot / std::to_string(26111500 + log);
    const auto put = [&](const char* name, const std::string& bytes) {
      Write(folder / name, bytes);
      return (folder / name).string();
    };
    needed.push_back(put("logfile.ini",
                         "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\n"
                         "LENS2=0\r\nLENS3=0\r\nSecurity=1\r\nSTYLEB=0\r\nNEW_RF=1\r\nQPTYPE=0\r\n"
                         "AFC=1\r\nSC=1\r\nOPGS=1\r\nPMP2=0\r\nCOLOPGS=1\r\n[Maintenance]\r\n"
                         "Item0=1\r\nItem1=0\r\nItem2=1\r\n"));
    needed.push_back(put("comment.txt", "Cones were cleaned and the torch was changed.\r\n\r\n"));
    needed.push_back(put("auser.txt", Numbers(kMeterRowCount)));
    needed.push_back(put("aall.txt", Numbers(kAnalogRowCount)));
    needed.push_back(put("SENSEVAR.MAC", Macro(catalogues_, "sensevar.mac")));
    needed.push_back(put("PARAMVAR.MAC", Macro(catalogues_, "paramvar.mac")));
    put("OTHERVAR.MAC", Macro(catalogues_, "othervar.mac"));
    put("RESOVAR.MAC", Macro(catalogues_, "resovar.mac"));
    put("sys.txt", Numbers(kSysRowCount));
    put("bin.txt", Numbers(16));
    put("bout.txt", Numbers(16));
    put("tune.rpt", std::string(8000, 'x'));
  }

  Catalogues catalogues_;
};

const Store& TheStore() {
  static const Store store;
  return store;
}

void ReadEachFileOnce(benchmark::State& state) {
  const Store& store = TheStore();
  for (auto _ : state) {
    for (const std::string& path : store.needed) {
      std::ifstream file(path, std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(file), {}};
      benchmark::DoNotOptimize(bytes.data());
    }
  }
}
BENCHMARK(ReadEachFileOnce)->Unit(benchmark::kMillisecond);

// The first rebuild of a run: nothing has been read before.
void RebuildFirst(benchmark::State& state) {
  const Store& store = TheStore();
  IgnoredMessages messages;
  for (auto _ : state) {
    const auto app = store.NewState();
    RebuildList(*app, messages);
    benchmark::DoNotOptimize(ListText(*app).size());
  }
}
BENCHMARK(RebuildFirst)->Unit(benchmark::kMillisecond);

// A further rebuild of the same run, such as after the column chooser.
void RebuildAgain(benchmark::State& state) {
  const auto app = TheStore().NewState();
  IgnoredMessages messages;
  RebuildList(*app, messages);
  for (auto _ : state) {
    RebuildList(*app, messages);
    benchmark::DoNotOptimize(ListText(*app).size());
  }
}
BENCHMARK(RebuildAgain)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace logbook
