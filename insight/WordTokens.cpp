// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/WordTokens.h"

#include <sqlite3.h>

#include <string_view>

#include "insight/TextWords.h"

namespace logbook::insight {
namespace {

using TokenSink = int (*)(void*, int, const char*, int, int, int);

// There is nothing to be kept for a tokenizer; any address that is not null will do.
int Create(void*, const char**, int, Fts5Tokenizer** tokenizer) {
  static char nothing;
  *tokenizer = reinterpret_cast<Fts5Tokenizer*>(&nothing);
  return SQLITE_OK;
}

void Delete(Fts5Tokenizer*) {}

int Tokenize(Fts5Tokenizer*, void* context, int, const char* text, int length, TokenSink sink) {
  int result = SQLITE_OK;
  EachWord(std::string_view(text, static_cast<std::size_t>(length)),
           [&](std::string_view word, std::size_t begin, std::size_t end) {
             if (result != SQLITE_OK) return;
             result = sink(context, 0, word.data(), static_cast<int>(word.size()),
                           static_cast<int>(begin), static_cast<int>(end));
           });
  return result;
}

fts5_api* ApiOf(sqlite3* connection) {
  fts5_api* api = nullptr;
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(connection, "SELECT fts5(?1)", -1, &statement, nullptr) == SQLITE_OK) {
    sqlite3_bind_pointer(statement, 1, static_cast<void*>(&api), "fts5_api_ptr", nullptr);
    sqlite3_step(statement);
  }
  sqlite3_finalize(statement);
  return api;
}

}  // namespace

bool RegisterWordTokens(sqlite3* connection) {
  fts5_api* api = ApiOf(connection);
  fts5_tokenizer tokenizer = {Create, Delete, Tokenize};
  return api != nullptr &&
         api->xCreateTokenizer(api, "logbook", nullptr, &tokenizer, nullptr) == SQLITE_OK;
}

}  // namespace logbook::insight
