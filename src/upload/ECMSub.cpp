// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ECMSub.h"

#include <algorithm>
#include <optional>

#include "base/FileTidying.h"
#include "base/Files.h"
#include "base/PlainText.h"
#include "base/PrivateFolder.h"
#include "base/Profile.h"
#include "base/Registry.h"
#include "base/RunTimeError.h"
#include "resources/ResourceText.h"
#include "text/CSVMan.h"
#include "text/LeadingNumber.h"
#include "text/TextParts.h"
#include "upload/ArCmmn.h"
#include "upload/UploadDescriptor.h"

namespace logbook {

namespace {

constexpr const char* kWorkstationKey =
    "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";
constexpr std::size_t kProfileBuffer = 260;
constexpr std::size_t kAreaBytes = 260;
constexpr std::size_t kRootBytes = 255;
constexpr const char* kPrefix = "LOGBK";

constexpr int kLookPause = 100;  // milliseconds between two looks for a print image
constexpr double kLongestWait = 2147483647;

enum Words : int {
  kProgramTitle = 112,
  kEditorTitle = 176,
  kPrintedReason = 1194,
  kRecordedReason = 1195,
  kDeletedReason = 1196,
  kNoPrintImage = 1399,
  kPrintImageFailed = 1400,
  kUploadFailed = 1401,
  kNoListFile = 1402,
  kNoPackage = 1403,
};

void ShowFailure(Services& services, int message, int title) {
  services.messages.Show({.Text = ResourceText(message),
                          .Icon = MessageIcon::kCritical,
                          .Title = ResourceText(title)});
}

bool FileExists(const AppState& state, const std::string& path) {
  return Exists(state.machine, path) && !FolderExists(state.machine, path);
}

// A text value below the workstation's key, cut at its first NUL; nothing for one of more bytes,
// which the buffer for it would not take.
std::optional<std::string> WorkstationValue(const AppState& state, const char* name,
                                            std::size_t bytes) {
  const auto value = ReadMachineRegistry(state.machine.home, kWorkstationKey, name);
  if (!value || state.machine.code_page->Length(*value) > bytes) return std::nullopt;
  return TrimAtNul(*value + '\0');
}

std::string Owner(const AppState& state) {
  const std::string bytes =
      GetPrivateProfileString(state.machine, "pcs,1", "username", "NO_PARAM", kProfileBuffer,
                              GetInstallRoot(state) + "qrxexe\\qrxgen.ist");
  if (bytes.starts_with("NO_PARAM")) return {};
  return state.machine.code_page->ToUtf8(TrimAtNul(bytes + '\0'));
}

// The folder that a file lies in. A drive's root comes out as the drive and a backslash; named with
// two backslashes it loses both and has its colon doubled, as content servers know it.
std::string SourceFolder(const std::string& drive, const std::string& folder) {
  std::string source = drive;
  if (!source.ends_with(':')) source += ':';
  if (!folder.starts_with('\\')) source += '\\';
  source += EndsWithBackslash(folder) ? folder.substr(0, folder.size() - 1) : folder;
  if (source.ends_with(':')) source += ':';
  return source;
}

std::string DestinationOf(const std::string& source) {
  constexpr const char* kRoot = "ROOT";
  if (source.ends_with(":\\")) return kRoot;
  const std::size_t backslash = source.rfind('\\');
  if (backslash == std::string::npos || backslash + 1 == source.size()) return kRoot;
  return source.substr(backslash + 1);
}

// Staging as a step of recording and deleting, which no trap surrounds: a failure of any kind is
// one message, and the logbook goes on.
bool StageOrTell(AppState& state, Services& services, std::string& folder_name,
                 const std::string& file, int reason) {
  try {
    if (StageUploadFile(state, services, folder_name, kPrefix, services.forms.MainWindowHandle(),
                        file, ResourceText(reason)) == 0)
      return true;
  } catch (const RunTimeError&) {
    // The copy or the descriptor could not be written.
  }
  ShowFailure(services, kUploadFailed, kEditorTitle);
  return false;
}

void SubmitOrTell(Services& services, const std::string& folder_name, int title) {
  std::string message;
  if (services.ecm.EcmSubmit(folder_name, message)) return;
  services.messages.Show(
      {.Text = message, .Icon = MessageIcon::kExclamation, .Title = ResourceText(title)});
}

bool Enabled(Services& services) {
  std::string unused_message;
  return services.ecm.EcmEnabled(unused_message);
}

// A number that no variable could hold is the longest wait.
double MillisecondsOf(const std::string& value) {
  try {
    return std::clamp(LeadingNumber(value), 0.0, kLongestWait);
  } catch (const RunTimeError&) {
    return kLongestWait;
  }
}

int GenerateTimeout(const AppState& state) {
  constexpr const char* kDefault = "60000";
  std::string value =
      GetPrivateProfileString(state.machine, "Upload PDF", "Generate Timeout", kDefault,
                              kProfileBuffer, WithBackslash(state.AppPath) + "arecm.cfg");
  if (value.empty()) value = kDefault;
  return static_cast<int>(MillisecondsOf(value));
}

}  // namespace

void UploadRecordedLog(AppState& state, Services& services) {
  if (!Enabled(services) || !FolderExists(state.machine, ExactFolder(state.LogPath))) return;
  const std::string list_file = state.LogRoot + "listlog.csv";
  std::string package;
  if (ZipLogFolder(state, state.LogPath, package) != 0)
    return ShowFailure(services, kUploadFailed, kEditorTitle);
  if (!FileExists(state, package)) return ShowFailure(services, kNoPackage, kEditorTitle);
  if (!FileExists(state, list_file)) return ShowFailure(services, kNoListFile, kEditorTitle);
  std::string folder_name;
  if (!StageOrTell(state, services, folder_name, package, kRecordedReason)) return;
  if (!StageOrTell(state, services, folder_name, list_file, kRecordedReason)) return;
  DeleteFileIgnoringErrors(state.machine, package);
  SubmitOrTell(services, folder_name, kEditorTitle);
}

void UploadChangedList(AppState& state, Services& services) {
  if (!Enabled(services)) return;
  const std::string list_file = state.LogRoot + "listlog.csv";
  if (!FileExists(state, list_file)) return ShowFailure(services, kNoListFile, kEditorTitle);
  std::string folder_name;
  if (!StageOrTell(state, services, folder_name, list_file, kDeletedReason)) return;
  SubmitOrTell(services, folder_name, kEditorTitle);
}

void UploadPrintImage(AppState& state, Services& services, const std::string& path) {
  if (!Enabled(services) || path.empty()) return;
  if (!WaitForPrintImage(state, services, path))
    return ShowFailure(services, kNoPrintImage, kProgramTitle);
  std::string folder_name;
  if (StageUploadFile(state, services, folder_name, kPrefix, services.forms.MainWindowHandle(),
                      path, ResourceText(kPrintedReason)) != 0)
    return ShowFailure(services, kPrintImageFailed, kProgramTitle);
  SubmitOrTell(services, folder_name, kProgramTitle);
}

int StageUploadFile(AppState& state, Services& services, std::string& folder_name,
                    const std::string& prefix, std::intptr_t window, const std::string& file,
                    const std::string& reason) {
  if (folder_name.empty()) {
    const int code = MakeStagingFolder(state, services, folder_name, window, prefix);
    if (code != 0) return code;
  }
  const std::string area = GetEcmTempArea(state);
  std::string drive, folder, base_name, extension;
  SplitPath(file, drive, folder, base_name, extension);
  const std::string full_name = base_name + "." + extension;
  CopyFile(state.machine, file, area + folder_name + "\\" + full_name);
  const std::string source = SourceFolder(drive, folder);
  WriteUploadDescriptor(state, area, folder_name, source, DestinationOf(source), full_name, reason);
  return 0;
}

std::string GetEcmTempArea(const AppState& state) {
  if (const auto area = WorkstationValue(state, "ECM_TEMP", kAreaBytes); area && !area->empty())
    return WithBackslash(*area);
  // Programs beside a home's drives stand on none of them, whatever drive of the machine that is.
  const bool is_elsewhere = state.AppPath.starts_with("\\\\?\\");
  const std::size_t colon = is_elsewhere ? std::string::npos : state.AppPath.find(':');
  const std::string drive = colon == std::string::npos ? "C:" : state.AppPath.substr(0, colon + 1);
  return drive + "\\Norvane.Quorex.ECM\\";
}

int MakeStagingFolder(AppState& state, Services& services, std::string& folder_name,
                      std::intptr_t window, const std::string& prefix) {
  folder_name.clear();
  const std::string area = GetEcmTempArea(state);
  if (area.empty()) return 1;
  try {
    MakePrivateFolder(state.machine, area);
  } catch (const RunTimeError& error) {
    if (error.Number() == ErrorNumber::kPermissionDenied) return 1;
  }
  HideFolder(state.machine, area);
  const LocalTime now = services.clock.Now();
  std::string name;
  for (const int number : {now.Year, now.Month, now.Day, now.Hour, now.Minute, now.Second})
    name += LastDigits(number, 2);
  name += std::to_string(window) + "_" + prefix;
  try {
    MakePrivateFolder(state.machine, area + name);
  } catch (const RunTimeError&) {
    return 2;
  }
  folder_name = name;
  return 0;
}

void WriteUploadDescriptor(const AppState& state, const std::string& area,
                           const std::string& folder_name, const std::string& source,
                           const std::string& destination, const std::string& file_name,
                           const std::string& reason) {
  if (area.empty() || folder_name.empty() || source.empty() || destination.empty() ||
      file_name.empty())
    return;
  AddToUploadDescriptor(state.machine, area + folder_name + ".xml",
                        {.Name = file_name,
                         .Source = source,
                         .Destination = destination,
                         .Reason = reason,
                         .Owner = Owner(state)});
}

std::string GetInstallRoot(const AppState& state) {
  if (const auto path = WorkstationValue(state, "Path", kRootBytes)) return WithBackslash(*path);
  // The ending makes the splitter take the application's folder for a file.
  std::string application = state.AppPath;
  if (EndsWithBackslash(application)) application.pop_back();
  std::string drive, folder, base_name, extension;
  SplitPath(application + ".ext", drive, folder, base_name, extension);
  return WithBackslash(drive + folder);
}

bool WaitForPrintImage(AppState& state, Services& services, const std::string& path) {
  int left = GenerateTimeout(state);
  for (;;) {
    if (FileExists(state, path)) return true;
    left -= kLookPause;
    if (left < 1) return false;
    services.events.Paint();
    services.clock.Sleep(kLookPause);
  }
}

bool EndsWithBackslash(std::string_view text) {
  return text.ends_with('\\');
}

std::string TrimAtNul(std::string_view text) {
  const std::size_t nul = text.find('\0');
  return nul == std::string_view::npos ? std::string() : std::string(text.substr(0, nul));
}

}  // namespace logbook
