// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/TuneBin.h"

#include "base/MadeFiles.h"

namespace logbook {

std::string TuneBinText(std::span<const TuneCell> cells) {
  std::string names;
  std::string values;
  for (const TuneCell& cell : cells) {
    names.append(cell.Name).append("\t");
    values.append(cell.Value).append("\t");
  }
  return names + "\r\n" + values + "\r\n\r\n";
}

void WriteTuneBin(const Machine& machine, std::string_view path, std::span<const TuneCell> cells) {
  const std::size_t name = path.find_last_of("\\/") + 1;
  MadeFiles(machine, path.substr(0, name))
      .Write(path.substr(name), machine.code_page->FromUtf8(TuneBinText(cells)));
}

}  // namespace logbook
