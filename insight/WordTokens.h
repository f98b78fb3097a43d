// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// TextWords as a tokenizer of SQLite's full-text tables, by the name "logbook".
#pragma once

struct sqlite3;

namespace logbook::insight {

// Makes the tokenizer known to a connection. False if the library has no full-text tables.
bool RegisterWordTokens(sqlite3* connection);

}  // namespace logbook::insight
