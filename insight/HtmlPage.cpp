// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/HtmlPage.h"

#include "insight/Markup.h"

namespace logbook::insight {
namespace {

constexpr std::string_view kPageStyle =
    "body{font:14px/1.45 sans-serif;color:#222;background:#fff;max-width:62em;margin:1.5em auto;"
    "padding:0 1em}\n"
    "h1{font-size:1.5em}h2{font-size:1.2em;margin-top:1.6em}\n"
    "figure{margin:0;overflow-x:auto}svg{max-width:100%;height:auto}\n"
    "pre{background:#f5f5f5;padding:.7em;white-space:pre-wrap}\n"
    "table{border-collapse:collapse;margin:.5em 0}\n"
    "th,td{border:1px solid #ccc;padding:.15em .6em;text-align:left;vertical-align:top}\n"
    "th{background:#eee}td.number{text-align:right;font-variant-numeric:tabular-nums}\n"
    "tr.hit td{background:#fbe4e1}tr.option td,tr.state td{background:#fff3d6}\n"
    "@media print{details{display:block}}\n";

}  // namespace

std::string HtmlPage(std::string_view title, std::string_view body) {
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width\">\n<title>";
  page += EscapeMarkup(title) + "</title>\n<style>\n";
  page.append(kPageStyle).append("</style>\n</head>\n<body>\n<h1>");
  page += EscapeMarkup(title) + "</h1>\n";
  return page.append(body).append("</body>\n</html>\n");
}

std::string TableHead(std::initializer_list<std::string_view> titles) {
  std::string html = "<table><thead><tr>";
  for (const std::string_view title : titles) html += "<th>" + EscapeMarkup(title) + "</th>";
  return html + "</tr></thead><tbody>\n";
}

std::string TableRow(std::initializer_list<std::string_view> cells, std::string_view style) {
  std::string html = "<tr";
  if (!style.empty()) html.append(" class=\"").append(style).append("\"");
  html += ">";
  for (const std::string_view cell : cells) html += "<td>" + EscapeMarkup(cell) + "</td>";
  return html + "</tr>\n";
}

}  // namespace logbook::insight
