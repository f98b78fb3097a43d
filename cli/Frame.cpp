// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Frame.h"

#include <charconv>
#include <exception>
#include <memory>
#include <new>
#include <ostream>
#include <utility>

#include "Completion.h"
#include "HelpFormatter.h"
#include "base/RunTimeError.h"
#include "insight/VisibleText.h"

namespace logbook::cli {
namespace {

constexpr const char* kProgram = "logbookctl";

std::string Line(const std::string& subject, const std::string& words) {
  return std::string(kProgram) + ": " +
         (subject.empty() ? "" : insight::VisibleName(subject) + ": ") +
         insight::VisibleText(words) + '\n';
}

std::string WordsFor(const RunTimeError& error) {
  return "run-time error " + std::to_string(static_cast<int>(error.Number())) + ": " +
         error.Description();
}

// The words for whatever an action has raised; called while it is handled.
std::string WordsForRaised() {
  try {
    throw;
  } catch (const RunTimeError& error) {
    return WordsFor(error);
  } catch (const std::bad_alloc&) {
    return WordsFor(RunTimeError(ErrorNumber::kOutOfMemory));
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an error without words";
  }
}

// What is wrong with a code page as it was typed; empty if nothing is.
std::string CodePageFault(const std::string& typed) {
  int number = 0;
  const char* const end = typed.data() + typed.size();
  const auto [stop, error] = std::from_chars(typed.data(), end, number);
  if (error == std::errc() && stop == end && CodePage::Find(number) != nullptr) return {};
  return "there is no code page \"" + typed + "\"";
}

}  // namespace

void Call::Tell(const std::string& words) const {
  err << Line(subject, words) << std::flush;
}

Frame::Frame(std::ostream& out, std::ostream& err)
    : out_(out),
      err_(err),
      app_("Prints what the maintenance logbook knows and shows.", std::string(kProgram)) {
  app_.require_subcommand(1);
  app_.set_version_flag("--version", std::string(kProgram) + " " LOGBOOK_VERSION);
  app_.formatter(std::make_shared<HelpFormatter>());  // of the verbs, too
  app_.fallthrough();
  app_.add_option("--code-page", code_page_,
                  "Code page of the files, such as 932 or 1252, instead of the machine's")
      ->check(CLI::Validator(CodePageFault, ""));
  app_.add_option_function<std::string>(
          "--completion",
          [this](const std::string& shell) {
            throw CLI::CallForVersion(CompletionScript(CompletionTable(app_), shell), 0);
          },
          "Print the script that completes this command line in a shell, and exit")
      ->check(
          CLI::IsMember(std::vector<std::string>(kCompletedShells.begin(), kCompletedShells.end())))
      ->type_name("SHELL");
  app_.failure_message(
      [this](const CLI::App*, const CLI::Error& error) { return WordsForWrongUse(error); });
}

CLI::App& Frame::AddVerb(const std::string& name, const std::string& description, Action action,
                         int trouble) {
  CLI::App* app = app_.add_subcommand(name, description);
  verbs_.push_back({app, std::move(action), trouble});
  return *app;
}

// The parser misses a verb before it looks at a word that it does not know.
std::string Frame::WordsForWrongUse(const CLI::Error& error) const {
  const std::string hint = "; see --help";
  const auto named = app_.get_subcommands();
  if (!named.empty()) return Line(named.front()->get_name(), error.what() + hint);
  const auto unknown = app_.remaining();
  if (!unknown.empty()) return Line("", "unknown word \"" + unknown.front() + "\"" + hint);
  return Line("", "a verb is missing" + hint);
}

int Frame::Run(int argc, const char* const* argv) {
  try {
    app_.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (app_.exit(error, out_, err_) != 0) return kWrongUse;
    return IsWritten() ? kSuccess : kTrouble;
  } catch (...) {
    err_ << Line("", WordsForRaised()) << std::flush;
    return kTrouble;
  }
  for (const Verb& verb : verbs_) {
    if (app_.got_subcommand(verb.app)) return RunVerb(verb);
  }
  return kWrongUse;
}

bool Frame::IsWritten() {
  if (out_.flush()) return true;
  err_ << Line("standard output", WordsFor(RunTimeError(ErrorNumber::kDeviceInputOutput)))
       << std::flush;
  return false;
}

int Frame::RunVerb(const Verb& verb) {
  Machine machine;
  Call call{machine, out_, err_, verb.app->get_name()};
  try {
    machine = OpenMachine(DefaultHome());
    if (code_page_ != 0) machine.code_page = CodePage::Find(code_page_);
    const int status = verb.action(call);
    if (out_.flush()) return status;
    call.subject += ": standard output";
    throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  } catch (const WrongUse& error) {
    call.Tell(error.what());
    return kWrongUse;
  } catch (...) {
    call.Tell(WordsForRaised());
    return verb.trouble;
  }
}

MessageAnswer ToldMessages::Show(const Message& message) {
  call_.Tell(message.Text);
  return MessageAnswer::kOk;
}

}  // namespace logbook::cli
