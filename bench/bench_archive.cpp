// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The archive of a full list: each log of a store added to one zip file, as the archive command
// does it.
//
//   bench_archive HOME make LOGS   makes the logs: snapshots full of numbers, running logs of words
//   bench_archive HOME add LOGS    writes C:\out.zip; measured from outside, beside "zip -qr"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>

#include "LogStore.h"
#include "archive/Archive.h"

namespace {

using logbook::bench::LogStore;

std::string Numbers(std::mt19937& random, int lines) {
  std::string text;
  for (int line = 0; line < lines; ++line)
    text += std::to_string(random() % 1000) + "," + std::to_string(random() % 65536) + "\r\n";
  return text;
}

std::string Words(std::mt19937& random, int lines) {
  static constexpr const char* kWords[] = {"plasma", "on", "gas",  "flow",
                                           "set",    "to", "pump", "ok"};
  std::string text;
  for (int line = 0; line < lines; ++line) {
    text += "11/15/2026 05:" + std::to_string(random() % 60) + " ";
    for (int word = 0; word < 6; ++word) text += std::string(kWords[random() % 8]) + " ";
    text += "\r\n";
  }
  return text;
}

void MakeLog(const std::string& folder, std::mt19937& random) {
  std::filesystem::create_directories(folder);
  const auto put = [&folder](const char* name, const std::string& text) {
    std::ofstream(folder + "/" + name, std::ios::binary) << text;
  };
  put("logfile.ini", "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n");
  put("comment.txt", "Cones cleaned, torch changed.\r\n");
  for (const char* name : {"aall.txt", "auser.txt", "sys.txt", "bin.txt", "bout.txt"})
    put(name, Numbers(random, 400));
  for (const char* name : {"SENSEVAR.MAC", "SENSEVA2.MAC", "OTHERVAR.MAC", "OTHERVA2.MAC"})
    put(name, Numbers(random, 800));
  for (const char* name : {"acqlog.txt", "sequence.log", "errlog.txt", "tune.rpt"})
    put(name, Words(random, 600));
}

bool AddAll(const LogStore& store, int logs) {
  std::string result(logbook::kZipResultBuffer, '\0');
  logbook::ZipWriter writer(store.TheMachine());
  for (int log = 0; log < logs; ++log) {
    std::string folder = LogStore::LogFolderText(log);
    folder.pop_back();
    if (writer.arZip(0, "C:\\out.zip", folder, "-a -r", result) != 0) return false;
  }
  return writer.Finish(result) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: bench_archive HOME make|add LOGS\n";
    return 2;
  }
  const LogStore store(argv[1]);
  const int logs = std::atoi(argv[3]);
  if (std::strcmp(argv[2], "add") == 0) return AddAll(store, logs) ? 0 : 1;
  std::mt19937 random(7);
  for (int log = 0; log < logs; ++log) MakeLog(store.LogFolder(log), random);
  return 0;
}
