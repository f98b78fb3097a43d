// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What becomes of an archive on a machine whose zip library cannot be loaded. The process of a test
// begins anew, since the library stays where it has been loaded once.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "Archiving.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

// The loader takes this folder's file for the library, and refuses it.
void HideLibrary(const std::string& folder) {
  std::ofstream(fs::path(folder) / LOGBOOK_ZIP_LIBRARY);
  setenv("LD_LIBRARY_PATH", folder.c_str(), 1);
}

class MissingLibraryTest : public Archiving {
 protected:
  MissingLibraryTest() {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    disk.Put("C:\\log\\a.txt", "a");
    disk.MakeFolders("C:\\none");
    HideLibrary(disk.Native("C:\\none"));
  }
  ~MissingLibraryTest() override { unsetenv("LD_LIBRARY_PATH"); }

  // Ends the process: with 0 if the archive failed, told why, and left no working file.
  [[noreturn]] void ArchiveAndExit() {
    const std::int16_t code = Zip("C:\\log");
    std::cerr << code << ": " << result.c_str() << "\n";
    std::exit(code == 0 ? 1 : LeftOvers());
  }
};

TEST_F(MissingLibraryTest, IsToldAndMakesNoFile) {
  EXPECT_EXIT(ArchiveAndExit(), testing::ExitedWithCode(0), LOGBOOK_ZIP_LIBRARY);
  EXPECT_FALSE(fs::exists(disk.Native("C:\\out.zip")));
}

TEST_F(MissingLibraryTest, IsToldAndLeavesAnOlderArchiveAsItWas) {
  disk.Put("C:\\out.zip", "old");
  EXPECT_EXIT(ArchiveAndExit(), testing::ExitedWithCode(0), LOGBOOK_ZIP_LIBRARY);
  EXPECT_EQ(disk.Get("C:\\out.zip"), "old");
}

}  // namespace
}  // namespace logbook::test
