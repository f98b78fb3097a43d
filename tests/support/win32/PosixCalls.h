// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The calls of POSIX systems that tests make to bring a disk or a process into some state, and that
// Windows has not: a case that makes one is skipped there, for the reason that stands beside it.
// The compiler reads this before every source of a test for Windows.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>
#include <time.h>

#include <cerrno>
#include <filesystem>

#include "support/win32/SkipCase.h"

// Declared already, with another meaning.
#define chmod(path, rights) PosixRights()
#define umask(rights) PosixRights()

[[noreturn]] inline int PosixRights() {
  logbook::test::SkipCase("rights are given in another way");
}
[[noreturn]] inline int geteuid() {
  PosixRights();
}
template <class Character>
[[noreturn]] int mkfifo(const Character*, int) {
  logbook::test::SkipCase("pipes are no files");
}
[[noreturn]] inline int mknod(const char*, int, int) {
  logbook::test::SkipCase("sockets are no files");
}
using uid_t = int;
[[noreturn]] inline int seteuid(uid_t) {
  PosixRights();
}
[[noreturn]] inline int chown(const char*, uid_t, uid_t) {
  PosixRights();
}
[[noreturn]] inline int lchown(const char*, uid_t, uid_t) {
  PosixRights();
}
// Nothing here makes a link.
inline int lstat(const std::filesystem::path& path, struct stat* status) {
  return stat(path.string().c_str(), status);
}
// The names that tests know.
inline const char* strerrorname_np(int error) {
  return error == ENOENT    ? "ENOENT"
         : error == ENOTDIR ? "ENOTDIR"
         : error == EACCES  ? "EACCES"
                            : "?";
}
[[noreturn]] inline int fork() {
  logbook::test::SkipCase("a process cannot be forked");
}
[[noreturn]] inline int pipe(int*) {
  logbook::test::SkipCase("a process cannot be forked");
}
[[noreturn]] inline int waitpid(int, int*, int) {
  logbook::test::SkipCase("a process cannot be forked");
}
[[noreturn]] inline int kill(int, int) {
  logbook::test::SkipCase("there are no such signals");
}
[[noreturn]] inline int flock(int, int) {
  logbook::test::SkipCase("locks are of another kind");
}
[[noreturn]] inline int utimensat(int, const char*, const timespec*, int) {
  logbook::test::SkipCase("times of files have another grain");
}
using rlim_t = unsigned long long;
struct rlimit {
  rlim_t rlim_cur, rlim_max;
};
[[noreturn]] inline int setrlimit(int, const rlimit*) {
  logbook::test::SkipCase("processes have no such limits");
}
[[noreturn]] inline int getrlimit(int, rlimit*) {
  logbook::test::SkipCase("processes have no such limits");
}

// What goes with them. No value is ever looked at.
inline constexpr int LOCK_SH = 1, LOCK_EX = 2, LOCK_NB = 4, LOCK_UN = 8;
inline constexpr int RLIMIT_NOFILE = 0, RLIMIT_FSIZE = 0, RLIMIT_AS = 0;
inline constexpr rlim_t RLIM_INFINITY = ~0ULL;
inline constexpr int O_CLOEXEC = 0, O_NONBLOCK = 0, S_IFSOCK = 0140000;
inline constexpr int AT_FDCWD = -100, UTIME_OMIT = 0;
inline constexpr int SIGKILL = 9, SIGXFSZ = 25, WNOHANG = 1;
inline bool WIFEXITED(int) {
  return false;
}
inline bool WIFSIGNALED(int) {
  return false;
}
inline int WEXITSTATUS(int status) {
  return status;
}
inline int WTERMSIG(int status) {
  return status;
}
