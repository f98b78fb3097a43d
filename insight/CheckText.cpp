// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/CheckText.h"

#include <nlohmann/json.hpp>

#include "insight/VisibleText.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

std::string Line(const Finding& finding) {
  std::string line =
      "  " + (finding.log.empty() ? std::string("log root") : VisibleName(finding.log));
  if (!finding.detail.empty()) line += ": " + VisibleName(finding.detail);
  return line + '\n';
}

}  // namespace

std::string FindingsText(const RootFindings& findings) {
  if (findings.findings.empty()) return "no finding\n";
  std::string text;
  for (const FindingKind& kind : kFindingKinds) {
    std::string lines;
    for (const Finding& finding : findings.findings) {
      if (finding.code == kind.code) lines += Line(finding);
    }
    if (lines.empty()) continue;
    text += std::string(kind.code) + ": " + std::string(kind.meaning) + "; " +
            std::string(kind.action) + ".\n" + lines;
  }
  return text;
}

std::string FindingsJson(const std::vector<RootFindings>& roots) {
  Json list = Json::array();
  for (const RootFindings& root : roots) {
    Json findings = Json::array();
    for (const Finding& finding : root.findings) {
      const FindingKind* kind = FindKind(finding.code);
      findings.push_back({{"code", finding.code},
                          {"log", finding.log.empty() ? Json(nullptr) : Json(finding.log)},
                          {"detail", finding.detail},
                          {"meaning", kind->meaning},
                          {"action", kind->action}});
    }
    list.push_back({{"root", root.root}, {"findings", std::move(findings)}});
  }
  Json document;
  document["roots"] = std::move(list);
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace logbook::insight
