// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The program logbookctl as a whole: what it prints, its exit status, and that it writes nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <utility>

#include "LogbookctlRun.h"
#include "loglist/LogList.h"
#include "resources/Resources.h"
#include "state/AppState.h"
#include "state/Services.h"
#include "support/Sanitized.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::Everything;
using test::Outcome;
using test::Quoted;
using test::Read;

constexpr const char* kLogRoot = "C:\\QUOREX\\maintain\\";
constexpr const char* kIniFile = "C:\\QUOREX\\logbook.ini";

class NoMessages : public MessageBoxes {
 public:
  MessageAnswer Show(const Message& message) override {
    ADD_FAILURE() << message.Text;
    return MessageAnswer::kOk;
  }
};

class Logbookctl : public testing::Test {
 protected:
  Outcome Run(const std::string& arguments) { return test::RunLogbookctl(disk.home(), arguments); }

  // Two logs with values in the columns that logbook.ini chooses.
  void MakeLogs() {
    for (const char* log : {"26111500", "26111501"}) {
      const std::string folder = std::string(kLogRoot) + log + "\\";
      disk.Put(folder + "logfile.ini",
               "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\n");
      disk.Put(folder + "comment.txt", "Cones, cleaned \xB5\r\nsecond line\r\n");
      disk.Put(folder + "auser.txt", "21.4,22,23,24,1.005\r\n");
      disk.Put(folder + "aall.txt", "30\r\n31\r\n");
      disk.Put(folder + "PARAMVAR.MAC", "XPOS=5.55\r\n");
    }
    disk.Put(kIniFile,
             "[Header3]\r\nCat=Meter\r\nItem=4\r\n[Header4]\r\nCat=Tune\r\nItem=106\r\n"
             "[Header5]\r\nCat=Analog\r\nItem=1\r\n[Header6]\r\nCat=Meter\r\nItem=13\r\n"
             "[Header_CE3]\r\nCat=Analog\r\nItem=0\r\n");
  }

  // What the program itself would write as listlog.csv.
  std::string ProgramsList(bool ce_mode, int code_page = 1252) {
    Machine machine = disk.machine();
    machine.code_page = CodePage::Find(code_page);
    AppState state(machine);
    state.CEMode = ce_mode;
    state.LogRoot = kLogRoot;
    state.IniFile = kIniFile;
    FillCatalogues(state.catalogues);
    NoMessages messages;
    RebuildList(state, messages);
    return ListText(state);
  }

  std::string ListArguments() {
    return "list --log-root " + Quoted(kLogRoot) + " --ini " + Quoted(kIniFile);
  }

  test::TestMachine disk;
};

TEST_F(Logbookctl, PrintsEachCatalogueAsItsListing) {
  for (const std::string name : {"tune", "meter", "analog", "sys", "bout", "bin", "items"}) {
    const Outcome outcome = Run("catalogue " + name);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, Read(TEST_DATA_DIR "/catalogue/" + name + ".tsv")) << name;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST_F(Logbookctl, PrintsAllCataloguesInTheOrderOfStartUp) {
  std::string expected;
  for (const std::string name : {"items", "meter", "analog", "tune", "sys", "bout", "bin"}) {
    expected += (expected.empty() ? "" : "\n") + Read(TEST_DATA_DIR "/catalogue/" + name + ".tsv");
  }
  EXPECT_EQ(Run("catalogue").out, expected);
}

TEST_F(Logbookctl, PrintsTheStringTable) {
  const Outcome outcome = Run("strings");
  EXPECT_EQ(outcome.status, 0);
  std::string expected;
  for (const StringResource& each : AllStrings()) {
    expected += std::to_string(each.number) + "\t" + std::string(each.text) + "\n";
  }
  EXPECT_EQ(outcome.out, expected);
  EXPECT_NE(outcome.out.find("\n112\tMaintenance LogBook\n"), std::string::npos);
}

TEST_F(Logbookctl, PrintsTheBytesOfTheListAndWritesNothing) {
  MakeLogs();
  const auto before = Everything(disk.home());
  const Outcome outcome = Run(ListArguments());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, ProgramsList(false));
  EXPECT_EQ(outcome.out,
            "Date Logged,Logbook Folder,Carrier Gas (L/min),Smpl Depth (mm),Exhaust Temp (degC),"
            "SC Temparature(L) (degC),Item 5,Item 6,Comment\r\n"
            "11/15/2026 05:09:59,26111500,1.01,5.6,31,N/A,,,Cones, cleaned \xB5\r\n"
            "11/15/2026 05:09:59,26111501,1.01,5.6,31,N/A,,,Cones, cleaned \xB5\r\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(Everything(disk.home()), before);
}

TEST_F(Logbookctl, TakesTheColumnsOfTheCeMode) {
  MakeLogs();
  const Outcome outcome = Run(ListArguments() + " --ce");
  EXPECT_EQ(outcome.out, ProgramsList(true));
  EXPECT_NE(outcome.out.find("Inlet Temp (degC),Item 2"), std::string::npos);
}

TEST_F(Logbookctl, TakesPathsInBackslashAndInNativeForm) {
  MakeLogs();
  const std::string expected = ProgramsList(false);
  const std::string native_root = disk.Native("C:\\QUOREX\\maintain");
  const std::string native_ini = disk.Native(kIniFile);
  EXPECT_EQ(Run("list --log-root 'C:\\QUOREX\\maintain' --ini 'c:\\quorex\\LOGBOOK.INI'").out,
            expected);
  EXPECT_EQ(Run("list --log-root " + native_root + " --ini " + native_ini).out, expected);
  EXPECT_EQ(Run("list --log-root " + native_root + "/ --ini " + native_ini).out, expected);
}

TEST_F(Logbookctl, TakesNativePathsFromTheWorkingFolder) {
  MakeLogs();
  const std::string folder = disk.Native("C:\\QUOREX");
  const test::TestMachine scratch;
  const std::string out = scratch.home() + "/out";
  const std::string command =
      "cd " + folder + " && " + LOGBOOKCTL + " list --log-root maintain --ini logbook.ini >" + out;
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(Read(out), ProgramsList(false));
}

TEST_F(Logbookctl, ReadsFilesInTheCodePageThatIsAskedFor) {
  MakeLogs();
  disk.Put(std::string(kLogRoot) + "26111500\\comment.txt", "\x83\x5C\r\n");
  const Outcome outcome = Run(ListArguments() + " --code-page 932");
  EXPECT_EQ(outcome.out, ProgramsList(false, 932));
  EXPECT_NE(outcome.out.find(",\x83\x5C\r\n"), std::string::npos);
}

TEST_F(Logbookctl, TheFullListIsSaidOnStandardError) {
  for (int i = 0; i < 256; ++i) {
    disk.MakeFolders(std::string(kLogRoot) + std::to_string(26110000 + i));
  }
  const Outcome outcome = Run(ListArguments());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_TRUE(outcome.err.starts_with(std::string("logbookctl: list ") + kLogRoot +
                                      ": There are 257 or more logs in Log Folder."))
      << outcome.err;
}

// A folder is named as it was typed.
TEST_F(Logbookctl, AFolderThatDoesNotExistIsNamedAndHasStatusOne) {
  disk.Put("C:\\file", "");
  for (const std::string& folder : {std::string("C:\\none"), std::string("C:\\file"),
                                    disk.home() + "/none", std::string("none")}) {
    const std::string quoted = Quoted(folder);
    for (const auto& [arguments, subject] :
         {std::pair("list --ini x --log-root " + quoted, "list " + folder),
          std::pair("report meter " + quoted, "report meter " + folder)}) {
      const Outcome outcome = Run(arguments);
      EXPECT_EQ(outcome.status, 1) << arguments;
      EXPECT_EQ(outcome.out, "") << arguments;
      EXPECT_EQ(outcome.err, "logbookctl: " + subject + ": run-time error 76: Path not found\n");
    }
  }
}

TEST_F(Logbookctl, ARunTimeErrorHasStatusOneAndAMessage) {
  MakeLogs();
  disk.Put(kIniFile, "[Header3]\r\nCat=Meter\r\nItem=31\r\n");
  const Outcome subscript = Run(ListArguments());
  EXPECT_EQ(subscript.status, 1);
  EXPECT_EQ(subscript.out, "");
  EXPECT_EQ(subscript.err, std::string("logbookctl: list ") + kLogRoot +
                               ": run-time error 9: Subscript out of range\n");
}

TEST_F(Logbookctl, ATuneItemWithoutAFileIsARunTimeError) {
  MakeLogs();
  disk.Put(kIniFile, "[Header3]\r\nCat=Tune\r\nItem=165\r\n");
  const Outcome outcome = Run(ListArguments());
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, std::string("logbookctl: list ") + kLogRoot +
                             ": run-time error 75: Path/File access error\n");
}

TEST_F(Logbookctl, WrongUseHasStatusTwo) {
  for (const char* arguments :
       {"", "nothing", "catalogue nothing", "catalogue meter sys", "list", "list --log-root 'C:\\'",
        "list --ini x", "strings more", "--code-page 437 strings", "--code-page x strings",
        "list --log-root a --ini b --nothing"}) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_TRUE(outcome.err.starts_with("logbookctl: ")) << arguments << ": " << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  }
}

TEST_F(Logbookctl, AWordThatIsWrongIsNamed) {
  for (const auto& [arguments, named] :
       {std::pair("nothing", "logbookctl: unknown word \"nothing\""),
        std::pair("--nothing strings", "--nothing"),
        std::pair("nothing --ini x", "logbookctl: unknown word \"nothing\""),
        std::pair("catalogue nothing", "logbookctl: catalogue: NAME: nothing not in"),
        std::pair("catalogue meter sys",
                  "logbookctl: catalogue: The following argument was not "
                  "expected: sys"),
        std::pair("report meters C:", "logbookctl: report: KIND: meters not in"),
        std::pair("--code-page 437 strings", "there is no code page \"437\""),
        std::pair("--code-page 1252x strings", "there is no code page \"1252x\""),
        std::pair("list --log-root a --inn b", "--ini is required")}) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_NE(outcome.err.find(named), std::string::npos) << arguments << ": " << outcome.err;
  }
}

// Asked for it, the loader lists what the program begins with, and runs nothing.
TEST_F(Logbookctl, LibrariesOfCalendarsAndWorkbooksWaitUntilTheyAreNeeded) {
  if (test::kSanitized)
    GTEST_SKIP() << "with a sanitizer a program is linked with more than what it calls";
  const Outcome libraries =
      test::RunLogbookctl(disk.home(), "catalogue", "LD_TRACE_LOADED_OBJECTS=1");
  EXPECT_NE(libraries.out.find("libsqlite3.so"), std::string::npos) << libraries.out;
  for (const char* late : {"libical", "libxlsxwriter", "libicu", "libcrypto"}) {
    EXPECT_EQ(libraries.out.find(late), std::string::npos) << late;
  }
}

TEST_F(Logbookctl, EveryCommandHasItsHelp) {
  for (const char* arguments :
       {"--help", "catalogue --help", "strings --help", "list --help", "report --help"}) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << arguments;
    EXPECT_NE(outcome.out.find("Usage: logbookctl"), std::string::npos) << arguments;
    EXPECT_EQ(outcome.err, "") << arguments;
  }
}

TEST_F(Logbookctl, HelpFitsATerminalOfEightyColumns) {
  for (const char* verb : {"", "catalogue", "strings", "list", "report", "find", "show", "due",
                           "trend", "diff", "export", "check", "diagnose"}) {
    std::istringstream lines(Run(verb + std::string(" --help")).out);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) EXPECT_LT(line.size(), 80u) << line;
    EXPECT_GT(count, 5) << verb;
  }
}

TEST_F(Logbookctl, AnOutputThatCannotBeWrittenIsARunTimeError) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "the machine has no /dev/full";
  const test::TestMachine scratch;
  const std::string status = scratch.home() + "/status", err = scratch.home() + "/err";
  const std::string command =
      std::string(LOGBOOKCTL) + " strings >/dev/full 2>" + err + "; echo $? >" + status;
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(Read(status), "1\n");
  EXPECT_EQ(Read(err),
            "logbookctl: strings: standard output: run-time error 57: Device I/O error\n");
}

}  // namespace
}  // namespace logbook
