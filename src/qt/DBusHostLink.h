// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Requests to the host control panel over the session bus (docs/host-link.md).
#pragma once

#include <QDBusConnection>

#include "base/HostLinkNames.h"
#include "state/Services.h"

namespace logbook {

class DBusHostLink : public HostLink {
 public:
  // Waits for a reply no longer than this many milliseconds.
  explicit DBusHostLink(QDBusConnection bus, int timeout = kHostRequestTimeoutMilliseconds);

  // One blocking call that delivers no events. Raises kDeviceInputOutput with the bus's own words
  // if there is no bus, no such host, an error reply, a reply that is no text, or none in time.
  std::string Request(const std::string& host_id, const std::string& topic,
                      const std::string& item) override;
  // True if the name of this host has an owner.
  bool IsThere(const std::string& host_id) override;
  // Requests stand alone, so that there is nothing to close.
  void Close() override {}

 private:
  QDBusConnection bus_;
  int timeout_;
};

}  // namespace logbook
