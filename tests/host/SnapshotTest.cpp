// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Snapshot.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/TestMachine.h"

namespace logbook::host {
namespace {

const std::vector<std::string> kNames = {
    "auser.txt",    "aall.txt",     "bin.txt",     "bout.txt",     "sys.txt",
    "SENSEVAR.MAC", "OTHERVAR.MAC", "RESOVAR.MAC", "PARAMVAR.MAC", "tune.rpt",
    "acqlog.txt",   "sequence.log", "chnseq.log",  "errlog.txt",   "ceerrlog.txt"};

LogMoment Moment(int log_number = 5, const std::string& build = "trz-ce+styleb+new_rf+afc") {
  return {{ParseBuild(build), 1}, log_number, *ParseTime("2026-11-15T14:00:00"), 0};
}

std::map<std::string, std::string> Texts(const LogMoment& moment) {
  std::map<std::string, std::string> texts;
  for (const SnapshotFile& file : MakeSnapshot(moment)) texts[file.name] = file.text;
  return texts;
}

// Fields as a sequential reader sees them: they end at a comma or a line end, and text between
// double quotes is one field.
std::vector<std::string> FieldsOf(const std::string& text) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') quoted = !quoted;
    if (!quoted && (text[i] == ',' || text[i] == '\r')) {
      if (text[i] == '\r') ++i;
      fields.emplace_back();
    } else {
      fields.back() += text[i];
    }
  }
  if (fields.back().empty()) fields.pop_back();
  return fields;
}

class SnapshotFiles : public ::testing::Test {
 protected:
  void Write(const std::vector<std::string>& damages) {
    std::vector<Damage> parsed;
    for (const std::string& damage : damages) parsed.push_back(ParseDamage(damage));
    machine_.MakeFolders("C:\\log");
    WriteSnapshot(machine_, "C:\\log", MakeSnapshot(Moment()), parsed);
  }
  std::string Get(const std::string& name) { return machine_.Get("C:\\log\\" + name); }
  bool Has(const std::string& name) { return machine_.Has("C:\\log\\" + name); }

  test::TestMachine machine_;
};

TEST(Snapshot, HoldsEveryFileOnce) {
  std::vector<std::string> names;
  for (const SnapshotFile& file : MakeSnapshot(Moment())) names.push_back(file.name);
  EXPECT_EQ(names, kNames);
}

TEST(Snapshot, EveryBuildGivesEachFileItsNumberOfFields) {
  for (const std::string lens : {"plain", "lumarin", "trz-cs", "trz-ce"}) {
    for (const std::string options :
         {"", "+styleb", "+new_rf+afc", "+qptype+sc", "+opgs+colopgs"}) {
      auto texts = Texts(Moment(5, lens + options));
      EXPECT_EQ(FieldsOf(texts["auser.txt"]).size(), 29u);
      EXPECT_EQ(FieldsOf(texts["aall.txt"]).size(), 215u);
      EXPECT_EQ(FieldsOf(texts["sys.txt"]).size(), 245u);
      EXPECT_EQ(FieldsOf(texts["bin.txt"]).size(), 16u);
      EXPECT_EQ(FieldsOf(texts["bout.txt"]).size(), 16u);
    }
  }
}

TEST(Snapshot, BitWordsAreFourHexadecimalDigits) {
  for (const std::string name : {"bin.txt", "bout.txt"}) {
    for (const std::string& field : FieldsOf(Texts(Moment())[name])) {
      EXPECT_EQ(field.size(), 4u);
      EXPECT_EQ(field.find_first_not_of("0123456789ABCDEF"), std::string::npos) << field;
    }
  }
}

TEST(Snapshot, EveryLineEndsWithCarriageReturnAndLineFeed) {
  for (const auto& [name, text] : Texts(Moment())) {
    ASSERT_GE(text.size(), 2u) << name;
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n") << name;
    for (std::size_t i = 0; i < text.size(); ++i) {
      EXPECT_TRUE(text[i] != '\n' || text[i - 1] == '\r') << name << " at " << i;
      EXPECT_TRUE(text[i] != '\r' || text[i + 1] == '\n') << name << " at " << i;
    }
  }
}

TEST(Snapshot, RunningLogsStandBeforeTheMomentAndDiffer) {
  auto texts = Texts(Moment());
  for (const std::string name :
       {"acqlog.txt", "sequence.log", "chnseq.log", "errlog.txt", "ceerrlog.txt"}) {
    EXPECT_NE(texts[name].find("2026/11/15 "), std::string::npos) << name;
    EXPECT_EQ(texts[name].find("2026/11/15 14:0"), std::string::npos) << name;
  }
  std::set<std::string> all;
  for (const auto& [name, text] : texts) all.insert(text);
  EXPECT_EQ(all.size(), kNames.size());
}

TEST(Snapshot, RunningLogsGrowToTheSizeAskedFor) {
  LogMoment moment = Moment();
  moment.least_log_bytes = 65536;
  auto texts = Texts(moment);
  for (const std::string name :
       {"acqlog.txt", "sequence.log", "chnseq.log", "errlog.txt", "ceerrlog.txt"}) {
    EXPECT_GE(texts[name].size(), 65536u) << name;
    EXPECT_LT(texts[name].size(), 66000u) << name;
  }
  EXPECT_LT(texts["tune.rpt"].size(), 10000u);
}

TEST(Snapshot, SameMomentGivesTheSameBytes) {
  EXPECT_EQ(Texts(Moment()), Texts(Moment()));
  EXPECT_NE(Texts(Moment(5))["aall.txt"], Texts(Moment(6))["aall.txt"]);
}

TEST_F(SnapshotFiles, AreWrittenWholeWithoutDamage) {
  Write({});
  for (const SnapshotFile& file : MakeSnapshot(Moment())) EXPECT_EQ(Get(file.name), file.text);
}

TEST_F(SnapshotFiles, ShortFilesHoldHalfOfTheirLines) {
  Write({"short"});
  const std::string bytes = Get("auser.txt");
  EXPECT_EQ(FieldsOf(bytes).size(), 14u);
  EXPECT_EQ(Texts(Moment())["auser.txt"].rfind(bytes, 0), 0u);
  EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");
  EXPECT_EQ(FieldsOf(Get("bin.txt")).size(), 8u);
}

TEST_F(SnapshotFiles, TruncatedFilesEndInTheMiddleOfALine) {
  Write({"truncated"});
  for (const std::string& name : kNames) {
    const std::string bytes = Get(name), whole = Texts(Moment())[name];
    ASSERT_FALSE(bytes.empty()) << name;
    EXPECT_EQ(whole.rfind(bytes, 0), 0u) << name;
    EXPECT_NE(bytes.back(), '\n') << name;
    EXPECT_NE(whole[bytes.size()], '\r') << name;
    EXPECT_LT(bytes.size(), whole.size()) << name;
  }
}

TEST_F(SnapshotFiles, EmptyFilesHaveNoBytes) {
  Write({"empty"});
  for (const std::string& name : kNames) EXPECT_EQ(Get(name), "") << name;
}

TEST_F(SnapshotFiles, BinaryFilesHoldNulAndHighBytes) {
  Write({"binary"});
  for (const std::string& name : kNames) {
    const std::string bytes = Get(name);
    EXPECT_NE(bytes.find('\xFF'), std::string::npos) << name;
    EXPECT_GE(bytes.size(), 256u) << name;
  }
  EXPECT_NE(Get("aall.txt").find('\0'), std::string::npos);
}

TEST_F(SnapshotFiles, MissingFileIsNotWrittenAndAnOlderOneStays) {
  machine_.Put("C:\\log\\sys.txt", "old");
  Write({"missing:tune.rpt", "missing:SYS.TXT"});
  EXPECT_FALSE(Has("tune.rpt"));
  EXPECT_EQ(Get("sys.txt"), "old");
  EXPECT_TRUE(Has("aall.txt"));
}

TEST_F(SnapshotFiles, DamageOfOneFileLeavesTheOthersWhole) {
  Write({"empty:aall.txt", "short:sensevar.mac"});
  EXPECT_EQ(Get("aall.txt"), "");
  EXPECT_LT(Get("SENSEVAR.MAC").size(), Texts(Moment())["SENSEVAR.MAC"].size());
  EXPECT_EQ(Get("auser.txt"), Texts(Moment())["auser.txt"]);
}

TEST_F(SnapshotFiles, OverwriteAFileWhateverTheCaseOfItsName) {
  machine_.Put("C:\\log\\sensevar.mac", "old");
  Write({});
  EXPECT_EQ(Get("sensevar.mac"), Texts(Moment())["SENSEVAR.MAC"]);
  EXPECT_FALSE(Has("SENSEVAR.MAC"));
}

TEST_F(SnapshotFiles, MissingFolderIsAnErrorThatNamesTheFile) {
  try {
    WriteSnapshot(machine_, "C:\\nowhere", MakeSnapshot(Moment()), {});
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("nowhere/auser.txt"), std::string::npos);
  }
}

TEST(Damage, UnknownWordsAndFilesAreRefused) {
  for (const std::string text : {"", "broken", "missing:", "missing:nofile.txt", "short,empty"}) {
    EXPECT_THROW(ParseDamage(text), std::invalid_argument) << text;
  }
}

}  // namespace
}  // namespace logbook::host
