// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/PrintBridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TestServices.h"

namespace logbook {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHive[] =
    "REGEDIT4\r\n\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion]\r\n";

class PrintBridge : public testing::Test {
 protected:
  PrintBridge() {
    station.state.AppPath = "C:\\QUOREX\\qrxexe";
    station.state.AppName = "logbook";
  }

  void PutHostPath(const std::string& text) {
    station.disk.Put(station.disk.home() + "/machine.reg",
                     kHive + ("\"Path\"=\"" + text + "\"\r\n"));
  }
  void UsePdfDevice() {
    print.driver = "Adobe PDF Converter";
    print.image = "C:\\QUOREX\\PDF\\list.pdf";
  }
  bool Set(const std::string& document, const std::string& folder, std::int32_t time_out = 3000) {
    return SetPdfOutput(station.state, station.services, document, folder, time_out, "", path,
                        error_code, message);
  }

  test::TestWorkstation station;
  test::TestPrint& print = station.print;
  std::string path = "old";
  std::int32_t error_code = -1;
  std::string message;
};

TEST_F(PrintBridge, OrdinaryPrinterIsASuccessWithoutAnImage) {
  EXPECT_TRUE(Set("Logbook_List", ""));
  EXPECT_EQ(path, "");
  EXPECT_EQ(error_code, 0);
  EXPECT_EQ(message, "message 0");
  EXPECT_THAT(print.calls,
              ElementsAre("exptGetDefaultPrinter 260 260", "exptGetMessageFromErrorCode 0 0"));
}

TEST_F(PrintBridge, OrdinaryPrinterNeedsNeitherNameNorTimeOut) {
  EXPECT_TRUE(Set("", "", 0));
  EXPECT_EQ(path, "");
}

TEST_F(PrintBridge, PdfDeviceIsArmedInTheWorkstationsPdfFolder) {
  UsePdfDevice();
  PutHostPath("C:\\\\QUOREX\\\\");
  EXPECT_TRUE(Set("Logbook_List", ""));
  EXPECT_EQ(path, "C:\\QUOREX\\PDF\\list.pdf");
  EXPECT_THAT(print.calls,
              ElementsAre("exptGetDefaultPrinter 260 260",
                          "exptSetAcrobatOutput C:\\QUOREX\\qrxexe\\logbook.exe| Logbook_List| "
                          "C:\\QUOREX\\PDF\\| 3000"));
}

TEST_F(PrintBridge, TheDriversNameInAnotherCaseCountsAsThePdfDevice) {
  UsePdfDevice();
  for (const char* driver : {"ADOBE PDF CONVERTER", "adobe pdf converter", "Adobe PDF converteR"}) {
    print.driver = driver;
    path.clear();
    EXPECT_TRUE(Set("Logbook_List", "C:\\x\\"));
    EXPECT_EQ(path, "C:\\QUOREX\\PDF\\list.pdf") << driver;
  }
}

TEST_F(PrintBridge, DriversThatOnlyResembleThePdfDeviceAreOrdinary) {
  UsePdfDevice();
  for (const char* driver : {"Adobe PDF Converter 2", "Adobe PDF", "", " Adobe PDF Converter"}) {
    print.driver = driver;
    EXPECT_TRUE(Set("Logbook_List", "C:\\x\\"));
    EXPECT_EQ(path, "") << driver;
  }
}

TEST_F(PrintBridge, WithoutAWorkstationInTheRegistryTheFolderIsPdfOnTheCurrentDrive) {
  UsePdfDevice();
  EXPECT_TRUE(Set("Logbook_List", ""));
  EXPECT_EQ(print.calls.back(),
            "exptSetAcrobatOutput C:\\QUOREX\\qrxexe\\logbook.exe| Logbook_List| \\PDF\\| 3000");
}

TEST_F(PrintBridge, AWorkstationFolderWithoutBackslashGetsOne) {
  UsePdfDevice();
  PutHostPath("C:\\\\QUOREX");
  EXPECT_TRUE(Set("Logbook_List", ""));
  EXPECT_EQ(print.calls.back(),
            "exptSetAcrobatOutput C:\\QUOREX\\qrxexe\\logbook.exe| Logbook_List| "
            "C:\\QUOREX\\PDF\\| 3000");
}

TEST_F(PrintBridge, AGivenFolderGetsItsBackslashAndOneNul) {
  UsePdfDevice();
  for (const std::string& folder :
       {std::string("C:\\out"), std::string("C:\\out\\"), std::string("C:\\out\0", 7)}) {
    EXPECT_TRUE(Set("Doc", folder));
    EXPECT_EQ(print.calls.back(),
              "exptSetAcrobatOutput C:\\QUOREX\\qrxexe\\logbook.exe| Doc| C:\\out\\| 3000");
  }
}

TEST_F(PrintBridge, TheProgramFileEndsInExeOnce) {
  UsePdfDevice();
  for (const char* name : {"logbook.exe", "logbook.EXE", "logbook.Exe"}) {
    station.state.AppName = name;
    EXPECT_TRUE(Set("Doc", "C:\\out\\"));
    EXPECT_EQ(print.calls.back(), "exptSetAcrobatOutput C:\\QUOREX\\qrxexe\\" + std::string(name) +
                                      "| Doc| C:\\out\\| 3000");
  }
  station.state.AppPath = "C:\\";
  station.state.AppName = "logbook";
  EXPECT_TRUE(Set("Doc", "C:\\out\\"));
  EXPECT_EQ(print.calls.back(), "exptSetAcrobatOutput C:\\logbook.exe| Doc| C:\\out\\| 3000");
}

TEST_F(PrintBridge, AnEmptyDocumentNameIsError87) {
  UsePdfDevice();
  EXPECT_FALSE(Set("", ""));
  EXPECT_EQ(error_code, 87);
  EXPECT_EQ(message, "message 87");
  EXPECT_EQ(path, "");
}

TEST_F(PrintBridge, ATimeOutOfZeroOverflows) {
  UsePdfDevice();
  try {
    Set("Doc", "", 0);
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kOverflow);
  }
}

TEST_F(PrintBridge, AFailureToArmGivesTheServicesMessageAndNoPath) {
  UsePdfDevice();
  print.arming_error = 5;
  EXPECT_FALSE(Set("Doc", ""));
  EXPECT_EQ(error_code, 5);
  EXPECT_EQ(message, "message 5");
  EXPECT_EQ(path, "");
}

TEST_F(PrintBridge, AnEmptyNameFromTheServiceIsAnEmptyPath) {
  UsePdfDevice();
  print.image = std::string("\0list.pdf", 9);
  EXPECT_TRUE(Set("Doc", ""));
  EXPECT_EQ(path, "");
}

TEST_F(PrintBridge, WithoutADefaultPrinterTheMessageIsShownAndTheCallerGoesOn) {
  print.printer_error = 1801;
  PrepareDocumentOutput(station.state, station.services, "Doc", "", kPrintTimeOut, path);
  EXPECT_EQ(path, "");
  ASSERT_EQ(station.messages.shown.size(), 1u);
  const Message& shown = station.messages.shown[0];
  EXPECT_EQ(shown.Text, "message 1801");
  EXPECT_EQ(shown.Icon, MessageIcon::kCritical);
  EXPECT_EQ(shown.Buttons, MessageButtons::kOk);
  EXPECT_EQ(shown.Title, std::optional<std::string>(""));
}

TEST_F(PrintBridge, SuccessShowsNoMessage) {
  PrepareDocumentOutput(station.state, station.services, "Doc", "", kPrintTimeOut, path);
  UsePdfDevice();
  PrepareDocumentOutput(station.state, station.services, "Doc", "", kPrintTimeOut, path);
  EXPECT_EQ(path, "C:\\QUOREX\\PDF\\list.pdf");
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

TEST_F(PrintBridge, GetPrinterNamesCutsEachNameAtItsFirstNul) {
  print.printer = std::string("Office\0rest", 11);
  print.driver = std::string(260, 'x');
  std::string printer_name, driver_name;
  EXPECT_TRUE(GetPrinterNames(print, printer_name, driver_name, error_code));
  EXPECT_EQ(printer_name, "Office");
  EXPECT_EQ(driver_name, std::string(260, 'x'));
  EXPECT_EQ(error_code, 0);
}

TEST_F(PrintBridge, GetPrinterNamesSetsTheErrorCodeTo0WhateverTheServiceLeavesThere) {
  class Careless : public test::TestPrint {
    std::int32_t exptGetDefaultPrinter(std::span<char>, std::span<char>,
                                       std::int32_t* code) override {
      *code = 1234;
      return 1;
    }
  } careless;
  std::string printer_name, driver_name;
  EXPECT_TRUE(GetPrinterNames(careless, printer_name, driver_name, error_code));
  EXPECT_EQ(error_code, 0);
}

TEST_F(PrintBridge, GetPrinterNamesEmptiesTheNamesOnFailure) {
  print.printer_error = 1801;
  std::string printer_name = "old", driver_name = "old";
  EXPECT_FALSE(GetPrinterNames(print, printer_name, driver_name, error_code));
  EXPECT_EQ(printer_name, "");
  EXPECT_EQ(driver_name, "");
  EXPECT_EQ(error_code, 1801);
}

TEST(TrimToNul, GivesThePartBeforeTheFirstNul) {
  EXPECT_EQ(TrimToNul(std::string_view("ab\0cd\0", 6)), "ab");
  EXPECT_EQ(TrimToNul("abc"), "abc");
  EXPECT_EQ(TrimToNul(std::string_view("\0abc", 4)), "");
  EXPECT_EQ(TrimToNul(""), "");
}

TEST(GetLastPathComponent, GivesWhatFollowsTheLastBackslash) {
  EXPECT_EQ(GetLastPathComponent("C:\\logs\\26112100"), "26112100");
  EXPECT_EQ(GetLastPathComponent("26112100"), "26112100");
  EXPECT_EQ(GetLastPathComponent("C:\\logs\\"), "");
  EXPECT_EQ(GetLastPathComponent(""), "");
}

}  // namespace
}  // namespace logbook
