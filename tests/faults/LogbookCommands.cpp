// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <zip.h>

#include <algorithm>

#include "Commands.h"
#include "archive/ArcHandler.h"
#include "loglist/ColumnChooser.h"
#include "loglist/LogList.h"
#include "records/LogCommands.h"
#include "records/LogEditor.h"
#include "records/Recording.h"
#include "reports/AllReports.h"
#include "support/FixedWidthBox.h"
#include "viewer/LogView.h"

namespace logbook::test {

namespace {

constexpr const char* kRoot = "drives/c/QUOREX/inst1/maintain/";
constexpr const char* kZip = "C:\\ZALM_ARC\\logs.zip";
constexpr const char* kOlderProfile =
    "; kept by hand\r\n[LogBook]\r\nLogFileName=C:\\QUOREX\\inst1\\maintain\\26111402\\\r\n"
    "LastFile=C:\\QUOREX\\inst1\\maintain\\26111402\\\r\n"
    "[Maintenance]\r\nItem0=0\r\nItem3=1\r\n[Header3]\r\nCat=Meter\r\nItem=1\r\n";

bool IsReport(const std::string& path) {
  return path.ends_with(".rpt") || path.ends_with("tune.bin");
}

bool IsMadeReport(const std::string& path) {
  return IsReport(path) && !path.ends_with("/tune.rpt");
}

bool IsListFile(const std::string& path) {
  return path == std::string(kRoot) + "listlog.csv";
}

void NoScript(Station&) {}

// A user who ticks two items, writes a comment and ends with OK or Cancel.
enum class Ending { kOK, kCancel };
void UseEditor(Station& station, Ending ending) {
  station.AnswerJobs();
  station.forms.on_editor = [&station, ending](const std::optional<std::string>&) {
    LogEditor editor;
    FixedWidthBox comment(station.state.machine, 80);
    LoadLogEditor(station.state, editor, comment);
    if (station.state.AutoRec) throw RunTimeError(ErrorNumber::kObjectUnloaded);
    editor.Ticked = {};
    editor.Ticked[1] = editor.Ticked[17] = true;
    comment.SetText("Torch replaced\r\nand aligned");
    if (ending == Ending::kOK) return LogEditorOK(station.state, editor, comment);
    LogEditorCancel(station.state, station.real, editor);
  };
}

void Record(Station& station) {
  station.Handle([&] { cmdRecord_Click(station.state, station.real); });
}

// The ticks and the list are written in silence: the record exists without them.
bool IsTicksOrList(const std::string& path) {
  return IsListFile(path) || path.ends_with("/logfile.ini") || path.ends_with("/logbook.ini");
}

// Of one command on one profile all keys are old or all are new.
std::string JudgeTicks(const Aftermath& after) {
  for (const auto& [path, bytes] : after.now) {
    if (!path.ends_with("logfile.ini") && !path.ends_with("logbook.ini")) continue;
    if ((bytes.find("Item1=1") == std::string::npos) !=
        (bytes.find("Item17=1") == std::string::npos))
      return path + " has a part of the ticks";
  }
  return {};
}

}  // namespace

void PutLogs(Station& station) {
  station.PutSample("26111400", "plain", "The first one");
  station.PutSample("26111401", "lumarin", "The second one");
  station.PutSample("26111402", "trz-ce", "The third one");
  station.disk.Put(station.state.IniFile, kOlderProfile);
  station.disk.Put(TestWorkstation::InLog("26111400", "analog.rpt"), "an older report\r\n");
  station.disk.Put(std::string(TestWorkstation::kLogRoot) + "listlog.csv",
                   "Date Logged,of an older list\r\n");
}

void ConfirmEditor(Station& station) {
  UseEditor(station, Ending::kOK);
}

std::vector<std::string> NamesInZip(const std::string& bytes) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  zip_t* zip = zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
  zip_error_fini(&error);
  std::vector<std::string> names;
  if (zip == nullptr) return names;
  const zip_int64_t entries = zip_get_num_entries(zip, 0);
  for (zip_int64_t i = 0; i < entries; ++i) {
    zip_file_t* file = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
    char buffer[65536];
    zip_int64_t count = -1;
    while (file != nullptr && (count = zip_fread(file, buffer, sizeof buffer)) > 0) {
    }
    if (count == 0) names.emplace_back(zip_get_name(zip, static_cast<zip_uint64_t>(i), 0));
    if (file != nullptr) zip_fclose(file);
  }
  zip_discard(zip);
  if (names.size() != static_cast<std::size_t>(entries)) names.clear();
  return names;
}

Command RecordOK() {
  return {.name = "record, OK",
          .prepare = PutLogs,
          .script = ConfirmEditor,
          .run = Record,
          .is_made = IsListFile,
          .is_silent = IsTicksOrList,
          .judge = JudgeTicks};
}

Command RecordCancel() {
  return {.name = "record, Cancel",
          .prepare = PutLogs,
          .script = [](Station& station) { UseEditor(station, Ending::kCancel); },
          .run = Record,
          .is_made = IsListFile,
          .is_silent = IsTicksOrList};
}

Command AutomaticRecord() {
  Command command = RecordOK();
  command.name = "automatic record";
  command.script = [](Station& station) {
    station.state.AutoRec = true;
    UseEditor(station, Ending::kOK);
  };
  command.judge = {};
  command.follows_reading = IsTicksOrList;  // the ticks are those that the last record left
  return command;
}

Command DeleteSeveral() {
  const auto is_deleted = [](const std::string& path) {
    return path.starts_with(std::string(kRoot) + "26111400/") ||
           path.starts_with(std::string(kRoot) + "26111402/");
  };
  const auto select = [](Station& station) {
    Init_FileList(station.state, station.services);
    for (ListRow& row : station.state.ListView1.Rows)
      row.Selected = row.SubItem(1) == "26111400" || row.SubItem(1) == "26111402";
    station.messages.answers = {MessageAnswer::kYes};
  };
  return {.name = "delete two of three",
          .prepare = PutLogs,
          .script = select,
          .run =
              [](Station& station) {
                station.Handle([&] { cmdDelete_Click(station.state, station.real); });
                // The question is no news.
                if (!station.messages.shown.empty())
                  station.messages.shown.erase(station.messages.shown.begin());
              },
          .is_made = IsListFile,
          .may_be_gone = is_deleted,
          .is_silent = IsListFile};
}

Command ChooseColumn() {
  const auto choose = [](Station& station) {
    station.forms.on_change_item = [&station] {
      ColumnChooser chooser;
      LoadColumnChooser(station.state, chooser);
      SetOption(station.state, chooser, 1);
      chooser.ListIndex = 4;
      ColumnChooserOK(station.state, station.real, chooser);
    };
  };
  return {.name = "column choice",
          .prepare = PutLogs,
          .script = choose,
          .run =
              [](Station& station) {
                station.Handle([&] { ChangeItem(station.state, station.real, 3); });
              },
          .is_made = IsListFile,
          // The list shows at once that the choice was not stored.
          .is_silent = IsTicksOrList};
}

Command RebuildList() {
  return {.name = "list rebuild",
          .prepare = PutLogs,
          .script = NoScript,
          .run =
              [](Station& station) {
                station.Handle([&] { Init_FileList(station.state, station.real); });
              },
          .is_made = IsListFile,
          .is_silent = IsListFile};
}

Command ViewAllReports() {
  const auto open = [](Station& station) {
    station.state.CEMode = true;
    station.state.LogCount = station.state.CurrentLog = 1;
    station.state.FileList[1].Name = "26111400";
  };
  const auto view_all = [](Station& station) {
    station.Handle([&] {
      LogView view;
      LoadLogView(station.state, view);
      for (const ViewCommand& command : kViewCommands)
        command.Run(station.state, station.real, view);
    });
  };
  return {.name = "all reports",
          .prepare = PutLogs,
          .script = open,
          .run = view_all,
          .is_made = IsMadeReport,
          .is_silent = IsReport};
}

Command WriteAllReports() {
  const auto write_all = [](Station& station) {
    station.Handle([&] {
      const std::string folder = station.state.LogRoot + "26111400\\";
      WriteReports(station.state.machine, folder,
                   MakeAllReports(station.state.machine, station.state.catalogues, folder));
    });
  };
  return {.name = "all reports at once",
          .prepare = PutLogs,
          .script = NoScript,
          .run = write_all,
          .is_made = IsMadeReport,
          .is_silent = {}};
}

Command Archive() {
  const auto select = [](Station& station) {
    Init_FileList(station.state, station.services);
    for (ListRow& row : station.state.ListView1.Rows) row.Selected = true;
    station.save.answer = kZip;
  };
  const auto is_zip = [](const std::string& path) { return path.ends_with("/logs.zip"); };
  const auto is_whole = [is_zip](const std::string& path, const std::string& bytes) {
    return is_zip(path) && !NamesInZip(bytes).empty();
  };
  return {
      .name = "archive",
      .prepare =
          [](Station& station) {
            PutLogs(station);
            station.disk.Put(kZip, "an older archive");
            station.disk.Put("C:\\QUOREX\\qrxexe\\qrxgen.ist",
                             "[PCS,1]\r\nARCHIVE_FOLDER=C:\\ZALM_ARC\\\r\n");
          },
      .script = select,
      .run =
          [](Station& station) {
            station.Handle([&] { ArchiveLogs(station.state, station.real); });
          },
      .is_whole = is_whole,
      .may_be_gone = is_zip,
      // All three logs, each to its last byte.
      .judge_rest = [is_zip](const Disk& rest) -> std::string {
        for (const auto& [path, bytes] : rest) {
          if (!is_zip(path)) continue;
          const std::vector<std::string> names = NamesInZip(bytes);
          for (const char* log : {"26111400/aall.txt", "26111401/aall.txt", "26111402/aall.txt"}) {
            if (std::find(names.begin(), names.end(), log) == names.end())
              return std::string(log) + " cannot be read from the archive";
          }
        }
        return {};
      }};
}

}  // namespace logbook::test
