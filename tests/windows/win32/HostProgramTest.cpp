// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the simulated host and logbookctl say here of things that other systems have.

#include <gmock/gmock.h>

#include <filesystem>

#include "support/TestMachine.h"
#include "win32/Program.h"

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

using testing::HasSubstr;
using testing::Not;

class HostProgramTest : public testing::Test {
 protected:
  HostProgramTest() { SetEnvironmentVariableA("LOGBOOK_HOME", nullptr); }

  // What the program says. Its exit status is in status.
  std::string Say(const std::string& program, const std::string& arguments) {
    const fs::path said = fs::path(disk.home()) / "said";
    Program running(BesideThisProgram(program), arguments, said.string());
    status = running.WaitForEnd();
    return disk.Get(said.string());
  }

  test::TestMachine disk;
  DWORD status = 99;
};

TEST_F(HostProgramTest, TheHelpNamesNothingThatOtherSystemsHave) {
  EXPECT_THAT(Say("quorex-host.exe", "run --help"),
              HasSubstr("Be the host in conversations by DDE"));
  EXPECT_EQ(status, 0u);
  for (const char* command : {"--help", "init --help", "fill --help", "snapshot --help"}) {
    const std::string help = Say("quorex-host.exe", command);
    EXPECT_THAT(help, HasSubstr("Usage: quorex-host"));
    EXPECT_THAT(help, Not(HasSubstr("bus"))) << command;
    EXPECT_THAT(help, Not(HasSubstr("demo "))) << command;
    EXPECT_THAT(help, Not(HasSubstr("$"))) << command;
  }
  for (const char* verb : {"--help", "list --help", "find --help", "diagnose --help"}) {
    const std::string help = Say("logbookctl.exe", verb);
    EXPECT_THAT(help, HasSubstr("Usage: logbookctl"));
    EXPECT_THAT(help, Not(HasSubstr("$"))) << verb;
    EXPECT_THAT(help, Not(HasSubstr("XDG"))) << verb;
  }
}

TEST_F(HostProgramTest, ThereIsNoDemonstrationHere) {
  const fs::path folder = fs::path(disk.home()) / "demonstration";
  Say("quorex-host.exe", "demo --home " + folder.string());
  EXPECT_EQ(status, 2u);
  EXPECT_FALSE(fs::exists(folder));
}

TEST_F(HostProgramTest, WithoutAHomeNothingIsInvented) {
  for (const char* command : {"init", "fill --logs 1", "snapshot --folder C:\\log"}) {
    EXPECT_THAT(Say("quorex-host.exe", command), HasSubstr("there is no home")) << command;
    EXPECT_EQ(status, 1u) << command;
  }
}

}  // namespace
}  // namespace logbook::windows_test
