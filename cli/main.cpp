// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// logbookctl: what the logbook knows and shows, on the terminal. It only reads, unless a report is
// to be written.

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "CatalogueText.h"
#include "ReportCommand.h"
#include "base/Files.h"
#include "base/Machine.h"
#include "base/RunTimeError.h"
#include "catalogue/ItemRecord.h"
#include "loglist/LogList.h"
#include "resources/Resources.h"
#include "state/AppState.h"
#include "state/Services.h"

namespace {

using logbook::AppState;
using logbook::ErrorNumber;
using logbook::Machine;
using logbook::RunTimeError;

constexpr int kRunTimeErrorStatus = 1;
constexpr int kWrongUseStatus = 2;

struct Request {
  int code_page = 0;      // 0: that of the machine
  std::string catalogue;  // empty: all of them
  std::string log_root;
  std::string ini_file;
  bool ce_mode = false;
  logbook::ReportRequest report;
};

// What the program would show in a box goes to standard error.
class TerminalMessages : public logbook::MessageBoxes {
 public:
  logbook::MessageAnswer Show(const logbook::Message& message) override {
    std::cerr << "logbookctl: " << message.Text << '\n';
    return logbook::MessageAnswer::kOk;
  }
};

std::string Catalogue(const Request& request) {
  logbook::Catalogues catalogues;
  FillCatalogues(catalogues);
  if (!request.catalogue.empty()) return CatalogueText(catalogues, request.catalogue);
  std::string text;
  for (const std::string_view name : logbook::kCatalogueNames) {
    if (!text.empty()) text += '\n';
    text += CatalogueText(catalogues, name);
  }
  return text;
}

std::string Strings() {
  std::string text;
  for (const logbook::StringResource& each : logbook::AllStrings()) {
    text += std::to_string(each.number) + '\t' + std::string(each.text) + '\n';
  }
  return text;
}

std::string List(const Request& request, const Machine& machine) {
  AppState state(machine);
  state.CEMode = request.ce_mode;
  state.IniFile = logbook::TypedPathText(request.ini_file);
  state.LogRoot = logbook::TypedPathText(request.log_root);
  if (!state.LogRoot.ends_with('\\')) state.LogRoot += '\\';
  if (!FolderExists(machine, state.LogRoot)) throw RunTimeError(ErrorNumber::kPathNotFound);
  FillCatalogues(state.catalogues);
  TerminalMessages messages;
  RebuildList(state, messages);
  return ListText(state);
}

std::string Report(const Request& request, const Machine& machine) {
  logbook::ReportRequest report = request.report;
  report.folder = logbook::TypedPathText(report.folder);
  TerminalMessages messages;
  return ReportBytes(machine, messages, report);
}

Machine MachineFor(const Request& request) {
  Machine machine = logbook::OpenMachine(logbook::DefaultHome());
  if (request.code_page != 0) machine.code_page = logbook::CodePage::Find(request.code_page);
  return machine;
}

void Describe(CLI::App& app, Request& request) {
  app.require_subcommand(1);
  app.set_version_flag("--version", "logbookctl " LOGBOOK_VERSION);
  app.fallthrough();
  app.add_option("--code-page", request.code_page,
                 "Code page of the files, instead of the machine's")
      ->check(CLI::IsMember({932, 936, 949, 950, 1250, 1251, 1252}));

  CLI::App* catalogue = app.add_subcommand(
      "catalogue", "Print a catalogue, or all of them, as tab-separated rows with a header line");
  catalogue->add_option("NAME", request.catalogue, "Which one")
      ->check(CLI::IsMember({"tune", "meter", "analog", "sys", "bout", "bin", "items"}));

  app.add_subcommand("strings", "Print the string table: number, tab, text");

  CLI::App* list = app.add_subcommand(
      "list", "Print what listlog.csv would hold for a folder of logs; nothing is written");
  list->add_option("--log-root", request.log_root, "Folder of the log folders")
      ->required()
      ->type_name("DIR");
  list->add_option("--ini", request.ini_file, "logbook.ini with the choice of the value columns")
      ->required()
      ->type_name("FILE");
  list->add_flag("--ce", request.ce_mode, "Take the columns of the CE mode");
}

void DescribeReport(CLI::App& app, logbook::ReportRequest& request) {
  CLI::App* report = app.add_subcommand(
      "report",
      "Print a report of a log as the viewer makes it, in the code page of the files: the bytes of "
      "its report file, or of the pane for a text of the host; nothing is written");
  report->add_option("KIND", request.kind, "Which report")
      ->required()
      ->check(CLI::IsMember(
          std::vector<std::string>(logbook::kReportKinds.begin(), logbook::kReportKinds.end())));
  report->add_option("LOGFOLDER", request.folder, "Folder of the log")->required();
  report->add_flag("--ce", request.ce_mode, "Let \"err\" stand for the CE error log");
  report->add_flag("--write", request.write, "Write the file that the viewer writes, too");
}

std::string Run(const CLI::App& app, const Request& request) {
  if (app.got_subcommand("catalogue")) return Catalogue(request);
  if (app.got_subcommand("strings")) return Strings();
  if (app.got_subcommand("report")) return Report(request, MachineFor(request));
  return List(request, MachineFor(request));
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Prints what the maintenance logbook knows and shows.", "logbookctl");
  Request request;
  Describe(app, request);
  DescribeReport(app, request.report);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUseStatus;
  }
  try {
    std::cout << Run(app, request) << std::flush;
    if (!std::cout) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
  } catch (const RunTimeError& error) {
    std::cerr << "logbookctl: run-time error " << static_cast<int>(error.Number()) << ": "
              << error.Description() << '\n';
    return kRunTimeErrorStatus;
  }
  return 0;
}
