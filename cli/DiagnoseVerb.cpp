// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <map>
#include <memory>
#include <ostream>

#include "LogRoots.h"
#include "Output.h"
#include "SystemFacts.h"
#include "Verbs.h"
#include "base/Files.h"
#include "base/NativeProgram.h"
#include "base/Profile.h"
#include "base/Registry.h"
#include "base/Utf8Path.h"
#include "insight/Check.h"
#include "resources/Resources.h"
#include "state/AppState.h"
#include "state/LanguageChoice.h"
#include "upload/AgentStatus.h"
#include "upload/ECMSub.h"
#include "upload/ServerSettings.h"

namespace logbook::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kWorkstationKey =
    "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";

struct DiagnoseRequest {
  LogRootOptions roots;
  std::string application = OwnProgramFolder();
  std::string file = "-";
};

void AddHeading(std::string& text, std::string_view words) {
  text.append("\n").append(words).append("\n");
}

void AddFact(std::string& text, const std::string& name, const std::string& value) {
  text += "  " + name + ": " + (value.empty() ? "not set" : value) + "\n";
}

std::string SizeOf(const fs::path& file) {
  std::error_code missing;
  const auto size = fs::file_size(file, missing);
  return missing ? "is not there" : std::to_string(size) + " bytes";
}

void AddPrograms(std::string& text, const std::string& application) {
  AddHeading(text, "Programs");
  AddFact(text, "Version", LOGBOOK_VERSION);
  AddFact(text, "Folder", application);
  for (const char* name : {"logbook", "logbookctl", "ecm-agent", "quorex-host", "arecm.cfg",
                           "manual/logbook.hhbook"}) {
    AddFact(text, name, SizeOf(Utf8Path(application) / name));
  }
}

// What is set for the logbook beside this program, and what it speaks then.
void AddLanguage(std::string& text, const Machine& machine, const std::string& application) {
  const std::string folder = DrivePathText(machine, application);
  constexpr std::size_t kSize = 256;
  AddHeading(text, "Language");
  AddFact(text, kLanguageFile,
          GetPrivateProfileString(machine, "Language", "Use", "", kSize,
                                  folder + "\\" + kLanguageFile));
  TakeLanguage(machine, folder, LOGBOOK_LANGUAGE);
  AddFact(text, "Spoken", std::string(CurrentLanguage().id));
  ChooseLanguage("en");  // as this program speaks
}

void AddSystem(std::string& text) {
  AddHeading(text, "System");
  for (const auto& [name, value] : SystemFacts()) AddFact(text, name, value);
}

// The drives, with the folders behind those that are links.
void AddHome(std::string& text, const Machine& machine) {
  AddHeading(text, "Home");
  AddFact(text, "Folder", machine.home + (HomeExists(machine) ? "" : ", which does not exist"));
  AddFact(text, "Code page", std::to_string(machine.code_page->Number()));
  std::map<std::string, std::string> drives;
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(Utf8Path(machine.home + "/drives"), missing)) {
    std::error_code no_link;
    const std::string target = fs::read_symlink(entry.path(), no_link).string();
    drives[entry.path().filename().string()] = no_link ? "a folder" : "a link to " + target;
  }
  for (const auto& [name, what] : drives) AddFact(text, "Drive " + name, what);
  for (const char* value : {"Path", "ECM_TEMP", "DefaultPrinter"}) {
    AddFact(text, value, ReadMachineRegistry(machine.home, kWorkstationKey, value).value_or(""));
  }
}

// The column choice of both modes.
void AddColumns(std::string& text, const Machine& machine) {
  const std::string path = ReadMachineRegistry(machine.home, kWorkstationKey, "Path").value_or("");
  const std::string file =
      (path.empty() || path.ends_with('\\') ? path : path + "\\") + "qrxexe\\logbook.ini";
  AddHeading(text, "Columns in " + file);
  if (path.empty() || !Exists(machine, file)) {
    text += "  is not there\n";
    return;
  }
  constexpr std::size_t kSize = 256;
  for (const std::string mode : {"Header", "Header_CE"}) {
    for (int column = 3; column <= 8; ++column) {
      const std::string section = mode + std::to_string(column);
      const auto value = [&](const char* key) {
        return machine.code_page->ToUtf8(
            GetPrivateProfileString(machine, section, key, "", kSize, file));
      };
      AddFact(text, section, value("Cat") + " " + value("Item"));
    }
  }
}

// Nothing that opens a door: of password and name only whether they are set.
void AddUpload(std::string& text, const Machine& machine, const std::string& application) {
  AppState state(machine);
  state.AppPath = DrivePathText(machine, application);
  const std::string file = state.AppPath + "\\arecm.cfg";
  const ServerSettings settings = ReadServerSettings(machine, file);
  AddHeading(text, "Upload");
  AddFact(text, "User", settings.user.empty() ? "" : "set");
  AddFact(text, "PasswordFile", settings.password_file.empty() ? "" : "set");
  AddFact(text, "CaFile", settings.ca_file.empty() ? "" : "set");
  AddFact(text, "Folder", settings.folder);
  std::string status;
  try {
    status = StatusText(machine, NativePath(machine, GetEcmTempArea(state)), file);
  } catch (const std::exception& error) {
    status = std::string("the outbox cannot be read: ") + error.what() + "\n";
  }
  text += status;
}

// How many logs, and how often each finding; nothing of what stands in them.
void AddRoot(std::string& text, const Call& call, const std::string& root) {
  AddHeading(text, "Logs in " + root);
  Catalogues catalogues;
  FillCatalogues(catalogues);
  try {
    const auto entries = ScanFolder(call.machine, PathText(root));
    AddFact(text, "Folders",
            std::to_string(
                std::ranges::count(entries, FolderEntry::Kind::kFolder, &FolderEntry::kind)));
    std::map<std::string, int> counts;
    for (const insight::Finding& each :
         insight::CheckLogRoot(call.machine, catalogues, PathText(root), insight::Today())) {
      ++counts[std::string(each.code)];
    }
    for (const auto& [code, count] : counts)
      AddFact(text, "Finding " + code, std::to_string(count));
  } catch (const std::exception& error) {
    AddFact(text, "Trouble", error.what());
  }
}

// The roots; where there is none, that is a fact like any other.
std::vector<std::string> RootsFor(Call& call, const LogRootOptions& options, std::string& text) {
  try {
    return FindLogRoots(call, options);
  } catch (const UserError& none) {
    AddHeading(text, "Logs");
    AddFact(text, "Trouble", none.what());
    return {};
  }
}

// Letters of a folder name, for the question where one ends.
bool IsInName(char byte) {
  return static_cast<unsigned char>(byte) >= 0x80 ||
         std::isalnum(static_cast<unsigned char>(byte)) != 0 ||
         std::string_view("_-.").find(byte) != std::string_view::npos;
}

// The text with ~ for a folder. Only whole names count: with /home/ann, /home/anna stays.
std::string WithTilde(const std::string& text, const std::string& folder) {
  std::string told;
  std::size_t from = 0;
  for (std::size_t at = 0; (at = text.find(folder, from)) != std::string::npos;) {
    const std::size_t behind = at + folder.size();
    const bool is_whole = behind == text.size() || !IsInName(text[behind]);
    told.append(text, from, at - from).append(is_whole ? "~" : folder);
    from = behind;
  }
  return told.append(text, from);
}

// The user's folder mostly has the user's name, so that no spelling of it stands in the text.
std::string WithoutUserFolder(std::string text) {
  const std::string folder = UserFolder();
  if (folder.empty()) return text;
  std::error_code missing;
  const std::string real = fs::canonical(Utf8Path(folder), missing).generic_string();
  for (std::string each : {folder, missing ? folder : real}) {
    if (each == "/") continue;
    text = WithTilde(text, each);
    std::ranges::replace(each, '/', '\\');
    text = WithTilde(text, each);
  }
  return text;
}

int Diagnose(Call& call, const DiagnoseRequest& request) {
  std::string text = "Maintenance LogBook, state of " + ClockText() + "\n";
  AddPrograms(text, request.application);
  AddLanguage(text, call.machine, request.application);
  AddSystem(text);
  AddHome(text, call.machine);
  AddColumns(text, call.machine);
  AddUpload(text, call.machine, request.application);
  const std::vector<std::string> roots = RootsFor(call, request.roots, text);
  for (const std::string& root : roots) AddRoot(text, call, root);
  WriteOutput(call, request.file, WithoutUserFolder(text), roots);
  return kSuccess;
}

}  // namespace

void AddDiagnose(Frame& frame) {
  const auto request = std::make_shared<DiagnoseRequest>();
  CLI::App& verb = frame.AddVerb("diagnose",
                                 "Write what helps to understand a fault: versions, system, "
                                 "settings, the state of workstation "
                                 "and upload; nothing that stands in the logs, and no password",
                                 [request](Call& call) { return Diagnose(call, *request); });
  AddLogRootOption(verb, request->roots);
  verb.add_option("--app", request->application, "Folder of the programs, with arecm.cfg")
      ->type_name("DIR");
  verb.add_option("FILE", request->file, "Text file to write; - is standard output")->type_name("");
}

}  // namespace logbook::cli
