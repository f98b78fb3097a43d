// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/AgentStatus.h"

#include <cstdint>
#include <ctime>
#include <vector>

#include "base/FileLock.h"
#include "base/NativeDisk.h"
#include "base/RunTimeError.h"
#include "upload/Outbox.h"
#include "upload/ServerSettings.h"

namespace logbook {

namespace {

// Names, and reasons that hold what a server has said, without what would move a terminal.
std::string ForTheEye(std::string text) {
  for (char& byte : text) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = ' ';
  }
  return text;
}

std::string ListOf(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += " " + ForTheEye(name);
  return text;
}

std::string TimeText(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  const std::tm* local = std::localtime(&time);
  if (local == nullptr) return "an unknown day";  // the note is damaged
  char text[32] = {};
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local);
  return text;
}

std::string StatusOf(const Outbox& outbox, const std::string& submission) {
  std::string text = "\n" + ForTheEye(submission) + "\n  Files:";
  try {
    text += ListOf(outbox.FilesOf(submission));
  } catch (const RunTimeError&) {
    text += " none";  // damaged, or delivered since the list was made
  }
  const DeliveryNote note = outbox.NoteOf(submission);
  text += "\n  Tries: " + std::to_string(note.tries);
  if (note.last_try != 0) text += ", the last on " + TimeText(note.last_try);
  const std::string reason = note.reason.empty() ? "Waits for its turn." : note.reason;
  return text + "\n  " + ForTheEye(reason) + "\n";
}

std::string StagedText(const Outbox& outbox) {
  const std::vector<std::string> staged = outbox.Staged();
  if (staged.empty()) return {};
  std::string text = "\nIn the staging area: " + std::to_string(staged.size()) + "\n";
  for (const std::string& name : staged) {
    text += "\n" + ForTheEye(name) + "\n  Files:" + ListOf(outbox.StagedFilesOf(name));
    text += "\n  Was not handed over, unless the logbook is at it now; nothing sends it.\n";
  }
  return text;
}

bool AgentIsAtWork(const Outbox& outbox) {
  return !outbox.IsEmpty() && !FileLock(outbox.AgentLock(), FileLock::Patience::kTry).IsHeld();
}

}  // namespace

bool SomethingWaits(const std::string& area) {
  const Outbox outbox(area);
  return !outbox.Waiting().empty() || !outbox.Unfinished().empty();
}

bool HomeExists(const Machine& machine) {
  if (machine.home.empty()) return true;  // the system's own drives
  auto kind = native::Kind::kNothing;
  native::LookAt(machine.home, native::Links::kFollowed, kind);
  return kind == native::Kind::kFolder;
}

std::string StatusText(const Machine& machine, const std::string& area,
                       const std::string& settings_file) {
  const ServerSettings settings = ReadServerSettings(machine, settings_file);
  const Outbox outbox(area);
  const std::vector<std::string> waiting = outbox.Waiting();
  const std::vector<std::string> unfinished = outbox.Unfinished();
  std::string text =
      "Content server: " + (settings.Enabled() ? ForTheEye(AddressOf(settings)) : "none") + "\n";
  if (!HomeExists(machine)) text += "Home: " + machine.home + ", which does not exist\n";
  text += "Outbox: " + outbox.Folder() + "\n";
  text += std::string("Agent: ") + (AgentIsAtWork(outbox) ? "at work" : "not running") + "\n";
  text += "Waiting: " + std::to_string(waiting.size() + unfinished.size()) + "\n";
  for (const std::string& submission : waiting) text += StatusOf(outbox, submission);
  for (const std::string& name : unfinished)
    text += "\n" + name + "\n  Was not taken over to the end; the next agent sees to it.\n";
  return text + StagedText(outbox);
}

}  // namespace logbook
