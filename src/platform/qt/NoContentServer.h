// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The content-server client of a workstation that is not tied to a content server.
#pragma once

#include "shell/Services.h"

namespace logbook {

class NoContentServer : public EcmClient {
 public:
  bool EcmEnabled(std::string& message) override;
  bool EcmSubmit(const std::string& staging_folder, std::string& message) override;
  void EcmSetOwnerWindow(std::intptr_t) override {}
  void EcmReleaseOwnerWindow(std::intptr_t) override {}
};

}  // namespace logbook
