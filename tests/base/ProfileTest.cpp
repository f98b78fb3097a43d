// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Profile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "Vectors.h"
#include "base/Files.h"
#include "base/ProfileText.h"
#include "support/DiskCalls.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

constexpr char kFile[] = "C:\\folder\\test.ini";

std::string TextOf(const nlohmann::json& call, const char* name) {
  return call.at(name).is_string() ? call.at(name).get<std::string>() : std::string();
}

void CheckCall(const TestMachine& machine, const nlohmann::json& call, const std::string& id) {
  const std::string function = call.at("fn");
  const std::string section = call.at("section");
  const std::string key = call.at("key");
  if (function == "GetPrivateProfileStringA") {
    const std::string value = GetPrivateProfileString(
        machine, section, key, TextOf(call, "default"), call.at("size").get<std::size_t>(), kFile);
    EXPECT_EQ(ToHex(value), call.at("expect_hex").get<std::string>()) << id << " " << call;
    EXPECT_EQ(value.size(), call.at("return").get<std::size_t>()) << id;
  } else if (function == "GetPrivateProfileIntA") {
    EXPECT_EQ(GetPrivateProfileInt(machine, section, key, call.at("default"), kFile),
              call.at("return").get<int>())
        << id << " " << call;
  } else {
    ASSERT_EQ(function, "WritePrivateProfileStringA") << id;
    EXPECT_EQ(WritePrivateProfileString(machine, section, key, TextOf(call, "value"), kFile),
              call.at("return").get<int>() != 0)
        << id;
    if (call.at("file_after_hex").is_null()) {
      EXPECT_FALSE(machine.Has(kFile)) << id;
    } else {
      EXPECT_EQ(ToHex(machine.Get(kFile)), call.at("file_after_hex").get<std::string>()) << id;
    }
  }
}

TEST(ProfileTest, EveryRecordedCallGivesItsValueAndItsFile) {
  int count = 0;
  for (const auto& each : ReadCases("profile.json")) {
    const std::string id = each.at("id");
    const TestMachine machine(each.at("code_page"));
    if (id.find("nodir") == std::string::npos) machine.MakeFolders("C:\\folder");
    if (!each.at("file_hex").is_null()) machine.Put(kFile, FromHex(each.at("file_hex")));
    for (const auto& call : each.at("calls")) CheckCall(machine, call, id);
    ++count;
  }
  EXPECT_EQ(count, 154);
}

std::string Read(const TestMachine& machine, std::string_view section, std::string_view key) {
  return GetPrivateProfileString(machine, section, key, "dflt", 512, kFile);
}

std::string AfterWriting(const std::string& before, std::string_view section, std::string_view key,
                         std::string_view value, int code_page = 1252) {
  const TestMachine machine(code_page);
  machine.Put(kFile, before);
  EXPECT_TRUE(WritePrivateProfileString(machine, section, key, value, kFile));
  return machine.Get(kFile);
}

TEST(ProfileTest, AMissingFileFolderOrDriveGivesTheDefault) {
  const TestMachine machine;
  for (const char* file : {"C:\\none.ini", "C:\\none\\a.ini", "Q:\\a.ini", "C:\\", ""}) {
    EXPECT_EQ(GetPrivateProfileString(machine, "s", "k", "dflt", 512, file), "dflt") << file;
    EXPECT_EQ(GetPrivateProfileInt(machine, "s", "k", 7, file), 7) << file;
  }
}

TEST(ProfileTest, AValueIsCutToOneByteLessThanTheSizeAndMayBeCutToNothing) {
  const TestMachine machine;
  machine.Put(kFile, "[s]\r\nk=value\r\n");
  EXPECT_EQ(GetPrivateProfileString(machine, "s", "k", "", 1, kFile), "");
  EXPECT_EQ(GetPrivateProfileString(machine, "s", "k", "", 0, kFile), "");
  EXPECT_EQ(GetPrivateProfileString(machine, "s", "none", "default", 4, kFile), "def");
}

TEST(ProfileTest, AnEmptyValueIsAValue) {
  const TestMachine machine;
  machine.Put(kFile, "[s]\r\nk=\r\n");
  EXPECT_EQ(Read(machine, "s", "k"), "");
  EXPECT_EQ(GetPrivateProfileInt(machine, "s", "k", 7, kFile), 0);
}

TEST(ProfileTest, SeveralKeysAreReadTogetherAsOneByOne) {
  const std::string pieces[] = {"[s]",   "[S]",    "[t]",   "[",    "Item1",       "item1",
                                "ITEM2", "Item10", "\xE9",  "\xC9", "=",           "=",
                                "=1",    "='2'",   "\"3\"", ";",    " ",           "\t",
                                "\r",    "\r\n",   "\n",    "\r\n", "\r\n[s]\r\n", ""};
  const std::vector<std::string_view> keys = {"Item1", "ITEM10", "item2",   "é",
                                              "É",     "",       " Item1 ", "Item3"};
  std::mt19937 random(17);
  const TestMachine western(1252), japanese(932);
  for (int round = 0; round < 3000; ++round) {
    const TestMachine& machine = round % 2 == 0 ? western : japanese;
    std::string bytes = round % 3 == 0 ? "" : "[s]\r\n";
    for (int piece = 0; piece < 30; ++piece) bytes += pieces[random() % std::size(pieces)];
    const std::size_t size = random() % 4 == 0 ? 2 : 512;
    const auto together = GetProfileStrings(machine, " s", keys, "dflt ", size, bytes);
    ASSERT_EQ(together.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
      ASSERT_EQ(together[i], GetProfileString(machine, " s", keys[i], "dflt ", size, bytes))
          << testing::PrintToString(bytes) << " " << keys[i];
  }
}

TEST(ProfileTest, NamesBeyondAsciiAreComparedWithoutRegardToCase) {
  const TestMachine machine;
  machine.Put(kFile, "[\xC9t\xE9]\r\n\xE0=1\r\n");
  EXPECT_EQ(Read(machine, "éTÉ", "À"), "1");
  EXPECT_EQ(AfterWriting("[\xC9t\xE9]\r\n\xE0=1\r\n", "ÉTÉ", "À", "2"),
            "[\xC9t\xE9]\r\n\xE0=2\r\n");
}

TEST(ProfileTest, NamesGoThroughTheCodePageBeforeTheyAreCompared) {
  const TestMachine machine;
  machine.Put(kFile, "[A]\r\n?=1\r\n");
  EXPECT_EQ(Read(machine, "Ā", "漢"), "1");
}

TEST(ProfileTest, SecondBytesOfCharactersAreNoBrackets) {
  const TestMachine machine(932);
  machine.Put(kFile, "[\x83\x5D]\r\nk=1\r\n[\x83\x5B\r\nk=2\r\n");
  EXPECT_EQ(Read(machine, "ゾ", "k"), "1");
  EXPECT_EQ(Read(machine, "ゼ", "k"), "dflt");
}

TEST(ProfileTest, ADoubleByteValueMayBeCutInsideACharacter) {
  const TestMachine machine(932);
  machine.Put(kFile, "[s]\r\nk=\x8A\xBF\x8E\x9A\r\n");
  EXPECT_EQ(GetPrivateProfileString(machine, "s", "k", "", 4, kFile), "\x8A\xBF\x8E");
}

TEST(ProfileTest, AValueEndsAtANul) {
  const TestMachine machine;
  machine.Put(kFile, std::string("[s]\r\nk=ab\0cd\r\n", 14));
  EXPECT_EQ(Read(machine, "s", "k"), "ab");
}

TEST(ProfileTest, AMarkBeforeTheFirstLineDoesNotCountAndStays) {
  const TestMachine machine;
  machine.Put(kFile, "\xEF\xBB\xBF[s]\r\nk=1\r\n");
  EXPECT_EQ(Read(machine, "s", "k"), "1");
  EXPECT_EQ(AfterWriting("\xEF\xBB\xBF[s]\r\nk=1\r\n", "s", "k", "2"),
            "\xEF\xBB\xBF[s]\r\nk=2\r\n");
}

TEST(ProfileTest, CommentLinesAndLinesWithoutAnEqualsSignHoldNoKey) {
  const TestMachine machine;
  machine.Put(kFile, "[s]\r\n;k=1\r\n ; k=2\r\nk\r\n[s\r\nz=3\r\n");
  EXPECT_EQ(Read(machine, "s", "k"), "dflt");
  EXPECT_EQ(Read(machine, "s", ";k"), "dflt");
  EXPECT_EQ(Read(machine, "s", "z"), "3");
}

TEST(ProfileTest, OnlyTheFirstOfTwoEqualSectionsIsLookedAt) {
  const TestMachine machine;
  machine.Put(kFile, "[s]\r\na=1\r\n[t]\r\n[S]\r\nb=2\r\n");
  EXPECT_EQ(Read(machine, "s", "b"), "dflt");
  EXPECT_EQ(AfterWriting("[s]\r\na=1\r\n[t]\r\n[S]\r\nb=2\r\n", "s", "b", "3"),
            "[s]\r\na=1\r\nb=3\r\n[t]\r\n[S]\r\nb=2\r\n");
}

TEST(ProfileTest, AWholeNumberIsTheLeadingDigitsSoThatANegativeOneIs0) {
  const std::pair<const char*, int> cases[] = {
      {"-5", 0},  {"12abc", 12}, {"abc", 0},  {"1 2", 1},  {"\" 8\"", 8}, {"0x10", 0}, {"1.9", 1},
      {"--7", 0}, {"105", 105},  {"090", 90}, {"99x", 99}, {"- 7", 0},    {"-", 0}};
  for (const auto& [value, number] : cases) {
    const TestMachine machine;
    machine.Put(kFile, "[s]\r\nk=" + std::string(value) + "\r\n");
    EXPECT_EQ(GetPrivateProfileInt(machine, "s", "k", 99, kFile), number) << value;
  }
}

TEST(ProfileTest, OnePlusSignBeforeTheDigitsOfAWholeNumberIsPassedOver) {
  const std::pair<const char*, int> cases[] = {{"+7", 7},  {" +7 ", 7}, {"+7x", 7}, {"+", 0},
                                               {"++7", 0}, {"+-7", 0},  {"-+7", 0}, {"7+7", 7}};
  for (const auto& [value, number] : cases) {
    const TestMachine machine;
    machine.Put(kFile, "[s]\r\nk=" + std::string(value) + "\r\n");
    EXPECT_EQ(GetPrivateProfileInt(machine, "s", "k", 99, kFile), number) << value;
  }
}

TEST(ProfileTest, AWriteTouchesTheValueAndNothingElseInItsLine) {
  EXPECT_EQ(AfterWriting("[s]\r\n k \t= \t1\t \r\n", "s", "k", "2"), "[s]\r\n k \t= \t2\t \r\n");
  EXPECT_EQ(AfterWriting("[s]\nk='1'\nz=3", "s", "k", "2"), "[s]\nk=2\nz=3");
  EXPECT_EQ(AfterWriting("[s]\rk=\rz=3\r", "s", "k", "2"), "[s]\rk=2\rz=3\r");
  EXPECT_EQ(AfterWriting("[s]\r\nk=  \r\n", "s", "k", "2"), "[s]\r\nk=2  \r\n");
  EXPECT_EQ(AfterWriting("[s]\r\nk=1", "s", "k", "2"), "[s]\r\nk=2");
}

TEST(ProfileTest, ANewKeyGoesBehindTheLastLineOfItsSectionThatIsNotBlank) {
  EXPECT_EQ(AfterWriting("[a]\r\nx=1\r\n;c\r\n\r\n \t\r\n[b]\r\n", "a", "k", "v"),
            "[a]\r\nx=1\r\n;c\r\nk=v\r\n\r\n \t\r\n[b]\r\n");
  EXPECT_EQ(AfterWriting("[a]\r\n\r\n[b]\r\n", "a", "k", "v"), "[a]\r\nk=v\r\n\r\n[b]\r\n");
  EXPECT_EQ(AfterWriting("[a]\r\nx=1", "a", "k", "v"), "[a]\r\nx=1\r\nk=v\r\n");
  EXPECT_EQ(AfterWriting("[a]", "a", "k", "v"), "[a]\r\nk=v\r\n");
}

TEST(ProfileTest, ANewSectionGoesToTheEndOfTheFile) {
  EXPECT_EQ(AfterWriting("", "s", "k", "v"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(AfterWriting("[a]\r\n\r\n", "s", "k", "v"), "[a]\r\n\r\n[s]\r\nk=v\r\n");
  EXPECT_EQ(AfterWriting("[a]\nx=1\n", "s", "k", "v"), "[a]\nx=1\n[s]\r\nk=v\r\n");
  EXPECT_EQ(AfterWriting("k=v", "s", "k", "v"), "k=v\r\n[s]\r\nk=v\r\n");
}

TEST(ProfileTest, SeveralValuesAreSetInTheirOrderByOneReplacement) {
  const TestMachine machine;
  machine.Put(kFile, "[Header3]\r\nItem=7\r\n");
  const ProfileValue values[] = {{"Header3", "Cat", "Tune"}, {"Header3", "item", "12"},
                                 {"LogBook", "b", "1"},      {"LogBook", "a", "2"},
                                 {"Header3", "x", "3"},      {"LogBook", "b", "4"}};
  const DiskCalls calls;
  EXPECT_TRUE(WritePrivateProfileStrings(machine, values, kFile));
  EXPECT_EQ(DiskCalls::Count("rename test.ini"), 1);
  EXPECT_EQ(DiskCalls::Count("fsync "), 2) << "the file and its folder";
  EXPECT_EQ(machine.Get(kFile),
            "[Header3]\r\nItem=12\r\nCat=Tune\r\nx=3\r\n[LogBook]\r\nb=4\r\na=2\r\n");
}

TEST(ProfileTest, ALineEndInANameOrValueNeverReachesTheFile) {
  const TestMachine machine;
  const std::string before = "[s]\r\nk=v\r\n";
  machine.Put(kFile, before);
  for (const std::string end : {"\r\n", "\r", "\n"}) {
    const std::string text = "a" + end + "[t]";
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", text, kFile));
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", text, "w", kFile));
    EXPECT_FALSE(WritePrivateProfileString(machine, text, "k", "w", kFile));
    const ProfileValue values[] = {{"s", "k", "w"}, {"s", "l", text}};
    EXPECT_FALSE(WritePrivateProfileStrings(machine, values, kFile));
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", text, "C:\\folder\\none.ini"));
  }
  EXPECT_EQ(machine.Get(kFile), before);
  EXPECT_FALSE(machine.Has("C:\\folder\\none.ini"));
  // What stands behind a NUL does not count.
  EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", std::string("w\0\n", 3), kFile));
  EXPECT_EQ(machine.Get(kFile), "[s]\r\nk=w\r\n");
}

TEST(ProfileTest, AProfileOfMoreThan16MegabytesCountsAsUnreadable) {
  const TestMachine machine;
  const std::string start = "[s]\r\nk=1\r\n";
  machine.Put(kFile, start);
  std::filesystem::resize_file(machine.Native(kFile), kLargestProfile);
  EXPECT_EQ(Read(machine, "s", "k"), "1");
  EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "2", kFile));
  std::filesystem::resize_file(machine.Native(kFile), kLargestProfile + 1);
  EXPECT_EQ(Read(machine, "s", "k"), "dflt");
  EXPECT_EQ(GetPrivateProfileInt(machine, "s", "k", 9, kFile), 9);
  EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", "3", kFile));
  EXPECT_EQ(std::filesystem::file_size(machine.Native(kFile)), kLargestProfile + 1);
}

TEST(ProfileTest, BytesThatStandForNoCharacterSurviveAWrite) {
  const std::string odd = "[s]\r\nx=\x81\x7F\xFF\x80\r\n\xFF\xFE\r\n";
  for (const int page : CodePage::Numbers()) {
    EXPECT_EQ(AfterWriting(odd + "k=1\r\n", "s", "k", "2", page), odd + "k=2\r\n") << page;
  }
}

TEST(ProfileTest, AWrittenTextIsInTheCodePageWithSimilarCharacters) {
  EXPECT_EQ(AfterWriting("", "s", "k", "été ＡĀ漢"), "[s]\r\nk=\xE9t\xE9 AA?\r\n");
  EXPECT_EQ(AfterWriting("", "節", "鍵", "値", 932), "[\x90\xDF]\r\n\x8C\xAE=\x92\x6C\r\n");
}

TEST(ProfileTest, TheEndMarkOfOldEditorsIsABlank) {
  const TestMachine machine;
  machine.Put(kFile, "[s]\r\nk=1\x1A");
  EXPECT_EQ(Read(machine, "s", "k"), "1");
  EXPECT_EQ(AfterWriting("[s]\r\nk=1\r\n\x1A", "t", "k", "2"),
            "[s]\r\nk=1\r\n\x1A\r\n[t]\r\nk=2\r\n");
}

TEST(ProfileTest, TheExampleOfTheManualComesOutAsPrintedThere) {
  const TestMachine machine;
  machine.Put(kFile,
              "; written by service\r\n[Header3]\r\nCat=Meter\r\nItem = 7\r\n\r\n"
              "[Maintenance]\r\nItem0=\"1\"\r\n");
  EXPECT_EQ(Read(machine, "HEADER3", "item"), "7");
  EXPECT_EQ(Read(machine, "Maintenance", "Item0"), "1");
  EXPECT_EQ(Read(machine, "Maintenance", "Item1"), "dflt");
  const char* writes[][3] = {{"Header3", "Item", "12"},
                             {"Header3", "Cat", "Tune"},
                             {"Maintenance", "Item1", "0"},
                             {"LogBook", "LastFile", "C:\\QUOREX\\maintain\\26111500\\"}};
  for (const auto& [section, key, value] : writes) {
    EXPECT_TRUE(WritePrivateProfileString(machine, section, key, value, kFile));
  }
  EXPECT_EQ(machine.Get(kFile),
            "; written by service\r\n[Header3]\r\nCat=Tune\r\nItem = 12\r\n\r\n"
            "[Maintenance]\r\nItem0=\"1\"\r\nItem1=0\r\n"
            "[LogBook]\r\nLastFile=C:\\QUOREX\\maintain\\26111500\\\r\n");
}

TEST(ProfileTest, TheValueIsFoundAgainWhateverStoodInTheFile) {
  for (const auto& each : ReadCases("profile.json")) {
    const TestMachine machine(each.at("code_page"));
    machine.MakeFolders("C:\\folder");
    if (!each.at("file_hex").is_null()) machine.Put(kFile, FromHex(each.at("file_hex")));
    const std::string section = each.at("calls")[0].at("section");
    const std::string key = each.at("calls")[0].at("key");
    EXPECT_TRUE(WritePrivateProfileString(machine, section, key, "found again", kFile));
    if (section.find('[') != std::string::npos) continue;  // such a name is no section's
    EXPECT_EQ(Read(machine, section, key), "found again") << each.at("id");
  }
}

TEST(ProfileTest, EveryPrefixOfAGoodFileIsReadAndWrittenWithoutFault) {
  const std::string whole =
      "; head\r\n\r\n[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS = \"1\"\r\n"
      "junk\r\n;x=1\r\n[\x83\x5D]\r\nk=\x8A\xBF\r\n";
  for (const int page : {932, 1252}) {
    const TestMachine machine(page);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
      const std::string prefix = whole.substr(0, length);
      machine.Put(kFile, prefix);
      const std::string date = Read(machine, "LogFile", "Date");
      EXPECT_TRUE(date == "dflt" || std::string("11/15/2026 05:09:59").starts_with(date)) << length;
      const std::string lens = Read(machine, "OPTION", "LENS");
      EXPECT_TRUE(lens == "dflt" || lens == "" || lens == "\"" || lens == "\"1" || lens == "1")
          << length;
      const std::string changed =
          SetProfileValue(*machine.machine().code_page, prefix, "N", "k", "v");
      EXPECT_TRUE(changed.starts_with(prefix)) << length;
      EXPECT_EQ(FindProfileValue(*machine.machine().code_page, changed, "n", "K"), "v") << length;
    }
  }
}

}  // namespace
}  // namespace logbook::test
