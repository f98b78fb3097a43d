// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "base/Files.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

// What a scan of everything gives.
std::vector<std::string> FoldersByScan(const Machine& machine, std::size_t limit) {
  std::vector<std::string> names;
  for (const FolderEntry& entry : ScanFolder(machine, "C:\\logs")) {
    if (entry.kind == FolderEntry::Kind::kFolder && names.size() < limit) {
      names.push_back(entry.name);
    }
  }
  return names;
}

TEST(FirstFoldersTest, AreTheFirstFoldersOfAScan) {
  std::mt19937 random(3);
  const std::string letters[] = {"a",
                                 "A",
                                 "b",
                                 "B",
                                 "z",
                                 "Z",
                                 "_",
                                 "1",
                                 "\xC3\xA4",
                                 "\xC3\x84",
                                 "\xE3\x81\x82",
                                 "\xEF\xBC\xA1",
                                 "\xF0\x9F\x98\x80"};
  for (int round = 0; round < 20; ++round) {
    const test::TestMachine machine;
    machine.MakeFolders("C:\\logs");
    for (int entry = 0; entry < 60; ++entry) {
      std::string name;
      const std::size_t length = 1 + random() % 3;
      for (std::size_t letter = 0; letter < length; ++letter)
        name += letters[random() % std::size(letters)];
      const fs::path path = fs::path(machine.Native("C:\\logs")) / name;
      if (random() % 4 == 0) {
        machine.Put("C:\\logs\\" + name + ".txt", "");
      } else {
        fs::create_directory(path);
      }
    }
    for (const std::size_t limit : {0u, 1u, 7u, 256u}) {
      ASSERT_EQ(FirstFoldersIn(machine, "C:\\logs", limit), FoldersByScan(machine, limit));
    }
  }
}

// In whatever order the disk lists them: '_' and '[' stand between the capitals and the small
// letters.
TEST(FirstFoldersTest, ASmallLetterCountsAsItsCapitalWhateverIsKeptAlready) {
  const test::TestMachine machine;
  for (const char letter : {'a', 'm', 'z'}) {
    const std::string name(1, letter);
    machine.MakeFolders("C:\\" + name + " before\\" + name);
    for (const char other : {'_', '[', '^', '`', '{'}) {
      machine.MakeFolders("C:\\" + name + " before\\" + other);
      machine.MakeFolders("C:\\" + name + " behind\\" + other);
    }
    machine.MakeFolders("C:\\" + name + " behind\\" + name);
    for (const char* when : {" before", " behind"})
      EXPECT_EQ(FirstFoldersIn(machine, "C:\\" + name + when, 1), std::vector{name}) << when;
  }
}

TEST(FirstFoldersTest, ALinkIsWhatItLeadsToAndWhatNoPathCanNameIsLeftOut) {
  const test::TestMachine machine;
  machine.MakeFolders("C:\\logs\\b");
  machine.MakeFolders("C:\\elsewhere");
  machine.Put("C:\\logs\\file.txt", "");
  const fs::path logs = machine.Native("C:\\logs");
  fs::create_directory_symlink(machine.Native("C:\\elsewhere"), logs / "a-link");
  fs::create_symlink("nowhere", logs / "c-dangling");
  fs::create_symlink("file.txt", logs / "d-to-file");
  fs::create_directory(logs / "e\\f");
  fs::create_directory(logs / ".logbook-new~");
  EXPECT_EQ(FirstFoldersIn(machine, "C:\\LOGS", 256),
            (std::vector<std::string>{".logbook-new~", "a-link", "b"}));
}

TEST(FirstFoldersTest, AMissingFolderIsAnErrorAndSoIsAFileInItsPlace) {
  const test::TestMachine machine;
  machine.Put("C:\\file.txt", "");
  EXPECT_EQ(test::ErrorOf([&] { FirstFoldersIn(machine, "C:\\none", 256); }),
            ErrorNumber::kPathNotFound);
  EXPECT_EQ(test::ErrorOf([&] { FirstFoldersIn(machine, "C:\\file.txt", 256); }),
            ErrorNumber::kPathNotFound);
}

}  // namespace
}  // namespace logbook
