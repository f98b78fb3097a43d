// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Output.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "LogRoots.h"
#include "base/Files.h"
#include "base/PathParts.h"
#include "base/Utf8Path.h"
#include "insight/Baselines.h"

namespace logbook::cli {
namespace {

namespace fs = std::filesystem;

// Where a link to what is not there leads; the path itself for anything else.
fs::path BehindLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int links = 0; links < kMostLinks; ++links) {
    const fs::path target = fs::read_symlink(path, error);
    if (error) return path;
    path = path.parent_path() / target;
  }
  throw UserError("\"" + path.string() + "\" is a link without an end");
}

// The path without links, as far as it exists.
fs::path Real(const std::string& native_path) {
  std::error_code error;
  const fs::path absolute = BehindLinks(fs::absolute(Utf8Path(native_path), error));
  const fs::path real = fs::weakly_canonical(absolute, error);
  return error ? absolute.lexically_normal() : real;
}

bool LiesBelow(const fs::path& path, const fs::path& root) {
  const auto [end, rest] = std::mismatch(root.begin(), root.end(), path.begin(), path.end());
  return end == root.end();
}

[[noreturn]] void RefuseAmongLogs(const std::string& typed) {
  throw UserError("\"" + typed + "\" lies among the logs, where nothing is ever written");
}

// True for the folder of a log, whatever root it belongs to.
bool IsLogFolder(const Call& call, const fs::path& folder) {
  return Exists(call.machine, PathText(folder.string()) + "\\logfile.ini");
}

}  // namespace

void RefuseBelowRoots(const Call& call, const std::string& typed,
                      const std::vector<std::string>& roots) {
  if (typed == "-") return;
  const fs::path path = Real(NativePath(call.machine, TypedPathText(typed)));
  std::vector<std::string> guarded = UsualRoots(call);
  guarded.insert(guarded.end(), roots.begin(), roots.end());
  for (const std::string& root : guarded) {
    if (LiesBelow(path, Real(root))) RefuseAmongLogs(typed);
  }
  if (IsLogFolder(call, path.parent_path())) RefuseAmongLogs(typed);
}

void WriteOutput(Call& call, const std::string& typed, std::string_view text,
                 const std::vector<std::string>& roots) {
  if (typed == "-") {
    call.out << text;
    return;
  }
  RefuseBelowRoots(call, typed, roots);
  call.subject += " " + typed;
  WriteFile(call.machine, TypedPathText(typed), text);
}

std::string ReadSettingsFile(Call& call, const std::string& typed) {
  const std::string subject = call.subject;
  call.subject += " " + typed;
  std::string text = ReadFile(call.machine, TypedPathText(typed));
  call.subject = subject;
  return text;
}

std::string SettingsFileOr(const Call& call, const std::string& typed, std::string_view name) {
  if (!typed.empty()) return typed;
  const std::string folder = insight::ConfigFolder();
  const std::string usual = folder + "/" + std::string(name);
  if (folder.empty() || !Exists(call.machine, PathText(usual))) return {};
  // A drive typed by a user would be one of the home.
  return HasDrive(usual) ? PathText(usual) : usual;
}

}  // namespace logbook::cli
