// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendHtml.h"

#include "insight/HtmlPage.h"
#include "insight/Markup.h"
#include "insight/TrendSvg.h"
#include "insight/TrendTerminal.h"

namespace logbook::insight {
namespace {

std::string Values(const Trend& trend) {
  std::string html = "<details><summary>All values</summary>\n" +
                     TableHead({"Log", "Date", TitleOf(trend.series), "State", "Rules"});
  for (std::size_t i = 0; i < trend.series.points.size(); ++i) {
    const SeriesPoint& point = trend.series.points[i];
    std::string rules;
    for (const ControlRule rule : RulesAt(trend, i)) {
      rules += (rules.empty() ? "" : "; ") + std::string(RuleText(rule));
    }
    html += TableRow({point.log, TimeText(point.when), point.text, point.state, rules},
                     rules.empty() ? "" : "hit");
  }
  return html.append(kTableEnd) + "</details>\n";
}

std::string Section(const Trend& trend) {
  const TerminalStyle plain{.unicode = false};
  return "<section>\n<h2>" + EscapeMarkup(TitleOf(trend.series)) + "</h2>\n<p>" +
         EscapeMarkup(trend.series.catalogue + ":" + std::to_string(trend.series.row) + ", " +
                      trend.series.section) +
         "</p>\n<pre>" + EscapeMarkup(TrendFigures(trend, plain)) + "</pre>\n" + Values(trend) +
         "</section>\n";
}

}  // namespace

std::string TrendHtml(const std::vector<Trend>& trends, std::string_view source) {
  std::string body =
      "<p>" + EscapeMarkup(source) + "</p>\n<figure>\n" + TrendSvg(trends) + "</figure>\n";
  for (const Trend& trend : trends) body += Section(trend);
  return HtmlPage("Trend", body);
}

}  // namespace logbook::insight
