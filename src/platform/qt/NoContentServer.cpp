// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/qt/NoContentServer.h"

namespace logbook {
namespace {

constexpr char kReason[] = "This workstation is not connected to a content server.";

}  // namespace

bool NoContentServer::EcmEnabled(std::string& message) {
  message = kReason;
  return false;
}

bool NoContentServer::EcmSubmit(const std::string&, std::string& message) {
  message = kReason;
  return false;
}

}  // namespace logbook
