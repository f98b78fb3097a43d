// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ContentServerClient.h"

#include <set>
#include <utility>

#include "base/Files.h"
#include "base/NativeProgram.h"
#include "base/RunTimeError.h"
#include "resources/ResourceText.h"
#include "upload/ECMSub.h"
#include "upload/Outbox.h"
#include "upload/ServerSettings.h"
#include "upload/UploadDescriptor.h"

namespace logbook {

namespace {

// In the string table.
constexpr int kNoServer = 1470;
constexpr int kNoStagingFolder = 1471;
constexpr int kDescriptorIsEmpty = 1472;
constexpr int kNoFileIsStaged = 1473;
constexpr int kFileIsMissing = 1474;
constexpr int kFileIsNotNamed = 1475;
constexpr int kCannotTakeOver = 1476;
constexpr int kAgentIsMissing = 1477;

// What is wrong with a staged folder, or nothing.
std::string FaultOf(const Machine& machine, const std::string& area, const std::string& name) {
  if (name.empty() || name.find_first_of("/\\") != std::string::npos ||
      !FolderExists(machine, area + name))
    return ResourceText(kNoStagingFolder, {name});
  std::set<std::string> described;
  for (const UploadFile& file : ReadUploadDescriptor(machine, area + name + ".xml"))
    described.insert(file.Name);
  if (described.empty()) return ResourceText(kDescriptorIsEmpty, {name});
  std::set<std::string> staged;
  for (const FolderEntry& entry : ScanFolder(machine, area + name)) {
    if (entry.kind != FolderEntry::Kind::kFile) return ResourceText(kNoFileIsStaged, {entry.name});
    staged.insert(entry.name);
  }
  for (const std::string& file : described) {
    if (!staged.contains(file)) return ResourceText(kFileIsMissing, {file});
  }
  for (const std::string& file : staged) {
    if (!described.contains(file)) return ResourceText(kFileIsNotNamed, {file});
  }
  return {};
}

}  // namespace

ContentServerClient::ContentServerClient(const AppState& state, std::string agent_program)
    : state_(state), agent_program_(std::move(agent_program)) {}

std::string ContentServerClient::SettingsFile() const {
  return state_.AppPath + (EndsWithBackslash(state_.AppPath) ? "" : "\\") + "arecm.cfg";
}

std::string ContentServerClient::AgentProgram() const {
  if (!agent_program_.empty()) return agent_program_;
  return NativePath(state_.machine, state_.AppPath) + "/ecm-agent";
}

bool ContentServerClient::StartAgent() const {
  const std::string folder = NativePath(state_.machine, state_.AppPath);
  std::vector<std::string> arguments = {"--app", folder};
  if (!state_.machine.home.empty())
    arguments.insert(arguments.end(), {"--home", state_.machine.home});
  return StartDetached(AgentProgram(), arguments);
}

void ContentServerClient::Resume() {
  std::string unused_message;
  if (!EcmEnabled(unused_message)) return;
  try {
    if (!Outbox(NativePath(state_.machine, GetEcmTempArea(state_))).IsEmpty()) StartAgent();
  } catch (const RunTimeError&) {
    // An outbox that cannot be read is told at the next event.
  }
}

bool ContentServerClient::EcmEnabled(std::string& message) {
  if (ReadServerSettings(state_.machine, SettingsFile()).Enabled()) return true;
  message = ResourceText(kNoServer);
  return false;
}

bool ContentServerClient::EcmSubmit(const std::string& staging_folder, std::string& message) {
  if (!EcmEnabled(message)) return false;
  const std::string area = GetEcmTempArea(state_);
  try {
    message = FaultOf(state_.machine, area, staging_folder);
    if (!message.empty()) return false;
    Outbox(NativePath(state_.machine, area)).TakeOver(staging_folder);
  } catch (const RunTimeError& error) {
    message = ResourceText(kCannotTakeOver, {error.Description()});
    return false;
  }
  if (StartAgent() || has_told_of_missing_agent_) return true;
  has_told_of_missing_agent_ = true;
  message = ResourceText(kAgentIsMissing, {AgentProgram()});
  return false;
}

}  // namespace logbook
