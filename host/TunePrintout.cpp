// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/TunePrintout.h"

#include <cstddef>
#include <vector>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "host/Disk.h"

namespace logbook::host {
namespace {

// The cells of a row; each ends with a tab.
std::vector<std::string> Cells(std::string_view row) {
  std::vector<std::string> cells;
  for (std::size_t tab; (tab = row.find('\t')) != std::string_view::npos;) {
    cells.emplace_back(row.substr(0, tab));
    row.remove_prefix(tab + 1);
  }
  return cells;
}

std::string_view Line(std::string_view text, int number) {
  for (; number > 0; --number) {
    const std::size_t end = text.find("\r\n");
    if (end == std::string_view::npos) return {};
    text.remove_prefix(end + 2);
  }
  return text.substr(0, text.find("\r\n"));
}

std::string_view LastComponent(std::string_view path) {
  while (!path.empty() && path.back() == '\\') path.remove_suffix(1);
  const std::size_t cut = path.find_last_of('\\');
  return cut == std::string_view::npos ? path : path.substr(cut + 1);
}

std::string ReadExtract(const Machine& machine, const std::string& path) {
  try {
    return machine.code_page->ToUtf8(ReadFile(machine, path));
  } catch (const RunTimeError& error) {
    if (error.Number() == ErrorNumber::kFileNotFound) return {};
    throw;
  }
}

}  // namespace

std::string PrintoutText(std::string_view folder_name, std::string_view extract, LocalTime time) {
  constexpr std::size_t kNameWidth = 36;
  std::string text =
      "Tune Report " + std::string(folder_name) + "\r\nPrinted " + StampText(time) + "\r\n\r\n";
  const std::vector<std::string> names = Cells(Line(extract, 0));
  const std::vector<std::string> values = Cells(Line(extract, 1));
  if (names.empty()) text += "(no tune values)\r\n";
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t blanks = names[i].size() < kNameWidth ? kNameWidth - names[i].size() : 1;
    const std::string value = i < values.size() ? values[i] : std::string();
    text += value.empty() ? names[i] : names[i] + std::string(blanks, ' ') + value;
    text += "\r\n";
  }
  return text;
}

std::string PrintTuneReport(const Workstation& workstation, std::string_view folder,
                            LocalTime time) {
  const std::string name(LastComponent(folder));
  const std::string extract = ReadExtract(workstation.machine, std::string(folder) + "\\tune.bin");
  const std::string tray = workstation.root + "tuneprint";
  PutFolder(workstation.machine, tray);
  std::string file = tray + "\\" + name + ".txt";
  PutFile(workstation.machine, file,
          workstation.machine.code_page->FromUtf8(PrintoutText(name, extract, time)));
  return file;
}

}  // namespace logbook::host
