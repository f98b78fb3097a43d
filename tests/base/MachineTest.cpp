// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Machine.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

// Sets a variable of the environment, or removes it, until the object ends.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    Set(value);
  }
  ~Variable() { Set(old_ ? old_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void Set(const char* value) {
    if (value == nullptr) {
      unsetenv(name_);
    } else {
      setenv(name_, value, 1);
    }
  }
  const char* name_;
  std::optional<std::string> old_;
};

TEST(MachineTest, TheHomeIsTheFirstOfThreeVariablesThatIsSet) {
  const Variable home("HOME", "/home/service");
  const Variable data("XDG_DATA_HOME", "/data/");
  {
    const Variable own("LOGBOOK_HOME", "/srv/logbook/");
    EXPECT_EQ(DefaultHome(), "/srv/logbook");
  }
  const Variable none("LOGBOOK_HOME", nullptr);
  EXPECT_EQ(DefaultHome(), "/data/quorex-logbook");
  const Variable no_data("XDG_DATA_HOME", nullptr);
  EXPECT_EQ(DefaultHome(), "/home/service/.local/share/quorex-logbook");
}

TEST(MachineTest, AnEmptyVariableDoesNotCountNorDoesARelativeDataFolder) {
  const Variable home("HOME", "/home/service");
  const Variable own("LOGBOOK_HOME", "");
  {
    const Variable data("XDG_DATA_HOME", "");
    EXPECT_EQ(DefaultHome(), "/home/service/.local/share/quorex-logbook");
  }
  const Variable data("XDG_DATA_HOME", "relative");
  EXPECT_EQ(DefaultHome(), "/home/service/.local/share/quorex-logbook");
}

std::string HiveWithCodePage(const std::string& value) {
  return "Windows Registry Editor Version 5.00\r\n\r\n"
         "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage]\r\n\"ACP\"=" +
         value + "\r\n";
}

TEST(MachineTest, TheCodePageIsWhatTheHiveSaysAnd1252Else) {
  const std::pair<const char*, int> cases[] = {
      {"\"932\"", 932},   {"\"936\"", 936},   {"\"949\"", 949},         {"\"950\"", 950},
      {"\"1250\"", 1250}, {"\"1251\"", 1251}, {"\"1252\"", 1252},       {"\"437\"", 1252},
      {"\"\"", 1252},     {"\"932x\"", 1252}, {"dword:000003a4", 1252}, {"\"-932\"", 1252}};
  for (const auto& [value, number] : cases) {
    const TestMachine machine;
    std::ofstream(machine.home() + "/machine.reg") << HiveWithCodePage(value);
    const Machine opened = OpenMachine(machine.home());
    EXPECT_EQ(opened.code_page->Number(), number) << value;
    EXPECT_EQ(opened.home, machine.home());
  }
}

TEST(MachineTest, AHomeIsAbsoluteAndHasNoSlashAtItsEndHoweverItIsGiven) {
  const TestMachine machine;
  const std::string relative = fs::relative(machine.home()).string();
  for (const std::string& home : {machine.home() + "/", machine.home() + "//", relative,
                                  relative + "/", machine.home() + "/drives/.."}) {
    EXPECT_EQ(OpenMachine(home).home, machine.home()) << home;
  }
  EXPECT_EQ(OpenMachine("/").home, "/");
}

TEST(MachineTest, AMachineWithoutAHiveOrAHomeHasCodePage1252) {
  const TestMachine machine;
  EXPECT_EQ(OpenMachine(machine.home()).code_page->Number(), 1252);
  EXPECT_EQ(OpenMachine(machine.home() + "/none").code_page->Number(), 1252);
}

}  // namespace
}  // namespace logbook::test
