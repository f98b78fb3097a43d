// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the real program puts on paper: print images of the PDF device, and jobs for the system's
// own spooler.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <utility>

#include "e2e/PrintedPages.h"
#include "win32/LogbookAtHost.h"

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

using e2e::PrintedPage;
using testing::Contains;
using testing::HasSubstr;

// What the letters of a PostScript job by Wine stand for: it names each glyph in a line of its own.
std::string TextOf(const std::string& job) {
  constexpr std::pair<std::string_view, char> kNames[] = {
      {"uni00A0", ' '}, {"space", ' '}, {"zero", '0'},  {"one", '1'},   {"two", '2'},
      {"three", '3'},   {"four", '4'},  {"five", '5'},  {"six", '6'},   {"seven", '7'},
      {"eight", '8'},   {"nine", '9'},  {"slash", '/'}, {"colon", ':'}, {"period", '.'}};
  constexpr std::string_view kEnd = " glyphshow";
  std::string text;
  std::istringstream lines(job);
  for (std::string line; std::getline(lines, line);) {
    while (line.ends_with('\r')) line.pop_back();
    if (!line.starts_with('/') || !line.ends_with(kEnd)) continue;
    const std::string name = line.substr(1, line.size() - 1 - kEnd.size());
    const auto* known = std::find_if(std::begin(kNames), std::end(kNames),
                                     [&](const auto& entry) { return entry.first == name; });
    text += known != std::end(kNames) ? known->second : name.size() == 1 ? name[0] : '?';
  }
  return text;
}

constexpr char kImages[] = "C:\\QUOREX\\PDF\\";

class PrintingTest : public LogbookAtHost {
 protected:
  PrintingTest() {
    AddRegistryValue("Path", "C:\\\\QUOREX\\\\");
    AddLog("26111500");
  }
  void SetUp() override { SKIP_WITHOUT_PDF_TOOLS(); }

  // The native path of a print image, once it is whole.
  std::string WaitForImage(const std::string& name) {
    const std::string path = kImages + name;
    WaitFor("the print image",
            [&] { return disk.Has(path) && disk.Get(path).ends_with("%%EOF\n"); });
    return disk.Native(path);
  }
};

TEST_F(PrintingTest, TheListComesAsAPdfFileOfOnePageInLandscape) {
  AddRegistryValue("DefaultPrinter", "PDF");
  Start();
  Click(main(), kPrintList);
  const std::string pdf = WaitForImage("Logbook_List.pdf");
  const std::vector<PrintedPage> pages = e2e::ReadPrintedPages(pdf);
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_GT(pages[0].width, pages[0].height);
  EXPECT_EQ(pages[0].header, "List View");
  // The number of the page, and date and time as the system writes them, up to the right margin.
  ASSERT_GE(pages[0].footer.size(), 4u);
  EXPECT_EQ(pages[0].footer[0].text + " " + pages[0].footer[1].text, "Page 1/1");
  EXPECT_NEAR(pages[0].footer.back().right, pages[0].width - 54, 2);
  e2e::ExpectFontsEmbedded(pdf);
  EXPECT_THAT(pages[0].body, Contains(testing::StartsWith("11/15/2026 05:09:59 26111500")));
  EXPECT_THAT(pages[0].body, Contains(HasSubstr("Cones changed.")));
}

TEST_F(PrintingTest, AReportComesAsAPdfFileUnderTheNameOfItsLog) {
  AddRegistryValue("DefaultPrinter", "PDF");
  Start();
  const HWND viewer = View();
  Click(viewer, kMaintenance);
  Click(viewer, kViewerPrint);
  const std::vector<PrintedPage> pages =
      e2e::ReadPrintedPages(WaitForImage("26111500_mainte.rpt.pdf"));
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_EQ(pages[0].header, "Maintenance Records");
  EXPECT_THAT(pages[0].body, Contains("Cones changed."));
}

// Wine hands what is printed to the queues of the system below it; LOGBOOK_TEST_QUEUE is the folder
// in which a queue of the tests' own keeps each job and its title.
TEST_F(PrintingTest, AnOrdinaryPrinterGetsOneJobThroughTheSpooler) {
  const char* queue = std::getenv("LOGBOOK_TEST_QUEUE");
  if (queue == nullptr) GTEST_SKIP() << "no queue of the tests' own";
  const fs::path kept = queue;
  Start();
  Click(main(), kPrintList);
  WaitFor("the job", [&] { return fs::exists(kept / "job.1") && fs::exists(kept / "title.1"); });
  EXPECT_EQ(disk.Get((kept / "title.1").string()), "Maintenance LogBook\n");
  const std::string job = disk.Get((kept / "job.1").string());
  EXPECT_THAT(job, testing::StartsWith("%!PS-Adobe"));
  EXPECT_THAT(job, HasSubstr("%%Orientation: Landscape"));
  const std::string text = TextOf(job);
  EXPECT_THAT(text, HasSubstr("List View"));
  EXPECT_THAT(text, HasSubstr("26111500"));
  EXPECT_THAT(text, HasSubstr("Cones changed."));
  EXPECT_THAT(text, HasSubstr("Page 1/"));
  EXPECT_FALSE(disk.Has(kImages)) << "no image of what went to paper";

  // Printing is over: the window takes commands again.
  Exit();
  EXPECT_FALSE(fs::exists(kept / "job.2"));
}

}  // namespace
}  // namespace logbook::windows_test
