// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/TextLogs.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/ProcessFigures.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

using test::Viewing;

constexpr const char* kTooLong =
    "Log files contains over 64KB text. Can not display over 64KB log text!";

// A log of this many bytes, line ends counted, whose last line holds `last` characters.
std::string LogOf(std::size_t bytes, std::size_t last = 3) {
  std::string text = std::string(last, 'z') + "\r\n";
  std::string log;
  while (log.size() + text.size() + 100 < bytes) log += std::string(48, 'a') + "\r\n";
  const std::size_t rest = bytes - log.size() - text.size();
  return log + std::string(rest - 2, 'b') + "\r\n" + text;
}

struct LimitedLog {
  void (*view)(const AppState&, Services&, LogView&);
  const char* file;
};
constexpr LimitedLog kLimitedLogs[] = {{ViewACQLog, "acqlog.txt"},
                                       {ViewSeqLog, "sequence.log"},
                                       {ViewErrLog, "errlog.txt"},
                                       {ViewCEErrLog, "ceerrlog.txt"}};

TEST(TextLogs, EachRoutineShowsItsFile) {
  Viewing viewing;
  for (const auto& [view, file] : kLimitedLogs) {
    viewing.Put(file, std::string("this is ") + file + "\r\n");
    view(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, std::string("this is ") + file + "\r\n");
  }
  viewing.Put("chnseq.log", "chained\r\n");
  ViewChnSeqLog(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "chained\r\n");
}

TEST(TextLogs, AMissingFileGivesAnEmptyPaneAndNoMessage) {
  Viewing viewing;
  for (const auto& [view, file] : kLimitedLogs) {
    viewing.view.ReportText = "older";
    view(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "") << file;
    EXPECT_FALSE(viewing.Has(file));
  }
  viewing.view.ReportText = "older";
  ViewChnSeqLog(viewing.state, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(TextLogs, AFileOfZeroLengthGivesAnEmptyPaneAndNoMessage) {
  Viewing viewing;
  for (const auto& [view, file] : kLimitedLogs) {
    viewing.Put(file, "");
    view(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "") << file;
  }
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(TextLogs, ALogOf65535BytesIsShownWholeWithoutMessage) {
  Viewing viewing;
  const std::string log = LogOf(65535);
  ASSERT_EQ(log.size(), 65535U);
  for (const auto& [view, file] : kLimitedLogs) {
    viewing.Put(file, log);
    view(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, log) << file;
  }
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(TextLogs, OneByteMoreShowsAllButTheLastLineAndOneMessage) {
  for (const auto& [view, file] : kLimitedLogs) {
    Viewing viewing;
    const std::string log = LogOf(65536);
    viewing.Put(file, log);
    view(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, log.substr(0, log.size() - 5)) << file;
    ASSERT_EQ(viewing.messages.shown.size(), 1U) << file;
    EXPECT_EQ(viewing.messages.shown[0].Text, kTooLong);
    EXPECT_EQ(viewing.messages.shown[0].Icon, MessageIcon::kExclamation);
    EXPECT_EQ(viewing.messages.shown[0].Buttons, MessageButtons::kOk);
    EXPECT_FALSE(viewing.messages.shown[0].Title.has_value());
  }
}

TEST(TextLogs, WhatLiesBehindTheLineThatDoesNotFitStaysUnseen) {
  Viewing viewing;
  viewing.Put("acqlog.txt", "first\r\n" + std::string(65530, 'x') + "\r\nshort\r\n");
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "first\r\n");
  EXPECT_EQ(viewing.messages.shown.size(), 1U);
}

TEST(TextLogs, AFirstLineThatFillsTheLimitGivesTheMessageAndAnEmptyPane) {
  for (const std::size_t length : {65534U, 65535U, 65536U, 131072U, 131073U, 200000U}) {
    for (const char* end : {"\r\n", ""}) {
      Viewing viewing;
      viewing.Put("errlog.txt", std::string(length, 'x') + end + "second\r\n");
      ViewErrLog(viewing.state, viewing.services, viewing.view);
      EXPECT_EQ(viewing.view.ReportText, "") << length;
      EXPECT_EQ(viewing.messages.shown.size(), 1U) << length;
    }
  }
}

TEST(TextLogs, AFirstLineOf65533BytesIsShown) {
  Viewing viewing;
  viewing.Put("errlog.txt", std::string(65533, 'x'));
  ViewErrLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, std::string(65533, 'x') + "\r\n");
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(TextLogs, TheLimitCountsBytesOfTheCodePageAndNotCharacters) {
  Viewing viewing(932);
  std::string log, shown;
  for (int i = 0; i < 32767; ++i) {  // 2 bytes each, 3 in UTF-8
    log += "\x8A\xBF";
    shown += "\xE6\xBC\xA2";
  }
  viewing.Put("acqlog.txt", log.substr(2));  // 65532 bytes and the line end
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, shown.substr(3) + "\r\n");
  EXPECT_TRUE(viewing.messages.shown.empty());
  viewing.Put("acqlog.txt", log);  // 65534 bytes and the line end
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "");
  EXPECT_EQ(viewing.messages.shown.size(), 1U);
}

TEST(TextLogs, TheLimitCountsALineEndAsTwoBytesWhateverItIsInTheFile) {
  std::string log;
  for (int i = 0; i < 32768; ++i) log += "\n";
  Viewing viewing;
  viewing.Put("acqlog.txt", log);
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText.size(), 65534U);
  EXPECT_EQ(viewing.messages.shown.size(), 1U);
}

TEST(TextLogs, EachLineIsGivenBackWithCarriageReturnAndLineFeed) {
  Viewing viewing;
  for (const char* log : {"a\nb\n\nc", "a\r\nb\r\n\r\nc\r\n", "a\rb\r\rc\r"}) {
    viewing.Put("sequence.log", log);
    viewing.Put("chnseq.log", log);
    ViewSeqLog(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "a\r\nb\r\n\r\nc\r\n");
    viewing.view.ReportText.clear();
    ViewChnSeqLog(viewing.state, viewing.view);
    EXPECT_EQ(viewing.view.ReportText, "a\r\nb\r\n\r\nc\r\n");
  }
}

TEST(TextLogs, ThePaneShowsTheCharactersOfTheCodePage) {
  Viewing viewing(1252);
  viewing.Put("sequence.log",
              "37 \xB0"
              "C\t\xE4\r\n");
  ViewSeqLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText,
            "37 \xC2\xB0"
            "C\t\xC3\xA4\r\n");
}

TEST(TextLogs, TheChainedSequenceLogHasNoLimitAndNoMessage) {
  Viewing viewing;
  const std::string log = LogOf(300000);
  viewing.Put("chnseq.log", log);
  ViewChnSeqLog(viewing.state, viewing.view);
  EXPECT_EQ(viewing.WholeReport(), log);
  EXPECT_TRUE(viewing.messages.shown.empty());
}

TEST(TextLogs, ALongTextIsReadAsItIsTaken) {
  Viewing viewing;
  viewing.Put("chnseq.log", LogOf(20'000'000));
  const std::int64_t before = test::BytesRead();
  ViewChnSeqLog(viewing.state, viewing.view);
  EXPECT_LT(test::BytesRead() - before, 1'000'000);
  EXPECT_GE(viewing.view.ReportText.size(), 200'000U);
  EXPECT_LT(viewing.view.ReportText.size(), 400'000U);
  EXPECT_EQ(viewing.WholeReport(), LogOf(20'000'000));
  EXPECT_TRUE(viewing.view.ReportRest.AtEnd());
}

TEST(TextLogs, AnotherReportEndsALongText) {
  Viewing viewing;
  for (const ViewCommand& command : kViewCommands) {
    viewing.Put("chnseq.log", LogOf(600'000));
    viewing.Choose(&LogView::mnuChainlog);
    viewing.disk.Put(Viewing::File("chnseq.log"), "");
    command.Run(viewing.state, viewing.services, viewing.view);
    EXPECT_TRUE(viewing.view.ReportRest.AtEnd());
  }
}

TEST(TextLines, GiveTheLinesOfEveryPieceOnce) {
  const test::TestMachine disk;
  disk.Put("C:\\log.txt", "a\nb\r\n\r\ncd\re");
  for (const std::size_t bytes : {1U, 3U, 4U, 100U}) {
    TextLines lines(disk, "C:\\log.txt");
    std::string all;
    while (!lines.AtEnd()) {
      const std::string piece = lines.Take(bytes);
      EXPECT_FALSE(piece.empty());
      all += piece;
    }
    EXPECT_EQ(all, "a\r\nb\r\n\r\ncd\r\ne\r\n") << bytes;
    EXPECT_EQ(lines.Take(bytes), "");
  }
}

TEST(TextLogs, TheHostsFilesAreNotChanged) {
  Viewing viewing;
  viewing.Put("acqlog.txt", "a\nb");
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.Get("acqlog.txt"), "a\nb");
}

TEST(TextLogs, ASecondViewReadsTheFileAfresh) {
  Viewing viewing;
  viewing.Put("acqlog.txt", "one\r\n");
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  viewing.Put("acqlog.txt", "two\r\n");
  ViewACQLog(viewing.state, viewing.services, viewing.view);
  EXPECT_EQ(viewing.view.ReportText, "two\r\n");
}

TEST(TextLogs, AFileThatCannotBeOpenedIsAnErrorWithoutTrap) {
  Viewing viewing;
  viewing.view.ReportText = "older";
  for (const auto& [view, file] : kLimitedLogs) {
    viewing.disk.MakeFolders(Viewing::File(file));
    EXPECT_THROW(view(viewing.state, viewing.services, viewing.view), RunTimeError) << file;
    EXPECT_EQ(viewing.view.ReportText, "");
  }
  viewing.disk.MakeFolders(Viewing::File("chnseq.log"));
  EXPECT_THROW(ViewChnSeqLog(viewing.state, viewing.view), RunTimeError);
}

TEST(TextLogs, EveryPrefixOfALogIsShown) {
  Viewing viewing(932);
  const std::string log = "\x8A\xBF one\r\n\r\ntwo\n\x81";
  std::size_t shown = 0;
  for (std::size_t length = 0; length <= log.size(); ++length) {
    viewing.Put("acqlog.txt", log.substr(0, length));
    const LimitedText text = ReadLimitedText(viewing.disk, Viewing::File("acqlog.txt"));
    EXPECT_FALSE(text.OverLimit);
    EXPECT_EQ(text.Text, ReadWholeText(viewing.disk, Viewing::File("acqlog.txt")));
    EXPECT_EQ(text.Text.empty(), length == 0);
    shown = text.Text.size();
  }
  EXPECT_GT(shown, log.size());
}

TEST(TextLogs, TheOldReportIsGoneWhileTheMessageIsOnShow) {
  for (const auto& [view, file] : kLimitedLogs) {
    Viewing viewing;
    viewing.Put(file, LogOf(65536));
    viewing.view.ReportText = "older";
    std::string behind = "never shown";
    viewing.messages.on_show = [&] { behind = viewing.view.ReportText; };
    view(viewing.state, viewing.services, viewing.view);
    EXPECT_EQ(behind, "") << file;
  }
}

// A log that goes on for four gigabytes, most of them a hole in the file.
class HugeLog : public testing::Test {
 protected:
  void Put(const std::string& beginning) {
    viewing.Put("acqlog.txt", beginning);
    std::ofstream(viewing.disk.Native(Viewing::File("acqlog.txt")),
                  std::ios::binary | std::ios::in | std::ios::out)
        .seekp(4'000'000'000)
        .put('x');
  }
  // What a view of the log has read, of which two lines of 64 KB and a buffer may be of use.
  std::int64_t BytesReadByAView() {
    const std::int64_t before = test::BytesRead();
    ViewACQLog(viewing.state, viewing.services, viewing.view);
    return test::BytesRead() - before;
  }

  static constexpr std::int64_t kLittle = 512 * 1024;
  Viewing viewing;
};

TEST_F(HugeLog, IsShownUpToItsLimitWithoutReadingTheRest) {
  std::string beginning;
  while (beginning.size() < 70000) beginning += "a line of a log that has grown\r\n";
  Put(beginning);
  EXPECT_LT(BytesReadByAView(), kLittle);
  EXPECT_EQ(viewing.view.ReportText, beginning.substr(0, 65535 / 32 * 32));
  EXPECT_EQ(viewing.messages.shown.size(), 1U);
}

TEST_F(HugeLog, ALineWithoutEndIsNotReadToItsEnd) {
  Put("first\r\nx");
  EXPECT_LT(BytesReadByAView(), kLittle);
  EXPECT_EQ(viewing.view.ReportText, "first\r\n");
  EXPECT_EQ(viewing.messages.shown.size(), 1U);
}

TEST_F(HugeLog, ShortLinesBehindTheOneThatDoesNotFitAreNotReadEither) {
  std::string beginning = "first\r\n" + std::string(65530, 'x') + "\r\n";
  while (beginning.size() < 2'000'000) beginning += "short\r\n";
  viewing.Put("acqlog.txt", beginning);
  EXPECT_LT(BytesReadByAView(), kLittle);
  EXPECT_EQ(viewing.view.ReportText, "first\r\n");
}

TEST(ReadLineUpTo, GivesLinesAsTheirFileHasThemAndTheBeginningOfALongOne) {
  const test::TestMachine disk;
  const auto lines_of = [&](const std::string& bytes, std::size_t most) {
    disk.Put("C:\\log.txt", bytes);
    InputFile file(disk, "C:\\log.txt");
    std::vector<std::string> lines;
    while (!file.AtEnd()) lines.push_back(ReadLineUpTo(file, most));
    return lines;
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(lines_of("a\r\nb\nc\rd", 10), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(lines_of("\r\n\r\n\n\r", 10), (Lines{"", "", "", ""}));
  EXPECT_EQ(lines_of("abc\r\nd", 3), (Lines{"abc", "d"}));
  EXPECT_EQ(lines_of("abcdef\r\ng", 3), (Lines{"abcd", "ef", "g"}));
  const std::string buffer(65536, 'x');  // a line end behind the first buffer of a file
  EXPECT_EQ(lines_of(buffer + "\r\nb", 70000), (Lines{buffer, "b"}));
  EXPECT_EQ(lines_of(buffer.substr(1) + "\r\nb", 70000), (Lines{buffer.substr(1), "b"}));
}

}  // namespace
}  // namespace logbook
