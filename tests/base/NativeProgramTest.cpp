// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What a program finds that was started on its own.

#include "base/NativeProgram.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/AnotherProcess.h"
#include "support/FilledStack.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

class NativeProgramTest : public testing::Test {
 protected:
  NativeProgramTest() { mkfifo(Path("go").c_str(), 0600); }

  std::string Path(const std::string& name) const { return disk.Native("C:\\" + name); }

  // How a shell with these lines ends. It does nothing before StartDetached has come back, and is
  // the only process that is left. To be called in a process of its own, which adopts it.
  int EndOf(const std::string& lines, const std::vector<std::string>& words = {}) const {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::vector<std::string> arguments = {"-c", "read go < '" + Path("go") + "'; " + lines, "sh"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    FillStack();
    EXPECT_TRUE(StartDetached("/bin/sh", arguments));
    const int go = open(Path("go").c_str(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(write(go, "\n", 1), 1);
    const int status = EndOfOnlyChild();
    close(go);
    return status;
  }
  static int EndOfOnlyChild() {
    int status = -1;
    EXPECT_GT(wait(&status), 0);
    EXPECT_EQ(wait(nullptr), -1);
    return status;
  }
  std::vector<std::string> Report() const {
    std::istringstream bytes(disk.Get("C:\\report"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(bytes, line);) lines.push_back(line);
    return lines;
  }

  TestMachine disk;
};

TEST_F(NativeProgramTest, TheWordsArriveAsTheyAre) {
  InAnotherProcess([this] {
    EXPECT_EQ(EndOf("printf '%s\\n' \"$@\" > '" + Path("report") + "'", {"a b", "", "'$x'"}), 0);
  });
  EXPECT_THAT(Report(), testing::ElementsAre("a b", "", "'$x'"));
}

TEST_F(NativeProgramTest, ItHasASessionOfItsOwnAndNothingThatThisOneHadOpen) {
  const std::string null = "/dev/null";
  InAnotherProcess([this] {
    const int folder = open(disk.home().c_str(), O_RDONLY | O_DIRECTORY);
    for (const int number : {0, 3, 4, 19}) dup2(folder, number);
    EXPECT_EQ(EndOf("for number in 3 4 5 19; do"
                    "  [ -e /proc/$$/fd/$number ] && open=\"$open $number\"; done;"
                    "read pid name state parent group session rest < /proc/$$/stat;"
                    "[ $session = $$ ] && leads=' leads it';"
                    "streams=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2);"
                    "printf '%s\\n' \"$streams\" \"$session\" \"open:$open$leads\""
                    " > '" +
                    Path("report") + "'"),
              0);
  });
  const auto report = Report();
  ASSERT_EQ(report.size(), 5u);
  EXPECT_THAT(std::vector(report.begin(), report.begin() + 3), testing::Each(null));
  EXPECT_NE(report[3], std::to_string(getsid(0)));
  EXPECT_EQ(report[4], "open:") << "no session's leader, so that no terminal becomes its own";
}

TEST_F(NativeProgramTest, ItHoldsNoFolderAndNoSignalBack) {
  InAnotherProcess([this] {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, nullptr);
    fs::current_path(disk.home());
    EXPECT_EQ(EndOf("while read word value; do [ $word = SigBlk: ] && held=$value; done"
                    " < /proc/$$/status; printf '%s\\n' \"$held\" \"$(pwd -P)\" > '" +
                    Path("report") + "'"),
              0);
  });
  EXPECT_THAT(Report(), testing::ElementsAre(std::string(16, '0'), "/"));
}

TEST_F(NativeProgramTest, WhatIsMissingOrNoProgramIsNotStarted) {
  disk.Put("C:\\text", "text");
  InAnotherProcess([this] {
    EXPECT_FALSE(StartDetached(Path("none"), {}));
    EXPECT_FALSE(StartDetached(Path("text"), {}));
    EXPECT_EQ(wait(nullptr), -1) << "no process";
  });
}

TEST_F(NativeProgramTest, WhatTheSystemCannotRunEndsAsAShellTellsIt) {
  disk.Put("C:\\program", "#!/no such shell\n");
  chmod(Path("program").c_str(), 0755);
  InAnotherProcess([this] {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    EXPECT_TRUE(StartDetached(Path("program"), {}));
    const int status = EndOfOnlyChild();
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 127);
  });
}

TEST_F(NativeProgramTest, WhereNoProcessCanBeMadeNothingIsStarted) {
  InAnotherProcess([] {
    const rlimit none{0, 0};
    ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0) {
      ASSERT_EQ(setresuid(kNobody, kNobody, kNobody), 0);
    }
    EXPECT_FALSE(StartDetached("/bin/sh", {"-c", "true"}));
  });
}

TEST_F(NativeProgramTest, AProcessThatIsNotToldOfItsChildrensEndsDoesNotWaitForThem) {
  InAnotherProcess([] {
    signal(SIGCHLD, SIG_IGN);
    EXPECT_TRUE(StartDetached("/bin/sh", {"-c", "true"}));
  });
}

}  // namespace
}  // namespace logbook::test
