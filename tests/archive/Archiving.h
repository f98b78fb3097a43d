// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A drive C: to archive from and to, and what other programs read in the zip files made there.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>

#include "archive/Archive.h"
#include "support/RunProgram.h"
#include "support/TestMachine.h"
#include "support/TimeZone.h"

namespace logbook::test {

// Lists a zip with Python's reader, one entry a line: name, size, time, whether it is UTF-8.
inline constexpr const char* kLister =
    "import sys, zipfile\n"
    "z = zipfile.ZipFile(sys.argv[1])\n"
    "assert z.testzip() is None\n"
    "for i in z.infolist():\n"
    "    print(i.filename, i.file_size, '%04d-%02d-%02d %02d:%02d:%02d' % i.date_time,\n"
    "          'deflated' if i.compress_type == 8 else 'stored', 'utf8' if i.flag_bits & 0x800 "
    "else 'ascii')\n";

class Archiving : public testing::Test {
 protected:
  Archiving() {
    UseUtc();
    disk.Put("C:\\lister.py", kLister);
  }

  std::int16_t Zip(const std::string& source, const std::string& options = "-a -r",
                   const std::string& zip = "C:\\out.zip") {
    result.assign(kZipResultBuffer, '\0');
    return arZip(disk, 0, zip, source, options, result);
  }
  std::string List(const std::string& zip = "C:\\out.zip") {
    const ProgramResult listed = RunProgram("python3 " + Quoted(disk.Native("C:\\lister.py")) +
                                            " " + Quoted(disk.Native(zip)));
    EXPECT_EQ(listed.status, 0) << listed.output;
    return listed.output;
  }
  std::string Names(const std::string& zip = "C:\\out.zip") {
    const ProgramResult listed = RunProgram("unzip -Z1 " + Quoted(disk.Native(zip)));
    return listed.output;
  }
  void SetTime(const std::string& path, std::time_t seconds) {
    SetModified(disk.Native(path), seconds);
  }
  // A folder with what does not deflate, so that it needs its room.
  void PutNoise(const std::string& folder, int bytes) {
    const std::string native = Quoted(disk.Native(folder));
    ASSERT_EQ(RunProgram("mkdir " + native + " && head -c " + std::to_string(bytes) +
                         " /dev/urandom > " + native + "/b.bin")
                  .status,
              0);
  }
  // Names of C:\ that begin with a point: working files that were left.
  int LeftOvers() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(disk.Native("C:")))
      count += entry.path().filename().string().starts_with('.') ? 1 : 0;
    return count;
  }

  TestMachine disk;
  std::string result;
};

}  // namespace logbook::test
