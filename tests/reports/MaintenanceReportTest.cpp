// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/MaintenanceReport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/Profile.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

using test::LinesOf;
using test::Viewing;

TEST(MaintenanceReport, OneSentenceForEachTickedItemInTheirOrder) {
  Viewing viewing;
  viewing.Put("logfile.ini", "[Maintenance]\r\nItem17=1\r\nItem0=1\r\nItem1=0\r\nItem12=1\r\n");
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText,
            "Drain Vessel was checked.\r\n"
            "Rotary Pump Oil was cheked.\r\n" +
                viewing.state.catalogues.ItemHeaders[17] + "\r\n");
  EXPECT_EQ(viewing.Get("mainte.rpt"), viewing.view.ReportText + "\r\n");
}

TEST(MaintenanceReport, AllItemsTickedGiveEighteenSentences) {
  Viewing viewing;
  std::string profile = "[Maintenance]\r\n";
  for (int item = 0; item < 18; ++item) profile += "Item" + std::to_string(item) + "=1\r\n";
  viewing.Put("logfile.ini", profile + "Item18=1\r\n");
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(LinesOf(viewing.view.ReportText).size(), 18U);
}

TEST(MaintenanceReport, AllItemsZeroGiveAnEmptyPaneAndAFileOfOneEmptyLine) {
  Viewing viewing;
  viewing.Put("logfile.ini", "[Maintenance]\r\nItem0=0\r\nItem1=0\r\n");
  viewing.Put("mainte.rpt", "an older and longer file\r\n");
  viewing.view.ReportText = "older";
  viewing.Choose(&LogView::mnuMainte);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_EQ(viewing.Get("mainte.rpt"), "\r\n");
  EXPECT_EQ(viewing.state.ViewMode, 6);
}

TEST(MaintenanceReport, OnlyAValueOfExactlyOneCounts) {
  Viewing viewing;
  for (const char* value : {"2", "-1", "0.9", "yes", "", "11"}) {
    viewing.Put("logfile.ini", std::string("[Maintenance]\r\nItem3=") + value + "\r\n");
    ViewMainte(viewing.state, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "") << value;
  }
  for (const char* value : {"1", "1.0", "\"1\"", "1 done"}) {
    viewing.Put("logfile.ini", std::string("[Maintenance]\r\nItem3=") + value + "\r\n");
    ViewMainte(viewing.state, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "Nebulizer was cleaned.\r\n") << value;
  }
}

TEST(MaintenanceReport, TheKeyOfAnItemHasNoLeadingZero) {
  Viewing viewing;
  viewing.Put("logfile.ini", "[Maintenance]\r\nItem03=1\r\n");
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
}

TEST(MaintenanceReport, ALogWithoutDescriptorHasNoRecords) {
  Viewing viewing;
  viewing.state.FileList[1].Name = "26111501";
  viewing.disk.MakeFolders(test::TestWorkstation::InLog("26111501", ""));
  LoadLogView(viewing.state, viewing.view);
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.disk.Get(test::TestWorkstation::InLog("26111501", "mainte.rpt")), "\r\n");
}

TEST(MaintenanceReport, ADescriptorOfMoreThan16MegabytesHasNoRecords) {
  Viewing viewing;
  viewing.Put("logfile.ini", "[Maintenance]\r\nItem3=1\r\n");
  const std::string descriptor = viewing.disk.Native(Viewing::File("logfile.ini"));
  std::filesystem::resize_file(descriptor, kLargestProfile);
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "Nebulizer was cleaned.\r\n");
  std::filesystem::resize_file(descriptor, kLargestProfile + 1);
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
}

TEST(MaintenanceReport, AnErrorEndsTheRoutineInSilenceAndTheOlderFileStays) {
  Viewing viewing;
  viewing.Put("logfile.ini", "[Maintenance]\r\nItem0=1\r\nItem1=1e999\r\n");
  viewing.Put("mainte.rpt", "older");
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_EQ(viewing.Get("mainte.rpt"), "older");
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(MaintenanceReport, AFileThatCannotBeWrittenLeavesTheTextOnShow) {
  Viewing viewing;
  viewing.Put("logfile.ini", "[Maintenance]\r\nItem0=1\r\n");
  viewing.disk.MakeFolders(Viewing::File("mainte.rpt"));
  ViewMainte(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "Drain Vessel was checked.\r\n");
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(MaintenanceReport, TheFileExistsOnlyAfterAView) {
  Viewing viewing;
  EXPECT_FALSE(viewing.Has("mainte.rpt"));
  ViewMainte(viewing.state, viewing.view);
  EXPECT_TRUE(viewing.Has("mainte.rpt"));
}

}  // namespace
}  // namespace logbook
