// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/SourceTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "archive/ZipFailure.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

class SourceTreeTest : public testing::Test {
 protected:
  SourceTreeTest() {
    disk.Put("C:\\log\\sub\\a.txt", "a");
    disk.Put("C:\\outside\\a.txt", "secret");
  }
  // What can be read at this place; the error's name otherwise.
  std::string Read(const SourceTree& tree, const std::string& place) {
    SourceFile file = tree.Open(place);
    if (!file.IsOpen()) return strerrorname_np(errno);
    char bytes[100];
    return {bytes, static_cast<std::size_t>(file.Read(bytes, sizeof bytes))};
  }

  TestMachine disk;
};

TEST_F(SourceTreeTest, AFileIsReadAtItsPlace) {
  const SourceTree tree(disk.Native("C:\\log"));
  EXPECT_EQ(Read(tree, "sub/a.txt"), "a");
  EXPECT_EQ(Read(tree, "sub/none.txt"), "ENOENT");
  EXPECT_EQ(tree.PathOf("sub/a.txt"),
            fs::canonical(disk.Native("C:\\log")).generic_string() + "/sub/a.txt");
}

TEST_F(SourceTreeTest, AFolderThatBecomesALinkAfterItWasListedLeadsNowhere) {
  const SourceTree tree(disk.Native("C:\\log"));
  ASSERT_EQ(tree.ChildrenOf("sub").size(), 1u);
  fs::remove_all(disk.Native("C:\\log\\sub"));
  fs::create_directory_symlink("../outside", disk.Native("C:\\log\\sub"));
  EXPECT_EQ(Read(tree, "sub/a.txt"), "ELOOP");
  EXPECT_THROW(tree.ChildrenOf("sub"), ZipFailure);
  EXPECT_THROW(tree.LookAtFolder("sub"), ZipFailure);
}

TEST_F(SourceTreeTest, AFileThatBecomesALinkAfterItWasListedIsNotRead) {
  const SourceTree tree(disk.Native("C:\\log"));
  fs::remove(disk.Native("C:\\log\\sub\\a.txt"));
  fs::create_symlink("../../outside/a.txt", disk.Native("C:\\log\\sub\\a.txt"));
  EXPECT_EQ(Read(tree, "sub/a.txt"), "ELOOP");
}

TEST_F(SourceTreeTest, ALogFolderThatIsSwappedForALinkIsStillReadItself) {
  const SourceTree tree(disk.Native("C:\\log"));
  fs::rename(disk.Native("C:\\log"), disk.Native("C:\\moved"));
  fs::create_directory_symlink("outside", disk.Native("C:\\log"));
  EXPECT_EQ(Read(tree, "sub/a.txt"), "a");
}

}  // namespace
}  // namespace logbook::test
