// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Recording with the real programs: what the user does, and every byte that lands on the disk.

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <set>

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using Files = std::map<std::string, std::string>;

const std::string kHeaderLine =
    "Date Logged,Logbook Folder,Item 1,Item 2,Item 3,Item 4,Item 5,Item 6,Comment\r\n";

// The value of a line "key=value" in a profile's bytes.
std::string ValueOf(const std::string& profile, const std::string& key) {
  const std::size_t start = profile.find("\n" + key + "=");
  if (start == std::string::npos) return {};
  const std::size_t value = start + key.size() + 2;
  return profile.substr(value, profile.find("\r\n", value) - value);
}

std::string Ticks(const std::set<int>& ticked) {
  std::string lines = "[Maintenance]\r\n";
  for (int i = 0; i < 18; ++i) {
    lines += "Item" + std::to_string(i) + (ticked.count(i) != 0 ? "=1\r\n" : "=0\r\n");
  }
  return lines;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
    lines.push_back(text.substr(start, end - start));
  }
  lines.push_back(text.substr(start));
  return lines;
}

class RecordTest : public ReadableProgram {
 protected:
  std::string Get(const std::string& path) { return work().machine().Get(path); }
};

// The snapshot that the host wrote is that of one of the seconds of the recording.
void ExpectSnapshotOf(Workplace& work, const Files& log, const std::string& name, std::time_t from,
                      std::time_t to) {
  Files closest;
  for (std::time_t moment = from; moment <= to; ++moment) {
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", std::localtime(&moment));
    const std::string folder = "C:\\snapshot\\" + std::to_string(moment);
    work.RunHost({"snapshot", "--folder", folder, "--log-number", "0", "--date", date});
    closest = work.FilesIn(folder);
    closest.erase("logfile.ini");
    const bool equal = std::all_of(closest.begin(), closest.end(), [&](const auto& file) {
      const auto found = log.find(file.first);
      return found != log.end() && found->second == file.second;
    });
    if (equal) {
      EXPECT_EQ(log.size(), closest.size() + 2) << "files beside the snapshot in " << name;
      return;
    }
  }
  for (const auto& [file, bytes] : closest) {
    ASSERT_TRUE(log.count(file)) << "no " << file;
    EXPECT_EQ(log.at(file), bytes) << file;
  }
}

// logfile.ini as a whole, with its sections in the order of their making.
void ExpectLogFileIni(const std::string& ini, const std::set<int>& ticked) {
  std::string options = "[OPTION]\r\n";
  for (const char* key : {"LENS", "LENS2", "LENS3", "Security", "STYLEB", "NEW_RF", "QPTYPE", "AFC",
                          "SC", "OPGS", "PMP2", "COLOPGS"}) {
    options += std::string(key) + "=" + ValueOf(ini, key) + "\r\n";
    EXPECT_FALSE(ValueOf(ini, key).empty()) << key;
  }
  EXPECT_EQ(ini, "[LogFile]\r\nDate=" + ValueOf(ini, "Date") + "\r\n" + options + Ticks(ticked));
}

// comment.txt as a whole: a paragraph that the box has wrapped, one line typed behind it, and the
// last line end.
void ExpectComment(const std::string& comment, const std::string& paragraph,
                   const std::string& last_line) {
  constexpr std::size_t kMostInALine = 80;
  const std::vector<std::string> lines = Lines(comment);
  ASSERT_GE(lines.size(), 5u) << comment;
  EXPECT_EQ(lines.back(), "");
  EXPECT_EQ(lines.at(lines.size() - 2), last_line);
  const std::vector<std::string> wrapped(lines.begin(), lines.end() - 2);
  std::string joined;
  for (const std::string& line : wrapped) {
    joined += line;
    EXPECT_LE(line.size(), kMostInALine) << "wider than the box";
    if (&line != &wrapped.back()) {
      EXPECT_EQ(line.back(), ' ') << "wrapped inside a word";
    }
  }
  EXPECT_EQ(joined, paragraph);
}

TEST_F(RecordTest, InteractiveRecordLeavesTheseBytesAndNoOthers) {
  // A new workstation whose user has chosen no columns.
  std::remove(work().machine().Native(kExePath + std::string("logbook.ini")).c_str());
  const Files before = work().FilesIn("C:\\");
  work().StartHostWithLogbook();
  MainPage main(desktop());
  EXPECT_EQ(Get(kLogRoot + std::string("listlog.csv")), kHeaderLine);

  const std::time_t pressed = std::time(nullptr);
  const std::string name = PressRecord(work(), main);
  const std::string folder = kLogRoot + name + "\\";
  EditorPage editor(desktop(), folder);
  const std::time_t opened = std::time(nullptr);

  editor.Tick(2);
  editor.Tick(9);
  const std::string paragraph =
      "Cones replaced after the oxide ratio had crept up over the last three weeks; the sampling "
      "cone showed a worn orifice, the skimmer only deposits. New torch seated, alignment checked, "
      "plasma lit at the first try and left to settle for half an hour before tuning.";
  const std::string last_line = "Next check: in two weeks.";
  editor.ClickComment();
  desktop().Type(paragraph + "\n" + last_line);
  editor.PressOK();
  desktop().WaitUntilGone(editor.window());
  WaitFor("the list with the new row",
          [&] { return Lines(Get(kLogRoot + std::string("listlog.csv"))).size() == 3; });

  EXPECT_TRUE(name == DayName(pressed) + "00" || name == DayName(opened) + "00") << name;
  const Files log = work().FilesIn(folder);
  const std::string date = ValueOf(log.at("logfile.ini"), "Date");
  EXPECT_GE(TimeOfDate(date), pressed);
  EXPECT_LE(TimeOfDate(date), opened);
  ExpectLogFileIni(log.at("logfile.ini"), {2, 9});
  ExpectComment(log.at("comment.txt"), paragraph, last_line);
  EXPECT_EQ(
      Get(kExePath + std::string("logbook.ini")),
      "[LogBook]\r\nLogFileName=" + folder + "\r\nLastFile=" + folder + "\r\n" + Ticks({2, 9}));
  EXPECT_EQ(
      Get(kLogRoot + std::string("listlog.csv")),
      kHeaderLine + date + "," + name + ",,,,,,," + Lines(log.at("comment.txt")).front() + "\r\n");

  // Nothing else has come, gone or changed.
  Files after = work().FilesIn("C:\\");
  after.erase("QUOREX/qrxexe/logbook.ini");
  after.erase("QUOREX/inst1/maintain/listlog.csv");
  for (const auto& [file, bytes] : log) after.erase("QUOREX/inst1/maintain/" + name + "/" + file);
  EXPECT_EQ(after, before);

  ExpectSnapshotOf(work(), log, name, pressed, opened);
}

TEST_F(RecordTest, EscapeInTheEditorLeavesNoLogAndKeepsTheTicksOfTheLastRecord) {
  work().StartHostWithLogbook();
  MainPage main(desktop());
  const std::string first = PressRecord(work(), main);
  {
    EditorPage editor(desktop(), kLogRoot + first + "\\");
    editor.Tick(2);
    editor.Tick(9);
    editor.PressOK();
    desktop().WaitUntilGone(editor.window());
  }
  WaitForButton("Record Log");
  const std::string list = Get(kLogRoot + std::string("listlog.csv"));
  const std::string profile = Get(kExePath + std::string("logbook.ini"));

  const std::string second = PressRecord(work(), main);
  {
    EditorPage editor(desktop(), kLogRoot + second + "\\");
    editor.Tick(0);
    editor.Tick(9);
    desktop().Key("Escape");
    desktop().WaitUntilGone(editor.window());
  }
  WaitForButton("Record Log");
  EXPECT_EQ(work().Logs(), std::vector<std::string>{first});
  EXPECT_EQ(Get(kLogRoot + std::string("listlog.csv")), list);
  // "LogFileName" alone was written before the editor opened.
  const std::string old_name = "LogFileName=" + (kLogRoot + first) + "\\";
  const std::string new_name = "LogFileName=" + (kLogRoot + second) + "\\";
  std::string expected = profile;
  expected.replace(expected.find(old_name), old_name.size(), new_name);
  EXPECT_EQ(Get(kExePath + std::string("logbook.ini")), expected);

  const std::string third = PressRecord(work(), main);
  EXPECT_EQ(third, second) << "the number of the cancelled record is free again";
  EditorPage editor(desktop(), kLogRoot + third + "\\");
  for (const Readable& box : reader().Read()) {
    if (box.role != "check box") continue;
    EXPECT_EQ(box.checked, box.name == "Change Cones" || box.name == "Change Torch") << box.name;
  }
  reader().WaitFor("check box", "Change Cones");
}

TEST_F(RecordTest, AutomaticRecordShowsNoWindowAndIsComplete) {
  const std::vector<WindowId> before = desktop().Windows();
  ChildProcess& host = work().StartHostWithLogbook({"--autorec", "--slow", "300"});
  int looks = 0;
  while (host.Runs()) {
    ++looks;
    EXPECT_EQ(desktop().Windows(), before);
  }
  EXPECT_GT(looks, 3) << "nobody has looked";
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();

  ASSERT_EQ(work().Logs().size(), 1u);
  const Files log = work().FilesIn(kLogRoot + work().Logs().front());
  EXPECT_EQ(log.at("comment.txt"), "Automatically logged on Tune Report generation.\r\n");
  const std::string ini = log.at("logfile.ini");
  EXPECT_TRUE(ini.ends_with(Ticks({}))) << ini;
  EXPECT_NE(ini.find("[OPTION]\r\nLENS="), std::string::npos) << ini;
  for (const char* file : {"auser.txt", "aall.txt", "bin.txt", "bout.txt", "sys.txt"}) {
    EXPECT_TRUE(log.count(file)) << file;
  }
  EXPECT_EQ(Lines(Get(kLogRoot + std::string("listlog.csv"))).size(), 3u);
}

// logbook.ini still names the record before, and cannot be written.
TEST_F(RecordTest, AFolderThatCannotBeNamedToTheHostEndsTheRunAndLeavesEveryRecordAsItIs) {
  EXPECT_EQ(work().StartHostWithLogbook({"--autorec"}).WaitForEnd(), 0);
  ASSERT_EQ(work().Logs().size(), 1u);
  const std::string older = kLogRoot + work().Logs().front() + "\\";
  const Files before = work().FilesIn(older);
  std::filesystem::permissions(work().machine().Native(kExePath + std::string("logbook.ini")),
                               std::filesystem::perms::owner_read);

  ChildProcess& host = work().StartHostWithLogbook();
  MainPage main(desktop());
  main.Press(MainPage::Button::kRecord);
  const MessagePage box(desktop(), main);
  reader().WaitFor("label", "Run-time error '75':\n\nPath/File access error");
  desktop().ClickScreen(reader().WaitFor("push button", "OK").place.Middle());
  EXPECT_EQ(host.WaitForEnd(), 1) << host.Output();
  EXPECT_EQ(work().FilesIn(older), before);
  EXPECT_EQ(host.Output().find("captured"), std::string::npos) << host.Output();
}

}  // namespace
}  // namespace logbook::e2e
