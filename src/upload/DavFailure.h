// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Why a request to a WebDAV server failed, in words for the reader of the agent's status.
#pragma once

#include <string>

namespace logbook {

// A request for the eye: "PUT folder/file".
struct DavRequest {
  std::string method;
  std::string path;
};

// Raises DeliveryError for a transfer that the HTTP library gave up: its code and its own words.
// `connected` says whether the request reached a server at all.
[[noreturn]] void FailToTransfer(const DavRequest& request, int curl_code,
                                 const std::string& detail, bool connected);

// Raises DeliveryError for an answer that has no end.
[[noreturn]] void FailWithoutEnd(const DavRequest& request);

// Raises DeliveryError for an answer that is no success. `location` is where a redirection leads.
[[noreturn]] void FailWithStatus(const DavRequest& request, long status,
                                 const std::string& location);

}  // namespace logbook
