// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/CSVMan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/TestMachine.h"

namespace logbook {
namespace {

using test::TestMachine;

constexpr const char* kIni = "C:\\a.ini";

TEST(AnsiLen, CountsBytesOfTheCodePage) {
  TestMachine western(1252);
  TestMachine japanese(932);
  EXPECT_EQ(AnsiLen(western, ""), 0);
  EXPECT_EQ(AnsiLen(western, "aé€"), 3);
  EXPECT_EQ(AnsiLen(japanese, "aテ"), 3);
  EXPECT_EQ(AnsiLen(western, "テ"), 1);  // "?"
  EXPECT_EQ(AnsiLen(western, "（"), 1);
  EXPECT_EQ(AnsiLen(japanese, "（"), 2);
}

TEST(GetIniString, MissingFileGivesTheDefaultAndItsByteLength) {
  TestMachine disk;
  std::string value = "old";
  EXPECT_EQ(GetIniString(disk, "s", "k", "dé", value, kIni), 2);
  EXPECT_EQ(value, "dé");
  EXPECT_EQ(GetIniString(disk, "s", "k", "", value, kIni), 0);
  EXPECT_EQ(value, "");
}

TEST(GetIniString, ValueOf600BytesComesBackAsItsFirst511) {
  TestMachine disk;
  std::string bytes;
  for (int i = 0; i < 600; ++i) bytes += static_cast<char>('a' + i % 26);
  disk.Put(kIni, "[s]\r\nk=" + bytes + "\r\n");
  std::string value;
  EXPECT_EQ(GetIniString(disk, "s", "k", "", value, kIni), 511);
  EXPECT_EQ(value, bytes.substr(0, 511));
}

TEST(GetIniString, ValueIsConvertedFromTheCodePage) {
  TestMachine disk(932);
  disk.Put(kIni, "[s]\r\nk=\x83\x65\x83\x58\r\n");
  std::string value;
  EXPECT_EQ(GetIniString(disk, "S", "K", "", value, kIni), 4);
  EXPECT_EQ(value, "テス");
}

TEST(GetIniString, ValueEndsAtTheFirstNul) {
  TestMachine disk;
  disk.Put(kIni, std::string("[s]\r\nk=ab\0cd\r\n", 14));
  std::string value;
  EXPECT_EQ(GetIniString(disk, "s", "k", "", value, kIni), 2);
  EXPECT_EQ(value, "ab");
}

struct SplitCase {
  std::string text;
  std::size_t elements;
  std::vector<std::string> expected;
};

TEST(SplitFields, GivesTheFieldsThatFit) {
  const SplitCase cases[] = {
      {"", 3, {}},
      {"a", 3, {"a"}},
      {"a,b", 3, {"a", "b"}},
      {"a,b,c", 3, {"a", "b"}},
      {"a,b,", 4, {"a", "b"}},
      {",a", 4, {"", "a"}},
      {"a,,b", 4, {"a", "", "b"}},
      {",", 3, {""}},
      {",,", 4, {"", ""}},
      {"a,b,c", 2, {"a"}},
      {"a", 1, {}},
  };
  for (const SplitCase& each : cases) {
    std::vector<std::string> fields(each.elements, "old");
    const std::int16_t count = SplitFields(each.text, fields, ",");
    ASSERT_EQ(count, static_cast<std::int16_t>(each.expected.size())) << each.text;
    for (std::size_t i = 0; i < fields.size(); ++i)
      EXPECT_EQ(fields[i], i < each.expected.size() ? each.expected[i] : "old") << each.text;
  }
}

TEST(SplitFields, ArrayOfBounds0To200Takes200Fields) {
  std::string text;
  for (int i = 0; i < 300; ++i) text += std::to_string(i) + ",";
  std::array<std::string, 201> fields;
  EXPECT_EQ(SplitFields(text, fields, ","), 200);
  EXPECT_EQ(fields[199], "199");
  EXPECT_EQ(fields[200], "");
}

TEST(SplitFields, DelimiterMayBeNulOrLongerThanOneCharacter) {
  std::array<std::string, 5> fields;
  EXPECT_EQ(SplitFields(std::string_view("a\0b\0", 4), fields, std::string_view("\0", 1)), 2);
  EXPECT_EQ(fields[1], "b");
  EXPECT_EQ(SplitFields("a--b-c", fields, "--"), 2);
  EXPECT_EQ(fields[1], "b-c");
}

TEST(SplitFields, TextMayBeOneOfTheFields) {
  std::vector<std::string> fields = {"a long first field,a long second field", "", ""};
  EXPECT_EQ(SplitFields(fields[0], fields, ","), 2);
  EXPECT_EQ(fields[0], "a long first field");
  EXPECT_EQ(fields[1], "a long second field");
}

TEST(SplitFields, ArrayWithoutElementsTakesNothing) {
  EXPECT_EQ(SplitFields("a,b", {}, ","), 0);
}

struct PathCase {
  const char* path;
  const char* drive;
  const char* folder;
  const char* base;
  const char* extension;
};

TEST(SplitPath, TakesPathsApart) {
  const PathCase cases[] = {
      {"a.txt", "", "", "a", "txt"},
      {"C:a.txt", "C:", "", "a", "txt"},
      {"1:\\x", "", "", "x", ""},
      {"C:\\x.txt", "C:", "", "x", "txt"},
      {"C:\\a\\b\\c.d", "C:", "\\a\\b", "c", "d"},
      {"C:\\a\\b\\", "C:", "\\a", "b", ""},
      {"  z:\\a\\b  ", "z:", "\\a", "b", ""},
      {"a\\b\\c.txt", "", "a\\b", "c", "txt"},
      {"\\a\\b.c", "", "\\a", "b", "c"},
      {"abc.", "", "", "abc.", ""},
      {"a.b.c", "", "", "a.b", "c"},
      {"abc:def", "", "", "abc", ""},
      {"C:a:b", "C:", "", "a", ""},
      {"", "", "", "", ""},
      {"C:", "C:", "", "", ""},
      {".ini", "", "", "", "ini"},
      {".", "", "", ".", ""},
      {"..", "", "", ".", ""},
      {"a.b.", "", "", "a.", "b"},
      {"\\", "", "", "", ""},
      {"C:\\", "C:", "", "C:", ""},
      {"a\\", "", "a", "a", ""},
      {":a", "", "", "", ""},
      {"9:a.txt", "", "", "9", ""},
      {"a", "", "", "a", ""},
      {"\\\\server\\share\\f.txt", "", "\\\\server\\share", "f", "txt"},
      {" C:\\a b\\c d.e f ", "C:", "\\a b", "c d", "e f"},
      {"\tC:\\a\\b", "", "\\a", "b", ""},
      {"C:\\a\\b\t", "C:", "\\a", "b\t", ""},
      {"\ta.txt\t", "", "", "\ta", "txt\t"},
      {"A:\\b", "A:", "", "b", ""},
      {"a:\\b", "a:", "", "b", ""},
      {"Z:\\b", "Z:", "", "b", ""},
      {"z:b", "z:", "", "b", ""},
      {"@:\\b", "", "", "b", ""},
      {"[:\\b", "", "", "b", ""},
      {"`:\\b", "", "", "b", ""},
      {"{:\\b", "", "", "b", ""},
  };
  for (const PathCase& each : cases) {
    std::string drive = "old";
    std::string folder = "old";
    std::string base = "old";
    std::string extension = "old";
    SplitPath(each.path, drive, folder, base, extension);
    EXPECT_EQ(drive, each.drive) << each.path;
    EXPECT_EQ(folder, each.folder) << each.path;
    EXPECT_EQ(base, each.base) << each.path;
    EXPECT_EQ(extension, each.extension) << each.path;
  }
}

TEST(SplitPath, PathMayBeOneOfTheResults) {
  std::string path = "C:\\a folder with a name\\a file.txt";
  std::string drive, base, extension;
  SplitPath(path, drive, path, base, extension);
  EXPECT_EQ(path, "\\a folder with a name");
  EXPECT_EQ(base, "a file");
}

TEST(SplitPath, NameIsTheLastOf200Components) {
  std::string path = "C:";
  for (int i = 1; i <= 250; ++i) path += "\\" + std::to_string(i);
  std::string drive, folder, base, extension;
  SplitPath(path, drive, folder, base, extension);
  EXPECT_EQ(base, "199");
  EXPECT_TRUE(folder.ends_with("\\197\\198"));
}

TEST(LoadResText, MissingResourceReadsAsEmpty) {
  TestMachine disk;
  EXPECT_EQ(LoadResText(disk, "NO_SUCH", "LOGBOOK_RES"), "");
}

TEST(LoadResText, KeepsOneClosingNul) {
  TestMachine disk;
  const std::string text = LoadResText(disk, "IDRES_LOGBOOK_ARRANGE", "LOGBOOK_RES");
  EXPECT_TRUE(text.ends_with(std::string("1400,330\0", 9)));
}

TEST(TextOfResource, CutsTwoOrMoreClosingNulsToOneAndLeavesNulsAloneAsTheyAre) {
  TestMachine disk;
  const auto nuls = [](std::size_t count) { return std::string(count, '\0'); };
  for (const std::size_t count : {0u, 1u, 2u, 5u}) {
    EXPECT_EQ(TextOfResource(disk, "a" + nuls(count)), "a" + nuls(std::min<std::size_t>(count, 1)));
    EXPECT_EQ(TextOfResource(disk, nuls(count)), nuls(count)) << count;
  }
  EXPECT_EQ(TextOfResource(disk, "abc"), "abc");
  EXPECT_EQ(TextOfResource(disk, "a" + nuls(2) + "b" + nuls(2)), "a" + nuls(2) + "b" + nuls(1));
}

// Several values of one file cost one reading.
TEST(GetIniStringFrom, GivesWhatAFileOfTheseBytesGives) {
  const test::TestMachine machine;
  const std::string long_value(600, 'x');
  const std::string bytes = "[A]\r\nkey=\" value \"\r\nlong=" + long_value + "\r\nempty=\r\n";
  machine.Put("C:\\a.ini", bytes);
  for (const char* key : {"key", "KEY", "long", "empty", "none"}) {
    std::string from_file = "old", from_bytes = "old";
    const auto file_length = GetIniString(machine, "a", key, "default ", from_file, "C:\\a.ini");
    const auto bytes_length = GetIniStringFrom(machine, "a", key, "default ", from_bytes, bytes);
    EXPECT_EQ(from_bytes, from_file) << key;
    EXPECT_EQ(bytes_length, file_length) << key;
  }
}

}  // namespace
}  // namespace logbook
