// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The comparison of two whole logs, from their files to the text of their differences.
//
//   bench_diff HOME ROUNDS   samples, a pair of logs each, of diff.base (each file of both opened,
//                            read and closed once) and diff.two. The store is one that bench_list
//                            has made. The logs of a pair differ in each analog, meter and system
//                            value, and it is looked at whether the text tells as many.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "LogStore.h"
#include "Samples.h"
#include "base/Files.h"
#include "insight/DifferenceText.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

std::vector<std::string> FilesOf(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    files.push_back(entry.path().string());
  }
  return files;
}

insight::LogReading Read(const LogStore& store, int log) {
  const std::filesystem::path folder = store.LogFolder(log);
  return ReadLog(*store.TheMachine().code_page, store.TheCatalogues(),
                 insight::LoadLogFiles(store.TheMachine(), PathText(folder.parent_path().string()),
                                       folder.filename().string()));
}

std::string Compare(const LogStore& store, int left, int right) {
  const Catalogues& catalogues = store.TheCatalogues();
  return DifferenceText(catalogues,
                        CompareLogs(catalogues, Read(store, left), Read(store, right), {}));
}

// Lines; the analog values alone are more.
constexpr std::ptrdiff_t kLeastDifferences = 100;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: bench_diff HOME ROUNDS\n";
    return 2;
  }
  const LogStore store(argv[1]);
  for (int round = 0; round < std::atoi(argv[2]); ++round) {
    const int left = round % 8;
    const int right = left + 8;
    std::vector<std::string> files = FilesOf(store.LogFolder(left));
    for (std::string& file : FilesOf(store.LogFolder(right))) files.push_back(std::move(file));
    Measure("diff.base", [&] { ReadBare(files); });
    std::string text;
    Measure("diff.two", [&] { text = Compare(store, left, right); });
    Expect(std::count(text.begin(), text.end(), '\n') >= kLeastDifferences, "many differences");
  }
  return 0;
}
