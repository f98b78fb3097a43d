// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How a run of the logbook begins and ends, with the real programs.

#include "CellWatch.h"
#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using Words = std::vector<std::string>;

class StartAndEndTest : public WholeProgram {};

TEST_F(StartAndEndTest, ExitTellsTheHostWithNineAndEndsWhenItHasAnswered) {
  CellWatch cell(desktop());
  ChildProcess& host = work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(MainPage::Button::kExit);
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();
  WaitFor("the host's answer", [&] { return cell.Heard().size() >= 2; });
  EXPECT_EQ(cell.Heard(), (Words{"9", "0"}));
}

TEST_F(StartAndEndTest, CloseBoxDoesWhatExitDoes) {
  CellWatch cell(desktop());
  ChildProcess& host = work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Close();
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();
  WaitFor("the host's answer", [&] { return cell.Heard().size() >= 2; });
  EXPECT_EQ(cell.Heard(), (Words{"9", "0"}));
}

TEST_F(StartAndEndTest, WithoutAnAnswerToNineTheLogbookEndsAfterAWhile) {
  CellWatch cell(desktop());
  work().StartHost({"--dead"});
  const auto logbook = work().StartLogbook({kHostId});
  MainPage main(desktop());
  main.Press(MainPage::Button::kExit);
  cell.WaitFor("9");
  EXPECT_TRUE(logbook->Runs()) << "it waits for the host first";
  EXPECT_EQ(logbook->WaitForEnd(), 0);
}

TEST_F(StartAndEndTest, ExitWaitsForABusyHost) {
  CellWatch cell(desktop());
  work().StartHost({"--dead"});
  const auto logbook = work().StartLogbook({kHostId});
  MainPage main(desktop());
  cell.Set("5");
  main.Press(MainPage::Button::kExit);
  EXPECT_TRUE(NeverHolds([&] { return !logbook->Runs(); }, std::chrono::milliseconds(500)));
  EXPECT_EQ(cell.Heard(), Words{"5"});
  cell.Set("0");
  cell.WaitFor("9");
  cell.Set("0");
  EXPECT_EQ(logbook->WaitForEnd(), 0);
}

TEST_F(StartAndEndTest, SecondInstanceEndsSilentlyAndTheFirstLivesOn) {
  CellWatch cell(desktop());
  ChildProcess& host = work().StartHostWithLogbook();
  const MainPage main(desktop());
  const int first = cell.Owner();
  const auto second = work().StartLogbook({kHostId});
  EXPECT_EQ(second->WaitForEnd(), 0);
  EXPECT_EQ(second->Output(), "");
  EXPECT_TRUE(host.Runs());
  EXPECT_EQ(cell.Owner(), first);
  EXPECT_EQ(desktop().Windows(kMainTitle), std::vector<WindowId>{main.window()});
}

TEST_F(StartAndEndTest, EmptyCommandLineEndsSilently) {
  work().StartHost();
  const auto logbook = work().StartLogbook({});
  EXPECT_EQ(logbook->WaitForEnd(), 0);
  EXPECT_EQ(logbook->Output(), "");
}

TEST_F(StartAndEndTest, WithoutAHostItEndsSilently) {
  const auto logbook = work().StartLogbook({kHostId});
  EXPECT_EQ(logbook->WaitForEnd(), 0);
  EXPECT_EQ(logbook->Output(), "");
}

TEST_F(StartAndEndTest, HostOfAnotherIdIsNoHost) {
  work().StartHost();
  const auto logbook = work().StartLogbook({"OTHER"});
  EXPECT_EQ(logbook->WaitForEnd(), 0);
  EXPECT_EQ(logbook->Output(), "");
}

TEST_F(StartAndEndTest, DeafHostCountsAsNoneAfterFiveSeconds) {
  work().StartHost({"--deaf"});
  const auto begin = std::chrono::steady_clock::now();
  const auto logbook = work().StartLogbook({kHostId});
  EXPECT_EQ(logbook->WaitForEnd(), 0);
  EXPECT_EQ(logbook->Output(), "");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(StartAndEndTest, HelpAndVersionAreAnsweredOnTheTerminalWithoutADisplay) {
  Environment variables = work().Variables();
  variables["DISPLAY"] = std::nullopt;
  variables["QT_QPA_PLATFORM"] = std::nullopt;
  const auto help = RunCommand({LOGBOOK_PROGRAM, "--help"}, variables, desktop().NewFile("help"));
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("logbook HOST"), std::string::npos) << help.output;
  const auto version =
      RunCommand({LOGBOOK_PROGRAM, "--version"}, variables, desktop().NewFile("version"));
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output, "logbook " LOGBOOK_VERSION "\n");
}

}  // namespace
}  // namespace logbook::e2e
