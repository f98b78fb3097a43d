// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The content-server client of a workstation: enabled by a server address in arecm.cfg. It takes
// staged folders over into the outbox and leaves their way to the server to the agent, a program of
// its own that outlives the logbook.
#pragma once

#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

class ContentServerClient : public EcmClient {
 public:
  // `agent_program` is the native path of the agent; empty: "ecm-agent" in the application's
  // folder.
  explicit ContentServerClient(const AppState& state, std::string agent_program = {});

  // Starts the agent if the outbox holds something from an earlier run. Raises nothing.
  void Resume();

  // True if the configuration names a server; otherwise the message says that there is none.
  bool EcmEnabled(std::string& message) override;
  // Compares the staged folder with its descriptor and takes both over. From a true result on
  // nothing can be lost: neither a crash nor a power cut nor a dead network matters. On false
  // nothing has been moved, with one exception: that there is no agent to start is told as a
  // failure once in the life of this object, though everything is in the outbox and safe.
  bool EcmSubmit(const std::string& staging_folder, std::string& message) override;
  void EcmSetOwnerWindow(std::intptr_t) override {}
  void EcmReleaseOwnerWindow(std::intptr_t) override {}

 private:
  std::string SettingsFile() const;
  // False if there is none to start.
  bool StartAgent() const;
  std::string AgentProgram() const;

  const AppState& state_;
  const std::string agent_program_;
  bool has_told_of_missing_agent_ = false;
};

}  // namespace logbook
