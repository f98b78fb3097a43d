// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/PageSums.h"

#include <sqlite3.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "insight/ValueColumn.h"

namespace logbook::insight {
namespace {

constexpr const char* kName = "logbook-sums";
constexpr int kLeastPage = 512;

// What an opened file does, in place of what it did; found again by the address that SQLite has.
struct Methods {
  sqlite3_io_methods summed;  // first: SQLite's pointer to it is one to the whole
  const sqlite3_io_methods* real;
};

const sqlite3_io_methods& RealOf(sqlite3_file* file) {
  return *reinterpret_cast<const Methods*>(file->pMethods)->real;
}

// The header alone and its counters are read and written in parts too.
bool IsPage(int size, sqlite3_int64 offset) {
  return size >= kLeastPage && (size & (size - 1)) == 0 && offset % size == 0;
}

// The place of a page belongs to it: one page is not another.
std::uint64_t SumOf(const char* page, int size, sqlite3_int64 offset) {
  const std::string_view bytes(page, static_cast<std::size_t>(size - kPageSumBytes));
  return static_cast<std::uint64_t>(ChecksumOf(bytes)) << 32 |
         static_cast<std::uint32_t>(offset / size + 1);
}

int Read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
  const int result = RealOf(file).xRead(file, bytes, size, offset);
  if (!IsPage(size, offset)) return result;
  // Of a file that ends within a page the rest of it would count as zeros.
  if (result == SQLITE_IOERR_SHORT_READ) return SQLITE_CORRUPT;
  if (result != SQLITE_OK) return result;
  const char* page = static_cast<const char*>(bytes);
  std::uint64_t sum = 0;
  std::memcpy(&sum, page + size - kPageSumBytes, sizeof sum);
  return sum == SumOf(page, size, offset) ? SQLITE_OK : SQLITE_CORRUPT;
}

// The free bytes at the end are nobody's: they may be set in SQLite's own copy of the page.
int Write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset) {
  if (IsPage(size, offset)) {
    char* page = static_cast<char*>(const_cast<void*>(bytes));
    const std::uint64_t sum = SumOf(page, size, offset);
    std::memcpy(page + size - kPageSumBytes, &sum, sizeof sum);
  }
  return RealOf(file).xWrite(file, bytes, size, offset);
}

int Close(sqlite3_file* file) {
  const std::unique_ptr<const Methods> methods(reinterpret_cast<const Methods*>(file->pMethods));
  file->pMethods = methods->real;
  return methods->real->xClose(file);
}

// Journals have checksums of their own and no pages.
int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  sqlite3_vfs* const disk = sqlite3_vfs_find(nullptr);
  const int result = disk->xOpen(disk, name, file, flags, out_flags);
  if (result != SQLITE_OK || (flags & SQLITE_OPEN_MAIN_DB) == 0) return result;
  auto methods = std::make_unique<Methods>(Methods{*file->pMethods, file->pMethods});
  methods->summed.xRead = Read;
  methods->summed.xWrite = Write;
  methods->summed.xClose = Close;
  // Pages that the system maps into memory would be read by nobody here.
  if (methods->summed.iVersion > 2) methods->summed.iVersion = 2;
  file->pMethods = &methods.release()->summed;
  return result;
}

}  // namespace

const char* RegisterPageSums() {
  static sqlite3_vfs sums = [] {
    sqlite3_vfs made = *sqlite3_vfs_find(nullptr);
    made.zName = kName;
    made.pNext = nullptr;
    made.xOpen = Open;
    return made;
  }();
  // Registering it again changes nothing.
  sqlite3_vfs_register(&sums, 0);
  return kName;
}

}  // namespace logbook::insight
