// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/WrappedText.h"

#include <gtest/gtest.h>

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
