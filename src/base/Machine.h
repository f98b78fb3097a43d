// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The machine that the program runs on, as far as files are concerned: where its drives lie and
// which code page its files are in. Handed by constant reference to everything that touches a
// file; tests make one over a temporary folder.
#pragma once

#include <string>

#include "base/CodePage.h"

namespace logbook {

struct Machine {
  // Native path of the logbook's home, absolute and without trailing slash. A drive X: is the
  // folder or link "drives/x" below it; "machine.reg" in it is the local-machine hive.
  std::string home;
  // Never null.
  const CodePage* code_page = CodePage::Find(1252);
};

// The home that the environment names: $LOGBOOK_HOME, else $XDG_DATA_HOME/quorex-logbook, else
// $HOME/.local/share/quorex-logbook. The folder need not exist.
std::string DefaultHome();

// The machine at this home; a relative one is taken from the working folder and no longer depends
// on it afterwards. The code page is the hive's value "ACP" under
// SYSTEM\CurrentControlSet\Control\Nls\CodePage; 1252 where hive or value is missing or names
// an unknown page. Raises nothing.
Machine OpenMachine(const std::string& home);

}  // namespace logbook
