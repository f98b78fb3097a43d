// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/LogCommands.h"

#include <algorithm>
#include <string>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "loglist/LogList.h"
#include "resources/ResourceText.h"
#include "upload/ECMSub.h"

namespace logbook {

namespace {

constexpr int kDeleteQuestion = 124;
constexpr int kViewerCaption = 135;
constexpr int kCannotDelete = 222;  // and what follows the folder: the next number

void DeleteFilesIgnoringErrors(const AppState& state, const std::string& folder) {
  try {
    DeleteFilesIn(state.machine, folder);
  } catch (const RunTimeError&) {
    // What stays shows up when the folder cannot be removed.
  }
}

}  // namespace

void cmdBrowse_Click(AppState& state, Services& services) {
  ListView& list = state.ListView1;
  if (list.Rows.empty() || list.CurrentRow == 0) return;
  if (list.Row(list.CurrentRow).Selected)
    BrowseLog(state, services, static_cast<std::int16_t>(list.CurrentRow));
}

void BrowseLog(AppState& state, Services& services, std::int16_t row) {
  state.CurrentLog = row;
  state.CurrentLogDate = state.ListView1.Row(row).Text;
  state.CurrentLogName = state.ListView1.Row(row).SubItem(1);
  services.forms.ShowLogView(ResourceText(kViewerCaption) + ":" +
                             state.FileList.at(static_cast<std::size_t>(row)).Date);
}

void ListView1_ColumnClick(AppState& state, Services& services, int column) {
  if (services.forms.ChangeItemVisible()) return;
  if (column > 2 && column < 9) ChangeItem(state, services, static_cast<std::int16_t>(column));
}

void ChangeItem(AppState& state, Services& services, std::int16_t column) {
  state.ChangeColumn = column;
  services.forms.ShowChangeItem();
  Init_FileList(state, services);
}

void cmdDelete_Click(AppState& state, Services& services) {
  const auto& rows = state.ListView1.Rows;
  if (std::none_of(rows.begin(), rows.end(), [](const ListRow& row) { return row.Selected; }))
    return;
  const MessageAnswer answer = services.messages.Show({.Text = ResourceText(kDeleteQuestion),
                                                       .Icon = MessageIcon::kNone,
                                                       .Buttons = MessageButtons::kYesNo});
  if (answer != MessageAnswer::kYes) return;
  if (DeleteSelectedLogs(state, services)) UploadChangedList(state, services);
}

bool DeleteSelectedLogs(AppState& state, Services& services) {
  bool result = false;
  const int rows = static_cast<int>(state.ListView1.Rows.size());
  for (int i = 1; i <= rows; ++i) {
    const ListRow& row = state.ListView1.Row(i);
    if (!row.Selected) continue;
    result = true;
    const std::string path = state.LogRoot + row.SubItem(1);
    const std::string folder = ExactFolder(path);
    DeleteFilesIgnoringErrors(state, folder);
    // The platform that this program comes from needs a look at ".." here, to end a search that
    // holds the folder open. Removing a folder waits for no search on this one.
    try {
      RemoveFolder(state.machine, folder);
    } catch (const RunTimeError&) {
      result = false;
      services.messages.Show(
          {.Text = ResourceText(kCannotDelete) + path + ResourceText(kCannotDelete + 1)});
    }
  }
  Init_FileList(state, services);
  return result;
}

}  // namespace logbook
