// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <charconv>
#include <memory>
#include <ostream>

#include "LogRoots.h"
#include "RowWords.h"
#include "Verbs.h"
#include "insight/FindOutput.h"

namespace logbook::cli {
namespace {

using insight::FindAnswer;
using insight::FindColumn;
using insight::FindRequest;
using insight::RowGroup;

struct FindOptions {
  LogRootOptions roots;
  std::vector<std::string> query;
  std::string columns = "date,log,comment";
  std::string sort = "date:desc";
  std::size_t limit = 0;
  bool json = false;
  bool csv = false;
  bool no_scan = false;
};

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> parts(1);
  for (const char byte : text) {
    if (byte == ',') {
      parts.emplace_back();
    } else {
      parts.back() += byte;
    }
  }
  return parts;
}

std::string JoinedQuery(const std::vector<std::string>& words) {
  std::string query;
  for (const std::string& word : words) query += (query.empty() ? "" : " ") + word;
  return query;
}

void TakeColumns(const Catalogues& catalogues, const std::string& typed, FindAnswer& answer) {
  for (const std::string& name : Split(typed)) {
    if (const auto special = insight::FindSpecialColumn(name)) {
      answer.Columns.push_back(*special);
      continue;
    }
    for (const RowGroup& group : FindRowGroups(catalogues, name)) {
      answer.Columns.push_back({FindColumn::Kind::kRow, answer.Rows.size()});
      answer.Rows.push_back(group);
    }
  }
}

// What is wrong with a number of logs as it was typed; empty if nothing is.
std::string LimitFault(const std::string& typed) {
  std::size_t number = 0;
  const char* const end = typed.data() + typed.size();
  const auto [stop, error] = std::from_chars(typed.data(), end, number);
  if (error == std::errc() && stop == end && number > 0) return {};
  return "\"" + typed + "\" is no number of logs: expected a whole number of 1 or more";
}

// The rows of a sort key. A row with something behind a colon that is no order is told so.
insight::RowGroup SortRowOf(const Catalogues& catalogues, const std::string& typed) {
  const std::size_t colon = typed.rfind(':');
  const bool whole = !insight::FindRow(catalogues, typed).Rows.empty();
  if (whole || colon == std::string::npos) return FindRowGroups(catalogues, typed).front();
  const std::string key = typed.substr(0, colon);
  if (key == "date" || key == "log" || !insight::FindRow(catalogues, key).Rows.empty()) {
    throw WrongUse("\"" + typed.substr(colon + 1) + "\" is no order: expected \"" + key +
                   ":asc\" or \"" + key + ":desc\"");
  }
  return FindRowGroups(catalogues, typed).front();
}

// KEY, KEY:asc or KEY:desc. Dates begin with the newest, all else with the least.
void TakeSort(const Catalogues& catalogues, std::string typed, FindRequest& request) {
  const bool ascending = typed.ends_with(":asc");
  const bool descending = typed.ends_with(":desc");
  if (ascending) typed.resize(typed.size() - 4);
  if (descending) typed.resize(typed.size() - 5);
  request.SortBy = FindRequest::Key::kRow;
  if (typed == "date") request.SortBy = FindRequest::Key::kDate;
  if (typed == "log") request.SortBy = FindRequest::Key::kFolder;
  if (request.SortBy == FindRequest::Key::kRow) {
    request.SortRow = SortRowOf(catalogues, typed);
  }
  const bool down = descending || (!ascending && request.SortBy == FindRequest::Key::kDate);
  request.SortOrder = down ? FindRequest::Order::kDescending : FindRequest::Order::kAscending;
}

// An answer that may be behind the folders says so.
void TellAge(const Call& call, const std::string& root,
             const std::optional<std::string>& looked_at) {
  if (!looked_at) {
    call.Tell(root + " has no whole index yet, so its folders were looked at");
  } else {
    call.Tell(root + " as of " + *looked_at + "; what changed since then is not seen");
  }
}

void Search(Call& call, const Catalogues& catalogues, const std::vector<std::string>& roots,
            const FindRequest& request, insight::IndexLook look, FindAnswer& answer) {
  for (const std::string& root : roots) {
    insight::IndexSettings settings = IndexSettingsFor(call);
    settings.Look = look;
    insight::LogIndex index(*call.machine.code_page, catalogues, root, std::move(settings));
    insight::FindResult result = index.Find(request);
    if (look == insight::IndexLook::kNone) TellAge(call, root, index.AsOf());
    answer.Count += result.Count;
    for (insight::FoundLog& log : result.Logs) answer.Logs.push_back({root, std::move(log)});
  }
  if (roots.size() > 1) SortAnswer(answer, catalogues, request.SortBy, request.SortOrder);
  if (answer.Logs.size() > request.Limit) answer.Logs.resize(request.Limit);
}

int PrintFound(Call& call, const FindOptions& options) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  FindAnswer answer;
  answer.Query = JoinedQuery(options.query);
  FindRequest request;
  request.What = QueryOf(catalogues, answer.Query);
  TakeColumns(catalogues, options.columns, answer);
  TakeSort(catalogues, options.sort, request);
  if (options.limit > 0) request.Limit = options.limit;
  request.Columns = answer.Rows;
  // What logs of several roots are sorted by comes with them.
  if (!request.SortRow.empty()) request.Columns.push_back(request.SortRow);
  const auto look = options.no_scan ? insight::IndexLook::kNone : insight::IndexLook::kAtFolders;
  Search(call, catalogues, FindLogRoots(call, options.roots), request, look, answer);
  if (options.json) {
    call.out << FindJson(answer, catalogues);
  } else if (options.csv) {
    call.out << FindCsv(answer, catalogues);
  } else {
    call.out << FindTable(answer, catalogues);
    if (answer.Logs.size() < answer.Count) {
      call.Tell(std::to_string(answer.Logs.size()) + " of " + std::to_string(answer.Count) +
                " logs shown");
    }
  }
  return kSuccess;
}

}  // namespace

void AddFind(Frame& frame) {
  const auto options = std::make_shared<FindOptions>();
  CLI::App& verb = frame.AddVerb("find", "Find logs by what they say",
                                 [options](Call& call) { return PrintFound(call, *options); });
  verb.add_option("QUERY", options->query,
                  "Words, \"phrases\" and conditions; every log if there are none");
  AddLogRootOption(verb, options->roots);
  verb.add_option("--columns", options->columns,
                  "What to show of each log: date, log, root, auto, ticks, comment, and any ROW of "
                  "a catalogue")
      ->type_name("COLUMN,...");
  verb.add_option("--sort", options->sort, "date, log or a ROW, with :asc or :desc behind it")
      ->type_name("KEY");
  verb.add_option("--limit", options->limit, "Show so many logs at most")
      ->type_name("NUMBER")
      ->check(CLI::Validator(LimitFault, ""));
  verb.add_flag("--no-scan", options->no_scan,
                "Answer from the index as it stands, without a look at the folders");
  CLI::Option* json = verb.add_flag("--json", options->json, "Print one JSON document");
  verb.add_flag("--csv", options->csv, "Print comma-separated values")->excludes(json);
}

}  // namespace logbook::cli
