// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Which calls of the platform the real program makes for help and for placing its windows: a
// recorder stands where the help engine is looked for (CallRecorder.cpp).

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "win32/LogbookAtHost.h"

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

constexpr char kCloseAll[] = "HtmlHelp 1 1 18 0";

class PlatformCallsTest : public LogbookAtHost {
 protected:
  PlatformCallsTest() {
    AddRegistryValue("Path", "C:\\\\QUOREX\\\\");
    AddLog("26111500");
    SetEnvironmentVariableA("LOGBOOK_CALLS", calls_file_.string().c_str());
    const fs::path folder = fs::path(disk.home()) / "program";
    fs::create_directory(folder);
    fs::copy_file(BesideThisProgram("recorder/hhctrl.ocx"), folder / "hhctrl.ocx");
    fs::copy_file(BesideThisProgram("logbook.exe"), folder / "logbook.exe");
    fs::create_directory(folder / "manual");
    for (const auto& page : fs::directory_iterator(BesideThisProgram("manual")))
      if (page.is_regular_file()) fs::copy_file(page, folder / "manual" / page.path().filename());
    program_ = (folder / "logbook.exe").string();
  }
  ~PlatformCallsTest() override { SetEnvironmentVariableA("LOGBOOK_CALLS", nullptr); }

  void StartRecorded(const std::string& arguments = "HOST") { Start(arguments, program_); }
  // The help file that the workstation's settings name. Returns the name by which the system knows
  // it.
  std::string PutHelpFile(const std::string& name) {
    disk.Put("C:\\QUOREX\\qrxexe\\qrxgen.ist",
             "[PCS,1]\r\n_HELPPATH$=C:\\QUOREX\\help\r\n_HELPFILE$=" + name + "\r\n");
    disk.Put("C:\\QUOREX\\help\\" + name, "help");
    return fs::path(disk.Native("C:\\QUOREX\\help\\" + name)).make_preferred().string();
  }
  // The calls so far that begin so.
  std::vector<std::string> Calls(const std::string& beginning) const {
    std::vector<std::string> calls;
    std::istringstream lines(fs::exists(calls_file_) ? disk.Get(calls_file_.string()) : "");
    for (std::string line; std::getline(lines, line);)
      if (line.starts_with(beginning)) calls.push_back(line);
    return calls;
  }
  // The calls of a routine from the given one on, once there are so many.
  std::vector<std::string> NextCalls(const std::string& routine, std::size_t from,
                                     std::size_t count) {
    WaitFor("calls of " + routine, [&] { return Calls(routine).size() >= from + count; });
    std::vector<std::string> calls = Calls(routine);
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(from));
    return calls;
  }
  static RECT PlaceOf(HWND window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    return placement.rcNormalPosition;
  }
  static bool IsInTheMiddle(HWND window) {
    RECT area = {};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    const RECT place = PlaceOf(window);
    const auto is_middle = [](LONG begin, LONG size, LONG room) {
      return std::abs(begin - (room - size) / 2) <= 1;
    };
    return is_middle(place.left, place.right - place.left, area.right - area.left) &&
           is_middle(place.top, place.bottom - place.top, area.bottom - area.top);
  }
  static std::string NumberOf(HWND window) {
    return std::to_string(reinterpret_cast<std::intptr_t>(window));
  }
  void ExpectRaisedInTheMiddle(const std::string& name, HWND window) {
    SCOPED_TRACE(name);
    const std::string raised = "SetWindowPos " + NumberOf(window) + " 0 0 0 0 0 3";
    WaitFor("the raising of the " + name, [&] { return Calls(raised).size() >= 2; });
    WaitFor("the " + name + " in the middle", [&] { return IsInTheMiddle(window); });
    EXPECT_TRUE(WasPlacedThere(window))
        << testing::PrintToString(Calls("SetWindowPlacement " + NumberOf(window)));
    TakePicture(name, window);
  }
  // Whether the program has asked for the place where the window is. With more dots to the inch,
  // the toolkit counts in more than one of them, and may move a window by one.
  bool WasPlacedThere(HWND window) const {
    const RECT place = PlaceOf(window);
    const LONG slack = DotsPerInch() == 96 ? 0 : 1;
    const std::string routine = "SetWindowPlacement " + NumberOf(window) + " 44 ";
    for (const std::string& call : Calls(routine)) {
      RECT asked = {};
      std::istringstream(call.substr(routine.size())) >> asked.left >> asked.top >> asked.right >>
          asked.bottom;
      if (std::abs(asked.left - place.left) <= slack && std::abs(asked.top - place.top) <= slack &&
          std::abs(asked.right - place.right) <= slack &&
          std::abs(asked.bottom - place.bottom) <= slack)
        return true;
    }
    return false;
  }
  // Where LOGBOOK_PICTURES names a folder: the window as the screen shows it, once that stays.
  void TakePicture(const std::string& name, HWND window) {
    const char* folder = std::getenv("LOGBOOK_PICTURES");
    if (folder == nullptr) return;
    std::string picture, before;
    WaitFor("a picture of the " + name, [&] {
      before = std::exchange(picture, PictureOf(window));
      return !picture.empty() && picture == before;
    });
    std::ofstream(fs::path(folder) / (name + ".bmp"), std::ios::binary) << picture;
  }

 private:
  const fs::path calls_file_ = fs::path(disk.home()) / "calls";
  std::string program_;
};

using Lines = std::vector<std::string>;

TEST_F(PlatformCallsTest, HtmlHelpOpensEachTopicInAFreshWindowAndIsEndedWithItsCookie) {
  const std::string file = PutHelpFile("quorex.chm");
  const auto topic = [&](const char* number) {
    return Lines{kCloseAll, "HtmlHelp desktop " + file + " 1 1",
                 "HtmlHelp desktop " + file + " 15 " + number};
  };
  StartRecorded();
  EXPECT_EQ(Calls("HtmlHelp"), Lines{"HtmlHelp 1 1 28 0"});
  Click(main(), kHelp);
  EXPECT_EQ(NextCalls("HtmlHelp", 1, 3), topic("16700"));
  const HWND viewer = View();
  Click(viewer, kViewerHelp);
  EXPECT_EQ(NextCalls("HtmlHelp", 4, 3), topic("16701"));
  Click(viewer, kViewerExit);
  WaitFor("the end of the viewer", [&] { return IsWindowEnabled(main()); });
  Exit();
  EXPECT_EQ(NextCalls("HtmlHelp", 7, 2), (Lines{kCloseAll, "HtmlHelp 1 1 29 4711"}));
  EXPECT_EQ(Calls("WinHelp"), Lines{});
}

TEST_F(PlatformCallsTest, UnderCeTheViewerHasATopicOfItsOwn) {
  const std::string file = PutHelpFile("quorex.chm");
  StartRecorded("HOST CE");
  Click(View(), kViewerHelp);
  EXPECT_EQ(NextCalls("HtmlHelp", 1, 3).back(), "HtmlHelp desktop " + file + " 15 16702");
}

TEST_F(PlatformCallsTest, AFileOfTheOlderKindGoesToWinHelpWhichIsToldToQuit) {
  const std::string file = PutHelpFile("quorex.HLP");
  StartRecorded();
  const std::string window = NumberOf(main());
  Click(main(), kHelp);
  EXPECT_EQ(NextCalls("WinHelp", 0, 1), Lines{"WinHelp " + window + " " + file + " 15 16700"});
  Exit();
  EXPECT_EQ(NextCalls("WinHelp", 1, 1), Lines{"WinHelp " + window + "  2 0"});
  EXPECT_EQ(Calls("HtmlHelp"), (Lines{"HtmlHelp 1 1 28 0", kCloseAll, "HtmlHelp 1 1 29 4711"}));
}

TEST_F(PlatformCallsTest, AMissingHelpFileIsShownByNoEngine) {
  PutHelpFile("quorex.chm");
  fs::remove(disk.Native("C:\\QUOREX\\help\\quorex.chm"));
  StartRecorded();
  Click(main(), kHelp);
  EXPECT_NE(WaitForWindow("Maintenance LogBook Manual"), nullptr);
  EXPECT_EQ(Calls("HtmlHelp"), (Lines{"HtmlHelp 1 1 28 0", kCloseAll}));
}

// Each of the four: the band, the place, and the top of the band once more.
TEST_F(PlatformCallsTest, WindowsAreRaisedAndStandInTheMiddleOfTheWorkArea) {
  StartRecorded();
  ExpectRaisedInTheMiddle("main", main());

  const HWND viewer = View();
  ExpectRaisedInTheMiddle("viewer", viewer);
  Click(viewer, kMaintenance);
  TakePicture("viewer-with-report", viewer);
  Click(viewer, kViewerExit);
  WaitFor("the end of the viewer", [&] { return IsWindowEnabled(main()); });

  Click(main(), kItemHeader);
  const HWND chooser = WaitForWindow("Change List Item");
  ExpectRaisedInTheMiddle("chooser", chooser);
  Click(chooser, kChooserCancel);
  WaitFor("the end of the chooser", [&] { return IsWindowEnabled(main()); });

  Click(main(), kRecordLog);
  WaitFor("the capture", [&] { return host().Heard() == Lines{"1"}; });
  WriteSnapshot(FolderOfJob());
  host().WriteCell("0");
  const HWND editor = WaitForWindow("");
  ExpectRaisedInTheMiddle("editor", editor);
  Click(editor, kEditorCancel);
  WaitFor("the end of the editor", [&] { return IsWindowEnabled(main()); });
}

TEST_F(PlatformCallsTest, AViewerThatWasMovedReturnsWhenItIsActivated) {
  StartRecorded();
  const HWND viewer = View();
  WaitFor("the place in the middle", [&] { return IsInTheMiddle(viewer); });
  const HWND other = CreateWindowA("STATIC", "another program", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                   0, 300, 200, nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(other);
  WaitFor("the other program", [&] { return GetForegroundWindow() == other; });
  SetWindowPos(viewer, nullptr, 3, 5, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  WaitFor("its moving", [&] { return PlaceOf(viewer).left == 3; });
  SetForegroundWindow(viewer);
  WaitFor("its return", [&] { return IsInTheMiddle(viewer); });
  DestroyWindow(other);
}

}  // namespace
}  // namespace logbook::windows_test
