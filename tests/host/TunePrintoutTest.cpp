// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/TunePrintout.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TestMachine.h"

namespace logbook::host {
namespace {

LocalTime Time() {
  return *ParseTime("2026-11-15T05:09:59");
}

TEST(TunePrintout, HasALineForEachColumnOfTheExtract) {
  EXPECT_EQ(PrintoutText("26111500", "Analog HV\tOxide\tEmpty\t\r\n1712\t0.92\t\t\r\n\r\n", Time()),
            "Tune Report 26111500\r\nPrinted 2026/11/15 05:09:59\r\n\r\n"
            "Analog HV                           1712\r\n"
            "Oxide                               0.92\r\n"
            "Empty\r\n");
}

TEST(TunePrintout, SaysSoWhenTheExtractHasNoColumns) {
  for (const std::string extract : {"", "\r\n\r\n\r\n"}) {
    EXPECT_EQ(PrintoutText("x", extract, Time()),
              "Tune Report x\r\nPrinted 2026/11/15 05:09:59\r\n\r\n(no tune values)\r\n");
  }
}

TEST(TunePrintout, EveryPrefixOfAnExtractIsPrinted) {
  const std::string extract = "Analog HV\tOxide\t\r\n1712\t0.92\t\r\n\r\n";
  for (std::size_t size = 0; size <= extract.size(); ++size) {
    const std::string text = PrintoutText("x", extract.substr(0, size), Time());
    EXPECT_EQ(text.rfind("Tune Report x\r\n", 0), 0u) << size;
    EXPECT_EQ(text.find("Oxide") != std::string::npos, size >= 16) << size;
  }
}

TEST(TunePrintout, LiesInTheTrayUnderTheFoldersName) {
  test::TestMachine home;
  MakeWorkstation(home.home(), {});
  const Workstation workstation = OpenWorkstation(home.home());
  home.Put("C:\\QUOREX\\inst1\\maintain\\26111500\\tune.bin", "Oxide\t\r\n0.92\t\r\n\r\n");
  const std::string file =
      PrintTuneReport(workstation, "C:\\QUOREX\\inst1\\maintain\\26111500\\", Time());
  EXPECT_EQ(file, "C:\\QUOREX\\tuneprint\\26111500.txt");
  EXPECT_NE(home.Get(file).find("Oxide                               0.92\r\n"), std::string::npos);
}

}  // namespace
}  // namespace logbook::host
