// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What ties the logbook to its host on this system (docs/host-link.md): the session bus, or DDE.
#pragma once

#include <memory>

#include "base/CodePage.h"
#include "state/Services.h"

namespace logbook {

class HostConnection {
 public:
  virtual ~HostConnection() = default;
  virtual HostLink& Link() = 0;
  virtual HandshakeCell& Cell() = 0;
  virtual Process& Itself() = 0;
};

// Never null; without a bus, or a part in DDE, no host is found. Texts between the two are in this
// code page where the link has no other way. Needs the toolkit's application object.
std::unique_ptr<HostConnection> ConnectToHost(const CodePage& code_page);

}  // namespace logbook
