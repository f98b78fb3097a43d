// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Jobs.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Profile.h"
#include "support/TestMachine.h"

namespace logbook::host {
namespace {

TEST(JobsTest, TheFolderOfAJobIsReadWhateverItsLength) {
  const test::TestMachine home;
  MakeWorkstation(home.home(), {});
  const Workstation workstation = OpenWorkstation(home.home());
  const std::string ini = workstation.exe_path + "logbook.ini";
  for (const std::size_t length : {0u, 1u, 511u, 512u, 5000u, 100000u}) {
    const std::string folder = "C:\\" + std::string(length, 'x') + "\\";
    ASSERT_TRUE(
        WritePrivateProfileString(workstation.machine, "LogBook", "LogFileName", folder, ini));
    EXPECT_EQ(FolderOfJob(workstation), folder) << length;
  }
}

TEST(JobsTest, WithoutALogNamedThereIsNoFolderOfAJob) {
  const test::TestMachine home;
  MakeWorkstation(home.home(), {});
  EXPECT_EQ(FolderOfJob(OpenWorkstation(home.home())), "");
}

}  // namespace
}  // namespace logbook::host
