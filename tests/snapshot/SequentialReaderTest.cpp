// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SequentialReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/Errors.h"
#include "support/ProcessFigures.h"
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

TEST_F(SequentialFields, OneDelimiterEndsOneField) {
  EXPECT_EQ(Texts("a\rb\r"), (Words{"a", "b"}));
  EXPECT_EQ(Texts("a,\nb"), (Words{"a", "", "b"}));
  EXPECT_EQ(Texts("a\n\nb"), (Words{"a", "", "b"}));
}

TEST_F(SequentialFields, BlanksBehindANumberBelongToTheDelimiterThatFollows) {
  EXPECT_EQ(Numbers("1 ,"), (List{1}));
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

TEST_F(SequentialFields, AFieldThatIsNoNumberIsToldApartFromZero) {
  SequentialReader reader = Open("0,,x,1e999, -2.5e1 \r\n7");
  const std::vector<std::optional<double>> expected = {0.0,          std::nullopt, std::nullopt,
                                                       std::nullopt, -25.0,        7.0};
  for (const std::optional<double>& each : expected) EXPECT_EQ(reader.FindNumber(), each);
  EXPECT_EQ(ErrorOf([&] { reader.FindNumber(); }), ErrorNumber::kInputPastEndOfFile);
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

class LongFields : public SequentialFields {
 protected:
  // A file of a beginning, a hole of NULs, and what stands behind them.
  SequentialReader OpenHole(std::string_view beginning, std::string_view end) {
    machine.Put(kFile, beginning);
    std::ofstream out(machine.Native(kFile), std::ios::binary | std::ios::in);
    out.seekp(kHole);
    out << end;
    if (!out.flush()) throw std::runtime_error("the file cannot be made");
    return SequentialReader(machine, kFile);
  }

  static constexpr std::streamoff kHole = 96 * 1024 * 1024;
  static constexpr long kLittleMemory = 32 * 1024;  // KiB
  static constexpr std::size_t kLongestField = 64 * 1024;
};

TEST_F(LongFields, ANumberIsReadInBoundedMemory) {
  SequentialReader reader = OpenHole("12", ",7\r\n");
  const long before = test::PeakMemory();
  EXPECT_EQ(reader.ReadNumber(), 12);
  EXPECT_LT(test::PeakMemory() - before, kLittleMemory);
  EXPECT_EQ(reader.ReadNumber(), 7);
  EXPECT_TRUE(reader.AtEnd());
}

TEST_F(LongFields, OfATextTheBeginningCounts) {
  for (const char* beginning : {"stamp", "\"stamp"}) {
    SequentialReader reader = OpenHole(beginning, *beginning == '"' ? "\" ,7\r\n" : ",7\r\n");
    const long before = test::PeakMemory();
    const std::string text = reader.ReadText();
    EXPECT_LT(test::PeakMemory() - before, kLittleMemory);
    EXPECT_EQ(text, "stamp" + std::string(kLongestField - 5, '\0'));
    EXPECT_EQ(reader.ReadText(), "7");
    EXPECT_TRUE(reader.AtEnd());
  }
}

TEST_F(LongFields, OfATextWhoseEndIsAskedForTheEndCounts) {
  SequentialReader reader = OpenHole("stamp", "end,7\r\n");
  const long before = test::PeakMemory();
  const std::string text = reader.ReadTextEnd();
  EXPECT_LT(test::PeakMemory() - before, kLittleMemory);
  EXPECT_TRUE(text.ends_with(std::string(1000, '\0') + "end"));
  EXPECT_EQ(reader.ReadTextEnd(), "7");
}

TEST_F(LongFields, ATextOf64KilobytesIsWhole) {
  const std::string whole = "a" + std::string(kLongestField - 2, 'x') + "b";
  EXPECT_EQ(Open(whole + ",").ReadText(), whole);
  EXPECT_EQ(Open(whole + ",").ReadTextEnd(), whole);
  EXPECT_EQ(Open(whole + "c,").ReadText(), whole);
  EXPECT_TRUE(Open(whole + "c,").ReadTextEnd() == (whole + "c").substr(1));
  std::string with_digit = whole;
  with_digit[1000] = '7';
  EXPECT_EQ(Open(with_digit + ",").ReadTextEnd(), with_digit);
}

TEST_F(LongFields, AFieldIsWholeUpTo64KilobytesAndCutBehindThem) {
  for (const std::size_t size : {kLongestField - 1, kLongestField, kLongestField + 1}) {
    const std::string zeros(size - 1, '0');
    // The digit behind the zeros counts as long as it is one of the 64 KB.
    EXPECT_EQ(Open(zeros + "7,5").ReadNumber(), size > kLongestField ? 0 : 7) << size;
    EXPECT_TRUE(Open(zeros + "7,5").ReadText() == (size > kLongestField ? zeros : zeros + "7"));
    SequentialReader reader = Open(zeros + "7,5");
    reader.ReadNumber();
    EXPECT_EQ(reader.ReadNumber(), 5) << size;
  }
}

TEST_F(LongFields, TheEndOfATextBeginsWithAWholeCharacter) {
  const test::TestMachine japanese(932);
  std::string bytes = "x ";
  for (std::size_t i = 0; i < kLongestField; ++i) bytes += "\x83\x40";
  for (const char* end : {" 1", "  1"}) {
    japanese.Put(kFile, bytes + end + "\x8A\xBF,");
    const std::string text = SequentialReader(japanese, kFile).ReadTextEnd();
    EXPECT_EQ(text, std::string(end) + "\xE6\xBC\xA2");
  }
  // Twice the limit and a byte more, where the middle lies in a character.
  japanese.Put(kFile, std::string(2 * kLongestField, '\x8A') + "1,");
  EXPECT_EQ(SequentialReader(japanese, kFile).ReadTextEnd(), "1");
}

}  // namespace
}  // namespace logbook
