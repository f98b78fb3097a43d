// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/RowNames.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "base/UpperCase.h"
#include "resources/ResourceText.h"

namespace logbook::insight {
namespace {

constexpr int kFirstTickLabel = 179;
constexpr std::size_t kMostNear = 5;

// The whole number that all of the text is.
std::optional<int> WholeNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// How many letters have to be put in, taken out or replaced to make one text of the other.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t corner = row[0]++;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t above = row[j];
      const std::size_t replaced = corner + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({replaced, above + 1, row[j - 1] + 1});
      corner = above;
    }
  }
  return row[b.size()];
}

// The smaller the nearer: labels that hold the word come first, then those that begin nearly so.
std::optional<std::size_t> Remoteness(const std::string& word, const std::string& name) {
  const std::size_t at = name.find(word);
  if (at != std::string::npos) return at == 0 ? 0 : 1;
  const std::size_t whole = Distance(word, name);
  const std::size_t beginning = Distance(word, name.substr(0, word.size()));
  const std::size_t distance = std::min(whole, beginning);
  if (distance > std::max<std::size_t>(2, word.size() / 2)) return std::nullopt;
  return 1 + distance;
}

std::string Where(std::optional<Catalogue> which) {
  return which ? "catalogue " + std::string(InfoOf(*which).Name) : "the catalogues";
}

// Labels of the rows with the rows that bear them, both in the order of the catalogues.
struct Labelled {
  std::vector<std::string> labels;
  std::map<std::string, std::vector<RowId>> rows;  // by the label in upper case
};

Labelled LabelsOf(const Catalogues& catalogues, std::optional<Catalogue> which) {
  Labelled labelled;
  for (int place = 0; place < kAllRows; ++place) {
    const RowId id = RowAtPlace(place);
    if (which && id.Which != *which) continue;
    std::string label = DescribeRow(catalogues, id).Label;
    std::vector<RowId>& rows = labelled.rows[UpperCaseText(label)];
    if (rows.empty()) labelled.labels.push_back(std::move(label));
    rows.push_back(id);
  }
  return labelled;
}

RowSearch RowOfNumber(Catalogue which, int number) {
  if (number >= 0 && number < InfoOf(which).Rows) return {{{which, number}}, {}, {}};
  return {{}, Where(which) + " has the rows 0 to " + std::to_string(InfoOf(which).Rows - 1), {}};
}

}  // namespace

std::vector<std::string> NearNames(std::string_view word, const std::vector<std::string>& names) {
  const std::string wanted = UpperCaseText(word);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& name : names) {
    const std::optional<std::size_t> remoteness = Remoteness(wanted, UpperCaseText(name));
    if (remoteness) near.emplace_back(*remoteness, name);
  }
  std::stable_sort(near.begin(), near.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  if (near.size() > kMostNear) near.resize(kMostNear);
  std::vector<std::string> result;
  result.reserve(near.size());
  for (auto& each : near) result.push_back(std::move(each.second));
  return result;
}

RowSearch FindRows(const Catalogues& catalogues, std::optional<Catalogue> which,
                   std::string_view name) {
  if (which) {
    const std::optional<int> number = WholeNumber(name);
    if (number) return RowOfNumber(*which, *number);
  }
  const Labelled labelled = LabelsOf(catalogues, which);
  const std::string wanted = UpperCaseText(name);
  const auto exact = labelled.rows.find(wanted);
  if (exact != labelled.rows.end()) return {exact->second, {}, {}};
  std::vector<std::string> beginning;
  for (const std::string& label : labelled.labels) {
    if (UpperCaseText(label).starts_with(wanted)) beginning.push_back(label);
  }
  const std::string quoted = "\"" + std::string(name) + "\"";
  if (beginning.size() == 1) return {labelled.rows.at(UpperCaseText(beginning[0])), {}, {}};
  if (beginning.empty()) {
    return {{},
            "no label of " + Where(which) + " begins with " + quoted,
            NearNames(name, labelled.labels)};
  }
  const std::string count = std::to_string(beginning.size());
  if (beginning.size() > kMostNear) beginning.resize(kMostNear);
  return {{}, count + " labels of " + Where(which) + " begin with " + quoted, beginning};
}

RowSearch FindRow(const Catalogues& catalogues, std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos) {
    const std::optional<Catalogue> which = FindCatalogue(text.substr(0, colon));
    if (which) return FindRows(catalogues, which, text.substr(colon + 1));
  }
  RowSearch search = FindRows(catalogues, std::nullopt, text);
  if (!search.Rows.empty() && search.Rows.front().Which != search.Rows.back().Which) {
    const std::string label = DescribeRow(catalogues, search.Rows.front()).Label;
    search.Problem = "several catalogues have a row \"" + label + "\"";
    for (const RowId& id : search.Rows) {
      std::string name = std::string(InfoOf(id.Which).Name) + ":" + label;
      if (search.Near.empty() || search.Near.back() != name) search.Near.push_back(name);
    }
    search.Rows.clear();
  }
  return search;
}

std::string TickLabel(int item) {
  return ResourceText(kFirstTickLabel + item);
}

std::vector<std::string> TickLabels() {
  std::vector<std::string> labels;
  labels.reserve(kItemHeaderCount);
  for (int item = 0; item < kItemHeaderCount; ++item) labels.push_back(TickLabel(item));
  return labels;
}

TickSearch FindTick(std::string_view name) {
  const std::optional<int> number = WholeNumber(name);
  if (number && *number >= 0 && *number < kItemHeaderCount) return {*number, {}, {}};
  std::vector<std::string> labels = TickLabels();
  std::vector<int> beginning;
  for (int item = 0; item < kItemHeaderCount; ++item) {
    const std::string& label = labels[static_cast<std::size_t>(item)];
    if (EqualIgnoringCase(label, name)) return {item, {}, {}};
    if (UpperCaseText(label).starts_with(UpperCaseText(name))) beginning.push_back(item);
  }
  if (beginning.size() == 1) return {beginning[0], {}, {}};
  const std::string quoted = "\"" + std::string(name) + "\"";
  if (beginning.empty()) {
    std::vector<std::string> near = NearNames(name, labels);
    if (near.empty()) near = labels;
    return {{}, "no maintenance item begins with " + quoted, std::move(near)};
  }
  TickSearch search = {
      {}, std::to_string(beginning.size()) + " maintenance items begin with " + quoted, {}};
  for (const int item : beginning) search.Near.push_back(TickLabel(item));
  return search;
}

}  // namespace logbook::insight
