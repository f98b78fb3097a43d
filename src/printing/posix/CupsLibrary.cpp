// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/posix/CupsLibrary.h"

#include <cups/cups.h>

#include "base/posix/LateLibrary.h"

namespace {

logbook::posix::LateLibrary& Cups() {
  static logbook::posix::LateLibrary library(LOGBOOK_CUPS_LIBRARY);
  return library;
}

}  // namespace

bool logbook::posix::CupsLibraryIsThere() {
  return Cups().IsThere();
}

// clang-format off
#define LATE(result, name, parameters, arguments) \
  LOGBOOK_LATE_ROUTINE(Cups(), result, name, parameters, arguments)

LATE(const char*, cupsServer, (), ())
LATE(int, ippPort, (), ())
LATE(http_encryption_t, cupsEncryption, (), ())
LATE(http_t*, httpConnect2,
     (const char* host, int port, http_addrlist_t* addresses, int family,
      http_encryption_t encryption, int blocking, int wait, int* cancel),
     (host, port, addresses, family, encryption, blocking, wait, cancel))
LATE(void, httpClose, (http_t* http), (http))
LATE(void, cupsFreeDests, (int count, cups_dest_t* destinations), (count, destinations))
LATE(const char*, cupsLastErrorString, (), ())
LATE(cups_dest_t*, cupsGetNamedDest, (http_t* http, const char* name, const char* instance),
     (http, name, instance))
LATE(int, cupsCreateJob,
     (http_t* http, const char* name, const char* title, int count, cups_option_t* options),
     (http, name, title, count, options))
LATE(http_status_t, cupsStartDocument,
     (http_t* http, const char* name, int job, const char* title, const char* format, int last),
     (http, name, job, title, format, last))
LATE(http_status_t, cupsWriteRequestData, (http_t* http, const char* bytes, size_t size),
     (http, bytes, size))
LATE(ipp_status_t, cupsFinishDocument, (http_t* http, const char* name), (http, name))
LATE(ipp_status_t, cupsCancelJob2, (http_t* http, const char* name, int job, int purge),
     (http, name, job, purge))
