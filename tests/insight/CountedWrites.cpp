// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "CountedWrites.h"

#include <signal.h>
#include <sqlite3.h>

#include <map>
#include <memory>

namespace logbook::test {
namespace {

sqlite3_vfs* real_disk = nullptr;
sqlite3_vfs counted_disk;
int writes_left = 0;
AtWrite at_write = AtWrite::kKill;
bool happened = false;

// What an opened file really does, and what stands in its place.
struct Methods {
  const sqlite3_io_methods* real;
  std::unique_ptr<sqlite3_io_methods> counted;
};
std::map<sqlite3_file*, Methods>& Opened() {
  static std::map<sqlite3_file*, Methods> opened;
  return opened;
}

// True if this write fails.
bool Count() {
  if (!happened && --writes_left > 0) return false;
  happened = true;
  if (at_write == AtWrite::kKill) raise(SIGKILL);
  return true;
}

int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
  if (Count()) return SQLITE_FULL;
  return Opened().at(file).real->xWrite(file, bytes, count, offset);
}

int Sync(sqlite3_file* file, int flags) {
  if (Count()) return SQLITE_FULL;
  return Opened().at(file).real->xSync(file, flags);
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  if (Count()) return SQLITE_FULL;
  return Opened().at(file).real->xTruncate(file, size);
}

int Close(sqlite3_file* file) {
  const sqlite3_io_methods* const real = Opened().at(file).real;
  Opened().erase(file);
  return real->xClose(file);
}

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  const int result = real_disk->xOpen(real_disk, name, file, flags, out_flags);
  if (file->pMethods == nullptr) return result;
  auto counted = std::make_unique<sqlite3_io_methods>(*file->pMethods);
  counted->xWrite = Write;
  counted->xSync = Sync;
  counted->xTruncate = Truncate;
  counted->xClose = Close;
  const sqlite3_io_methods* const real = file->pMethods;
  file->pMethods = counted.get();
  Opened()[file] = {real, std::move(counted)};
  return result;
}

}  // namespace

CountedWrites::CountedWrites(int number, AtWrite what) {
  real_disk = sqlite3_vfs_find(nullptr);
  counted_disk = *real_disk;
  counted_disk.zName = "counted";
  counted_disk.pNext = nullptr;
  counted_disk.xOpen = Open;
  writes_left = number;
  at_write = what;
  happened = false;
  sqlite3_vfs_register(&counted_disk, 1);
}

CountedWrites::~CountedWrites() {
  sqlite3_vfs_unregister(&counted_disk);
  sqlite3_vfs_register(real_disk, 1);
}

bool CountedWrites::Happened() {
  return happened;
}

}  // namespace logbook::test
