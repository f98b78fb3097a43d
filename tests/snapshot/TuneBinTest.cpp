// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/TuneBin.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/RunTimeError.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

using test::TestMachine;

constexpr const char* kFile = "C:\\log\\tune.bin";

TEST(TuneBin, TwoRowsOfCellsWithATabBehindEachAndAnEmptyLine) {
  const std::vector<TuneCell> cells = {{"Mass1(Sense)", "7"}, {"Torch-H", ""}, {"QP Bias", "N/A"}};
  EXPECT_EQ(TuneBinText(cells),
            "Mass1(Sense)\tTorch-H\tQP Bias\t\r\n"
            "7\t\tN/A\t\r\n"
            "\r\n");
}

TEST(TuneBin, NoCellsMakeThreeEmptyLines) {
  EXPECT_EQ(TuneBinText({}), "\r\n\r\n\r\n");
}

TEST(TuneBin, TheFileIsInTheCodePage) {
  const TestMachine disk(932);
  disk.MakeFolders("C:\\log");
  WriteTuneBin(disk, kFile, std::vector<TuneCell>{{"\xE6\xBC\xA2", "\xE5\xAD\x97"}});
  EXPECT_EQ(disk.Get(kFile), "\x8A\xBF\t\r\n\x8E\x9A\t\r\n\r\n");
}

TEST(TuneBin, ANewFileReplacesAnOlderOneAsAWhole) {
  const TestMachine disk;
  disk.Put(kFile, std::string(500, 'x'));
  WriteTuneBin(disk, kFile, {});
  EXPECT_EQ(disk.Get(kFile), "\r\n\r\n\r\n");
}

TEST(TuneBin, AWriteThatFailsRaisesAnError) {
  const TestMachine disk;
  EXPECT_THROW(WriteTuneBin(disk, "C:\\no folder\\tune.bin", {}), RunTimeError);
  disk.MakeFolders(kFile);  // a folder of that name
  EXPECT_THROW(WriteTuneBin(disk, kFile, {}), RunTimeError);
}

}  // namespace
}  // namespace logbook
