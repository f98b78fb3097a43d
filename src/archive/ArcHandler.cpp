// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/ArcHandler.h"

#include <algorithm>
#include <optional>

#include "archive/Archive.h"
#include "base/FileTidying.h"
#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "resources/ResourceText.h"
#include "text/CSVMan.h"
#include "text/TextParts.h"

namespace logbook {

namespace {

constexpr std::size_t kFolderBuffer = 260;
constexpr const char* kSection = "PCS,1";
constexpr const char* kKey = "ARCHIVE_FOLDER";
constexpr int kDialogTitle = 1193;
constexpr int kDialogFilter = 1294;
constexpr int kMessageTitle = 1295;
constexpr int kNotSelected = 1395;
constexpr int kPleaseSelect = 1396;
constexpr int kFailed = 1397;
constexpr int kErrorCode = 1462;

std::string SettingsFile(const AppState& state) {
  return state.ExePath + "qrxgen.ist";
}

// The folder of the last archive; at the very first use the default, which is then stored.
std::string ArchiveFolder(const AppState& state) {
  const std::string bytes = GetPrivateProfileString(state.machine, kSection, kKey, "",
                                                    kFolderBuffer, SettingsFile(state));
  std::string folder = state.machine.code_page->ToUtf8(bytes.substr(0, bytes.find('\0')));
  if (!folder.empty()) return folder;
  std::string first_folder = FirstCharacters(state.ExePath, 3) + "ZALM_ARC\\";
  WritePrivateProfileString(state.machine, kSection, kKey, first_folder, SettingsFile(state));
  return first_folder;
}

void MakeFolderIgnoringErrors(const AppState& state, const std::string& folder) {
  try {
    MakeFolder(state.machine, folder);
  } catch (const RunTimeError&) {
    // It exists already, or its parent is missing: the dialog then opens elsewhere.
  }
}

// All selected logs into the zip file, in list order; the code of the first call that fails, or 0.
std::int16_t ZipSelectedLogs(const AppState& state, EventDelivery& events,
                             const std::string& zip_file) {
  const LongWork work(events);
  ZipWriter writer(state.machine, [&events] { events.Paint(); });
  std::string result(kZipResultBuffer, '\0');
  std::int16_t code = 0;
  for (const ListRow& row : state.ListView1.Rows) {
    if (!row.Selected) continue;
    code = writer.arZip(0, zip_file, ExactFolder(state.LogRoot + row.SubItem(1)), "-a -r", result);
    if (code != 0) break;
  }
  const std::int16_t finished = writer.Finish(result);
  return code != 0 ? code : finished;
}

// Folder of a file, with a trailing backslash.
std::string FolderOf(const std::string& file) {
  std::string drive, folder, base_name, extension;
  SplitPath(file, drive, folder, base_name, extension);
  std::string path = drive + folder;
  if (path.empty() || path.back() != '\\') path += '\\';
  return path;
}

std::optional<std::string> AskForFile(Services& services, const std::string& folder) {
  return services.save.Show({.Title = ResourceText(kDialogTitle),
                             .DefaultExtension = ".zip",
                             .Filter = ResourceText(kDialogFilter),
                             .InitialFolder = folder,
                             .FileName = GetArchiveName(services)});
}

}  // namespace

std::string GetArchiveName(Services& services) {
  const LocalTime now = services.clock.Now();
  const char month = "0123456789ABC"[now.Month];
  return "m" + LastDigits(now.Year, 2) + month + LastDigits(now.Day, 2) + LastDigits(now.Hour, 2) +
         LastDigits(now.Minute, 2) + ".zip";
}

void ArchiveLogs(AppState& state, Services& services) {
  const std::string archive_folder = ArchiveFolder(state);
  const auto& rows = state.ListView1.Rows;
  if (std::none_of(rows.begin(), rows.end(), [](const ListRow& row) { return row.Selected; })) {
    services.messages.Show({.Text = ResourceText(kNotSelected) + "\r" + ResourceText(kPleaseSelect),
                            .Icon = MessageIcon::kInformation,
                            .Title = ResourceText(kMessageTitle)});
    return;
  }
  MakeFolderIgnoringErrors(state, archive_folder);
  const std::optional<std::string> zip_file = AskForFile(services, archive_folder);
  if (!zip_file) return;
  DeleteFileIgnoringErrors(state.machine, *zip_file);
  const std::int16_t code = ZipSelectedLogs(state, services.events, *zip_file);
  if (code != 0) {
    services.messages.Show(
        {.Text = ResourceText(kFailed) + "\r" + ResourceText(kErrorCode) + std::to_string(code),
         .Icon = MessageIcon::kCritical,
         .Title = ResourceText(kMessageTitle)});
    return;
  }
  WritePrivateProfileString(state.machine, kSection, kKey, FolderOf(*zip_file),
                            SettingsFile(state));
}

}  // namespace logbook
