// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/WrappedText.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/FixedWidthBox.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

using test::FixedWidthBox;
using test::TestMachine;

std::string Wrap(const Machine& machine, long width, const std::string& text) {
  return GetWrappedText(machine, FixedWidthBox(machine, width, text));
}

TEST(GetWrappedText, OneDisplayedLineComesBackAsTyped) {
  TestMachine disk;
  EXPECT_EQ(Wrap(disk, 20, "cones cleaned"), "cones cleaned");
  EXPECT_EQ(Wrap(disk, 20, ""), "");
}

TEST(GetWrappedText, LongParagraphIsBrokenWhereTheBoxWraps) {
  TestMachine disk;
  EXPECT_EQ(Wrap(disk, 5, "abcdefghijkl"), "abcde\r\nfghij\r\nkl");
}

TEST(GetWrappedText, TypedLineEndBeforeAWrappedLineMakesNoEmptyLine) {
  TestMachine disk;
  EXPECT_EQ(Wrap(disk, 5, "abc\r\ndefghijk"), "abc\r\ndefgh\r\nijk");
}

TEST(GetWrappedText, EmptyTypedLinesStay) {
  TestMachine disk;
  EXPECT_EQ(Wrap(disk, 5, "abc\r\n\r\ndef\r\n"), "abc\r\n\r\ndef\r\n");
}

TEST(GetWrappedText, DoubleByteTextIsBrokenAtTheSamePlacesAsShown) {
  TestMachine disk(932);
  EXPECT_EQ(Wrap(disk, 6, "コーン清掃済み"), "コーン\r\n清掃済\r\nみ");
  EXPECT_EQ(Wrap(disk, 5, "aコーンb"), "aコー\r\nンb");
}

TEST(GetWrappedText, WrapAfterAtMostTwoCharactersStaysUnbroken) {
  TestMachine disk;
  EXPECT_EQ(Wrap(disk, 2, "abcdef"), "abcd\r\nef");
  EXPECT_EQ(Wrap(disk, 3, "abcdef"), "abc\r\ndef");
}

TEST(GetWrappedText, TheTwoAreCharactersAndNotBytes) {
  EXPECT_EQ(Wrap(TestMachine(1252), 2, "äöüßéè"), "äöüß\r\néè");
  EXPECT_EQ(Wrap(TestMachine(932), 2, "漢字清掃済"), "漢字清\r\n掃\r\n済");
  EXPECT_EQ(Wrap(TestMachine(932), 4, "漢字清掃済"), "漢字清掃\r\n済");
}

TEST(GetWrappedText, ACharacterBeyondThe16BitsCountsAsTwo) {
  TestMachine disk;
  // Two question marks each in the code page, as wide as a line.
  EXPECT_EQ(Wrap(disk, 2, "\U0001F600ab"), "\U0001F600ab");
  EXPECT_EQ(Wrap(disk, 3, "\U0001F600abc"), "\U0001F600a\r\nbc");
}

// A box that tells of these lines, whatever its text is.
struct ToldLines : FixedWidthBox {
  ToldLines(const Machine& machine, const std::string& text, std::vector<long> places)
      : FixedWidthBox(machine, 80, text), lines(std::move(places)) {}
  int LineCount() const override { return static_cast<int>(lines.size()); }
  long LineIndex(int line) const override { return lines.at(static_cast<std::size_t>(line - 1)); }
  std::vector<long> lines;
};

TEST(GetWrappedText, ALineWithoutAPlaceTakesTheRestOfTheTextOnce) {
  TestMachine disk;
  for (const long none : {0L, -1L}) {
    EXPECT_EQ(GetWrappedText(disk, ToldLines(disk, "abcdefgh", {5, none, none})), "abcde\r\nfgh");
    EXPECT_EQ(GetWrappedText(disk, ToldLines(disk, "abcdefgh", {none, none})), "abcdefgh");
  }
}

TEST(GetWrappedText, ALineMayBeginBehindTheFirstCharacter) {
  TestMachine disk;
  EXPECT_EQ(GetWrappedText(disk, ToldLines(disk, "abcdefgh", {1, 5, -1})), "abcde\r\nfgh");
}

// A box that tells of a line further on than its text goes.
TEST(GetWrappedText, AnOffsetBeyondTheTextEndsTheWork) {
  struct WrongBox : FixedWidthBox {
    using FixedWidthBox::FixedWidthBox;
    int LineCount() const override { return 3; }
    long LineIndex(int line) const override { return line * 5; }
  };
  TestMachine disk;
  EXPECT_EQ(GetWrappedText(disk, WrongBox(disk, 80, "abcdefgh")), "abcde\r\nfgh");
}

TEST(GetWrappedText, FailureGivesWhatWasBuiltSoFar) {
  TestMachine disk;
  FixedWidthBox box(disk, 3, "abcdefghi");
  box.fails_at_line = 2;
  EXPECT_EQ(GetWrappedText(disk, box), "abc\r\n");
  box.fails_at_line = 1;
  EXPECT_EQ(GetWrappedText(disk, box), "");
}

TEST(GetWrappedText, CharacterOutsideTheCodePageCountsAsItsQuestionMarks) {
  TestMachine disk;
  EXPECT_EQ(Wrap(disk, 4, "ab\U0001F600cd"), "ab\U0001F600\r\ncd");
}

}  // namespace
}  // namespace logbook
