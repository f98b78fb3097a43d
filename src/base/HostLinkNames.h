// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The names by which the logbook and its host control panel find each other on the session bus.
// The host answers requests for text items; the logbook holds the handshake cell, which both sides
// read and write. The whole conversation is described in docs/host-link.md.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// The host: its well-known name is this prefix, a point and the escaped host id.
inline constexpr std::string_view kHostBusNamePrefix = "com.norvane.Quorex.Host";
inline constexpr std::string_view kHostObjectPath = "/CPWAIT";
inline constexpr std::string_view kHostInterface = "com.norvane.Quorex.Host";
// Request(s item) -> s reply; an unknown item is an error reply.
inline constexpr std::string_view kHostRequestMethod = "Request";
// Longest time that the logbook waits for the reply to a request.
inline constexpr int kHostRequestTimeoutMilliseconds = 5000;

// The items of a request. A folder comes with its trailing backslash.
inline constexpr std::string_view kItemExePath = "_exepath$";
inline constexpr std::string_view kItemInstPath = "_instpath$";
inline constexpr std::string_view kItemHelpPath = "_helppath$";
inline constexpr std::string_view kItemHelpFile = "_helpfile$";

// The logbook and its handshake cell: one text property, read and written by both sides, with the
// standard PropertiesChanged signal at every change, whoever made it.
inline constexpr std::string_view kLogbookBusName = "com.norvane.Quorex.Logbook";
inline constexpr std::string_view kCellObjectPath = "/DDELabel";
inline constexpr std::string_view kCellInterface = "com.norvane.Quorex.Cell";
inline constexpr std::string_view kCellProperty = "Text";

// The well-known name of the host with this id (UTF-8, taken byte by byte). A byte other than
// A-Z a-z 0-9 _ is written as "_" and two lower-case hexadecimal digits, a digit in the first
// place too, since no element of a bus name may begin with one; an underscore stays as it is. The
// empty id, which no logbook is started with, gives the element "_". Raises nothing.
std::string HostBusName(std::string_view host_id);

}  // namespace logbook
