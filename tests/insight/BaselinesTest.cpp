// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Baselines.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

#include "SampleReadings.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;

using test::QuietReading;

void ExpectEqual(const LogReading& left, const LogReading& right) {
  EXPECT_EQ(left.Identity, right.Identity);
  EXPECT_EQ(left.Date, right.Date);
  EXPECT_EQ(left.Comment, right.Comment);
  EXPECT_EQ(left.HasComment, right.HasComment);
  EXPECT_EQ(left.Automatic, right.Automatic);
  EXPECT_EQ(left.Ticks, right.Ticks);
  EXPECT_EQ(left.HasTicks, right.HasTicks);
  EXPECT_EQ(left.Options.LENS, right.Options.LENS);
  EXPECT_EQ(left.Options.COLOPGS, right.Options.COLOPGS);
  EXPECT_EQ(left.Values, right.Values);
}

TEST(Baselines, AReadingComesBackWhole) {
  test::RandomLogs logs(31);
  for (const LogReading& reading : test::RandomReadings(logs, 20)) {
    ExpectEqual(ParseReading(ReadingText(reading)), reading);
  }
  LogReading odd = QuietReading("26010100", "no date");
  odd.Options.LENS = std::numeric_limits<double>::infinity();
  odd.Ticks[17] = true;
  odd.HasComment = false;
  odd.Comment.clear();
  odd.Identity.Fingerprint = 0xFEDCBA9876543210;
  ExpectEqual(ParseReading(ReadingText(odd)), odd);
}

TEST(Baselines, OtherTextsAreNoReading) {
  const std::string good = ReadingText(QuietReading("26010100", "01/01/2026 00:00:00"));
  for (const std::string& text :
       {std::string(), std::string("{}"), std::string("[1]"), good.substr(0, good.size() / 2)}) {
    EXPECT_THROW(ParseReading(text), BaselineError) << text;
  }
  const auto changed = [&](const std::string& from, const std::string& to) {
    std::string text = good;
    return text.replace(text.find(from), from.size(), to);
  };
  EXPECT_THROW(ParseReading(changed("\"version\": 1", "\"version\": 2")), BaselineError);
  EXPECT_THROW(ParseReading(changed("\"ticks\": []", "\"ticks\": [18]")), BaselineError);
  EXPECT_THROW(ParseReading(changed("\"state\": \"ok\"", "\"state\": \"odd\"")), BaselineError);
  EXPECT_THROW(ParseReading(changed("\"meter:0\"", "\"meter:x\"")), BaselineError);
}

TEST(Baselines, AreKeptUnderNamesAndOutliveTheirLogs) {
  const test::TestMachine scratch;
  const BaselineFolder folder(scratch.home() + "/config/quorex-logbook/baselines");
  EXPECT_TRUE(folder.Names().empty());
  folder.Keep("works", QuietReading("26010100", "01/01/2026 00:00:00"));
  folder.Keep("after-service", QuietReading("26020100", "02/01/2026 00:00:00"));
  folder.Keep("works", QuietReading("26030100", "03/01/2026 00:00:00"));
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"after-service", "works"}));
  EXPECT_EQ(folder.Find("works").Identity.Folder, "26030100");
  folder.Drop("works");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"after-service"});
  EXPECT_THROW(folder.Find("works"), BaselineError);
  EXPECT_THROW(folder.Drop("works"), BaselineError);
}

TEST(Baselines, ADamagedOneIsToldWithItsFile) {
  const test::TestMachine scratch;
  const BaselineFolder folder(scratch.home());
  std::ofstream(scratch.home() + "/bad.json") << "{";
  try {
    folder.Find("bad");
    FAIL();
  } catch (const BaselineError& error) {
    EXPECT_NE(std::string(error.what()).find("/bad.json: "), std::string::npos) << error.what();
  }
}

TEST(Baselines, ANameIsPlain) {
  for (const char* name : {"a", "A-b_9.x", "2026"}) EXPECT_TRUE(IsBaselineName(name)) << name;
  for (const char* name : {"", ".hidden", "../up", "a/b", "a b", "\xC3\xA4"}) {
    EXPECT_FALSE(IsBaselineName(name)) << name;
    EXPECT_THROW(BaselineFolder("/nowhere").Find(name), BaselineError);
  }
  EXPECT_TRUE(IsBaselineName(std::string(63, 'a')));
  EXPECT_TRUE(IsBaselineName(std::string(64, 'a')));
  EXPECT_FALSE(IsBaselineName(std::string(65, 'a')));
}

}  // namespace
}  // namespace logbook::insight
