// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <memory>
#include <ostream>

#include "LogRoots.h"
#include "Output.h"
#include "RowWords.h"
#include "Verbs.h"
#include "insight/Baselines.h"
#include "insight/DifferenceText.h"
#include "insight/VisibleText.h"

namespace logbook::cli {
namespace {

using insight::LogDifference;
using insight::LogReading;

constexpr int kDifferent = 1;
constexpr int kDiffTrouble = 2;

struct DiffRequest {
  LogRootOptions roots;
  std::vector<std::string> logs;
  std::string baseline;
  std::string keep;
  std::string drop;
  bool list = false;
  std::string tolerance;
  std::string tolerances;
  std::string html;
  bool json = false;
};

insight::BaselineFolder Baselines() {
  const std::string folder = insight::ConfigFolder();
  if (folder.empty()) throw UserError("the environment names no folder for settings");
  return insight::BaselineFolder(folder + "/baselines");
}

insight::Amount AmountOf(const std::string& typed) {
  const auto amount = insight::ParseAmount(typed);
  if (!amount) throw UserError("\"" + typed + "\" is no tolerance: a number, or one with \"%\"");
  return *amount;
}

void TakeTolerance(const Catalogues& catalogues, const std::string& file,
                   const insight::SettingsEntry& entry, insight::Tolerances& tolerances) {
  const auto amount = insight::ParseAmount(entry.value);
  if (!amount) {
    throw insight::SettingsError(file, entry.line,
                                 "expected a number of 0 or more, or one with \"%\" behind it");
  }
  if (const auto catalogue = insight::FindCatalogue(entry.key)) {
    for (int row = 0; row < InfoOf(*catalogue).Rows; ++row) {
      tolerances.rows.emplace(insight::PlaceOf({*catalogue, row}), *amount);
    }
    return;
  }
  for (const insight::RowId& id : FindSettingsRows(catalogues, file, entry.line, entry.key)) {
    tolerances.rows[PlaceOf(id)] = *amount;
  }
}

insight::Tolerances ReadTolerances(Call& call, const Catalogues& catalogues,
                                   const DiffRequest& request) {
  insight::Tolerances tolerances;
  if (!request.tolerance.empty()) tolerances.everywhere = AmountOf(request.tolerance);
  const std::string file = SettingsFileOr(call, request.tolerances, "tolerances.ini");
  if (file.empty()) return tolerances;
  for (const auto& section : insight::ParseSettings(file, ReadSettingsFile(call, file))) {
    if (!insight::SameName(section.name, "Tolerances")) {
      const int line = section.line == 0 ? section.entries.front().line : section.line;
      throw insight::SettingsError(file, line, "the only section is [Tolerances]");
    }
    for (const insight::SettingsEntry& entry : section.entries) {
      TakeTolerance(catalogues, file, entry, tolerances);
    }
  }
  return tolerances;
}

// The logs in the order in which they are compared, the baseline first.
struct Compared {
  std::vector<LogReading> readings;
  std::vector<std::string> roots;
};

Compared ReadCompared(Call& call, const Catalogues& catalogues, const DiffRequest& request) {
  Compared compared;
  if (!request.baseline.empty()) compared.readings.push_back(Baselines().Find(request.baseline));
  for (const std::string& typed : request.logs) {
    const LogPlace place = FindLog(call, request.roots, typed);
    compared.readings.push_back(ReadNamedLog(call, catalogues, place));
    compared.roots.push_back(place.root);
  }
  return compared;
}

int KeepBaseline(Call& call, const Catalogues& catalogues, const DiffRequest& request) {
  if (request.logs.size() != 1) throw UserError("--keep-baseline wants one LOG");
  const LogPlace place = FindLog(call, request.roots, request.logs.front());
  RefuseBelowRoots(call, insight::ConfigFolder(), {place.root});
  Baselines().Keep(request.keep, ReadNamedLog(call, catalogues, place));
  return kSuccess;
}

// One that cannot be read is told and does not hide the others.
int ListBaselines(Call& call) {
  int status = kSuccess;
  for (const std::string& name : Baselines().Names()) {
    try {
      const LogReading reading = Baselines().Find(name);
      call.out << name << '\t'
               << insight::VisibleName(reading.Identity.Root + '/' + reading.Identity.Folder)
               << '\t' << insight::VisibleName(reading.Identity.Date) << '\n';
    } catch (const insight::BaselineError& error) {
      call.Tell("baseline \"" + name + "\" cannot be read: " + error.what() +
                "; keep it anew, or forget it by --drop-baseline " + name);
      status = kDiffTrouble;
    }
  }
  return status;
}

void Print(Call& call, const Catalogues& catalogues, const DiffRequest& request,
           const std::vector<LogDifference>& differences, const std::vector<std::string>& roots) {
  if (!request.html.empty()) {
    WriteOutput(call, request.html, DifferenceHtml(catalogues, differences), roots);
  }
  if (request.json) {
    call.out << DifferenceJson(catalogues, differences);
  } else if (request.html.empty()) {
    for (std::size_t i = 0; i < differences.size(); ++i) {
      call.out << (i > 0 ? "\n" : "") << DifferenceText(catalogues, differences[i]);
    }
  }
}

// What would otherwise be passed over in silence.
void RefuseContradictions(const DiffRequest& request) {
  const bool compares = !request.list && request.drop.empty() && request.keep.empty();
  if (compares) {
    if (request.json && request.html == "-") {
      throw WrongUse("--json and --html - are two documents on standard output");
    }
    return;
  }
  if (request.keep.empty() && !request.logs.empty()) {
    throw WrongUse("--baselines and --drop-baseline take no LOG");
  }
  if (request.json || !request.html.empty() || !request.tolerance.empty() ||
      !request.tolerances.empty()) {
    throw WrongUse("the options of a comparison do not go with the keeping of baselines");
  }
}

int TellDifferences(Call& call, const DiffRequest& request) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  RefuseContradictions(request);
  if (request.list) return ListBaselines(call);
  if (!request.drop.empty()) {
    Baselines().Drop(request.drop);
    return kSuccess;
  }
  if (!request.keep.empty()) return KeepBaseline(call, catalogues, request);
  const insight::Tolerances tolerances = ReadTolerances(call, catalogues, request);
  const Compared compared = ReadCompared(call, catalogues, request);
  if (compared.readings.size() < 2) throw UserError("two LOGs are wanted, or one and --baseline");
  std::vector<LogDifference> differences;
  bool different = false;
  // A baseline is what every log is held against; without one each log is held against the last.
  for (std::size_t i = 1; i < compared.readings.size(); ++i) {
    const std::size_t old = request.baseline.empty() ? i - 1 : 0;
    differences.push_back(
        CompareLogs(catalogues, compared.readings[old], compared.readings[i], tolerances));
    different |= differences.back().Different();
  }
  Print(call, catalogues, request, differences, compared.roots);
  return different ? kDifferent : kSuccess;
}

void AddBaselineOptions(CLI::App& verb, DiffRequest& request) {
  const CLI::Validator name(
      [](const std::string& typed) {
        return insight::IsBaselineName(typed) ? "" : "\"" + typed + "\" is no name for a baseline";
      },
      "");
  auto* baseline =
      verb.add_option("--baseline", request.baseline, "Compare with the baseline of this name")
          ->type_name("NAME")
          ->check(name);
  auto* keep =
      verb.add_option("--keep-baseline", request.keep, "Keep the log as the baseline of this name")
          ->type_name("NAME")
          ->check(name);
  auto* drop = verb.add_option("--drop-baseline", request.drop, "Forget a baseline")
                   ->type_name("NAME")
                   ->check(name);
  auto* list = verb.add_flag("--baselines", request.list, "List the baselines");
  keep->excludes(drop)->excludes(list);
  drop->excludes(list);
  baseline->excludes(keep)->excludes(drop)->excludes(list);
}

}  // namespace

void AddDiff(Frame& frame) {
  const auto request = std::make_shared<DiffRequest>();
  CLI::App& verb = frame.AddVerb(
      "diff",
      "Tell what is different between two logs, from log to log of a series, or from a baseline; "
      "the exit status is 0 for equal, 1 for different, 2 for trouble",
      [request](Call& call) { return TellDifferences(call, *request); }, kDiffTrouble);
  AddLogRootOption(verb, request->roots);
  verb.add_option("LOG", request->logs, "Folder name below the root, or a path; the old one first");
  AddBaselineOptions(verb, *request);
  verb.add_option("--tolerance", request->tolerance,
                  "How far values may differ: a number, or per cent of the greater")
      ->type_name("N[%]");
  verb.add_option("--tolerances", request->tolerances,
                  "Tolerances of rows, instead of tolerances.ini of the configuration")
      ->type_name("FILE");
  verb.add_option("--html", request->html, "Write a page of its own; - for standard output")
      ->type_name("FILE");
  verb.add_flag("--json", request->json, "Print one JSON document");
}

}  // namespace logbook::cli
