// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "base/Files.h"
#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

std::vector<std::string> LinesOf(InputFile& file) {
  std::vector<std::string> lines;
  while (!file.AtEnd()) lines.push_back(file.ReadLine());
  return lines;
}

TEST(InputFileTest, LinesEndAtCrLfCrOrLf) {
  const TestMachine machine;
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"", {}},
      {"a", {"a"}},
      {"a\r\n", {"a"}},
      {"a\r", {"a"}},
      {"a\n", {"a"}},
      {"a\r\nb\rc\nd", {"a", "b", "c", "d"}},
      {"\r\n", {""}},
      {"\n\r", {"", ""}},
      {"a\r\r\nb", {"a", "", "b"}},
      {"a\n\nb\n", {"a", "", "b"}},
      {std::string("a\0b\x1A\r\n", 6), {std::string("a\0b\x1A", 4)}},
  };
  for (const auto& [bytes, lines] : cases) {
    machine.Put("C:\\a.txt", bytes);
    InputFile file(machine, "C:\\a.txt");
    EXPECT_EQ(LinesOf(file), lines) << testing::PrintToString(bytes);
  }
}

TEST(InputFileTest, LineEndsAcrossTheBorderOfTheBufferAreWhole) {
  const TestMachine machine;
  constexpr std::size_t kBorder = 65536;
  for (const std::string end : {"\r\n", "\r", "\n"}) {
    for (std::size_t length = kBorder - 4; length <= kBorder + 4; ++length) {
      const std::string first(length, 'x');
      machine.Put("C:\\a.txt", first + end + "second" + end + first);
      InputFile file(machine, "C:\\a.txt");
      EXPECT_EQ(LinesOf(file), (std::vector<std::string>{first, "second", first})) << length;
    }
  }
}

TEST(InputFileTest, BytesInMemoryReadAsThoseOfAFile) {
  InputFile file("a\r\nb\rc\n\nd");
  for (const char* line : {"a", "b", "c", "", "d"}) EXPECT_EQ(file.ReadLine(), line);
  EXPECT_TRUE(file.AtEnd());
  EXPECT_EQ(file.Get(), -1);
  InputFile empty("");
  EXPECT_TRUE(empty.AtEnd());
  EXPECT_EQ(empty.Buffered(), "");
}

TEST(InputFileTest, OfALineBeyondTheLimitTheBeginningIsGivenAndTheRestPassedOver) {
  const TestMachine machine;
  for (const std::size_t length : {3u, 4u, 5u, 65536u, 200000u}) {
    machine.Put("C:\\a.txt", std::string(length, 'x') + "\r\nsecond");
    InputFile file(machine, "C:\\a.txt");
    EXPECT_EQ(file.ReadLine(4), std::string(std::min<std::size_t>(length, 4), 'x')) << length;
    EXPECT_EQ(file.ReadLine(4), "seco");
    EXPECT_TRUE(file.AtEnd());
  }
}

TEST(InputFileTest, BytesAtHandAreSeenUntilTheyArePassedOver) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "one\r\ntwo");
  InputFile file(machine, "C:\\a.txt");
  EXPECT_EQ(file.Buffered(), "one\r\ntwo");
  file.Skip(5);
  EXPECT_EQ(file.Buffered(), "two");
  EXPECT_EQ(file.ReadLine(), "two");
  EXPECT_EQ(file.Buffered(), "");
}

TEST(InputFileTest, ALineThatHasReachedItsLimitIsGivenBeforeTheDiskIsAskedForMore) {
  const TestMachine machine;
  constexpr std::size_t kBorder = 65536;
  machine.Put("C:\\a.txt", std::string(kBorder + 10, 'x'));
  const DiskCalls calls;
  DiskCalls::FailReads(machine.Native("C:\\a.txt"), kBorder);
  InputFile file(machine, "C:\\a.txt");
  EXPECT_EQ(file.ReadLine(kBorder), std::string(kBorder, 'x'));
  EXPECT_EQ(NumberRaisedBy([&] { file.AtEnd(); }), 57);
}

TEST(InputFileTest, AnErrorOfTheDiskIsError57) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "one\r\ntwo");
  const DiskCalls calls;
  DiskCalls::FailReads(machine.Native("C:\\a.txt"), 5);
  InputFile file(machine, "C:\\a.txt");
  EXPECT_EQ(file.ReadLine(), "one");
  EXPECT_EQ(NumberRaisedBy([&] { file.ReadLine(); }), 57);
  EXPECT_EQ(NumberRaisedBy([&] { file.AtEnd(); }), 57);
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\a.txt"); }), 57);
}

TEST(InputFileTest, ReadingOnAtTheEndIsError62) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "one\r\n");
  InputFile file(machine, "C:\\a.txt");
  EXPECT_EQ(file.ReadLine(), "one");
  EXPECT_TRUE(file.AtEnd());
  EXPECT_EQ(NumberRaisedBy([&] { file.ReadLine(); }), 62);
  EXPECT_EQ(NumberRaisedBy([&] { file.ReadLine(); }), 62);
}

TEST(InputFileTest, BytesAreSeenAndTakenOneByOneBetweenLines) {
  const TestMachine machine;
  machine.Put("C:\\a.txt",
              "\xFF"
              "1,2\r\nrest");
  InputFile file(machine, "C:\\a.txt");
  EXPECT_EQ(file.Peek(), 0xFF);
  EXPECT_EQ(file.Get(), 0xFF);
  EXPECT_EQ(file.Get(), '1');
  EXPECT_EQ(file.ReadLine(), ",2");
  EXPECT_EQ(file.Peek(), 'r');
  EXPECT_EQ(file.ReadLine(), "rest");
  EXPECT_EQ(file.Peek(), -1);
  EXPECT_EQ(file.Get(), -1);
}

TEST(InputFileTest, BytesAreTakenAcrossTheBorderOfTheBuffer) {
  const TestMachine machine;
  std::string bytes(200000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
  machine.Put("C:\\a.bin", bytes);
  InputFile file(machine, "C:\\a.bin");
  std::string taken;
  for (int byte = file.Get(); byte >= 0; byte = file.Get()) {
    taken.push_back(static_cast<char>(byte));
  }
  EXPECT_EQ(taken, bytes);
}

TEST(InputFileTest, AMovedReaderGoesOnWhereItWas) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "one\r\ntwo\r\n");
  InputFile file(machine, "C:\\a.txt");
  EXPECT_EQ(file.ReadLine(), "one");
  InputFile other = std::move(file);
  EXPECT_EQ(other.ReadLine(), "two");
}

TEST(InputFileTest, OpeningRaises5375And76) {
  const TestMachine machine;
  machine.MakeFolders("C:\\folder");
  const std::pair<const char*, int> cases[] = {
      {"C:\\none.txt", 53}, {"C:\\folder", 75}, {"", 75}, {"C:\\none\\a.txt", 76}, {"Q:\\a", 76}};
  for (const auto& [path, number] : cases) {
    EXPECT_EQ(NumberRaisedBy([&, p = path] { InputFile(machine, p); }), number) << path;
  }
}

}  // namespace
}  // namespace logbook::test
