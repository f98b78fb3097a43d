// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "ReportCommand.h"
#include "Verbs.h"
#include "base/Files.h"

namespace logbook::cli {
namespace {

int PrintReport(Call& call, ReportRequest request) {
  call.subject += " " + request.kind + " " + request.folder;
  request.folder = TypedPathText(request.folder);
  ToldMessages messages(call);
  call.out << ReportBytes(call.machine, messages, request);
  return kSuccess;
}

}  // namespace

void AddReport(Frame& frame) {
  const auto request = std::make_shared<ReportRequest>();
  CLI::App& verb = frame.AddVerb(
      "report",
      "Print a report of a log as the viewer makes it, in the code page of the files: the bytes of "
      "its report file, or of the pane for a text of the host; written only with --write",
      [request](Call& call) { return PrintReport(call, *request); });
  verb.add_option("KIND", request->kind, "Which report")
      ->required()
      ->type_name("ANY")  // a longer word would not fit into the line of the kinds
      ->check(CLI::IsMember(std::vector<std::string>(kReportKinds.begin(), kReportKinds.end())));
  verb.add_option("LOGFOLDER", request->folder, "Folder of the log")->required();
  verb.add_flag("--ce", request->ce_mode, "Let \"err\" stand for the CE error log");
  verb.add_flag("--write", request->write, "Write the file that the viewer writes, too");
}

}  // namespace logbook::cli
