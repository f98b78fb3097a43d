// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/LogList.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "loglist/ColumnValues.h"
#include "resources/ResourceText.h"
#include "resources/Resources.h"
#include "text/CSVMan.h"

namespace logbook {

namespace {

constexpr std::int16_t kMaxLogs = 256;
constexpr int kListFullMessage = 225;
constexpr int kFirstValueColumn = 3;
constexpr int kValueColumns = 6;

LogSnapshots& SnapshotsOf(AppState& state, std::size_t log) {
  return state.snapshots.Log(state.LogRoot, state.FileList[log].Name);
}

// The names of the logs; a folder that is gone has none.
std::vector<std::string> ScanLogRoot(const AppState& state) {
  try {
    return FirstFoldersIn(state.machine, state.LogRoot, kMaxLogs);
  } catch (const RunTimeError& error) {
    if (error.Number() != ErrorNumber::kPathNotFound) throw;
    return {};
  }
}

// What logbook.ini says of the value columns, from one reading of it.
std::array<ColumnChoice, kValueColumns> ReadChoices(const AppState& state) {
  std::string profile;
  try {
    profile = ReadFile(state.machine, state.IniFile, kLargestProfile);
  } catch (const RunTimeError&) {
    // A profile that cannot be read has no values.
  }
  std::array<ColumnChoice, kValueColumns> choices;
  for (int i = 0; i < kValueColumns; ++i) {
    const std::string section = ColumnSection(state, i + kFirstValueColumn);
    ColumnChoice& choice = choices[static_cast<std::size_t>(i)];
    GetIniStringFrom(state.machine, section, "cat", "", choice.category, profile);
    choice.item = GetProfileInt(state.machine, section, "Item", 0, profile);
  }
  return choices;
}

void ExpectColumns(AppState& state) {
  SnapshotWants wants;
  for (const ColumnChoice& choice : ReadChoices(state)) ExpectColumn(state, choice, wants);
  state.snapshots.Expect(std::move(wants));
}

void FillColumn(AppState& state, std::int16_t column, const ColumnChoice& choice) {
  const std::string& category = choice.category;
  if (category.empty()) {
    state.ListView1.Column(column + kFirstValueColumn - 1).Text =
        ResourceText(125) + " " + std::to_string(column);
  }
  if (category == kMeterCategory) FillMeterList(state, column, category, choice.item);
  if (category == kTuneCategory) FillTuneList(state, column, category, choice.item);
  if (category == kAnalogCategory) FillAnalogList(state, column, category, choice.item);
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
  ExpectColumns(state);
  FillFileList(state);
  FillListHeader(state);
  FillListView(state);
}

std::int16_t CreateFileList(AppState& state, MessageBoxes& messages) {
  // Element 256 keeps its old content until a scan reaches it.
  for (std::size_t i = 0; i < static_cast<std::size_t>(kMaxLogs); ++i) state.FileList[i] = {};
  std::int16_t count = 0;
  for (std::string& name : ScanLogRoot(state)) {
    ++count;
    state.FileList[static_cast<std::size_t>(count)].Name = std::move(name);
  }
  if (count == kMaxLogs) messages.Show({.Text = ResourceText(kListFullMessage)});
  return count;
}

void FillFileList(AppState& state) {
  const SnapshotCache::Pass pass(state.snapshots);
  for (std::size_t i = 1; i <= static_cast<std::size_t>(state.LogCount); ++i) {
    FileRecord& record = state.FileList[i];
    LogSnapshots& snapshots = SnapshotsOf(state, i);
    record.Date = snapshots.Date();
    record.Comment = snapshots.Comment();
  }
}

void FillListHeader(AppState& state) {
  const SnapshotCache::Pass pass(state.snapshots);
  ListView& list = state.ListView1;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(state.LogCount); ++i) {
    const FileRecord& record = state.FileList[i];
    ListRow row;
    row.Key = "Item" + std::to_string(i);
    row.Text = SnapshotsOf(state, i).Date();
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
  const auto choices = ReadChoices(state);
  for (std::size_t i = 0; i < choices.size(); ++i) {
    // Within a pass the files are what they were, and so are the cells.
    AppState::FilledColumn& filled = state.FilledColumns[i];
    if (filled.Pass == state.snapshots.CurrentPass() && filled.Choice == choices[i]) continue;
    FillColumn(state, static_cast<std::int16_t>(i + 1), choices[i]);
    filled = {state.snapshots.CurrentPass(), choices[i]};
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
    WriteMadeFile(state.machine, state.LogRoot + "listlog.csv", ListText(state));
  } catch (const RunTimeError&) {
    // The rebuild counts as done; the old file stays.
  }
}

}  // namespace logbook
