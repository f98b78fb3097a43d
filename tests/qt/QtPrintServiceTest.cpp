// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtPrintService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <array>
#include <filesystem>

#include "base/RunTimeError.h"
#include "state/F1Report.h"
#include "support/PdfTools.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class QtPrintServiceTest : public testing::Test {
 protected:
  QtPrintServiceTest() {
    sheet.SetTitle("Maintenance LogBook");
    sheet.SetSheetName("List View");
    sheet.SetText(1, 1, "printed");
    disk.MakeFolders("C:\\PDF");
  }

  void PutDefaultPrinter(const std::string& name) {
    disk.Put(disk.home() + "/machine.reg",
             "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline"
             "\\CurrentVersion]\r\n\"DefaultPrinter\"=\"" +
                 name + "\"\r\n");
  }
  bool Arm(const std::string& document, const std::string& folder) {
    return service.exptSetAcrobatOutput("", document, folder, 3000, output_file, &error_code) != 0;
  }
  std::string MessageOf(std::int32_t code) {
    std::array<char, 260> message{};
    service.exptGetMessageFromErrorCode(code, 0, message);
    return message.data();
  }
  std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(disk.Native(folder)))
      names.push_back(entry.path().filename().string());
    return names;
  }

  test::TestMachine disk;
  test::TestClock clock;
  QtPrintService service{disk.machine(), clock};
  F1Book sheet;
  std::array<char, 260> printer{}, driver{}, output_file{};
  std::int32_t error_code = -1;
};

TEST_F(QtPrintServiceTest, AMachineWithoutAnyPrinterHasThePdfDevice) {
  EXPECT_NE(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_STREQ(printer.data(), "PDF");
  EXPECT_STREQ(driver.data(), "Adobe PDF Converter");
  EXPECT_EQ(error_code, 0);
}

TEST_F(QtPrintServiceTest, TheRegistryMayNameThePdfDevice) {
  for (const char* name : {"PDF", "pdf"}) {
    PutDefaultPrinter(name);
    EXPECT_NE(service.exptGetDefaultPrinter(printer, driver, &error_code), 0) << name;
    EXPECT_STREQ(driver.data(), "Adobe PDF Converter");
  }
}

TEST_F(QtPrintServiceTest, AnUnknownPrinterInTheRegistryIsNoDefaultPrinter) {
  PutDefaultPrinter("No such printer");
  EXPECT_EQ(service.exptGetDefaultPrinter(printer, driver, &error_code), 0);
  EXPECT_EQ(error_code, QtPrintService::kUnknownPrinter);
  EXPECT_EQ(MessageOf(error_code), "The default printer named in the settings is not installed.");
  try {
    service.PrintSheet(sheet);
    FAIL() << "printed on a printer that does not exist";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kPrinterError);
    EXPECT_EQ(error.Description(), MessageOf(error_code));
  }
}

TEST_F(QtPrintServiceTest, AnArmedJobLandsUnderTheDocumentsName) {
  SKIP_WITHOUT_PDF_TOOLS();
  ASSERT_TRUE(Arm("Logbook_List", "C:\\PDF\\"));
  EXPECT_STREQ(output_file.data(), "C:\\PDF\\Logbook_List.pdf");
  EXPECT_EQ(error_code, 0);
  EXPECT_THAT(FilesIn("C:\\PDF"), IsEmpty()) << "the file comes with the job";
  service.PrintSheet(sheet);
  EXPECT_THAT(FilesIn("C:\\PDF"), ElementsAre("Logbook_List.pdf")) << "no half file stays behind";
  EXPECT_THAT(test::PagesOf(disk.Native("C:\\PDF\\Logbook_List.pdf"))[0], HasSubstr("printed"));
}

TEST_F(QtPrintServiceTest, EveryPageIsToldOfBeforeItIsLaidOut) {
  int pages = 0;
  QtPrintService telling(disk.machine(), clock, [&pages] { ++pages; });
  for (int row = 1; row <= 150; ++row) sheet.SetText(row, 1, "line");
  telling.PrintSheet(sheet);
  EXPECT_EQ(pages, 3);
}

TEST_F(QtPrintServiceTest, TextsThatEndInANulAreCutThere) {
  ASSERT_TRUE(Arm(std::string("Doc\0", 4), std::string("C:\\PDF\\\0", 8)));
  EXPECT_STREQ(output_file.data(), "C:\\PDF\\Doc.pdf");
}

TEST_F(QtPrintServiceTest, AnExistingFileOfThatNameIsReplaced) {
  disk.Put("C:\\PDF\\Doc.pdf", "old");
  ASSERT_TRUE(Arm("Doc", "C:\\PDF\\"));
  EXPECT_EQ(disk.Get("C:\\PDF\\Doc.pdf"), "old") << "until the new one is complete";
  service.PrintSheet(sheet);
  EXPECT_THAT(disk.Get("C:\\PDF\\Doc.pdf"), StartsWith("%PDF-"));
}

TEST_F(QtPrintServiceTest, TheFolderIsMadeIfItIsMissing) {
  ASSERT_TRUE(Arm("Doc", "C:\\new\\"));
  service.PrintSheet(sheet);
  EXPECT_TRUE(disk.Has("C:\\new\\Doc.pdf"));
}

TEST_F(QtPrintServiceTest, AFolderThatCannotBeMadeIsAnErrorWithItsMessage) {
  EXPECT_FALSE(Arm("Doc", "C:\\missing\\new\\"));
  EXPECT_EQ(error_code, QtPrintService::kNoFolder);
  EXPECT_EQ(MessageOf(error_code), "The folder for the print image cannot be found or made.");
}

TEST_F(QtPrintServiceTest, APathThatDoesNotFitTheBufferIsAnErrorAndIsNotCut) {
  EXPECT_TRUE(Arm(std::string(248, 'x'), "C:\\PDF\\"));
  EXPECT_EQ(std::string(output_file.data()).size(), 259u);
  EXPECT_FALSE(Arm(std::string(249, 'x'), "C:\\PDF\\"));
  EXPECT_EQ(error_code, QtPrintService::kNameTooLong);
}

TEST_F(QtPrintServiceTest, CharactersThatAFileNameCannotHoldAreReplaced) {
  ASSERT_TRUE(Arm("a\\b/c:d*e?f\"g<h>i|j", "C:\\PDF\\"));
  EXPECT_STREQ(output_file.data(), "C:\\PDF\\a_b_c_d_e_f_g_h_i_j.pdf");
}

TEST_F(QtPrintServiceTest, ArmingHoldsForOneJob) {
  qputenv("HOME", QByteArray::fromStdString(disk.home()));
  ASSERT_TRUE(Arm("Doc", "C:\\PDF\\"));
  service.PrintSheet(sheet);
  disk.Put("C:\\PDF\\Doc.pdf", "taken");
  disk.MakeFolders(disk.home() + "/Documents");
  service.PrintSheet(sheet);
  EXPECT_EQ(disk.Get("C:\\PDF\\Doc.pdf"), "taken");
}

TEST_F(QtPrintServiceTest, AnArmedJobLandsInItsFileWhateverTheDefaultPrinterIsByThen) {
  ASSERT_TRUE(Arm("Doc", "C:\\PDF\\"));
  PutDefaultPrinter("No such printer");
  service.PrintSheet(sheet);
  EXPECT_TRUE(disk.Has("C:\\PDF\\Doc.pdf"));
  EXPECT_THROW(service.PrintSheet(sheet), RunTimeError) << "the next one is not armed";
}

TEST_F(QtPrintServiceTest, AnArmingThatFailsTakesTheOneBeforeBack) {
  ASSERT_TRUE(Arm("Doc", "C:\\PDF\\"));
  ASSERT_FALSE(Arm("", "C:\\PDF\\"));
  PutDefaultPrinter("No such printer");
  EXPECT_THROW(service.PrintSheet(sheet), RunTimeError);
  EXPECT_FALSE(disk.Has("C:\\PDF\\Doc.pdf"));
}

TEST_F(QtPrintServiceTest, AnUnannouncedJobGoesToTheDocumentsFolderAndReplacesNothing) {
  qputenv("HOME", QByteArray::fromStdString(disk.home()));
  const std::string documents = disk.home() + "/Documents";
  service.PrintSheet(sheet);
  service.PrintSheet(sheet);
  EXPECT_TRUE(disk.Has(documents + "/Maintenance LogBook - List View.pdf"));
  EXPECT_TRUE(disk.Has(documents + "/Maintenance LogBook - List View (2).pdf"));
}

TEST_F(QtPrintServiceTest, AFileThatCannotBeWrittenIsAnError) {
  ASSERT_TRUE(Arm("Doc", "C:\\PDF\\"));
  disk.MakeFolders("C:\\PDF\\Doc.pdf");
  EXPECT_THROW(service.PrintSheet(sheet), RunTimeError);
}

TEST_F(QtPrintServiceTest, EveryErrorCodeHasAMessage) {
  for (const std::int32_t code : {0, 2, 3, 87, 206, 1801}) {
    EXPECT_THAT(MessageOf(code), testing::EndsWith("."));
    EXPECT_THAT(MessageOf(code), testing::Not(HasSubstr("error"))) << code;
  }
  EXPECT_EQ(MessageOf(4242), "Print service error 4242.");
}

TEST_F(QtPrintServiceTest, AMessageIsCutToTheBuffer) {
  std::array<char, 8> small{};
  service.exptGetMessageFromErrorCode(0, 0, small);
  EXPECT_STREQ(small.data(), "The ope");
}

}  // namespace
}  // namespace logbook
