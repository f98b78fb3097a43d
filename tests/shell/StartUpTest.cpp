// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "shell/StartUp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "support/TestServices.h"

namespace logbook {
namespace {

using test::ProcessEnded;
using test::TestWorkstation;
using testing::ElementsAre;

// Runs the start and gives the exit status, or -1 if the window waits for the user.
int StartWith(TestWorkstation& station, const std::string& command_line) {
  try {
    Form_Load(station.state, station.services, command_line);
  } catch (const ProcessEnded& end) {
    return end.status;
  }
  return -1;
}

// A host that takes each value of the cell at once.
void AnswerCell(TestWorkstation& station) {
  station.events.on_deliver = [&](int) {
    if (!station.cell.text.empty()) station.cell.text = "0";
  };
}

TEST(CommandLine, HostAloneGivesHostIdAndNoFlags) {
  TestWorkstation station;
  TakeCommandLine(station.state, "HOST");
  EXPECT_EQ(station.state.HostId, "HOST");
  EXPECT_FALSE(station.state.CEMode);
  EXPECT_FALSE(station.state.AutoRec);
}

TEST(CommandLine, LeadingBlankMakesTheWholeLineTheHostId) {
  TestWorkstation station;
  TakeCommandLine(station.state, " HOST CE");
  EXPECT_EQ(station.state.HostId, " HOST CE");
  EXPECT_TRUE(station.state.CEMode);
}

TEST(CommandLine, AutoRecIsFoundWithoutRegardToCase) {
  TestWorkstation station;
  TakeCommandLine(station.state, "ABC autorec");
  EXPECT_EQ(station.state.HostId, "ABC");
  EXPECT_TRUE(station.state.AutoRec);
  EXPECT_FALSE(station.state.CEMode);
}

TEST(CommandLine, WordsAreSearchedInTheHostIdToo) {
  TestWorkstation station;
  TakeCommandLine(station.state, "ACE");
  EXPECT_EQ(station.state.HostId, "ACE");
  EXPECT_TRUE(station.state.CEMode);
}

TEST(CommandLine, BlankInSecondPlaceEndsTheHostId) {
  TestWorkstation station;
  TakeCommandLine(station.state, "A  ce AUTOREC");
  EXPECT_EQ(station.state.HostId, "A");
  EXPECT_TRUE(station.state.CEMode);
  EXPECT_TRUE(station.state.AutoRec);
}

TEST(Form_Load, EmptyCommandLineEndsSilentlyWithoutAskingTheHost) {
  TestWorkstation station;
  AnswerCell(station);
  EXPECT_EQ(StartWith(station, ""), 0);
  EXPECT_TRUE(station.host.requests.empty());
  EXPECT_TRUE(station.messages.shown.empty());
  EXPECT_THAT(station.cell.written, ElementsAre("9"));
}

TEST(Form_Load, SecondInstanceEndsSilently) {
  TestWorkstation station;
  AnswerCell(station);
  station.process.other_instance = true;
  EXPECT_EQ(StartWith(station, "HOST"), 0);
  EXPECT_TRUE(station.host.requests.empty());
  EXPECT_TRUE(station.messages.shown.empty());
}

// Nobody sees the cell of a process that is not the running logbook, and nobody answers it.
TEST(Form_Load, StartThatEndsAtOnceWaitsForNobody) {
  for (const char* command_line : {"", "HOST"}) {
    TestWorkstation station;
    station.cell.reachable = false;
    station.process.other_instance = true;
    EXPECT_EQ(StartWith(station, command_line), 0) << command_line;
    EXPECT_EQ(station.events.delivered, 0) << command_line;
  }
}

TEST(Form_Load, WithoutARunningHostThePlaceIsGivenBackAndNobodyIsWaitedFor) {
  TestWorkstation station;
  station.host.is_there = false;
  station.host.replies.clear();
  station.process.on_resign = [&] { station.cell.reachable = false; };
  EXPECT_EQ(StartWith(station, "HOST"), 0);
  EXPECT_FALSE(station.cell.reachable);
  EXPECT_EQ(station.events.delivered, 0);
}

TEST(Form_Load, HostThatRunsAndRefusesIsToldOfTheEnd) {
  TestWorkstation station;
  AnswerCell(station);
  station.host.replies.clear();
  station.process.on_resign = [] { ADD_FAILURE() << "the host can see the cell"; };
  EXPECT_EQ(StartWith(station, "HOST"), 0);
  EXPECT_THAT(station.cell.written, ElementsAre("9"));
  EXPECT_EQ(station.cell.text, "0");
}

TEST(Form_Load, AsksTheHostForItsFourItemsInOrder) {
  TestWorkstation station;
  station.state.ExePath.clear();
  station.state.LogRoot.clear();
  EXPECT_EQ(StartWith(station, "HOST CE"), -1);
  EXPECT_THAT(station.host.requests,
              ElementsAre("HOST|CPWAIT|_exepath$", "HOST|CPWAIT|_instpath$",
                          "HOST|CPWAIT|_helppath$", "HOST|CPWAIT|_helpfile$"));
  EXPECT_TRUE(station.host.closed);
  EXPECT_EQ(station.state.ExePath, TestWorkstation::kExePath);
  EXPECT_EQ(station.state.IniFile, "C:\\QUOREX\\qrxexe\\logbook.ini");
  EXPECT_EQ(station.state.LogRoot, TestWorkstation::kLogRoot);
  EXPECT_EQ(station.state.HelpPath, "C:\\QUOREX\\help\\");
  EXPECT_EQ(station.state.HelpFile, "quorex.chm");
}

TEST(Form_Load, AnyItemThatTheHostRefusesEndsSilently) {
  for (const char* item : {"_exepath$", "_instpath$", "_helppath$", "_helpfile$"}) {
    TestWorkstation station;
    AnswerCell(station);
    station.host.replies.erase(item);
    EXPECT_EQ(StartWith(station, "HOST"), 0) << item;
    EXPECT_TRUE(station.messages.shown.empty()) << item;
    EXPECT_FALSE(station.disk.Has(std::string(TestWorkstation::kLogRoot) + "listlog.csv")) << item;
  }
}

TEST(Form_Load, MissingLogRootIsMadeBeforeTheFirstList) {
  TestWorkstation station;
  station.host.replies["_instpath$"] = "C:\\other\\";
  station.disk.MakeFolders("C:\\other");
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  EXPECT_TRUE(station.disk.Has("C:\\other\\maintain\\listlog.csv"));
}

TEST(Form_Load, LogRootMayBeALinkToAFolder) {
  TestWorkstation station;
  station.disk.MakeFolders("C:\\elsewhere\\26111500");
  station.disk.MakeFolders("C:\\other");
  std::filesystem::create_directory_symlink(station.disk.Native("C:\\elsewhere"),
                                            station.disk.Native("C:\\other\\maintain"));
  station.host.replies["_instpath$"] = "C:\\other\\";
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  EXPECT_EQ(station.state.LogCount, 1);
  EXPECT_TRUE(station.disk.Has("C:\\elsewhere\\listlog.csv"));
}

TEST(Form_Load, FileInThePlaceOfLogRootEndsSilently) {
  TestWorkstation station;
  AnswerCell(station);
  station.host.replies["_instpath$"] = "C:\\other\\";
  station.disk.Put("C:\\other\\maintain", "a file");
  EXPECT_EQ(StartWith(station, "HOST"), 0);
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST(Form_Load, AnyOtherFailureOfARequestEndsSilentlyToo) {
  TestWorkstation station;
  AnswerCell(station);
  station.host.on_request = [](const std::string&) { throw std::bad_alloc(); };
  EXPECT_EQ(StartWith(station, "HOST"), 0);
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST(Form_Load, LogRootIsMadeOneLevelOnlyElseTheProgramEnds) {
  TestWorkstation station;
  AnswerCell(station);
  station.host.replies["_instpath$"] = "C:\\missing\\";
  EXPECT_EQ(StartWith(station, "HOST"), 0);
  EXPECT_FALSE(station.disk.Has("C:\\missing"));
}

TEST(Form_Load, ExistingLogRootIsLeftAlone) {
  TestWorkstation station;
  station.MakeLog("26111500", "11/15/2026 05:09:59", "kept");
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  EXPECT_EQ(station.state.LogCount, 1);
  EXPECT_EQ(station.disk.Get(TestWorkstation::InLog("26111500", "comment.txt")), "kept\r\n");
}

TEST(Form_Load, CaptionsFontsAndArrangementStandWhenTheWindowWaits) {
  TestWorkstation station;
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  const MainWindow& window = station.state.frmMain;
  EXPECT_EQ(window.Window.Caption, "Maintenance LogBook");
  EXPECT_EQ(window.cmdRecord.TextFont.Name, "Arial");
  EXPECT_EQ(window.cmdRecord.TextFont.Size, 8);
  EXPECT_EQ(window.Window.Place.Width, 11145);
}

TEST(Form_Load, CataloguesStandBeforeTheFirstListIsFilled) {
  TestWorkstation station;
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.disk.Put(TestWorkstation::InLog("26111500", "auser.txt"), "21.4");
  station.disk.Put(std::string(TestWorkstation::kExePath) + "logbook.ini",
                   "[Header3]\r\nCat=Meter\r\nItem=0\r\n");
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  EXPECT_EQ(station.state.ListView1.Column(3).Text, "Inlet Temp (degC)");
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(2), "21");
  EXPECT_EQ(station.state.catalogues.ItemHeaders[16], "Lenses ware cleaned.");
}

TEST(Form_Load, EnabledContentServerLearnsTheMainWindow) {
  TestWorkstation station;
  station.ecm.enabled = true;
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled", "EcmSetOwnerWindow 4711"));
}

TEST(Form_Load, ContentServerThatIsOffLearnsNothing) {
  TestWorkstation station;
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled"));
}

TEST(Form_Load, AutoRecRecordsOneLogAndEndsWithoutArrangingAWindow) {
  TestWorkstation station;
  AnswerCell(station);
  EXPECT_EQ(StartWith(station, "HOST AutoRec"), 0);
  EXPECT_THAT(station.RootEntries(), ElementsAre("26111500", "listlog.csv"));
  EXPECT_THAT(station.forms.calls, testing::Contains("ShowLogEditor (no caption)"));
  EXPECT_THAT(station.forms.calls, testing::Not(testing::Contains("SetMainSize")));
  EXPECT_THAT(station.cell.written, ElementsAre("1", "9"));
}

TEST(Form_Load, ListStandsBeforeAnAutomaticRecording) {
  TestWorkstation station;
  AnswerCell(station);
  station.MakeLog("26111400", "11/14/2026 05:09:59");
  int rows = 0;
  std::string list;
  station.cell.on_written = [&](const std::string& text) {
    if (text != "1") return;
    rows = static_cast<int>(station.state.ListView1.Rows.size());
    list = station.disk.Get(std::string(TestWorkstation::kLogRoot) + "listlog.csv");
  };
  EXPECT_EQ(StartWith(station, "HOST AutoRec"), 0);
  EXPECT_EQ(rows, 1);
  EXPECT_NE(list.find(",26111400,"), std::string::npos) << list;
}

TEST(Form_Load, MainWindowIsPlacedInTheMiddleAndRaised) {
  TestWorkstation station;
  station.windows.positions[4711] = {10, 20, 753, 475};
  EXPECT_EQ(StartWith(station, "HOST"), -1);
  const PixelRect& place = station.windows.positions[4711];
  EXPECT_EQ(place.Left, 588);
  EXPECT_EQ(place.Top, 312);
  EXPECT_THAT(station.windows.calls, ElementsAre("SetBand 4711 normal", "SetBand 4711 normal"));
}

TEST(GlobalEnd, EndsAfter200000PollsWhenTheCellNeverLeaves9) {
  TestWorkstation station;
  station.events.limit = 300000;
  EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
  EXPECT_EQ(station.events.delivered, 200000);
  EXPECT_EQ(station.cell.text, "9");
}

TEST(GlobalEnd, SeesACellThatIsClearedAtTheLastPollAndNoneBehindIt) {
  for (const int cleared : {199999, 200000, 200001}) {
    TestWorkstation station;
    station.events.limit = 300000;
    station.events.on_deliver = [&](int delivery) {
      if (delivery == cleared) station.cell.text = "0";
    };
    EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
    EXPECT_EQ(station.events.delivered, std::min(cleared, 200000));
    EXPECT_EQ(station.cell.text, cleared > 200000 ? "9" : "0");
  }
}

TEST(GlobalEnd, WaitsUntilTheHostHasClearedTheCell) {
  TestWorkstation station;
  station.cell.text = "1";
  station.events.on_deliver = [&](int delivery) {
    if (delivery < 40) {
      EXPECT_TRUE(station.cell.written.empty());
    }
    if (delivery == 40) station.cell.text = "0";
    if (station.cell.text == "9") station.cell.text = "0";
  };
  EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
  EXPECT_THAT(station.cell.written, ElementsAre("9"));
  EXPECT_EQ(station.events.delivered, 41);
}

TEST(GlobalEnd, FailingCellEndsTheProgramWithoutFurtherWaiting) {
  TestWorkstation station;
  station.cell.fails_on_read = true;
  try {
    GlobalEnd(station.state, station.services);
  } catch (const ProcessEnded& end) {
    EXPECT_EQ(end.status, 0);
  }
  EXPECT_EQ(station.events.delivered, 0);
}

TEST(GlobalEnd, CellThatNoHostCanReachAnyMoreIsNotWaitedFor) {
  TestWorkstation station;
  station.cell.text = "1";
  station.events.on_deliver = [&](int delivery) { station.cell.reachable = delivery < 3; };
  EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
  EXPECT_EQ(station.events.delivered, 3);
  EXPECT_TRUE(station.cell.written.empty());
}

TEST(GlobalEnd, NumberInTheCellThatIsTooLargeIsWaitedForLikeAnyOther) {
  TestWorkstation station;
  station.cell.text = "1e999";
  station.events.on_deliver = [&](int delivery) {
    if (delivery < 3) {
      EXPECT_TRUE(station.cell.written.empty());
    }
    if (delivery == 3) station.cell.text = "0";
    if (station.cell.text == "9") station.cell.text = "0";
  };
  EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
  EXPECT_THAT(station.cell.written, ElementsAre("9"));
  EXPECT_EQ(station.events.delivered, 4);
}

TEST(GlobalEnd, AnyOtherNumberThanNineEndsTheSecondWait) {
  for (const char* answer : {"5", "1", "-9", "1e999", "90"}) {
    TestWorkstation station;
    station.events.on_deliver = [&](int) { station.cell.text = answer; };
    EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
    EXPECT_EQ(station.events.delivered, 1) << answer;
    EXPECT_EQ(station.cell.text, answer);
  }
}

TEST(GlobalEnd, FailureDuringTheDeliveryOfEventsEndsTheProgramToo) {
  TestWorkstation station;
  station.events.on_deliver = [](int) { throw std::bad_alloc(); };
  EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
  EXPECT_EQ(station.events.delivered, 1);
}

TEST(GlobalEnd, MainWindowTakesNoFurtherInput) {
  TestWorkstation station;
  AnswerCell(station);
  EXPECT_THROW(GlobalEnd(station.state, station.services), ProcessEnded);
  EXPECT_FALSE(station.state.frmMain.Available);
}

TEST(Form_Unload, EndsTheRunAndDoesNotReachTheContentServer) {
  TestWorkstation station;
  AnswerCell(station);
  station.ecm.enabled = true;
  EXPECT_THROW(Form_Unload(station.state, station.services), ProcessEnded);
  EXPECT_TRUE(station.ecm.calls.empty());
}

TEST(RunHandler, ReportsAnUntrappedErrorAndEndsWithStatus1) {
  TestWorkstation station;
  try {
    RunHandler(station.services, [] { throw RunTimeError(ErrorNumber::kPathNotFound); });
    FAIL() << "the process went on";
  } catch (const ProcessEnded& end) {
    EXPECT_EQ(end.status, 1);
  }
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "Run-time error '76':\r\n\r\nPath not found");
  EXPECT_FALSE(station.messages.shown[0].Title.has_value());
}

// The text of the report on a handler that ends with this error.
template <typename Error>
std::string ReportOn(const Error& error) {
  TestWorkstation station;
  try {
    RunHandler(station.services, [&] { throw error; });
  } catch (const ProcessEnded& end) {
    EXPECT_EQ(end.status, 1);
  }
  EXPECT_EQ(station.messages.shown.size(), 1u);
  return station.messages.shown.empty() ? "" : station.messages.shown[0].Text;
}

TEST(RunHandler, ReportsErrorsOfTheLanguageInTheSameWay) {
  EXPECT_EQ(ReportOn(std::bad_alloc()), "Run-time error '7':\r\n\r\nOut of memory");
  EXPECT_EQ(ReportOn(std::out_of_range("at")), "Run-time error '51':\r\n\r\nInternal error");
}

TEST(RunHandler, GivesTheRaisersOwnDescription) {
  EXPECT_EQ(ReportOn(RunTimeError(ErrorNumber::kDeviceInputOutput, "no such host")),
            "Run-time error '57':\r\n\r\nno such host");
}

}  // namespace
}  // namespace logbook
