// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class PrivateFileTest : public testing::Test {
 protected:
  PrivateFileTest() { disk.MakeFolders("C:\\area"); }
  std::string Path(const std::string& name) { return disk.Native("C:\\area\\" + name); }
  void Replace(const std::string& bytes) { ReplacePrivateFile(Path("a.xml"), bytes); }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Path("")))
      names.push_back(entry.path().filename().string());
    return names;
  }

  TestMachine disk;
};

TEST_F(PrivateFileTest, AFileIsReplacedAndItsOwnersAlone) {
  disk.Put("C:\\area\\a.xml", "old");
  chmod(Path("a.xml").c_str(), 0644);
  Replace("<?xml new");
  EXPECT_EQ(disk.Get("C:\\area\\a.xml"), "<?xml new");
  struct stat status = {};
  ASSERT_EQ(stat(Path("a.xml").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
  EXPECT_THAT(Names(), ElementsAre("a.xml"));
}

TEST_F(PrivateFileTest, AWriteThatFailsLeavesTheOldFileAndNothingElse) {
  Replace("<?xml old");
  {
    const SmallFilesOnly limit(1000);
    EXPECT_EQ(NumberRaisedBy([&] { Replace("<?xml " + std::string(5000, 'x')); }), 61);
  }
  EXPECT_EQ(disk.Get("C:\\area\\a.xml"), "<?xml old");
  EXPECT_THAT(Names(), ElementsAre("a.xml"));
  EXPECT_EQ(NumberRaisedBy([&] { ReplacePrivateFile(Path("none/a.xml"), ""); }), 76);
}

TEST_F(PrivateFileTest, WhatKilledWritersHaveLeftGoesWithTheNextOne) {
  disk.Put("C:\\area\\a.xml.AbC123", "<?xml version=");
  disk.Put("C:\\area\\other.xml.000000", "<?xml version=\"1.0\"?><Upload/>");
  disk.Put("C:\\area\\empty.xml.abcdef", "");
  disk.Put("C:\\area\\nuls.xml.abcdef", std::string(100, '\0'));
  Replace("<?xml version=\"1.0\"?>");
  EXPECT_THAT(Names(), ElementsAre("a.xml"));
}

TEST_F(PrivateFileTest, WhatIsLeftOfAFileWithoutAnExtensionGoesWithItsOwnNextWriterAlone) {
  disk.Put("C:\\area\\token.AbC123", "half a to");
  disk.Put("C:\\area\\other.AbC123", "half a to");
  ReplacePrivateFile(Path("token"), "half a token and the rest");
  EXPECT_THAT(Names(), UnorderedElementsAre("token", "other.AbC123"));
}

TEST_F(PrivateFileTest, WhatAWriterIsAtWorkOnStays) {
  disk.Put("C:\\area\\b.xml.AbC123", "<?xml version=");
  const int writer = open(Path("b.xml.AbC123").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(writer, LOCK_EX), 0);
  Replace("<?xml version=\"1.0\"?>");
  EXPECT_THAT(Names(), UnorderedElementsAre("a.xml", "b.xml.AbC123"));
  close(writer);
  Replace("<?xml version=\"1.0\"?>");
  EXPECT_THAT(Names(), ElementsAre("a.xml"));
}

TEST_F(PrivateFileTest, FilesOfOthersThatAreNamedAlikeStay) {
  const std::vector<std::string> names = {"a.xml.backup", "a.xml.AbC-23", "a.xml.AbC1234",
                                          "a.txt.AbC123", "axml.AbC123"};
  for (const std::string& name : names) disk.Put("C:\\area\\" + name, "somebody's text");
  disk.Put("C:\\area\\a.txt.AbC124", "<?xml");
  fs::create_symlink("a.txt.AbC124", Path("link.xml.AbC123"));
  Replace("<?xml version=\"1.0\"?>");
  EXPECT_THAT(Names(), testing::SizeIs(names.size() + 3));
}

TEST_F(PrivateFileTest, WhatEverybodyMayReadIsSeen) {
  Replace("<?xml");
  EXPECT_FALSE(EverybodyMayRead(Path("a.xml")));
  chmod(Path("a.xml").c_str(), 0604);
  EXPECT_TRUE(EverybodyMayRead(Path("a.xml")));
  EXPECT_FALSE(EverybodyMayRead(Path("none")));
}

}  // namespace
}  // namespace logbook::test
