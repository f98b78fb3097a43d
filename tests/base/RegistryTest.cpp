// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Registry.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "base/RegistryText.h"
#include "base/Utf8.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

constexpr char kKey[] = R"(SOFTWARE\Norvane Instruments\Quorex Tessaline\CurrentVersion)";

std::string Hive(const std::string& lines) {
  return "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\" + std::string(kKey) +
         "]\r\n" + lines;
}

std::string Utf16(const std::string& text) {
  std::string bytes = "\xFF\xFE";
  const auto put = [&bytes](char32_t unit) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  };
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = NextCharacter(text, position);
    if (character < 0x10000) {
      put(character);
    } else {
      put(0xD800 + ((character - 0x10000) >> 10));
      put(0xDC00 + (character & 0x3FF));
    }
  }
  return bytes;
}

using Text = std::optional<std::string>;

TEST(RegistryTest, ATextIsFoundInUtf16AndInUtf8WithOrWithoutAMark) {
  const std::string hive = Hive("\"Path\"=\"C:\\\\QUOREX\\\\Été 測定 😀\"\r\n");
  const Text expected = "C:\\QUOREX\\Été 測定 😀";
  EXPECT_EQ(FindRegistryText(hive, kKey, "Path"), expected);
  EXPECT_EQ(FindRegistryText("\xEF\xBB\xBF" + hive, kKey, "Path"), expected);
  EXPECT_EQ(FindRegistryText(Utf16(hive), kKey, "Path"), expected);
}

TEST(RegistryTest, KeysAndNamesAreComparedWithoutRegardToCase) {
  const std::string hive = Hive("\"Path\"=\"x\"\r\n\"Été\"=\"y\"\r\n");
  EXPECT_EQ(FindRegistryText(
                hive, R"(software\NORVANE instruments\quorex TESSALINE\currentversion)", "PATH"),
            Text("x"));
  EXPECT_EQ(FindRegistryText(hive, kKey, "ÉTÉ"), Text("y"));
}

TEST(RegistryTest, EachFormOfATextIsRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"\"v\"=\"plain\"", "plain"},
      {"\"v\"=\"\"", ""},
      {"\"v\"=\"say \\\"hi\\\" \\\\o\"", "say \"hi\" \\o"},
      {"\"v\"=\"two\r\nlines\"", "two\r\nlines"},
      {"  \"v\" = \"blanks\"", "blanks"},
      {"\"v\"=\"x\" ; note", "x"},
      {"\"v\"=hex(2):25,00,41,00,\\\r\n  25,00,00,00", "%A%"},
      {"\"v\"=hex(1):e9,00,00,00", "é"},
      {"\"v\"=hex(2):", ""},
      {"\"v\"=\"old\"\r\n\"V\"=\"new\"", "new"},
  };
  for (const auto& [lines, value] : cases) {
    EXPECT_EQ(FindRegistryText(Hive(lines), kKey, "v"), Text(value)) << lines;
  }
}

// The value of these units of sixteen bits.
Text ReadUnits(const std::vector<int>& units) {
  std::string bytes;
  for (const int unit : units) {
    char text[8];
    std::snprintf(text, sizeof text, "%02x,%02x,", unit & 0xFF, unit >> 8);
    bytes += text;
  }
  bytes.pop_back();
  return FindRegistryText(Hive("\"v\"=hex(1):" + bytes), kKey, "v");
}

TEST(RegistryTest, APairOfUnitsIsACharacterAndHalfOfOneIsTheReplacement) {
  const std::string none = "\xEF\xBF\xBD";
  const std::pair<std::vector<int>, std::string> cases[] = {
      {{0xD800, 0xDC00}, "\U00010000"},
      {{0xDBFF, 0xDFFF}, "\U0010FFFF"},
      {{0xD83D, 0xDE00, 'a'}, "\U0001F600a"},
      {{0xD7FF, 0xE000}, "\xED\x9F\xBF\xEE\x80\x80"},
      {{0xD800, 'a'}, none + "a"},
      {{0xD800}, none},
      {{0xDBFF, 0xE000}, none + "\xEE\x80\x80"},
      {{0xD800, 0xDBFF}, none + none},
      {{0xD800, 0xD800, 0xDC00}, none + "\U00010000"},
      {{0xDC00, 0xDC00}, none + none},
      {{0xDFFF, 'a'}, none + "a"},
      {{'a', 0xDC00}, "a" + none},
      {{0xDBFF, 0xDC00, 0xDC00}, "\U0010FC00" + none},
  };
  for (const auto& [units, text] : cases)
    EXPECT_EQ(ReadUnits(units), Text(text)) << testing::PrintToString(units);
}

TEST(RegistryTest, AnOddByteAtTheEndIsDroppedAndWhatIsNoByteEndsTheList) {
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=hex(1):41,00,42"), kKey, "v"), Text("A"));
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=hex(1):41,00,100,42"), kKey, "v"), Text("A"));
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=hex(1):41,00,x,42"), kKey, "v"), Text("A"));
}

TEST(RegistryTest, AQuoteBehindABackslashEndsNoTextNotEvenTheFilesLast) {
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=\"a\\\""), kKey, "v"), std::nullopt);
}

TEST(RegistryTest, TheDefaultValueOfAKeyHasAnEmptyName) {
  EXPECT_EQ(FindRegistryText(Hive("@=\"standard\"\r\n\"v\"=\"x\""), kKey, ""), Text("standard"));
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=\"x\""), kKey, ""), std::nullopt);
}

TEST(RegistryTest, ANameMayHoldQuotesBackslashesAndEqualsSigns) {
  EXPECT_EQ(FindRegistryText(Hive("\"a=\\\"b\\\\\"=\"x\""), kKey, "a=\"b\\"), Text("x"));
}

TEST(RegistryTest, AValueThatIsNoTextIsNone) {
  for (const char* lines :
       {"\"v\"=dword:0000000a", "\"v\"=hex:01,02,\\\r\n  03", "\"v\"=hex(7):41,00,00,00,00,00",
        "\"v\"=hex(b):01,00,00,00,00,00,00,00", "\"v\"=\"old\"\r\n\"v\"=dword:00000001"}) {
    EXPECT_EQ(FindRegistryText(Hive(lines), kKey, "v"), std::nullopt) << lines;
  }
}

TEST(RegistryTest, BytesThatGoOnInTheNextLineDoNotHideWhatFollows) {
  EXPECT_EQ(
      FindRegistryText(Hive("\"b\"=hex:01,\\\r\n  02,\\\r\n  03\r\n\"v\"=\"x\"\r\n"), kKey, "v"),
      Text("x"));
}

TEST(RegistryTest, ADeletionTakesValuesAndKeysAwayAndLaterLinesCount) {
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=\"x\"\r\n\"v\"=-\r\n"), kKey, "v"), std::nullopt);
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=-\r\n\"v\"=\"x\"\r\n"), kKey, "v"), Text("x"));
  const std::string set = Hive("\"v\"=\"x\"\r\n");
  const std::string key = kKey;
  EXPECT_EQ(FindRegistryText(set + "[-HKEY_LOCAL_MACHINE\\" + key + "]\r\n", kKey, "v"),
            std::nullopt);
  EXPECT_EQ(FindRegistryText(set + "[-HKEY_LOCAL_MACHINE\\software]\r\n", kKey, "v"), std::nullopt);
  EXPECT_EQ(FindRegistryText(set + "[-HKEY_LOCAL_MACHINE\\soft]\r\n", kKey, "v"), Text("x"));
  EXPECT_EQ(FindRegistryText(set + "[-HKEY_LOCAL_MACHINE\\" + key + "\\Sub]\r\n", kKey, "v"),
            Text("x"));
  EXPECT_EQ(FindRegistryText("[-HKEY_LOCAL_MACHINE\\software]\r\n\"v\"=\"y\"\r\n" + set, kKey, "v"),
            Text("x"));
}

TEST(RegistryTest, OnlyTheKeyItselfCountsAndOnlyBelowTheLocalMachine) {
  const std::string key = kKey;
  const std::string others = "[HKEY_CURRENT_USER\\" + key + "]\r\n\"v\"=\"user\"\r\n" +
                             "[HKEY_LOCAL_MACHINE\\" + key + "\\Sub]\r\n\"v\"=\"below\"\r\n" +
                             "[HKEY_LOCAL_MACHINE\\SOFTWARE]\r\n\"v\"=\"above\"\r\n";
  EXPECT_EQ(FindRegistryText(others, kKey, "v"), std::nullopt);
  EXPECT_EQ(FindRegistryText(Hive("\"v\"=\"x\"\r\n") + others, kKey, "v"), Text("x"));
}

TEST(RegistryTest, CommentsBlankLinesAndUnreadableLinesArePassedOver) {
  const std::string lines =
      "; \"v\"=\"comment\"\r\n\r\nrubbish\r\n\"v\r\n\"v\"\r\n\"v\"=rubbish\r\n=\r\n[\r\n";
  EXPECT_EQ(FindRegistryText(Hive("; \"v\"=\"comment\"\r\n\r\nrubbish\r\n\"v\"=\"x\""), kKey, "v"),
            Text("x"));
  EXPECT_EQ(FindRegistryText(Hive(lines), kKey, "v"), std::nullopt);
}

TEST(RegistryTest, TheOlderFormOfTheFileHasBytesInsteadOfDoubleBytes) {
  const std::string key = kKey;
  const std::string hive =
      "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\" + key + "]\n\"v\"=hex(2):25,41,25,00\n";
  EXPECT_EQ(FindRegistryText(hive, kKey, "v"), Text("%A%"));
}

TEST(RegistryTest, EveryPrefixOfAGoodFileIsReadWithoutFault) {
  const std::string hive = Hive(
      "@=\"standard\"\r\n\"a\"=hex(2):25,00,\\\r\n  "
      "41,00\r\n\"d\"=dword:00000001\r\n\"v\"=\"x\\\\\"");
  for (const std::string& whole : {hive, Utf16(hive), "\xEF\xBB\xBF" + hive}) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      const Text value = FindRegistryText(std::string(whole, 0, length), kKey, "v");
      EXPECT_TRUE(!value || *value == "x\\") << length;
    }
    EXPECT_EQ(FindRegistryText(whole, kKey, "v"), Text("x\\"));
  }
}

TEST(RegistryTest, TheHiveIsTheFileMachineRegInTheHomeAndIsReadAtEachCall) {
  const TestMachine machine;
  EXPECT_EQ(ReadMachineRegistry(machine.home(), kKey, "v"), std::nullopt);
  std::ofstream(machine.home() + "/machine.reg") << Hive("\"v\"=\"one\"\r\n");
  EXPECT_EQ(ReadMachineRegistry(machine.home(), kKey, "v"), Text("one"));
  std::ofstream(machine.home() + "/machine.reg") << Hive("\"v\"=\"two\"\r\n");
  EXPECT_EQ(ReadMachineRegistry(machine.home(), kKey, "v"), Text("two"));
}

}  // namespace
}  // namespace logbook::test
