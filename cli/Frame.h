// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The frame around every verb of logbookctl: the command line, the machine, the way to the
// terminal, and the one way out of every error. Each message on standard error is a line that
// begins with the program's name and what the verb works on. A new verb is a file of its own with
// one function that calls AddVerb, declared in Verbs.h and named in main.cpp.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Machine.h"
#include "state/Services.h"

namespace logbook::cli {

// Exit statuses. A verb may have others of its own.
inline constexpr int kSuccess = 0;
inline constexpr int kTrouble = 1;
inline constexpr int kWrongUse = 2;

// One call of a verb: what it is given and what it says.
struct Call {
  const Machine& machine;  // of this home, with the code page that was asked for
  std::ostream& out;       // bytes for standard output
  std::ostream& err;
  // What messages name behind the program's name. The verb's name at first; a verb adds the word
  // and the path that it works on as soon as it knows them, before anything can fail.
  std::string subject;

  // Says something on standard error.
  void Tell(const std::string& words) const;
};

// A command line that is wrong in a way that only the verb can see, such as a query; ends it with
// kWrongUse.
class WrongUse : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The work of a verb; returns the exit status. What it raises is told and ends the program.
using Action = std::function<int(Call& call)>;

class Frame {
 public:
  // The streams outlive the frame.
  Frame(std::ostream& out, std::ostream& err);

  // Adds a verb and returns its part of the command line, for its own words and options. `trouble`
  // is the exit status for whatever the action raises.
  CLI::App& AddVerb(const std::string& name, const std::string& description, Action action,
                    int trouble = kTrouble);

  // Reads the command line and runs the verb that it names; returns the exit status: that of the
  // action, `trouble` of the verb (kTrouble without one) if the action raises anything or its
  // output cannot be written, kWrongUse if the command line is wrong. Raises nothing.
  int Run(int argc, const char* const* argv);

 private:
  struct Verb {
    CLI::App* app;
    Action action;
    int trouble;
  };

  int RunVerb(const Verb& verb);
  // Tells of an output that could not be written.
  bool IsWritten();
  std::string WordsForWrongUse(const CLI::Error& error) const;

  std::ostream& out_;
  std::ostream& err_;
  CLI::App app_;
  std::vector<Verb> verbs_;
  int code_page_ = 0;  // 0: that of the machine
};

// What the program would show in a box is told on standard error; every box is answered with OK.
class ToldMessages : public MessageBoxes {
 public:
  explicit ToldMessages(const Call& call) : call_(call) {}
  MessageAnswer Show(const Message& message) override;

 private:
  const Call& call_;
};

}  // namespace logbook::cli
