// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <memory>
#include <ostream>

#include "LogRoots.h"
#include "Verbs.h"
#include "base/Files.h"
#include "insight/CheckText.h"
#include "insight/VisibleText.h"

namespace logbook::cli {
namespace {

constexpr int kFindings = 1;
constexpr int kCheckTrouble = 2;

struct CheckRequest {
  LogRootOptions roots;
  std::string today;
  bool json = false;
};

int TellFindings(Call& call, const CheckRequest& request) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  const insight::LocalDay today = TodayOf(request.today);
  std::vector<insight::RootFindings> roots;
  bool any = false;
  for (const std::string& root : FindLogRoots(call, request.roots)) {
    roots.push_back({root, insight::CheckLogRoot(call.machine, catalogues, PathText(root), today)});
    any |= !roots.back().findings.empty();
  }
  if (request.json) call.out << FindingsJson(roots);
  for (const insight::RootFindings& root : roots) {
    if (request.json) break;
    if (roots.size() > 1) call.out << insight::VisibleName(root.root) << '\n';
    call.out << FindingsText(root);
  }
  return any ? kFindings : kSuccess;
}

}  // namespace

void AddCheck(Frame& frame) {
  const auto request = std::make_shared<CheckRequest>();
  CLI::App& verb = frame.AddVerb(
      "check",
      "Tell what is wrong with a folder of logs, what it means and what to do; the exit status is "
      "0 for no finding, 1 for findings, 2 for trouble",
      [request](Call& call) { return TellFindings(call, *request); }, kCheckTrouble);
  AddLogRootOption(verb, request->roots);
  verb.add_option("--today", request->today, "Look ahead from this day")->type_name("YYYY-MM-DD");
  verb.add_flag("--json", request->json, "Print one JSON document");
}

}  // namespace logbook::cli
