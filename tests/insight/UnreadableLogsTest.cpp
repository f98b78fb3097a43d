// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system does not let anybody read is told as that, and as nothing else.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "AllCatalogues.h"
#include "RandomLogs.h"
#include "insight/Check.h"
#include "support/Refusals.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;
using test::AllCatalogues;
using test::RandomLogs;

class UnreadableLogs : public testing::Test {
 protected:
  std::string PathOf(const std::string& name) const {
    return logs_.NativeRoot() + "/" + folder_ + (name.empty() ? "" : "/" + name);
  }

  // The codes of the log, each with its detail.
  std::vector<std::string> Found() const {
    std::vector<std::string> found;
    for (const Finding& each : CheckLogRoot(logs_.disk().machine(), AllCatalogues(),
                                            RandomLogs::kRoot, ParseDay("2020-01-01").value())) {
      if (each.log == folder_) found.push_back(std::string(each.code) + " " + each.detail);
    }
    return found;
  }

  const test::AsOrdinaryUser user_;
  RandomLogs logs_{71};
  std::string folder_ = logs_.Add(1).front();
};

using Findings = std::vector<std::string>;

TEST_F(UnreadableLogs, ADescriptorThatLeadsNowhereIsUnreadableAndNoUnfinishedRecord) {
  fs::remove(PathOf("logfile.ini"));
  fs::create_symlink("logfile.ini", PathOf("logfile.ini"));
  EXPECT_EQ(Found(), Findings{"file-unreadable logfile.ini"});
  fs::remove(PathOf("logfile.ini"));
  ASSERT_EQ(mkfifo(PathOf("logfile.ini").c_str(), 0600), 0);
  EXPECT_EQ(Found(), Findings{"file-unreadable logfile.ini"});
}

TEST_F(UnreadableLogs, RightsThatAreMissingAreTheOnlyFinding) {
  fs::permissions(PathOf("logfile.ini"), fs::perms::owner_write);
  EXPECT_EQ(Found(), Findings{"file-unreadable logfile.ini"});
  fs::permissions(PathOf("logfile.ini"), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(Found(), Findings{});
  fs::permissions(PathOf(""), fs::perms::none);
  EXPECT_EQ(Found(), Findings{"file-unreadable the folder itself"});
  fs::permissions(PathOf(""), fs::perms::owner_all);
}

}  // namespace
}  // namespace logbook::insight
