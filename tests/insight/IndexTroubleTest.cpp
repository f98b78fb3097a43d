// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The index among other programs, kills and full disks: the next use is right, and nothing below
// the log root ever changes.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "AllCatalogues.h"
#include "CountedWrites.h"
#include "RandomLogs.h"
#include "insight/LogIndex.h"
#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/RootPortrait.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;
using test::AllCatalogues;
using test::RandomLogs;

// More than a block of small logs.
constexpr int kLogs = 300;

// The write after this one that is tried: each, or a sample of them that grows thinner.
int Next(int number) {
#ifdef EVERY_POINT
  return number + 1;
#else
  return number + 1 + number / 3;
#endif
}

class IndexTrouble : public testing::Test {
 protected:
  IndexTrouble() {
    for (int i = 0; i < kLogs; ++i) {
      const std::string folder = std::to_string(10000000 + i);
      logs_.disk().Put(RandomLogs::PathOf(folder, "auser.txt"), std::to_string(i) + "\r\n");
      logs_.disk().Put(RandomLogs::PathOf(folder, "comment.txt"),
                       (i % 3 == 0 ? "cones " : "torch ") + std::to_string(i) + "\r\n");
    }
  }

  IndexSettings Settings() {
    IndexSettings settings;
    settings.Folder = scratch_.home() + "/cache";
    settings.Warn = [this](const std::string& words) { warnings_.push_back(words); };
    return settings;
  }

  std::size_t Count(const std::string& query, const IndexSettings& settings) {
    LogIndex index(*CodePage::Find(1252), AllCatalogues(), logs_.NativeRoot(), settings);
    FindRequest request;
    request.What = ParseQuery(AllCatalogues(), query);
    return index.Find(request).Count;
  }

  // Words, numbers and the number of logs are those of the logs.
  bool IsRight(const IndexSettings& settings) {
    return Count("", settings) == kLogs && Count("cones", settings) == kLogs / 3 &&
           Count("meter:0>=200", settings) == kLogs - 200 && Count("\"torch 7\"", settings) == 1;
  }

  // Runs the work in a process of its own; its wait status.
  template <typename Work>
  static int InChild(Work work) {
    const pid_t child = fork();
    if (child == 0) {
      bool done = false;
      try {
        done = work();
      } catch (...) {
        // Told by the status.
      }
      _exit(done ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
  }

  RandomLogs logs_{51};
  test::TestMachine scratch_;
  std::vector<std::string> warnings_;
};

TEST_F(IndexTrouble, KilledAtAnyWriteTheNextUseIsRight) {
  int kills = 0;
  for (int number = 1;; number = Next(number)) {
    fs::remove_all(Settings().Folder);
    const int status = InChild([&] {
      const test::CountedWrites disk(number, test::AtWrite::kKill);
      return IsRight(Settings());
    });
    ASSERT_TRUE(IsRight(Settings())) << number;
    ASSERT_TRUE(warnings_.empty()) << warnings_.front();
    if (!WIFSIGNALED(status)) {
      EXPECT_EQ(status, 0);
      break;
    }
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    ++kills;
  }
  EXPECT_GT(kills, 10);
}

TEST_F(IndexTrouble, KilledBetweenTwoBlocksTheRestIsReadNextTime) {
  const int status = InChild([&] {
    IndexSettings settings = Settings();
    settings.Progress = [](const UpdateProgress& progress) {
      if (progress.Where == UpdateProgress::Step::kReading && progress.Done > 0) raise(SIGKILL);
    };
    return IsRight(settings);
  });
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_TRUE(IsRight(Settings()));
}

TEST_F(IndexTrouble, TwoIndexersAtOnceAreBothRight) {
  int to_second[2], to_first[2];
  ASSERT_EQ(pipe(to_second), 0);
  ASSERT_EQ(pipe(to_first), 0);
  // Both begin to read logs only when both are about to.
  const auto index_with = [&](int out, int in) {
    IndexSettings settings = Settings();
    bool met = false;
    settings.Progress = [&met, out, in](const UpdateProgress& progress) {
      if (met || progress.Where != UpdateProgress::Step::kReading) return;
      met = true;
      char byte = 'x';
      if (write(out, &byte, 1) != 1 || read(in, &byte, 1) != 1) _exit(2);
    };
    const bool is_right = Count("", settings) == kLogs && met && IsRight(Settings());
    // Who cannot wait for the other one says so, and reckons in memory.
    return is_right && std::ranges::all_of(warnings_, [](const std::string& words) {
             return words.find("keeps the index occupied") != std::string::npos;
           });
  };
  const pid_t first = fork();
  if (first == 0) _exit(index_with(to_second[1], to_first[0]) ? 0 : 1);
  EXPECT_EQ(InChild([&] { return index_with(to_first[1], to_second[0]); }), 0);
  int status = -1;
  waitpid(first, &status, 0);
  EXPECT_EQ(status, 0);
  for (const int end : {to_second[0], to_second[1], to_first[0], to_first[1]}) close(end);
  EXPECT_TRUE(IsRight(Settings()));
}

TEST_F(IndexTrouble, FullDiskIsToldAndTheAnswerIsRight) {
  int failures = 0;
  for (int number = 1;; number += 1 + number / 2) {
    fs::remove_all(Settings().Folder);
    warnings_.clear();
    std::size_t cones = 0;
    bool happened = false;
    {
      const test::CountedWrites disk(number, test::AtWrite::kDiskFull);
      cones = Count("cones", Settings());
      happened = test::CountedWrites::Happened();
    }
    EXPECT_EQ(cones, kLogs / 3) << number;
    if (!happened) break;
    ++failures;
    // A disk that is full only when the index is closed does no harm.
    for (const std::string& words : warnings_) {
      EXPECT_EQ(words, "the disk of the index is full; an index in memory is used instead");
    }
    ASSERT_TRUE(IsRight(Settings())) << number;
  }
  EXPECT_GT(failures, 5);
}

TEST_F(IndexTrouble, FileThatMayNotGrowIsToldAndTheAnswerIsRight) {
  {
    const test::SmallFilesOnly limit(64 * 1024);
    EXPECT_TRUE(IsRight(Settings()));
  }
  ASSERT_FALSE(warnings_.empty());
  EXPECT_NE(warnings_[0].find("; an index in memory is used instead"), std::string::npos);
  warnings_.clear();
  EXPECT_TRUE(IsRight(Settings()));
  EXPECT_TRUE(warnings_.empty());
}

TEST_F(IndexTrouble, NothingBelowTheRootChanges) {
  logs_.Add(2);
  fs::permissions(logs_.NativeRoot() + "/10000001/auser.txt", fs::perms::owner_read);
  fs::create_symlink("nowhere", logs_.NativeRoot() + "/10000002/aall.txt");
  const auto before = test::RootPortrait(logs_.NativeRoot());
  for (int use = 0; use < 2; ++use) {
    EXPECT_EQ(Count("", Settings()), kLogs + 2U);
    EXPECT_EQ(Count("cones OR NOT state:na", Settings()) > 0, true);
  }
  EXPECT_EQ(test::RootPortrait(logs_.NativeRoot()), before);
}

}  // namespace
}  // namespace logbook::insight
