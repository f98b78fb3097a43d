// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Archives of many entries and of large files, in the size that a test wants.
#pragma once

#include <gmock/gmock.h>

#include <fstream>

#include "Archiving.h"
#include "support/ProcessFigures.h"

namespace logbook::test {

class LargeArchive : public Archiving {
 protected:
  // Two folders of so many files each go into one archive, and readers find all of them.
  void ExpectAllEntriesOfTwoFolders(int files) {
    for (const char* name : {"one", "two"}) {
      const std::string folder = disk.Native(std::string("C:\\") + name);
      ASSERT_EQ(RunProgram("mkdir " + Quoted(folder) + " && cd " + Quoted(folder) + " && seq 1 " +
                           std::to_string(files) + " | xargs touch")
                    .status,
                0);
    }
    ZipWriter writer(disk);
    result.assign(kZipResultBuffer, '\0');
    for (const char* name : {"C:\\one", "C:\\two"})
      EXPECT_EQ(writer.arZip(0, "C:\\out.zip", name, "-a -r", result), 0);
    EXPECT_EQ(writer.Finish(result), 0);
    const std::string zip = Quoted(disk.Native("C:\\out.zip"));
    const std::string count = std::to_string(2 * files + 2) + "\n";
    EXPECT_EQ(RunProgram("unzip -Z1 " + zip + " | wc -l").output, count);
    EXPECT_EQ(RunProgram("python3 -c 'import sys, zipfile; "
                         "print(len(zipfile.ZipFile(sys.argv[1]).namelist()))' " +
                         zip)
                  .output,
              count);
  }

  // An archive of so many entries, a folder and its files, is read by others with all of them.
  void ExpectAllEntries(int entries) {
    const std::string folder = Quoted(disk.Native("C:\\many"));
    const std::string zip = Quoted(disk.Native("C:\\out.zip"));
    ASSERT_EQ(RunProgram("rm -rf " + folder + " " + zip + " && mkdir " + folder + " && cd " +
                         folder + " && seq 2 " + std::to_string(entries) + " | xargs touch")
                  .status,
              0);
    EXPECT_EQ(Zip("C:\\many"), 0);
    EXPECT_EQ(RunProgram("unzip -Z1 " + zip + " | wc -l").output, std::to_string(entries) + "\n");
  }

  // A file of so many bytes, most of which take no room on the disk, is read by others to its end.
  void ExpectWholeFile(std::uintmax_t size) {
    disk.MakeFolders("C:\\log");
    const std::string file = disk.Native("C:\\log\\big.bin");
    {
      std::ofstream out(file, std::ios::binary);
      out.seekp(static_cast<std::streamoff>(size - 1));
      out << 'x';
    }
    ASSERT_EQ(std::filesystem::file_size(file), size);
    std::filesystem::remove(disk.Native("C:\\out.zip"));
    EXPECT_EQ(Zip("C:\\log"), 0);
    const std::string zip = Quoted(disk.Native("C:\\out.zip"));
    EXPECT_THAT(RunProgram("unzip -v " + zip).output, testing::HasSubstr(std::to_string(size)));
    EXPECT_EQ(RunProgram("unzip -p " + zip + " '*/big.bin' | cmp - " + Quoted(file)).output, "");
  }

  // A file of so many bytes is archived without taking more memory than that above what is in use.
  void ExpectBoundedMemory(int file_bytes, int memory_bytes) {
    disk.MakeFolders("C:\\log");
    const std::string file = disk.Native("C:\\log\\big.bin");
    std::ofstream(file).close();
    std::filesystem::resize_file(file, static_cast<std::uintmax_t>(file_bytes));
    const long before = PeakMemory();
    EXPECT_EQ(Zip("C:\\log"), 0);
    EXPECT_LT(PeakMemory() - before, memory_bytes / 1024) << "KiB";
    EXPECT_THAT(RunProgram("unzip -v " + Quoted(disk.Native("C:\\out.zip"))).output,
                testing::HasSubstr(std::to_string(file_bytes)));
  }
};

}  // namespace logbook::test
