// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The names by which the logbook and its host control panel find each other by DDE, on systems that
// have it. The host's application is its id, and its items are those of HostLinkNames.h. The whole
// conversation is described in docs/host-link.md.
#pragma once

namespace logbook {

// Of the host, which answers requests.
inline constexpr char kRequestDdeTopic[] = "CPWAIT";
// Of the logbook and its handshake cell.
inline constexpr char kLogbookDdeApplication[] = "logbook";
inline constexpr char kCellDdeTopic[] = "DDELabel";
inline constexpr char kCellDdeItem[] = "DDELabel";

}  // namespace logbook
