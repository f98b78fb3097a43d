// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The frame around the verbs of logbookctl, with verbs that end in every way.

#include "Frame.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/RunTimeError.h"

namespace logbook::cli {
namespace {

class FrameTest : public testing::Test {
 protected:
  int Run(std::vector<const char*> words) {
    words.insert(words.begin(), "logbookctl");
    return frame_.Run(static_cast<int>(words.size()), words.data());
  }

  std::ostringstream out_, err_;
  Frame frame_{out_, err_};
};

TEST_F(FrameTest, TheStatusOfAVerbIsThatOfTheProgram) {
  frame_.AddVerb("differ", "", [](Call& call) {
    call.out << "a difference\n";
    return 7;
  });
  EXPECT_EQ(Run({"differ"}), 7);
  EXPECT_EQ(out_.str(), "a difference\n");
  EXPECT_EQ(err_.str(), "");
}

TEST_F(FrameTest, TheVerbThatIsNamedRunsAlone) {
  int runs = 0;
  frame_.AddVerb("one", "", [&](Call&) { return ++runs; });
  frame_.AddVerb("two", "", [&](Call&) { return runs += 10; });
  EXPECT_EQ(Run({"two"}), 10);
  EXPECT_EQ(runs, 10);
}

TEST_F(FrameTest, AVerbHasOptionsOfItsOwnAndTheMachineThatWasAskedFor) {
  int count = 0;
  CLI::App& verb = frame_.AddVerb("page", "", [](Call& call) {
    call.out << call.machine.code_page->Number();
    return kSuccess;
  });
  verb.add_option("--count", count);
  EXPECT_EQ(Run({"page", "--count", "3", "--code-page", "932"}), 0);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(out_.str(), "932");
}

// Every error ends with the verb's status and one line that tells program, subject and words.
TEST_F(FrameTest, WhateverAVerbRaisesEndsInWords) {
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[] { throw RunTimeError(ErrorNumber::kDiskFull); }, "run-time error 61: Disk full"},
      {[] { throw RunTimeError(ErrorNumber::kDeviceInputOutput, "gone"); },
       "run-time error 57: gone"},
      {[] { throw std::bad_alloc(); }, "run-time error 7: Out of memory"},
      {[] { throw std::bad_array_new_length(); }, "run-time error 7: Out of memory"},
      {[] { throw std::length_error("too long"); }, "too long"},
      {[] { throw std::runtime_error("no such thing"); }, "no such thing"},
      {[] { throw 7; }, "an error without words"},
  };
  std::function<void()> raise;
  frame_.AddVerb("fail", "", [&](Call& call) {
    call.subject += " C:\\logs";
    raise();
    return kSuccess;
  });
  for (const auto& [raising, words] : cases) {
    raise = raising;
    err_.str("");
    EXPECT_EQ(Run({"fail"}), 1) << words;
    EXPECT_EQ(err_.str(), "logbookctl: fail C:\\logs: " + words + "\n");
  }
}

TEST_F(FrameTest, AVerbMayHaveAStatusOfItsOwnForTrouble) {
  frame_.AddVerb(
      "diff", "", [](Call&) -> int { throw std::bad_alloc(); }, 2);
  EXPECT_EQ(Run({"diff"}), 2);
}

TEST_F(FrameTest, AnOutputThatFailsIsTrouble) {
  frame_.AddVerb("print", "", [](Call& call) {
    call.out.setstate(std::ios::badbit);
    return kSuccess;
  });
  EXPECT_EQ(Run({"print"}), 1);
  EXPECT_EQ(err_.str(),
            "logbookctl: print: standard output: run-time error 57: Device I/O error\n");
}

TEST_F(FrameTest, AHelpThatCannotBeWrittenIsTrouble) {
  frame_.AddVerb("run", "", [](Call&) { return kSuccess; });
  for (const char* option : {"--help", "--version"}) {
    err_.str("");
    out_.clear();
    EXPECT_EQ(Run({option}), 0) << option;
    out_.setstate(std::ios::badbit);
    EXPECT_EQ(Run({option}), 1) << option;
    EXPECT_EQ(err_.str(), "logbookctl: standard output: run-time error 57: Device I/O error\n");
  }
}

TEST_F(FrameTest, WhatTheVerbAloneFindsWrongIsWrongUse) {
  frame_.AddVerb(
      "find", "", [](Call&) -> int { throw WrongUse("no such \x1B row"); }, 1);
  EXPECT_EQ(Run({"find"}), 2);
  EXPECT_EQ(err_.str(), "logbookctl: find: no such \\x1B row\n");
}

TEST_F(FrameTest, WhatABoxWouldShowIsToldWithTheSubject) {
  frame_.AddVerb("ask", "", [](Call& call) {
    call.subject += " one";
    ToldMessages messages(call);
    EXPECT_EQ(messages.Show({.Text = "Not all is shown."}), MessageAnswer::kOk);
    return kSuccess;
  });
  EXPECT_EQ(Run({"ask"}), 0);
  EXPECT_EQ(err_.str(), "logbookctl: ask one: Not all is shown.\n");
}

TEST_F(FrameTest, WrongUseRunsNothing) {
  frame_.AddVerb("run", "", [](Call&) {
    ADD_FAILURE() << "it has run";
    return kSuccess;
  });
  for (const auto& words : {std::vector<const char*>{}, {"other"}, {"run", "more"}, {"--other"}}) {
    err_.str("");
    EXPECT_EQ(Run(words), 2);
    EXPECT_TRUE(err_.str().starts_with("logbookctl: ")) << err_.str();
  }
}

}  // namespace
}  // namespace logbook::cli
