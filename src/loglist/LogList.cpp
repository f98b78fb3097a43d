// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/LogList.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "loglist/ColumnValues.h"
#include "resources/Resources.h"
#include "text/CSVMan.h"

namespace logbook {

namespace {

constexpr std::int16_t kMaxLogs = 256;
constexpr int kListFullMessage = 225;
constexpr int kFirstValueColumn = 3;
constexpr int kValueColumns = 6;

std::string ReadDate(AppState& state, const FileRecord& record) {
  return state.snapshots.Date(state.LogRoot + record.Name + "\\logfile.ini");
}

std::string ReadComment(const AppState& state, const FileRecord& record) {
  const std::string file = state.LogRoot + record.Name + "\\comment.txt";
  if (!Exists(state.machine, file) || FolderExists(state.machine, file)) return {};
  return state.machine.code_page->ToUtf8(InputFile(state.machine, file).ReadLine());
}

// The scan of LogRoot; a folder that is gone has no entries.
std::vector<FolderEntry> ScanLogRoot(const AppState& state) {
  try {
    return ScanFolder(state.machine, state.LogRoot);
  } catch (const RunTimeError& error) {
    if (error.Number() != ErrorNumber::kPathNotFound) throw;
    return {};
  }
}

}  // namespace

void Init_FileList(AppState& state, Services& services) {
  {
    const LongWork work(services.events);
    RebuildList(state, services.messages, [&services] { services.events.Paint(); });
    SaveList(state);
  }
  services.forms.UpdateMain();
}

void RebuildList(AppState& state, MessageBoxes& messages,
                 const std::function<void()>& between_files) {
  state.ListView1.Clear();
  state.LogCount = CreateFileList(state, messages);
  const SnapshotCache::Pass pass(state.snapshots, between_files);
  FillFileList(state);
  FillListHeader(state);
  FillListView(state);
}

std::int16_t CreateFileList(AppState& state, MessageBoxes& messages) {
  // Element 256 keeps its old content until a scan reaches it.
  for (std::size_t i = 0; i < static_cast<std::size_t>(kMaxLogs); ++i) state.FileList[i] = {};
  std::int16_t count = 0;
  for (const FolderEntry& entry : ScanLogRoot(state)) {
    if (count == kMaxLogs) break;
    if (entry.kind != FolderEntry::Kind::kFolder) continue;
    ++count;
    state.FileList[static_cast<std::size_t>(count)].Name = entry.name;
  }
  if (count == kMaxLogs) messages.Show({.Text = std::string(LoadResString(kListFullMessage))});
  return count;
}

void FillFileList(AppState& state) {
  for (std::size_t i = 1; i <= static_cast<std::size_t>(state.LogCount); ++i) {
    FileRecord& record = state.FileList[i];
    record.Date = ReadDate(state, record);
    record.Comment = ReadComment(state, record);
  }
}

void FillListHeader(AppState& state) {
  ListView& list = state.ListView1;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(state.LogCount); ++i) {
    const FileRecord& record = state.FileList[i];
    ListRow row;
    row.Key = "Item" + std::to_string(i);
    row.Text = ReadDate(state, record);
    row.SubItem(1) = record.Name;
    row.SubItem(8) = record.Comment;
    list.Rows.insert(list.Rows.begin() + (static_cast<std::ptrdiff_t>(i) - 1), std::move(row));
  }
  list.Column(1).Text = LoadResString(121);
  list.Column(2).Text = LoadResString(122);
  list.Column(9).Text = LoadResString(123);
  FillListView(state);
}

std::string ColumnSection(const AppState& state, int column) {
  return (state.CEMode ? "Header_CE" : "Header") + std::to_string(column);
}

void FillListView(AppState& state) {
  const SnapshotCache::Pass pass(state.snapshots);
  for (int i = 1; i <= kValueColumns; ++i) {
    const int column = i + kFirstValueColumn - 1;
    const std::string section = ColumnSection(state, column);
    std::string category;
    GetIniString(state.machine, section, "cat", "", category, state.IniFile);
    if (category.empty()) {
      state.ListView1.Column(column).Text =
          std::string(LoadResString(125)) + " " + std::to_string(i);
      continue;
    }
    const int item = GetPrivateProfileInt(state.machine, section, "Item", 0, state.IniFile);
    const auto value_column = static_cast<std::int16_t>(i);
    if (category == "Meter") FillMeterList(state, value_column, category, item);
    if (category == "Tune") FillTuneList(state, value_column, category, item);
    if (category == "Analog") FillAnalogList(state, value_column, category, item);
  }
}

std::string ListText(const AppState& state) {
  const ListView& list = state.ListView1;
  std::string text;
  for (const ListColumn& column : list.Columns) {
    if (&column != &list.Columns.front()) text += ',';
    text += column.Text;
  }
  text += "\r\n";
  for (const ListRow& row : list.Rows) {
    text += row.Text;
    for (const std::string& cell : row.SubItems) text += "," + cell;
    text += "\r\n";
  }
  return state.machine.code_page->FromUtf8(text);
}

void SaveList(const AppState& state) {
  try {
    WriteFile(state.machine, state.LogRoot + "listlog.csv", ListText(state));
  } catch (const RunTimeError&) {
    // The rebuild counts as done; the old file stays.
  }
}

}  // namespace logbook
