// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Machine.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

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
