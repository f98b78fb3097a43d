// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Machine.h"

#include <charconv>
#include <filesystem>

#include "base/Registry.h"
#include "base/SystemRegistry.h"
#include "base/Utf8Path.h"

namespace logbook {

namespace {

std::string WholePath(const std::string& folder) {
  std::error_code ignored;
  std::string path =
      std::filesystem::absolute(Utf8Path(folder), ignored).lexically_normal().generic_string();
  if (ignored) path = folder;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace

Machine OpenMachine(const std::string& home) {
  Machine machine;
  if (const auto number = home.empty() ? SystemCodePage() : std::nullopt) {
    if (const CodePage* page = CodePage::Find(*number)) machine.code_page = page;
    return machine;
  }
  machine.home = WholePath(home);
  const auto text =
      ReadMachineRegistry(machine.home, R"(SYSTEM\CurrentControlSet\Control\Nls\CodePage)", "ACP");
  if (!text) return machine;
  int number = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
  if (error != std::errc() || end != text->data() + text->size()) return machine;
  if (const CodePage* page = CodePage::Find(number)) machine.code_page = page;
  return machine;
}

}  // namespace logbook
