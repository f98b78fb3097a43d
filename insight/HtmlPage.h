// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The frame of the self-contained HTML pages that trends and differences come in. Pure; none raises
// anything.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace logbook::insight {

// A whole page with this title (plain text) and body (HTML), its style within it.
std::string HtmlPage(std::string_view title, std::string_view body);

// A table: its head, one row (cells are plain text; the class may be empty), and its end.
std::string TableHead(std::initializer_list<std::string_view> titles);
std::string TableRow(std::initializer_list<std::string_view> cells, std::string_view style = "");
inline constexpr std::string_view kTableEnd = "</tbody></table>\n";

}  // namespace logbook::insight
