// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system's calls on files, each under all names that the C library gives it: with 64-bit
// offsets, and as the compiler calls it where it checks the sizes of buffers.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "FaultPlan.h"

using logbook::faults::Answer;
using logbook::faults::Die;
using logbook::faults::JournalFor;
using logbook::faults::JournalForDescriptor;
using logbook::faults::Meet;
using logbook::faults::MeetDescriptor;
using logbook::faults::PowerLoss;
using logbook::faults::Sort;

namespace {

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// The mode that stands behind the flags of an open call.
mode_t ModeOf(int flags, va_list arguments) {
  const bool has_mode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return has_mode ? va_arg(arguments, mode_t) : 0;
}

bool Changes(int flags) {
  return (flags & O_PATH) == 0 &&
         ((flags & (O_CREAT | O_TRUNC)) != 0 || (flags & O_ACCMODE) != O_RDONLY);
}

// Runs the call unless the plan fails it, within the journal's notes if there is a journal.
template <typename Call>
auto Opened(const char* name, int folder, const char* path, int flags, Call call)
    -> decltype(call()) {
  if (Meet(Changes(flags) ? Sort::kCreate : Sort::kOpen, name, folder, path) == Answer::kFail)
    return decltype(call())(-1);
  PowerLoss* const journal = Changes(flags) ? JournalFor(folder, path) : nullptr;
  const auto opening =
      journal != nullptr ? journal->WillOpen(folder, path, flags) : PowerLoss::Opening();
  const auto result = call();
  if (journal != nullptr && result != decltype(call())(-1)) {
    const int error = errno;
    journal->DidOpen(opening, folder, path, flags);
    errno = error;
  }
  return result;
}

int OpenAt(const char* name, int folder, const char* path, int flags, mode_t mode) {
  static auto* const next = Next<int(int, const char*, int, ...)>("openat64");
  return Opened(name, folder, path, flags, [&] { return next(folder, path, flags, mode); });
}

// A stream's pointer takes the place of a descriptor: -1 for failure, which callers know as null.
int FlagsOfMode(const char* mode) {
  const bool both = std::strchr(mode, '+') != nullptr;
  if (mode[0] == 'r') return both ? O_RDWR : O_RDONLY;
  return (both ? O_RDWR : O_WRONLY) | O_CREAT | (mode[0] == 'w' ? O_TRUNC : O_APPEND);
}

FILE* OpenStream(const char* path, const char* mode) {
  static auto* const next = Next<FILE*(const char*, const char*)>("fopen64");
  FILE* stream = nullptr;
  Opened("fopen", AT_FDCWD, path, FlagsOfMode(mode), [&] {
    stream = next(path, mode);
    return stream == nullptr ? -1 : 0;
  });
  return stream;
}

// `write_some` takes the number of bytes that it may write.
template <typename Write>
ssize_t Written(const char* name, int descriptor, std::size_t size, Write write_some) {
  const Answer answer = MeetDescriptor(Sort::kWrite, name, descriptor);
  if (answer == Answer::kFail) return -1;
  if (PowerLoss* journal = JournalForDescriptor(descriptor)) journal->WillWrite(descriptor, false);
  if (answer == Answer::kGo) return write_some(size);
  write_some(size / 2);
  Die();
}

template <typename Call>
int Changed(Sort sort, const char* name, int descriptor, Call call) {
  return MeetDescriptor(sort, name, descriptor) == Answer::kFail ? -1 : call();
}

int Synced(const char* name, int descriptor, int (*next)(int)) {
  if (MeetDescriptor(Sort::kSync, name, descriptor) == Answer::kFail) return -1;
  const int result = next(descriptor);
  PowerLoss* const journal = JournalForDescriptor(descriptor);
  if (result == 0 && journal != nullptr) journal->DidSync(descriptor);
  return result;
}

int Truncated(const char* name, int descriptor, off64_t size) {
  static auto* const next = Next<int(int, off64_t)>("ftruncate64");
  if (MeetDescriptor(Sort::kWrite, name, descriptor) == Answer::kFail) return -1;
  if (PowerLoss* journal = JournalForDescriptor(descriptor)) journal->WillWrite(descriptor, true);
  return next(descriptor, size);
}

template <typename Call>
int Made(Sort sort, const char* name, int folder, const char* path, Call call) {
  if (Meet(sort, name, folder, path) == Answer::kFail) return -1;
  const int result = call();
  PowerLoss* const journal = result == 0 ? JournalFor(folder, path) : nullptr;
  if (journal != nullptr) journal->DidMake(folder, path);
  return result;
}

template <typename Call>
int Removed(const char* name, int folder, const char* path, Call call) {
  if (Meet(Sort::kRemove, name, folder, path) == Answer::kFail) return -1;
  PowerLoss* const journal = JournalFor(folder, path);
  const auto removal =
      journal != nullptr ? journal->WillRemove(folder, path) : PowerLoss::Removal();
  const int result = call();
  if (result == 0 && journal != nullptr) journal->DidRemove(removal, folder, path);
  return result;
}

int Renamed(const char* name, int from_folder, const char* from, int to_folder, const char* to,
            unsigned flags) {
  static auto* const next = Next<int(int, const char*, int, const char*, unsigned)>("renameat2");
  if (Meet(Sort::kRename, name, to_folder, to) == Answer::kFail) return -1;
  PowerLoss* const journal = JournalFor(to_folder, to);
  const auto overwritten =
      journal != nullptr ? journal->WillRemove(to_folder, to) : PowerLoss::Removal();
  const int result = next(from_folder, from, to_folder, to, flags);
  if (result == 0 && journal != nullptr)
    journal->DidRename(overwritten, from_folder, from, to_folder, to);
  return result;
}

template <typename Call>
auto Looked(const char* name, int folder, const char* path, Call call) -> decltype(call()) {
  return Meet(Sort::kLook, name, folder, path) == Answer::kFail ? decltype(call())(-1) : call();
}

template <typename Call>
ssize_t WhenRead(const char* name, int descriptor, Call call) {
  return MeetDescriptor(Sort::kRead, name, descriptor) == Answer::kFail ? -1 : call();
}

}  // namespace

extern "C" {

// --- opening ---

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return OpenAt("open", AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return OpenAt("open", AT_FDCWD, path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return OpenAt("openat", folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return OpenAt("openat", folder, path, flags, mode);
}
int __open_2(const char* path, int flags) {
  return OpenAt("open", AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
  return OpenAt("open", AT_FDCWD, path, flags, 0);
}
int __openat_2(int folder, const char* path, int flags) {
  return OpenAt("openat", folder, path, flags, 0);
}
int __openat64_2(int folder, const char* path, int flags) {
  return OpenAt("openat", folder, path, flags, 0);
}
int creat(const char* path, mode_t mode) {
  return OpenAt("creat", AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}
int creat64(const char* path, mode_t mode) {
  return OpenAt("creat", AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}
FILE* fopen(const char* path, const char* mode) {
  return OpenStream(path, mode);
}
FILE* fopen64(const char* path, const char* mode) {
  return OpenStream(path, mode);
}

// --- bytes ---

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  static auto* const next = Next<ssize_t(int, void*, std::size_t)>("read");
  return WhenRead("read", descriptor, [&] { return next(descriptor, buffer, size); });
}
ssize_t __read_chk(int descriptor, void* buffer, std::size_t size, std::size_t) {
  return read(descriptor, buffer, size);
}
ssize_t pread64(int descriptor, void* buffer, std::size_t size, off64_t offset) {
  static auto* const next = Next<ssize_t(int, void*, std::size_t, off64_t)>("pread64");
  return WhenRead("pread", descriptor, [&] { return next(descriptor, buffer, size, offset); });
}
ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t offset) {
  return pread64(descriptor, buffer, size, offset);
}
ssize_t __pread64_chk(int descriptor, void* buffer, std::size_t size, off64_t offset, std::size_t) {
  return pread64(descriptor, buffer, size, offset);
}
ssize_t readv(int descriptor, const iovec* parts, int count) {
  static auto* const next = Next<ssize_t(int, const iovec*, int)>("readv");
  return WhenRead("readv", descriptor, [&] { return next(descriptor, parts, count); });
}
ssize_t write(int descriptor, const void* buffer, std::size_t size) {
  static auto* const next = Next<ssize_t(int, const void*, std::size_t)>("write");
  return Written("write", descriptor, size,
                 [&](std::size_t some) { return next(descriptor, buffer, some); });
}
ssize_t pwrite64(int descriptor, const void* buffer, std::size_t size, off64_t offset) {
  static auto* const next = Next<ssize_t(int, const void*, std::size_t, off64_t)>("pwrite64");
  return Written("pwrite", descriptor, size,
                 [&](std::size_t some) { return next(descriptor, buffer, some, offset); });
}
ssize_t pwrite(int descriptor, const void* buffer, std::size_t size, off_t offset) {
  return pwrite64(descriptor, buffer, size, offset);
}
ssize_t writev(int descriptor, const iovec* parts, int count) {
  static auto* const next = Next<ssize_t(int, const iovec*, int)>("writev");
  // Half of it is the first half of its parts.
  return Written("writev", descriptor, static_cast<std::size_t>(count),
                 [&](std::size_t some) { return next(descriptor, parts, static_cast<int>(some)); });
}
int ftruncate64(int descriptor, off64_t size) noexcept {
  return Truncated("ftruncate", descriptor, size);
}
int ftruncate(int descriptor, off_t size) noexcept {
  return Truncated("ftruncate", descriptor, size);
}
int fsync(int descriptor) {
  static auto* const next = Next<int(int)>("fsync");
  return Synced("fsync", descriptor, next);
}
int fdatasync(int descriptor) {
  static auto* const next = Next<int(int)>("fdatasync");
  return Synced("fdatasync", descriptor, next);
}
int flock(int descriptor, int operation) noexcept {
  static auto* const next = Next<int(int, int)>("flock");
  return Changed(Sort::kLock, "flock", descriptor, [&] { return next(descriptor, operation); });
}

// --- rights ---

int fchmod(int descriptor, mode_t mode) noexcept {
  static auto* const next = Next<int(int, mode_t)>("fchmod");
  return Changed(Sort::kMode, "fchmod", descriptor, [&] { return next(descriptor, mode); });
}
int fchown(int descriptor, uid_t user, gid_t group) noexcept {
  static auto* const next = Next<int(int, uid_t, gid_t)>("fchown");
  return Changed(Sort::kMode, "fchown", descriptor, [&] { return next(descriptor, user, group); });
}
int chmod(const char* path, mode_t mode) noexcept {
  static auto* const next = Next<int(const char*, mode_t)>("chmod");
  return Meet(Sort::kMode, "chmod", AT_FDCWD, path) == Answer::kFail ? -1 : next(path, mode);
}
int fchmodat(int folder, const char* path, mode_t mode, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, mode_t, int)>("fchmodat");
  return Meet(Sort::kMode, "fchmodat", folder, path) == Answer::kFail
             ? -1
             : next(folder, path, mode, flags);
}

// --- names ---

int rename(const char* from, const char* to) noexcept {
  return Renamed("rename", AT_FDCWD, from, AT_FDCWD, to, 0);
}
int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  return Renamed("renameat", from_folder, from, to_folder, to, 0);
}
int renameat2(int from_folder, const char* from, int to_folder, const char* to,
              unsigned flags) noexcept {
  return Renamed("renameat2", from_folder, from, to_folder, to, flags);
}
int unlink(const char* path) noexcept {
  static auto* const next = Next<int(const char*)>("unlink");
  return Removed("unlink", AT_FDCWD, path, [&] { return next(path); });
}
int unlinkat(int folder, const char* path, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, int)>("unlinkat");
  return Removed("unlinkat", folder, path, [&] { return next(folder, path, flags); });
}
int remove(const char* path) noexcept {
  static auto* const next = Next<int(const char*)>("remove");
  return Removed("remove", AT_FDCWD, path, [&] { return next(path); });
}
int rmdir(const char* path) noexcept {
  static auto* const next = Next<int(const char*)>("rmdir");
  return Removed("rmdir", AT_FDCWD, path, [&] { return next(path); });
}
int mkdir(const char* path, mode_t mode) noexcept {
  static auto* const next = Next<int(const char*, mode_t)>("mkdir");
  return Made(Sort::kFolder, "mkdir", AT_FDCWD, path, [&] { return next(path, mode); });
}
int mkdirat(int folder, const char* path, mode_t mode) noexcept {
  static auto* const next = Next<int(int, const char*, mode_t)>("mkdirat");
  return Made(Sort::kFolder, "mkdirat", folder, path, [&] { return next(folder, path, mode); });
}
int link(const char* from, const char* to) noexcept {
  static auto* const next = Next<int(const char*, const char*)>("link");
  return Made(Sort::kLink, "link", AT_FDCWD, to, [&] { return next(from, to); });
}
int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, int, const char*, int)>("linkat");
  return Made(Sort::kLink, "linkat", to_folder, to,
              [&] { return next(from_folder, from, to_folder, to, flags); });
}
int symlink(const char* target, const char* path) noexcept {
  static auto* const next = Next<int(const char*, const char*)>("symlink");
  return Made(Sort::kLink, "symlink", AT_FDCWD, path, [&] { return next(target, path); });
}

// --- folders ---

DIR* opendir(const char* path) {
  static auto* const next = Next<DIR*(const char*)>("opendir");
  return Meet(Sort::kList, "opendir", AT_FDCWD, path) == Answer::kFail ? nullptr : next(path);
}
DIR* fdopendir(int descriptor) {
  static auto* const next = Next<DIR*(int)>("fdopendir");
  return MeetDescriptor(Sort::kList, "fdopendir", descriptor) == Answer::kFail ? nullptr
                                                                               : next(descriptor);
}
dirent* readdir(DIR* folder) {
  static auto* const next = Next<dirent*(DIR*)>("readdir");
  return MeetDescriptor(Sort::kList, "readdir", dirfd(folder)) == Answer::kFail ? nullptr
                                                                                : next(folder);
}
dirent64* readdir64(DIR* folder) {
  static auto* const next = Next<dirent64*(DIR*)>("readdir64");
  return MeetDescriptor(Sort::kList, "readdir", dirfd(folder)) == Answer::kFail ? nullptr
                                                                                : next(folder);
}

// --- looking ---

int stat(const char* path, struct stat* status) noexcept {
  static auto* const next = Next<int(const char*, struct stat*)>("stat");
  return Looked("stat", AT_FDCWD, path, [&] { return next(path, status); });
}
int stat64(const char* path, struct stat64* status) noexcept {
  static auto* const next = Next<int(const char*, struct stat64*)>("stat64");
  return Looked("stat", AT_FDCWD, path, [&] { return next(path, status); });
}
int lstat(const char* path, struct stat* status) noexcept {
  static auto* const next = Next<int(const char*, struct stat*)>("lstat");
  return Looked("lstat", AT_FDCWD, path, [&] { return next(path, status); });
}
int lstat64(const char* path, struct stat64* status) noexcept {
  static auto* const next = Next<int(const char*, struct stat64*)>("lstat64");
  return Looked("lstat", AT_FDCWD, path, [&] { return next(path, status); });
}
int fstat(int descriptor, struct stat* status) noexcept {
  static auto* const next = Next<int(int, struct stat*)>("fstat");
  return Changed(Sort::kLook, "fstat", descriptor, [&] { return next(descriptor, status); });
}
int fstat64(int descriptor, struct stat64* status) noexcept {
  static auto* const next = Next<int(int, struct stat64*)>("fstat64");
  return Changed(Sort::kLook, "fstat", descriptor, [&] { return next(descriptor, status); });
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, struct stat*, int)>("fstatat");
  return Looked("fstatat", folder, path, [&] { return next(folder, path, status, flags); });
}
int fstatat64(int folder, const char* path, struct stat64* status, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, struct stat64*, int)>("fstatat64");
  return Looked("fstatat", folder, path, [&] { return next(folder, path, status, flags); });
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  static auto* const next = Next<int(int, const char*, int, unsigned, struct statx*)>("statx");
  return Looked("statx", folder, path, [&] { return next(folder, path, flags, mask, status); });
}
int access(const char* path, int mode) noexcept {
  static auto* const next = Next<int(const char*, int)>("access");
  return Looked("access", AT_FDCWD, path, [&] { return next(path, mode); });
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, int, int)>("faccessat");
  return Looked("faccessat", folder, path, [&] { return next(folder, path, mode, flags); });
}
ssize_t readlink(const char* path, char* buffer, std::size_t size) noexcept {
  static auto* const next = Next<ssize_t(const char*, char*, std::size_t)>("readlink");
  return Looked("readlink", AT_FDCWD, path, [&] { return next(path, buffer, size); });
}
ssize_t readlinkat(int folder, const char* path, char* buffer, std::size_t size) noexcept {
  static auto* const next = Next<ssize_t(int, const char*, char*, std::size_t)>("readlinkat");
  return Looked("readlinkat", folder, path, [&] { return next(folder, path, buffer, size); });
}
char* realpath(const char* path, char* resolved) noexcept {
  static auto* const next = Next<char*(const char*, char*)>("realpath");
  return Meet(Sort::kLook, "realpath", AT_FDCWD, path) == Answer::kFail ? nullptr
                                                                        : next(path, resolved);
}

}  // extern "C"
