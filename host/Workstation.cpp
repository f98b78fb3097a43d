// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Workstation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "base/Files.h"
#include "base/HostLinkNames.h"
#include "base/PlainText.h"
#include "base/Profile.h"
#include "base/Registry.h"
#include "base/RunTimeError.h"
#include "host/Disk.h"

namespace logbook::host {
namespace {

constexpr std::string_view kPathKey =
    "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";
constexpr std::string_view kCodePageKey = "SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage";
constexpr std::string_view kDefaultRoot = "C:\\QUOREX\\";
constexpr std::string_view kGeneralSettings = "qrxgen.ist";
constexpr std::string_view kInstrumentSettings = "instrum.ist";
constexpr std::string_view kHelpBookExtension = ".hhbook";
constexpr std::size_t kValueSize = 512;

// The value columns that a new workstation's list shows.
struct ColumnRow {
  std::string_view section;
  std::string_view category;
  int item;
};

// clang-format off
constexpr auto kColumns = std::to_array<ColumnRow>({
    { "Header3",    "Tune",    31 },  // Count Mean(Mass2)
    { "Header4",    "Tune",    63 },  // Oxide
    { "Header5",    "Tune",    61 },  // Doubly Charged
    { "Header6",    "Tune",   123 },  // Analog HV
    { "Header7",    "Meter",   16 },  // Analyzer Press
    { "Header8",    "Meter",   19 },  // Water Temp
    { "Header_CE3", "Tune",    31 },  // Count Mean(Mass2)
    { "Header_CE4", "Tune",    63 },  // Oxide
    { "Header_CE5", "Analog",  91 },  // Analog HV
    { "Header_CE6", "Analog",  48 },  // Analyzer Press
    { "Header_CE7", "Analog",  57 },  // Water Temperature
    { "Header_CE8", "Meter",    4 },  // Carrier Gas
});
// clang-format on

std::string Setting(const Workstation& workstation, std::string_view file, std::string_view section,
                    std::string_view key, std::string_view default_value) {
  const Machine& machine = workstation.machine;
  return machine.code_page->ToUtf8(GetPrivateProfileString(
      machine, section, key, default_value, kValueSize, workstation.exe_path + std::string(file)));
}

std::string HiveText(int code_page) {
  std::string root(kDefaultRoot);
  for (std::size_t at = 0; (at = root.find('\\', at)) != std::string::npos; at += 2) {
    root.insert(at, 1, '\\');
  }
  return "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\" + std::string(kCodePageKey) + "]\r\n\"ACP\"=\"" +
         std::to_string(code_page) + "\"\r\n\r\n[HKEY_LOCAL_MACHINE\\" + std::string(kPathKey) +
         "]\r\n\"Path\"=\"" + root + "\"\r\n";
}

std::string GeneralSettingsText(const Workstation& workstation) {
  return "[PCS,1]\r\nGroupName=Administrators\r\nusername=Operator\r\n_HELPPATH$=" +
         workstation.root + "help\\\r\n_HELPFILE$=quorex.chm\r\n";
}

std::string InstrumentSettingsText(const Instrument& instrument) {
  return "[INSTRUMENT]\r\nBuild=" + BuildName(instrument.build) +
         "\r\nSeed=" + std::to_string(instrument.seed) + "\r\n";
}

std::string LogbookProfileText() {
  std::string text;
  for (const ColumnRow& row : kColumns) {
    text.append("[").append(row.section).append("]\r\nCat=").append(row.category);
    text.append("\r\nItem=").append(std::to_string(row.item)).append("\r\n");
  }
  return text;
}

void PutFileIfMissing(const Machine& machine, const std::string& path, std::string_view text) {
  if (!Exists(machine, path)) PutFile(machine, path, machine.code_page->FromUtf8(text));
}

void MakeHive(const std::string& home, std::optional<int> code_page) {
  const int number = code_page.value_or(1252);
  if (CodePage::Find(number) == nullptr) {
    throw std::invalid_argument("unknown code page " + std::to_string(number));
  }
  const Machine bare{home};
  PutFolder(bare, "C:\\");
  const std::string hive = PathText(home + "/machine.reg");
  if (!Exists(bare, hive)) {
    PutFile(bare, hive, HiveText(number));
  } else if (code_page && OpenMachine(home).code_page->Number() != *code_page) {
    throw std::invalid_argument("this home has code page " +
                                std::to_string(OpenMachine(home).code_page->Number()));
  }
}

}  // namespace

Workstation OpenWorkstation(const std::string& home) {
  Workstation workstation;
  workstation.machine = OpenMachine(home);
  workstation.root = WithBackslash(
      ReadMachineRegistry(home, kPathKey, "Path").value_or(std::string(kDefaultRoot)));
  workstation.exe_path = workstation.root + "qrxexe\\";
  workstation.inst_path = workstation.root + "inst1\\";
  return workstation;
}

std::optional<std::string> ItemText(const Workstation& workstation, std::string_view item) {
  if (item == kItemExePath) return workstation.exe_path;
  if (item == kItemInstPath) return workstation.inst_path;
  if (item == kItemHelpPath) {
    return WithBackslash(
        Setting(workstation, kGeneralSettings, "PCS,1", "_HELPPATH$", workstation.root + "help\\"));
  }
  if (item == kItemHelpFile) {
    return Setting(workstation, kGeneralSettings, "PCS,1", "_HELPFILE$", "quorex.chm");
  }
  return std::nullopt;
}

Instrument InstrumentOf(const Workstation& workstation) {
  Instrument instrument;
  instrument.build = ParseBuild(
      Setting(workstation, kInstrumentSettings, "INSTRUMENT", "Build", kDemonstrationBuild));
  const std::string seed = Setting(workstation, kInstrumentSettings, "INSTRUMENT", "Seed", "1");
  std::from_chars(seed.data(), seed.data() + seed.size(), instrument.seed);
  return instrument;
}

void MakeWorkstation(const std::string& home, const WorkstationSetup& setup) {
  MakeHive(home, setup.code_page);
  const Workstation workstation = OpenWorkstation(home);
  const Machine& machine = workstation.machine;
  for (const std::string_view folder : {"qrxexe", "inst1", "PDF", "help"}) {
    PutFolder(machine, workstation.root + std::string(folder));
  }
  const std::string& exe = workstation.exe_path;
  PutFileIfMissing(machine, exe + std::string(kGeneralSettings), GeneralSettingsText(workstation));
  PutFileIfMissing(machine, exe + "acslvl.ist",
                   "[LOGBOOK]\r\nCONTROL\\Delete Log=Administrators,Service\r\n");
  PutFileIfMissing(machine, exe + std::string(kInstrumentSettings),
                   InstrumentSettingsText(setup.instrument));
  PutFileIfMissing(machine, exe + "logbook.ini", LogbookProfileText());
}

void InstallManual(const Workstation& workstation, const std::string& folder) {
  const std::string source = PathText(folder);
  const std::string help_folder = workstation.root + "help\\";
  std::string book;
  if (FolderExists(workstation.machine, source)) {
    for (const FolderEntry& entry : ScanFolder(workstation.machine, source)) {
      if (entry.kind != FolderEntry::Kind::kFile) continue;
      PutFile(workstation.machine, help_folder + entry.name,
              ReadFile(workstation.machine, source + "\\" + entry.name));
      if (entry.name.ends_with(kHelpBookExtension)) book = entry.name;
    }
  }
  if (book.empty()) throw std::invalid_argument("no help book in " + folder);
  WritePrivateProfileString(workstation.machine, "PCS,1", "_HELPFILE$", book,
                            workstation.exe_path + std::string(kGeneralSettings));
}

int LogCountIn(const Machine& machine, std::string_view log_root) {
  try {
    const auto entries = ScanFolder(machine, log_root);
    return static_cast<int>(std::count_if(
        entries.begin(), entries.end(),
        [](const FolderEntry& entry) { return entry.kind == FolderEntry::Kind::kFolder; }));
  } catch (const RunTimeError&) {
    return 0;
  }
}

int LogNumberOf(const Machine& machine, std::string_view folder) {
  while (!folder.empty() && (folder.back() == '\\' || folder.back() == '/')) {
    folder.remove_suffix(1);
  }
  const std::size_t cut = folder.find_last_of("\\/");
  if (cut == std::string_view::npos) return 0;
  const int count = LogCountIn(machine, folder.substr(0, cut + 1));
  return FolderExists(machine, folder) ? std::max(count - 1, 0) : count;
}

void WriteOptions(const Machine& machine, std::string_view folder, const InstrumentBuild& build) {
  const std::string file = std::string(folder) + "\\logfile.ini";
  for (const auto& [key, value] : OptionSection(build)) {
    if (!WritePrivateProfileString(machine, "OPTION", key, value, file)) {
      throw std::runtime_error("cannot write " + NativePath(machine, file));
    }
  }
}

}  // namespace logbook::host
