// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Printing on queues of a real print system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "base/RunTimeError.h"
#include "base/posix/LateLibrary.h"
#include "printing/ListPrinting.h"
#include "printing/PrintBridge.h"
#include "qt/QtPrintService.h"
#include "support/PdfTools.h"
#include "support/PrivateCups.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class PrintQueue : public testing::Test {
 protected:
  void SetUp() override {
    const std::string missing = test::PrivateCups::Missing();
    if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
    SKIP_WITHOUT_PDF_TOOLS();
    cups = std::make_unique<test::PrivateCups>();
    // Within a process the library keeps to the server that it found first, until it is told.
    posix::LateLibrary("libcups.so.2").Find<void(const char*)>("cupsSetServer")(nullptr);
    station.state.ListView1.Column(1).Text = "Date Logged";
    station.state.ListView1.Rows.push_back({.Text = "11/15/2026 05:09:59"});
  }

  void PutDefaultPrinter(const std::string& name) {
    station.disk.Put(station.disk.home() + "/machine.reg",
                     "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex "
                     "Tessaline\\CurrentVersion]\r\n\"DefaultPrinter\"=\"" +
                         name + "\"\r\n");
  }
  // Waits for the document that the queue has printed.
  std::string Printed(const std::string& queue) {
    const std::string path = cups->PrintedBy(queue);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!std::filesystem::exists(path)) {
      if (std::chrono::steady_clock::now() > limit) {
        ADD_FAILURE() << "queue " << queue << " has printed nothing:\n" << cups->Log();
        return path;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return path;
  }

  std::unique_ptr<test::PrivateCups> cups;
  test::TestWorkstation station;
  QtPrintService service{station.disk.machine(), station.clock};
  Services real{station.host,    station.cell,    station.events, station.messages,
                station.clock,   station.process, station.ecm,    station.forms,
                station.windows, service,         station.help,   station.save};
  std::array<char, 260> printer{}, driver{};
  std::int32_t error_code = -1;
};

TEST_F(PrintQueue, TheListGoesToTheDefaultQueueWithItsFonts) {
  cups->AddQueue("Office");
  cups->SetDefault("Office");
  PrintList(station.state, real);
  EXPECT_THAT(station.messages.shown, IsEmpty());
  const std::string document = Printed("Office");
  const std::vector<std::string> pages = test::PagesOf(document);
  ASSERT_THAT(pages, Not(IsEmpty()));
  EXPECT_THAT(pages[0], HasSubstr("List View"));
  EXPECT_THAT(pages[0], HasSubstr("11/15/2026 05:09:59"));
  EXPECT_THAT(pages[0], HasSubstr("Page 1/1"));
  EXPECT_THAT(test::FontsOf(document), Not(IsEmpty()));
  EXPECT_THAT(test::FontsOf(document), Each(Field(&test::PdfFont::embedded, true)));
  const test::PaperSize paper = test::PaperOf(document);
  EXPECT_GT(paper.width, paper.height) << "landscape";
}

TEST_F(PrintQueue, AQueueIsAnOrdinaryPrinterAndNoImageIsArmed) {
  cups->AddQueue("Office");
  cups->SetDefault("Office");
  EXPECT_NE(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_STREQ(printer.data(), "Office");
  EXPECT_STREQ(driver.data(), "Local Raw Printer");
  std::string path = "old";
  PrepareDocumentOutput(station.state, real, "Doc", "", kPrintTimeOut, path);
  EXPECT_EQ(path, "");
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

TEST_F(PrintQueue, TheRegistryMayNameAnotherQueue) {
  cups->AddQueue("Office");
  cups->AddQueue("Lab");
  cups->SetDefault("Office");
  PutDefaultPrinter("Lab");
  PrintList(station.state, real);
  Printed("Lab");
  EXPECT_FALSE(std::filesystem::exists(cups->PrintedBy("Office")));
}

TEST_F(PrintQueue, TheRegistryMayNameThePdfDeviceBesideQueues) {
  cups->AddQueue("Office");
  cups->SetDefault("Office");
  PutDefaultPrinter("PDF");
  EXPECT_NE(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_STREQ(driver.data(), "Adobe PDF Converter");
}

TEST_F(PrintQueue, QueuesWithoutADefaultAreNoDefaultPrinter) {
  cups->AddQueue("Office");
  PrintList(station.state, real);
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "There is no default printer.");
  EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kCritical);
  EXPECT_EQ(station.messages.shown[0].Title, std::optional<std::string>(""));
  EXPECT_THROW(service.PrintSheet(station.state.frmMain.F1Report), RunTimeError);
}

// What belongs on paper does not turn into a PDF file that is uploaded.
TEST_F(PrintQueue, AStoppedSchedulerIsAMissingDefaultPrinter) {
  cups->AddQueue("Office");
  cups->SetDefault("Office");
  cups->Stop();
  station.ecm.enabled = true;
  PrintList(station.state, real);
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "There is no default printer.");
  EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kCritical);
  EXPECT_EQ(station.messages.shown[0].Title, std::optional<std::string>(""));
  EXPECT_EQ(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_EQ(error_code, QtPrintService::kNoDefaultPrinter);
  EXPECT_THROW(service.PrintSheet(station.state.frmMain.F1Report), RunTimeError);
}

TEST_F(PrintQueue, AQueueOfAStoppedSchedulerIsNotCalledUnknown) {
  cups->AddQueue("Lab");
  PutDefaultPrinter("Lab");
  cups->Stop();
  EXPECT_EQ(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_EQ(error_code, QtPrintService::kNoDefaultPrinter);
}

TEST_F(PrintQueue, ThePdfDeviceNeedsNoScheduler) {
  cups->Stop();
  PutDefaultPrinter("PDF");
  EXPECT_NE(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_STREQ(driver.data(), "Adobe PDF Converter");
}

TEST_F(PrintQueue, AQueueThatTakesNoJobsIsAnError) {
  cups->AddQueue("Office");
  cups->SetDefault("Office");
  cups->RejectJobs("Office");
  try {
    service.PrintSheet(station.state.frmMain.F1Report);
    FAIL() << "a job that nobody took counted as printed";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kPrinterError);
    EXPECT_THAT(error.Description(), HasSubstr("not accepting jobs"));
  }
}

TEST_F(PrintQueue, APrintSystemWithoutQueuesHasThePdfDevice) {
  EXPECT_NE(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_STREQ(printer.data(), "PDF");
}

}  // namespace
}  // namespace logbook
