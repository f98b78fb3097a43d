// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <memory>
#include <ostream>
#include <string>

#include "Verbs.h"
#include "base/Files.h"
#include "base/RunTimeError.h"
#include "loglist/LogList.h"
#include "state/AppState.h"

namespace logbook::cli {
namespace {

struct ListRequest {
  std::string log_root;
  std::string ini_file;
  bool ce_mode = false;
};

int PrintList(Call& call, const ListRequest& request) {
  call.subject += " " + request.log_root;
  AppState state(call.machine);
  state.CEMode = request.ce_mode;
  state.IniFile = TypedPathText(request.ini_file);
  state.LogRoot = TypedPathText(request.log_root);
  if (!state.LogRoot.ends_with('\\')) state.LogRoot += '\\';
  if (!FolderExists(call.machine, state.LogRoot)) throw RunTimeError(ErrorNumber::kPathNotFound);
  FillCatalogues(state.catalogues);
  ToldMessages messages(call);
  RebuildList(state, messages);
  call.out << ListText(state);
  return kSuccess;
}

}  // namespace

void AddList(Frame& frame) {
  const auto request = std::make_shared<ListRequest>();
  CLI::App& verb = frame.AddVerb(
      "list", "Print what listlog.csv would hold for a folder of logs; nothing is written",
      [request](Call& call) { return PrintList(call, *request); });
  verb.add_option("--log-root", request->log_root, "Folder of the log folders")
      ->required()
      ->type_name("DIR");
  verb.add_option("--ini", request->ini_file, "logbook.ini with the choice of the value columns")
      ->required()
      ->type_name("FILE");
  verb.add_flag("--ce", request->ce_mode, "Take the columns of the CE mode");
}

}  // namespace logbook::cli
