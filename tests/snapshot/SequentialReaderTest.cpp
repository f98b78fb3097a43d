// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SequentialReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

constexpr const char* kFile = "C:\\log\\aall.txt";

using test::ErrorOf;

class SequentialFields : public testing::Test {
 protected:
  SequentialReader Open(std::string_view bytes) {
    machine.Put(kFile, bytes);
    return SequentialReader(machine, kFile);
  }

  std::vector<double> Numbers(std::string_view bytes) {
    SequentialReader reader = Open(bytes);
    std::vector<double> numbers;
    while (!reader.AtEnd()) numbers.push_back(reader.ReadNumber());
    return numbers;
  }

  std::vector<std::string> Texts(std::string_view bytes) {
    SequentialReader reader = Open(bytes);
    std::vector<std::string> texts;
    while (!reader.AtEnd()) texts.push_back(reader.ReadText());
    return texts;
  }

  test::TestMachine machine;
};

using List = std::vector<double>;
using Words = std::vector<std::string>;

TEST_F(SequentialFields, ANumberEndsAtACommaALineEndOrABlank) {
  EXPECT_EQ(Numbers("1,2,3"), (List{1, 2, 3}));
  EXPECT_EQ(Numbers("1\r\n2\r\n3"), (List{1, 2, 3}));
  EXPECT_EQ(Numbers("1\n2\n3"), (List{1, 2, 3}));
  EXPECT_EQ(Numbers("1\r2\r3"), (List{1, 2, 3}));
  EXPECT_EQ(Numbers("1 2\t3"), (List{1, 2, 3}));
  EXPECT_EQ(Numbers("-1.5,2e3 +4\r\n.5"), (List{-1.5, 2000, 4, 0.5}));
}

TEST_F(SequentialFields, OneNumberALineAndAllOnOneLineReadTheSame) {
  std::string commas, lines;
  List expected;
  for (int i = 0; i < 215; ++i) {
    const std::string number = std::to_string(i) + ".25";
    commas += (i > 0 ? "," : "") + number;
    lines += number + "\r\n";
    expected.push_back(i + 0.25);
  }
  EXPECT_EQ(Numbers(commas), expected);
  EXPECT_EQ(Numbers(commas + "\r\n"), expected);
  EXPECT_EQ(Numbers(lines), expected);
}

TEST_F(SequentialFields, BlanksBeforeAFieldAreSkipped) {
  EXPECT_EQ(Numbers("  1,   2,\t3\r\n   4"), (List{1, 2, 3, 4}));
  EXPECT_EQ(Texts("  a,   b c"), (Words{"a", "b c"}));
}

TEST_F(SequentialFields, BlanksBehindANumberBelongToTheDelimiterThatFollows) {
  EXPECT_EQ(Numbers("1 ,2  \r\n3\t,4 "), (List{1, 2, 3, 4}));
}

TEST_F(SequentialFields, ADelimiterRightBeforeTheEndMakesNoFurtherField) {
  EXPECT_EQ(Numbers("1,2,"), (List{1, 2}));
  EXPECT_EQ(Numbers("1,2\r\n"), (List{1, 2}));
  EXPECT_EQ(Numbers("1,2\r"), (List{1, 2}));
  EXPECT_EQ(Texts("a,"), (Words{"a"}));
  EXPECT_EQ(Texts("\"a\"\r\n"), (Words{"a"}));
}

TEST_F(SequentialFields, AnEmptyFieldReadsZeroOrAnEmptyText) {
  EXPECT_EQ(Numbers(",1,,2"), (List{0, 1, 0, 2}));
  EXPECT_EQ(Numbers("1\r\n\r\n2"), (List{1, 0, 2}));
  EXPECT_EQ(Texts(",a,,b"), (Words{"", "a", "", "b"}));
  EXPECT_EQ(Texts("\"\",x"), (Words{"", "x"}));
}

TEST_F(SequentialFields, AnEmptyFileHasNoField) {
  SequentialReader reader = Open("");
  EXPECT_TRUE(reader.AtEnd());
  EXPECT_EQ(ErrorOf([&] { reader.ReadNumber(); }), ErrorNumber::kInputPastEndOfFile);
  EXPECT_EQ(ErrorOf([&] { reader.ReadText(); }), ErrorNumber::kInputPastEndOfFile);
}

TEST_F(SequentialFields, ReadingPastTheEndRaisesEveryTime) {
  SequentialReader reader = Open("1,2");
  reader.ReadNumber();
  reader.ReadNumber();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(ErrorOf([&] { reader.ReadNumber(); }), ErrorNumber::kInputPastEndOfFile);
  }
}

TEST_F(SequentialFields, AFieldThatIsNoNumberReadsByTheLeadingNumberRule) {
  EXPECT_EQ(Numbers("x,12V,nan,inf,\"7\",1.2.3"), (List{0, 12, 0, 0, 0, 1.2}));
}

TEST_F(SequentialFields, ANumberTooLargeForADoubleRaisesOverflowAndIsTaken) {
  SequentialReader reader = Open("1e999,5");
  EXPECT_EQ(ErrorOf([&] { reader.ReadNumber(); }), ErrorNumber::kOverflow);
  EXPECT_EQ(reader.ReadNumber(), 5);
}

TEST_F(SequentialFields, AQuotedTextMayHoldCommasBlanksAndLineEnds) {
  EXPECT_EQ(Texts("\"a,b\",\" c \",\"d\r\ne\" ,f"), (Words{"a,b", " c ", "d\r\ne", "f"}));
}

TEST_F(SequentialFields, AQuotedTextWithoutItsEndGoesToTheEndOfTheFile) {
  EXPECT_EQ(Texts("a,\"b,c\r\n"), (Words{"a", "b,c\r\n"}));
}

TEST_F(SequentialFields, TextBehindAClosingQuoteIsTheNextField) {
  EXPECT_EQ(Texts("\"a\"b,c"), (Words{"a", "b", "c"}));
}

TEST_F(SequentialFields, AnUnquotedTextIsCutAtItsComma) {
  SequentialReader reader = Open("12 May, 2026,7");
  EXPECT_EQ(reader.ReadText(), "12 May");
  EXPECT_EQ(reader.ReadNumber(), 2026);
  EXPECT_EQ(reader.ReadNumber(), 7);
}

TEST_F(SequentialFields, TextsAreInTheCodePageOfTheMachine) {
  const test::TestMachine western(1252), japanese(932);
  western.Put(kFile, "\xB5,1");
  EXPECT_EQ(SequentialReader(western, kFile).ReadText(), "\xC2\xB5");
  japanese.Put(kFile, "\x83\x5C,1");
  EXPECT_EQ(SequentialReader(japanese, kFile).ReadText(), "\xE3\x82\xBD");
}

TEST_F(SequentialFields, AMissingFileAndAFolderRaiseWhatOpeningRaises) {
  machine.MakeFolders("C:\\log\\folder");
  EXPECT_EQ(ErrorOf([&] { SequentialReader(machine, "C:\\log\\none.txt"); }),
            ErrorNumber::kFileNotFound);
  EXPECT_EQ(ErrorOf([&] { SequentialReader(machine, "C:\\log\\folder"); }),
            ErrorNumber::kPathFileAccess);
}

TEST_F(SequentialFields, EveryPrefixOfAGoodFileReadsAsManyFieldsAsItHolds) {
  const std::string good = "1.5,2\r\n3 4,\"x\"\r\n-5e-3\r\n";
  std::size_t fields = 0;
  for (std::size_t length = 0; length <= good.size(); ++length) {
    const List numbers = Numbers(good.substr(0, length));
    EXPECT_GE(numbers.size(), fields) << length;
    EXPECT_LE(numbers.size(), 6u) << length;
    fields = numbers.size();
  }
  EXPECT_EQ(fields, 6u);
}

TEST_F(SequentialFields, BinaryBytesAreFieldsLikeAnyOther) {
  std::mt19937 random(1);
  for (int round = 0; round < 50; ++round) {
    std::string bytes(2000, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    const List numbers = Numbers(bytes);
    EXPECT_FALSE(numbers.empty());
    for (const double number : numbers) EXPECT_TRUE(std::isfinite(number));
    EXPECT_FALSE(Texts(bytes).empty());
  }
}

TEST_F(SequentialFields, AFieldOfAHundredMegabytesIsRead) {
  constexpr std::streamoff kSize = 100 * 1024 * 1024;
  machine.Put(kFile, "12");
  {
    // A hole of NULs behind the digits, then the next field.
    std::ofstream out(machine.Native(kFile), std::ios::binary | std::ios::in);
    out.seekp(kSize);
    out << ",7\r\n";
    ASSERT_TRUE(out.flush());
  }
  SequentialReader reader(machine, kFile);
  EXPECT_EQ(reader.ReadNumber(), 12);
  EXPECT_EQ(reader.ReadNumber(), 7);
  EXPECT_TRUE(reader.AtEnd());
}

}  // namespace
}  // namespace logbook
