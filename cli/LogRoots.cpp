// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "LogRoots.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <ostream>

#include "Terminal.h"
#include "base/Environment.h"
#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/Utf8Path.h"
#include "insight/ProgressLine.h"

namespace logbook::cli {
namespace {

// Where the simulated host's workstation has its logs.
constexpr const char* kWorkstationRoot = "C:\\QUOREX\\inst1\\maintain";
// Where the simulated host makes its demonstration, below the user's data folder.
constexpr const char* kOwnDemonstration = "/quorex-logbook-demonstration";
constexpr const char* kDemonstrationRoot = "/drives/c/QUOREX/inst1/maintain";

std::string NativeOf(const Call& call, const std::string& typed) {
  return NativePath(call.machine, TypedPathText(typed));
}

bool IsFolder(const Call& call, const std::string& native_path) {
  return FolderExists(call.machine, PathText(native_path));
}

double Seconds() {
  using std::chrono::duration;
  return duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A native path without slashes at its end.
std::string Trimmed(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

// The root where the user has named none. A demonstration that nobody has named is told, so that
// its logs are not taken for those of an instrument.
std::string UnnamedRoot(const Call& call) {
  std::string workstation = NativePath(call.machine, kWorkstationRoot);
  if (IsFolder(call, workstation)) return workstation;
  const std::string named = EnvironmentText("LOGBOOK_DEMO");
  if (!named.empty() && IsFolder(call, named + kDemonstrationRoot))
    return named + kDemonstrationRoot;
  if (named.empty()) {
    for (const std::string& folder : {std::string("demo"), UserDataFolder() + kOwnDemonstration}) {
      std::string root = folder + kDemonstrationRoot;
      if (!IsFolder(call, root)) continue;
      call.Tell("the logs are those of the demonstration in " + folder);
      return root;
    }
  }
  throw UserError("no folder of logs: give --log-root DIR or set LOGBOOK_ROOT");
}

}  // namespace

void AddLogRootOption(CLI::App& verb, LogRootOptions& options) {
  verb.add_option(
          "--log-root", options.typed,
          "Folder of the log folders, instead of that in LOGBOOK_ROOT; may stand several times")
      ->type_name("DIR")
      ->allow_extra_args(false);
}

std::vector<std::string> FindLogRoots(Call& call, const LogRootOptions& options) {
  std::vector<std::string> typed = options.typed;
  if (typed.empty() && !EnvironmentText("LOGBOOK_ROOT").empty())
    typed = {EnvironmentText("LOGBOOK_ROOT")};
  std::vector<std::string> roots;
  for (const std::string& each : typed) {
    const std::string root = Trimmed(NativeOf(call, each));
    if (!IsFolder(call, root)) {
      call.subject += " " + each;
      throw RunTimeError(ErrorNumber::kPathNotFound);
    }
    // A root that stands twice counts once, whatever way leads there.
    const bool is_there = std::ranges::any_of(roots, [&](const std::string& other) {
      std::error_code error;
      return std::filesystem::equivalent(Utf8Path(other), Utf8Path(root), error);
    });
    if (!is_there) roots.push_back(root);
  }
  if (!roots.empty()) return roots;
  return {UnnamedRoot(call)};
}

namespace {

// A folder name as a shell completes it has a slash behind it.
std::string WithoutSlash(std::string typed) {
  if (typed.find('/') == typed.size() - 1 && typed.size() > 1) typed.pop_back();
  return typed;
}

}  // namespace

LogPlace FindLog(Call& call, const LogRootOptions& options, const std::string& as_typed) {
  const std::string typed = WithoutSlash(as_typed);
  const bool is_path = typed.find_first_of("/\\") != std::string::npos;
  if (typed.empty() || typed == "." || typed == "..") {
    throw UserError("\"" + typed + "\" is no log: give its folder name or a path to it");
  }
  if (!is_path) {
    for (const std::string& root : FindLogRoots(call, options)) {
      if (IsFolder(call, root + "/" + typed)) return {root, typed};
    }
  }
  const std::string path = Trimmed(NativeOf(call, typed));
  if (!is_path || !IsFolder(call, path)) {
    call.subject += " " + typed;
    throw RunTimeError(ErrorNumber::kPathNotFound);
  }
  const auto absolute = std::filesystem::absolute(Utf8Path(path)).lexically_normal();
  return {absolute.parent_path().generic_string(), absolute.filename().string()};
}

std::vector<std::string> UsualRoots(const Call& call) {
  std::vector<std::string> roots;
  const std::string named = EnvironmentText("LOGBOOK_ROOT");
  const std::string demo = EnvironmentText("LOGBOOK_DEMO");
  for (const std::string& root :
       {named.empty() ? named : Trimmed(NativeOf(call, named)),
        NativePath(call.machine, kWorkstationRoot),
        demo.empty() ? demo : Trimmed(NativeOf(call, demo + kDemonstrationRoot))}) {
    if (!root.empty() && IsFolder(call, root)) roots.push_back(root);
  }
  return roots;
}

insight::LogReading ReadNamedLog(const Call& call, const Catalogues& catalogues,
                                 const LogPlace& place) {
  const insight::LogFiles files =
      insight::LoadLogFiles(call.machine, PathText(place.root), place.folder);
  const std::string path = place.root + "/" + place.folder;
  std::error_code error;
  const std::filesystem::directory_iterator opened(Utf8Path(path), error);
  if (error) throw UserError("\"" + path + "\" cannot be opened; see to its owner and rights");
  if (!insight::HoldsLog(files)) throw UserError("\"" + path + "\" holds no file of a log");
  return ReadLog(*call.machine.code_page, catalogues, files);
}

insight::LogReading ReadLogAt(const Call& call, const Catalogues& catalogues,
                              const LogPlace& place) {
  return ReadLog(*call.machine.code_page, catalogues,
                 insight::LoadLogFiles(call.machine, PathText(place.root), place.folder));
}

insight::LocalDay TodayOf(const std::string& typed) {
  if (typed.empty()) return insight::Today();
  const auto day = insight::ParseDay(typed);
  if (!day) throw WrongUse("\"" + typed + "\" is no day of the form YYYY-MM-DD");
  return *day;
}

insight::IndexSettings IndexSettingsFor(const Call& call) {
  insight::IndexSettings settings;
  settings.GuardedRoots = UsualRoots(call);
  settings.Warn = [&call](const std::string& words) { call.Tell(words); };
  if (!ErrorsGoToTerminal()) return settings;
  const auto pace = std::make_shared<insight::ProgressPace>();
  settings.Progress = [&call, pace](const insight::UpdateProgress& progress) {
    const std::string line = pace->Line(progress, Seconds());
    if (!line.empty()) call.err << '\r' << line << "\x1B[K" << std::flush;
    const bool at_end = progress.Done == progress.Total;
    if (at_end && pace->HasShown()) call.err << "\r\x1B[K" << std::flush;
  };
  return settings;
}

}  // namespace logbook::cli
