// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/Machine.h"

#include <charconv>

#include "platform/Registry.h"

namespace logbook {

Machine OpenMachine(const std::string& home) {
  Machine machine;
  machine.home = home;
  const auto text =
      ReadMachineRegistry(home, R"(SYSTEM\CurrentControlSet\Control\Nls\CodePage)", "ACP");
  if (!text) return machine;
  int number = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
  if (error != std::errc() || end != text->data() + text->size()) return machine;
  if (const CodePage* page = CodePage::Find(number)) machine.code_page = page;
  return machine;
}

}  // namespace logbook
