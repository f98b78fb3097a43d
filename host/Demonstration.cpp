// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Demonstration.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "base/Environment.h"
#include "base/Machine.h"
#include "host/Calendar.h"
#include "host/Disk.h"
#include "host/History.h"
#include "host/Session.h"
#include "host/Workstation.h"

namespace fs = std::filesystem;

namespace logbook::host {
namespace {

constexpr const char* kMark = ".logbook-demonstration";
constexpr int kPastLogs = 12;
constexpr std::string_view kFolderAddress = "Url=file:///S:/";
constexpr const char* kLanguageSettings = "language.cfg";
constexpr std::array kPrograms = {"logbook", "ecm-agent"};

std::string TextOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void PutText(const fs::path& path, std::string_view text, std::ios::openmode mode = {}) {
  std::ofstream file(path, std::ios::binary | std::ios::out | mode);
  file << text << std::flush;
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

bool IsDemonstration(const fs::path& folder) {
  return fs::exists(folder / kMark);
}

void RequireOurs(const fs::path& folder) {
  if (IsDemonstration(folder) || !fs::exists(folder)) return;
  if (fs::is_directory(folder) && fs::is_empty(folder)) return;
  throw std::runtime_error(folder.string() +
                           " is not a demonstration workstation; move it away or set LOGBOOK_DEMO");
}

// No paper: what is printed becomes a PDF file. The hive ends with the key of the workstation.
void MakeWhole(const fs::path& folder, const InstrumentBuild& build, std::optional<int> code_page,
               const std::string& manual) {
  fs::create_directories(folder);
  PutText(folder / kMark,
          "A demonstration of the maintenance logbook; --fresh deletes this folder.\n");
  const Instrument instrument{build, 1};
  MakeWorkstation(folder.string(), {code_page, instrument});
  const Workstation workstation = OpenWorkstation(folder.string());
  InstallManual(workstation, manual);
  MakeHistory(workstation, {instrument, kPastLogs, Now(), {}, 0});
  PutText(folder / "machine.reg", "\"DefaultPrinter\"=\"PDF\"\r\n", std::ios::app);
}

// What an administrator sets later holds here, too; where links are not allowed, what is set now.
void LinkSettings(const fs::path& from, const fs::path& to) {
  if (!fs::exists(from) || fs::exists(to)) return;
  fs::remove(to);  // a link that leads nowhere any more
  std::error_code no_links;
  fs::create_symlink(fs::absolute(from), to, no_links);
  if (no_links) fs::copy_file(from, to);
}

// Programs are large: piece by piece.
bool HaveTheSameBytes(const fs::path& one, const fs::path& other) {
  std::ifstream first(one, std::ios::binary), second(other, std::ios::binary);
  if (!first || !second) return false;
  std::string piece(1 << 16, '\0'), twin(piece.size(), '\0');
  while (first && second) {
    first.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    second.read(twin.data(), static_cast<std::streamsize>(twin.size()));
    if (first.gcount() != second.gcount() || piece != twin) return false;
  }
  return first.eof() && second.eof();
}

// A program that runs keeps its old file; the name gets a new one.
void CopyProgram(const fs::path& from, const fs::path& to) {
  if (fs::exists(to) && HaveTheSameBytes(from, to)) return;
  fs::remove(to);
  fs::copy_file(from, to);
}

}  // namespace

std::string DefaultDemonstrationFolder() {
  const std::string named = EnvironmentText("LOGBOOK_DEMO");
  return !named.empty() ? named : UserDataFolder() + "/quorex-logbook-demonstration";
}

Demonstration::Demonstration(const std::string& folder)
    : folder_(fs::absolute(folder).lexically_normal()) {
  if (!folder_.has_filename()) folder_ = folder_.parent_path();
}

fs::path Demonstration::Beside(const char* ending) const {
  return folder_.string() + ending;
}

bool Demonstration::Exists() const {
  return IsDemonstration(folder_);
}

int Demonstration::LogCount() const {
  const Workstation workstation = OpenWorkstation(Home());
  return LogCountIn(workstation.machine, workstation.inst_path + "maintain");
}

void Demonstration::Mend() const {
  const fs::path fresh = Beside(".new"), old = Beside(".old");
  if (!fs::exists(folder_) && IsDemonstration(old)) fs::rename(old, folder_);
  for (const fs::path& each : {folder_, fresh, old}) RequireOurs(each);
  fs::remove_all(fresh);
  fs::remove_all(old);
}

void Demonstration::Make(const InstrumentBuild& build, std::optional<int> code_page,
                         const std::string& manual) const {
  const fs::path fresh = Beside(".new"), old = Beside(".old");
  try {
    MakeWhole(fresh, build, code_page, manual);
  } catch (const std::exception&) {
    std::error_code ignored;
    fs::remove_all(fresh, ignored);
    throw;
  }
  if (fs::exists(folder_)) fs::rename(folder_, old);
  fs::rename(fresh, folder_);
  fs::remove_all(old);
}

void Demonstration::Equip(const std::string& programs, const std::string& manual) const {
  const fs::path application = Application();
  for (const char* program : kPrograms)
    CopyProgram(fs::path(programs) / program, application / program);
  LinkSettings(fs::path(programs) / kLanguageSettings, application / kLanguageSettings);
  const fs::path book = application / "manual";
  if (!fs::exists(book)) {
    fs::remove(book);
    fs::create_directory_symlink(fs::canonical(manual), book);
  }
  fs::create_directories(ContentServer());
  const fs::path drive = folder_ / "drives/s";
  if (!fs::exists(fs::symlink_status(drive)))
    fs::create_directory_symlink("../content-server", drive);
  const fs::path settings = application / "arecm.cfg";
  if (!fs::exists(settings)) {
    PutText(settings, "[Content Server]\r\n" + std::string(kFolderAddress) + "\r\n");
  }
}

bool Demonstration::IsTiedToFolder() const {
  const std::string text = "\n" + TextOf(fs::path(Application()) / "arecm.cfg");
  return text.find("\n" + std::string(kFolderAddress)) != std::string::npos;
}

}  // namespace logbook::host
