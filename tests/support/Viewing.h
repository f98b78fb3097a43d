// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A workstation with one log and the viewer loaded on it.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "support/TestServices.h"
#include "viewer/LogView.h"

namespace logbook::test {

struct Viewing : TestWorkstation {
  static constexpr const char* kName = "26111500";
  static constexpr const char* kDate = "11/15/2026 05:09:59";

  explicit Viewing(int code_page = 1252) : TestWorkstation(code_page) {
    FillCatalogues(state.catalogues);
    MakeLog(kName, kDate);
    state.LogCount = 1;
    state.CurrentLog = 1;
    state.FileList[1].Name = kName;
    state.FileList[1].Date = kDate;
    LoadLogView(state, view);
  }

  // Path text of a file of the log.
  static std::string File(const std::string& name) { return InLog(kName, name); }
  void Put(const std::string& name, std::string_view bytes) { disk.Put(File(name), bytes); }
  std::string Get(const std::string& name) { return disk.Get(File(name)); }
  bool Has(const std::string& name) { return disk.Has(File(name)); }

  // Section "OPTION" of the log with these keys alone.
  void SetOptions(const std::map<std::string, std::string>& options) {
    std::string bytes = "[OPTION]\r\n";
    for (const auto& [key, value] : options) bytes.append(key + "=" + value + "\r\n");
    Put("logfile.ini", bytes);
  }

  // Chooses a menu entry.
  void Choose(MenuEntry LogView::*entry) {
    for (const ViewCommand& command : kViewCommands) {
      if (command.Entry == entry) return command.Run(state, services, view);
    }
    throw std::logic_error("no command of this entry");
  }

  // The report as the pane shows it when it has taken all of it.
  std::string WholeReport() { return view.ReportText + view.ReportRest.Take(std::string::npos); }

  LogView view;
};

// The lines of a text, without their line ends.
inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find("\r\n", begin);
    if (end == std::string::npos) throw std::logic_error("a line without line end");
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 2;
  }
  return lines;
}

// `count` numbers, one to a line: row n holds n.
inline std::string Counting(int count) {
  std::string bytes;
  for (int row = 0; row < count; ++row) bytes += std::to_string(row) + "\r\n";
  return bytes;
}

// Numbers `count` fields joined by commas.
inline std::string CountingInOneLine(int count) {
  std::string bytes;
  for (int row = 0; row < count; ++row) bytes += (row == 0 ? "" : ",") + std::to_string(row);
  return bytes;
}

}  // namespace logbook::test
