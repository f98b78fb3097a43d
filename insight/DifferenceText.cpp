// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/DifferenceText.h"

#include "insight/Axis.h"
#include "insight/DifferenceRows.h"
#include "insight/HtmlPage.h"
#include "insight/Markup.h"
#include "insight/TextTable.h"
#include "insight/VisibleText.h"

namespace logbook::insight {
namespace {

constexpr std::string_view kNoDifference = "no difference";

void AddHead(std::string_view name, const LogHead& head, std::string& text) {
  text += std::string(name) + "  " + VisibleName(WordsOf(head)) +
          "\n     ticks: " + TickWords(head) + "\n";
  if (head.comment.empty()) return;
  text += "     comment: ";
  for (const char each : VisibleText(head.comment)) {
    text += each;
    if (each == '\n') text += "              ";
  }
  text += '\n';
}

void AddRows(const std::vector<RowWords>& rows, TextTable& table) {
  std::string section;
  for (const RowWords& row : rows) {
    if (row.section != section) table.AddLine(section = row.section);
    table.Add({"  " + row.label, row.left, row.right, row.difference, row.percent});
  }
}

void AddRowsHtml(const std::vector<RowWords>& rows, std::string_view style, std::string& html) {
  std::string section;
  for (const RowWords& row : rows) {
    if (row.section != section) {
      section = row.section;
      html += "<tr><th colspan=\"5\">" + EscapeMarkup(section) + "</th></tr>\n";
    }
    html += TableRow({row.label, row.left, row.right, row.difference, row.percent}, style);
  }
}

std::string HeadHtml(std::string_view name, const LogHead& head) {
  std::string comment = EscapeMarkup(head.comment);
  for (std::size_t i = comment.find('\n'); i != std::string::npos; i = comment.find('\n', i)) {
    comment.replace(i, 1, "<br>");
  }
  return "<tr><th>" + std::string(name) + "</th><td>" + EscapeMarkup(WordsOf(head)) + "</td><td>" +
         EscapeMarkup(TickWords(head)) + "</td><td>" + comment + "</td></tr>\n";
}

std::string Chapter(const Catalogues& catalogues, const LogDifference& difference) {
  std::string html =
      "<section>\n<h2>" +
      EscapeMarkup(difference.left.identity.Folder + " and " + difference.right.identity.Folder) +
      "</h2>\n" + TableHead({"", "Log", "Ticks", "Comment"}) + HeadHtml("old", difference.left) +
      HeadHtml("new", difference.right);
  html.append(kTableEnd);
  if (!difference.Different()) return html + "<p>no difference</p>\n</section>\n";
  html += TableHead({"Row", "Old", "New", "Difference", "Per cent"});
  for (const ChangedOption& option : difference.options) {
    html += TableRow({"Option " + std::string(option.key), ShortNumber(option.left),
                      ShortNumber(option.right), "", ""},
                     "option");
  }
  AddRowsHtml(WordsOf(catalogues, difference.applicability), "state", html);
  for (const MissingCatalogue& missing : difference.missing) {
    html +=
        "<tr class=\"state\"><td colspan=\"5\">" + EscapeMarkup(WordsOf(missing)) + "</td></tr>\n";
  }
  AddRowsHtml(WordsOf(catalogues, difference.values), "", html);
  return html.append(kTableEnd) + "</section>\n";
}

}  // namespace

std::string DifferenceText(const Catalogues& catalogues, const LogDifference& difference) {
  std::string text;
  AddHead("old", difference.left, text);
  AddHead("new", difference.right, text);
  if (!difference.Different()) return text.append(kNoDifference) + '\n';
  TextTable table({"", "", "", ">", ">"});
  if (!difference.options.empty()) table.AddLine("Options");
  for (const ChangedOption& option : difference.options) {
    table.Add(
        {"  " + std::string(option.key), ShortNumber(option.left), ShortNumber(option.right)});
  }
  if (!difference.applicability.empty()) table.AddLine("Applies to one of the two only");
  AddRows(WordsOf(catalogues, difference.applicability), table);
  for (const MissingCatalogue& missing : difference.missing) table.AddLine(WordsOf(missing));
  if (!difference.values.empty()) table.AddLine("Values");
  AddRows(WordsOf(catalogues, difference.values), table);
  return text + table.Text();
}

std::string DifferenceHtml(const Catalogues& catalogues,
                           const std::vector<LogDifference>& differences) {
  std::string body;
  for (const LogDifference& difference : differences) body += Chapter(catalogues, difference);
  return HtmlPage("Differences", body);
}

}  // namespace logbook::insight
