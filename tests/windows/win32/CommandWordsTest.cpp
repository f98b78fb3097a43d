// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Folders with letters that the system's code page does not know, on the command lines of the
// programs for a console.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "base/Utf8Path.h"
#include "support/TestMachine.h"
#include "win32/Program.h"

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

using testing::HasSubstr;

constexpr const char* kFolder =
    "Pr\xC3\xBC"
    "fung \xE8\xA9\xA6\xE9\xA8\x93";

class CommandWordsTest : public testing::Test {
 protected:
  CommandWordsTest() {
    SetEnvironmentVariableA("LOGBOOK_HOME", nullptr);
    home_ = (fs::path(disk.home()) / Utf8Path(kFolder)).generic_string();
  }

  // What the program says. Its exit status is in status.
  std::string Say(const std::string& program, const std::string& arguments) {
    const fs::path said = fs::path(disk.home()) / "said";
    Program running(BesideThisProgram(program), arguments, said.string());
    status = running.WaitForEnd();
    return disk.Get(said.string());
  }

  std::string InQuotes(const std::string& below = "") const { return "\"" + home_ + below + "\""; }

  test::TestMachine disk;
  std::string home_;
  DWORD status = 99;
};

TEST_F(CommandWordsTest, NameFoldersWithAnyLetters) {
  EXPECT_THAT(Say("quorex-host.exe", "init --home " + InQuotes()), HasSubstr(kFolder));
  EXPECT_EQ(status, 0u);
  EXPECT_TRUE(fs::exists(Utf8Path(home_ + "/machine.reg")));
  Say("quorex-host.exe", "fill --logs 2 --home " + InQuotes());
  EXPECT_EQ(status, 0u);

  const std::string root = " --log-root " + InQuotes("/drives/c/QUOREX/inst1/maintain");
  const std::string found = Say("logbookctl.exe", "find --csv" + root);
  EXPECT_EQ(status, 0u) << found;
  EXPECT_EQ(std::count(found.begin(), found.end(), '\n'), 3) << found;  // a head, and two logs
  for (const std::string format : {"csv", "xlsx", "sqlite"}) {
    const std::string file = "/values." + format;
    EXPECT_EQ(Say("logbookctl.exe", "export --format " + format + " " + InQuotes(file) + root), "");
    EXPECT_EQ(status, 0u);
    EXPECT_GT(fs::file_size(Utf8Path(home_ + file)), 0u) << format;
  }

  const std::string told =
      Say("ecm-agent.exe", "--status --home " + InQuotes() + " --app " + InQuotes());
  EXPECT_THAT(told, HasSubstr("Waiting: 0"));
  EXPECT_EQ(status, 0u);
}

}  // namespace
}  // namespace logbook::windows_test
