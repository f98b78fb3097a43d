// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>
#include <memory>
#include <ostream>

#include "HelpFormatter.h"
#include "LogRoots.h"
#include "Output.h"
#include "RowWords.h"
#include "Terminal.h"
#include "Verbs.h"
#include "insight/Collectors.h"
#include "insight/TrendData.h"
#include "insight/TrendHtml.h"
#include "insight/TrendSvg.h"
#include "insight/TrendTerminal.h"

namespace logbook::cli {
namespace {

using insight::RowGroup;
using insight::Trend;

struct TrendRequest {
  LogRootOptions roots;
  std::vector<std::string> rows;
  std::string where;
  std::string rules = "1";
  std::string limits;
  std::vector<std::string> marks;
  bool claimed = false;
  std::string svg, html, csv;
  bool json = false;
  bool ascii = false;
  int width = 0;  // 0: that of the terminal
  int height = 12;
};

// What the request comes to before any log is looked at.
struct Plan {
  Catalogues catalogues;
  std::vector<RowGroup> groups;
  insight::FindRequest find;
  insight::ControlRules rules;
  std::vector<std::optional<insight::Limits>> limits;  // by group
  insight::Ticks marks{};
};

// The groups of all rows, one a catalogue, each once.
std::vector<RowGroup> GroupsOf(const Catalogues& catalogues, const std::vector<std::string>& rows) {
  std::vector<RowGroup> groups;
  for (const std::string& typed : rows) {
    for (RowGroup& group : FindRowGroups(catalogues, typed)) {
      const bool text = KindOf(catalogues, group.front()) == insight::RowKind::kText;
      if (text) throw WrongUse("\"" + typed + "\" is a text, and a trend is of numbers");
      if (std::find(groups.begin(), groups.end(), group) == groups.end()) {
        groups.push_back(std::move(group));
      }
    }
  }
  return groups;
}

void ReadLimits(Call& call, const TrendRequest& request, Plan& plan) {
  plan.limits.resize(plan.groups.size());
  const std::string file = SettingsFileOr(call, request.limits, "limits.ini");
  if (file.empty()) return;
  std::vector<insight::RowId> named_before;
  for (const insight::RowLimits& row : insight::ParseLimits(file, ReadSettingsFile(call, file))) {
    const std::vector<insight::RowId> ids =
        FindSettingsRows(plan.catalogues, file, row.line, row.row);
    for (const insight::RowId& id : ids) {
      const auto& before = named_before;
      if (std::find(before.begin(), before.end(), id) != before.end()) {
        throw insight::SettingsError(file, row.line, "the row has limits already");
      }
    }
    named_before.insert(named_before.end(), ids.begin(), ids.end());
    for (std::size_t i = 0; i < plan.groups.size(); ++i) {
      const bool named = std::any_of(ids.begin(), ids.end(), [&](const insight::RowId& id) {
        return std::find(plan.groups[i].begin(), plan.groups[i].end(), id) != plan.groups[i].end();
      });
      if (named) plan.limits[i] = row.limits;
    }
  }
}

insight::Ticks MarksOf(const std::vector<std::string>& typed) {
  insight::Ticks marks{};
  if (typed.empty()) marks.fill(true);
  for (const std::string& each : typed) {
    const insight::TickSearch found = insight::FindTick(each);
    if (!found.Item) throw WrongUse(Suggesting(found.Problem, found.Near));
    marks[static_cast<std::size_t>(*found.Item)] = true;
  }
  return marks;
}

std::shared_ptr<const Plan> MakePlan(Call& call, const TrendRequest& request) {
  const auto plan = std::make_shared<Plan>();
  FillCatalogues(plan->catalogues);
  plan->groups = GroupsOf(plan->catalogues, request.rows);
  plan->find.Columns = plan->groups;
  plan->find.What = QueryOf(plan->catalogues, request.where);
  const auto rules = insight::ParseControlRules(request.rules);
  if (!rules) throw WrongUse("\"" + request.rules + "\" names no rules; see --help");
  plan->rules = *rules;
  plan->marks = MarksOf(request.marks);
  ReadLimits(call, request, *plan);
  return plan;
}

// The records are those of all logs, also where a query leaves values out: what a tick says depends
// on the record before it.
std::vector<Trend> TrendsOf(Call& call, const TrendRequest& request, const Plan& plan,
                            const std::string& root, bool name_root) {
  insight::LogIndex index(*call.machine.code_page, plan.catalogues, root, IndexSettingsFor(call));
  const insight::FindResult found = index.Find(plan.find);
  const std::size_t undated = insight::CountUndated(found);
  if (undated > 0) call.Tell(std::to_string(undated) + " logs without a date are left out");
  const std::vector<insight::UpkeepRecord> records = insight::RecordsOf(index.Find({}));
  const auto which = request.claimed ? insight::TickKind::kClaimed : insight::TickKind::kCertain;
  std::vector<insight::Series> all =
      SeriesOf(plan.catalogues, plan.groups, found, MarksOf(records, which, plan.marks));
  std::vector<Trend> trends;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (name_root) all[i].source = root;
    trends.push_back(MakeTrend(std::move(all[i]), plan.rules, plan.limits[i]));
  }
  return trends;
}

void PrintCharts(Call& call, const TrendRequest& request, const std::vector<Trend>& trends) {
  const TerminalFacts facts = LookAtTerminal();
  const insight::TerminalStyle style = {request.width > 0 ? request.width : facts.columns,
                                        request.height, facts.unicode && !request.ascii,
                                        facts.color};
  for (std::size_t i = 0; i < trends.size(); ++i) {
    if (i > 0) call.out << '\n';
    const std::string figures = TrendFigures(trends[i], style);
    call.out << TrendChart(trends[i], style)
             << (facts.terminal ? WrappedLines(figures, static_cast<std::size_t>(style.width))
                                : figures);
  }
}

// One document goes to standard output.
void RefuseTwoDocuments(const TrendRequest& request) {
  const auto count = static_cast<int>(request.json) + static_cast<int>(request.svg == "-") +
                     static_cast<int>(request.html == "-") + static_cast<int>(request.csv == "-");
  if (count > 1) throw WrongUse("two documents are asked of standard output");
}

int TellTrend(Call& call, const TrendRequest& request) {
  RefuseTwoDocuments(request);
  const std::shared_ptr<const Plan> plan = MakePlan(call, request);
  const std::vector<std::string> roots = FindLogRoots(call, request.roots);
  std::vector<Trend> trends;
  std::string source;
  for (const std::string& root : roots) {
    for (Trend& trend : TrendsOf(call, request, *plan, root, roots.size() > 1)) {
      trends.push_back(std::move(trend));
    }
    source += (source.empty() ? "" : ", ") + root;
  }
  const std::string subject = call.subject;
  const auto write = [&](const std::string& file, const std::string& text) {
    WriteOutput(call, file, text, roots);
    call.subject = subject;
  };
  if (!request.svg.empty()) write(request.svg, TrendSvg(trends));
  if (!request.html.empty()) write(request.html, TrendHtml(trends, source));
  if (!request.csv.empty()) write(request.csv, TrendCsv(trends));
  if (request.json) call.out << TrendJson(trends);
  const bool written =
      request.json || !request.svg.empty() || !request.html.empty() || !request.csv.empty();
  if (!written) PrintCharts(call, request, trends);
  return kSuccess;
}

void AddOutputs(CLI::App& verb, TrendRequest& request) {
  verb.add_option("--svg", request.svg, "Write a drawing")->type_name("FILE");
  verb.add_option("--html", request.html, "Write a page of its own")->type_name("FILE");
  verb.add_option("--csv", request.csv, "Write the values")->type_name("FILE");
  verb.add_flag("--json", request.json, "Print one JSON document");
  verb.add_flag("--ascii", request.ascii, "Draw without characters beyond ASCII");
  verb.add_option("--width", request.width, "Columns of the chart, instead of the terminal's")
      ->check(CLI::Range(40, 1000));
  verb.add_option("--height", request.height, "Lines of the chart")->check(CLI::Range(4, 200));
}

}  // namespace

void AddTrend(Frame& frame) {
  const auto request = std::make_shared<TrendRequest>();
  CLI::App& verb = frame.AddVerb(
      "trend",
      "Draw rows over time with maintenance marks, statistics and a control chart; FILE may be - "
      "for standard output",
      [request](Call& call) { return TellTrend(call, *request); });
  AddLogRootOption(verb, request->roots);
  verb.add_option("ROW", request->rows, "Label, its unique beginning, or CATALOGUE:NUMBER")
      ->required();
  verb.add_option("--where", request->where, "Only the logs that answer this query, as find has it")
      ->type_name("QUERY");
  verb.add_option("--rules", request->rules,
                  "Rules of the control chart: numbers and ranges of 1 to 9, nelson or western")
      ->capture_default_str();
  verb.add_option("--limits", request->limits,
                  "Limits of rows, instead of limits.ini of the configuration")
      ->type_name("FILE");
  verb.add_option("--mark", request->marks, "Mark this maintenance item only; may stand often")
      ->type_name("ITEM")
      ->allow_extra_args(false);
  verb.add_flag("--claimed", request->claimed, "Mark ticks too that may have been carried over");
  AddOutputs(verb, *request);
}

}  // namespace logbook::cli
