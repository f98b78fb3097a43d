// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Addresses of content servers, in all the forms that somebody may have typed into arecm.cfg.
#pragma once

#include <string>

#include "base/Machine.h"

namespace logbook {

// The scheme of an address in lower case, without its colon; the whole text if it has no colon.
std::string SchemeOf(const std::string& url);

// The address for the eye: without user name and password, also where they stand in an odd place,
// and without what follows a question mark or a number sign, where other secrets stand. Of a
// "file:" address only what stands before a host is left out.
std::string AddressForTheEye(const std::string& url);

// The native folder of a "file:" address: "file:///srv/share", "file://localhost/srv/share",
// "file:///C:/share". Raises DeliveryError for the address of another machine.
std::string FolderOfFileUrl(const Machine& machine, const std::string& url);

// Raises DeliveryError for an address that no folder of a server can have: not "http:", "https:" or
// "file:", or a server's with a question mark or a number sign.
void CheckAddress(const std::string& url);

}  // namespace logbook
