// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A checksum at the end of every page of a database, checked whenever a page is read: so what a
// disk or a program has damaged in it is noticed and never taken for an answer. It lies between
// SQLite and the system's files, in the bytes that SQLite keeps free at the end of each page when
// it is told to (kPageSumBytes of them).
#pragma once

namespace logbook::insight {

inline constexpr int kPageSumBytes = 8;

// Makes this kind of file known to SQLite, once for the process; returns its name, for opening
// databases with it. A page that is not as it was written is SQLITE_CORRUPT there.
const char* RegisterPageSums();

}  // namespace logbook::insight
