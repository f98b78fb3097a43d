// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The state of one run: the shared variables by their names, the main window and the list. Made in
// main() and handed by reference to every routine.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"
#include "snapshot/SnapshotCache.h"
#include "state/ListView.h"
#include "state/MainWindow.h"

namespace logbook {

// One log found on disk. Val1 to Val6 are reserved: the value columns go directly into the list.
struct FileRecord {
  std::string Name;  // folder name, without path
  std::string Date;
  std::string Val1 = "0", Val2 = "0", Val3 = "0", Val4 = "0", Val5 = "0", Val6 = "0";
  std::string Comment;  // first line of comment.txt
};

// What a value column shows, by logbook.ini.
struct ColumnChoice {
  std::string category;  // empty for a column that nothing is chosen for
  int item = 0;          // row of its catalogue
  bool operator==(const ColumnChoice&) const = default;
};

struct AppState {
  explicit AppState(const Machine& the_machine) : machine(the_machine) {}

  const Machine& machine;

  std::string AppPath;  // folder of the program's executable, without trailing backslash
  std::string AppName;  // file name of the executable, without extension

  std::string HostId;    // first token of the command line
  bool CEMode = false;   // the command line holds "CE"
  bool AutoRec = false;  // the command line holds "AutoRec": record once without a user, then end

  // Paths end in a backslash; file names are appended directly.
  std::string ExePath;
  std::string IniFile;  // the logbook's own profile, ExePath & "logbook.ini"
  std::string LogRoot;  // root of all log folders
  std::string HelpPath;
  std::string HelpFile;
  std::string LogPath;  // folder of the log being recorded; empty when none could be made

  std::int16_t LogCount = 0;             // rows held in FileList, 0 to 256
  std::array<FileRecord, 257> FileList;  // row 0 is never used
  std::int16_t CurrentLog = 0;           // index in FileList of the log handed to frmLogView
  std::string CurrentLogDate;            // text and folder name of the chosen row
  std::string CurrentLogName;
  std::int16_t ChangeColumn = 0;  // list column 3 to 8 handed to frmChangeItem
  std::int16_t ViewMode = 0;      // the report that frmLogView shows

  // Help (help/arvbsub.h), kept from the first call for it to the end.
  std::uint32_t HelpCookie = 0;  // handle from the help engine's initialisation
  std::string HelpFileName;      // full path of the help file in use; empty until the first call
  bool HtmlHelpUsed = false;     // the engine for ".chm" files has run

  MainWindow frmMain;
  ListView ListView1;

  Catalogues catalogues;             // filled at start-up, read-only from then on
  SnapshotCache snapshots{machine};  // what the list has read

  // By value column from 0: with what it was filled, and in which pass over the snapshots.
  struct FilledColumn {
    std::uint64_t Pass = 0;
    ColumnChoice Choice;
  };
  std::array<FilledColumn, 6> FilledColumns;
};

}  // namespace logbook
