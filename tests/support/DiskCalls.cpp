// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/DiskCalls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <map>
#include <utility>

namespace logbook::test {

namespace {

struct Record {
  bool on = false;
  bool waits_for_locks = false;
  std::vector<std::string> calls;
  std::string unreadable;  // native path
  std::size_t from = 0;
  timespec standing = {};  // the time at which the clock stands still, if it does
  std::chrono::nanoseconds until_interruption{0};
  std::map<std::string, int> refusals;  // kinds of calls, and their errors
  std::string awaited;                  // the kind of call that the action comes before
  std::function<void()> action;
};
Record record;

std::string PathOf(int descriptor) {
  char path[4096] = {};
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  return readlink(link.c_str(), path, sizeof path - 1) > 0 ? path : "";
}

void Note(const char* call, int descriptor) {
  if (record.on) record.calls.push_back(call + PathOf(descriptor));
}

// The system's own function of a name.
template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void NotePath(const char* call, const char* path) {
  if (record.on) record.calls.push_back(std::string(call) + path);
}

// True if a call of this kind is refused, with its error set.
bool IsRefused(const char* kind) {
  if (!record.on) return false;
  if (record.awaited == kind) {
    record.awaited.clear();
    std::exchange(record.action, nullptr)();
  }
  const auto refusal = record.refusals.find(kind);
  if (refusal == record.refusals.end()) return false;
  errno = refusal->second;
  return true;
}

// True if the clock stands still, and its time.
bool IsStandingAt(timespec& time) {
  const bool stands = record.standing.tv_sec != 0;
  if (stands) time = record.standing;
  return stands;
}

// A wait for a lock while the clock stands still.
int LockByStandingClock() {
  if (record.until_interruption.count() == 0) return 0;
  constexpr long kSecond = 1'000'000'000;
  const long nanoseconds = record.standing.tv_nsec + record.until_interruption.count();
  record.standing.tv_sec += nanoseconds / kSecond;
  record.standing.tv_nsec = nanoseconds % kSecond;
  record.until_interruption = {};
  errno = EINTR;
  return -1;
}

// Takes a lock, in spite of interruptions if that is wanted.
int Lock(int descriptor, int operation) {
  if (IsRefused((operation & LOCK_NB) != 0 ? "try" : "wait")) return -1;
  if ((operation & LOCK_NB) == 0 && record.standing.tv_sec != 0) return LockByStandingClock();
  int result = 0;
  do {
    result = Real<int(int, int)>("flock")(descriptor, operation);
  } while (result != 0 && errno == EINTR && record.waits_for_locks);
  return result;
}

// How many of these bytes the disk gives.
std::size_t Readable(int descriptor, std::size_t size) {
  if (!record.on || record.unreadable.empty() || PathOf(descriptor) != record.unreadable)
    return size;
  const auto position = static_cast<std::size_t>(lseek(descriptor, 0, SEEK_CUR));
  return position < record.from ? std::min(size, record.from - position) : 0;
}

}  // namespace

DiskCalls::DiskCalls() {
  record = {};
  record.on = true;
}

DiskCalls::~DiskCalls() {
  record = {};
}

const std::vector<std::string>& DiskCalls::Calls() {
  return record.calls;
}

int DiskCalls::Count(const std::string& beginning) {
  return static_cast<int>(
      std::count_if(record.calls.begin(), record.calls.end(),
                    [&](const std::string& call) { return call.starts_with(beginning); }));
}

void DiskCalls::WaitForEveryLock() {
  record.waits_for_locks = true;
}

void DiskCalls::Refuse(const std::string& kind, int error) {
  record.refusals[kind] = error;
}

void DiskCalls::BeforeTheNext(const std::string& kind, std::function<void()> action) {
  record.awaited = kind;
  record.action = std::move(action);
}

void DiskCalls::InterruptTheNextWaitAfter(std::chrono::nanoseconds time) {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  record.until_interruption = time;
  record.standing = now;
}

void DiskCalls::FailReads(const std::string& native_path, std::size_t from) {
  record.unreadable = native_path;
  record.from = from;
}

}  // namespace logbook::test

using logbook::test::IsRefused;
using logbook::test::IsStandingAt;
using logbook::test::Lock;
using logbook::test::Note;
using logbook::test::NotePath;
using logbook::test::Readable;
using logbook::test::Real;

extern "C" {

int fsync(int descriptor) {
  Note("fsync ", descriptor);
  return Real<int(int)>("fsync")(descriptor);
}

int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  NotePath("rename ", to);
  if (IsRefused("rename")) return -1;
  return Real<int(int, const char*, int, const char*)>("renameat")(from_folder, from, to_folder,
                                                                   to);
}

int unlinkat(int folder, const char* name, int flags) noexcept {
  NotePath("delete ", name);
  return Real<int(int, const char*, int)>("unlinkat")(folder, name, flags);
}

int openat(int folder, const char* name, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (IsRefused("openat")) return -1;
  return Real<int(int, const char*, int, ...)>("openat")(folder, name, flags, mode);
}

DIR* opendir(const char* path) {
  NotePath("list ", path);
  if (IsRefused("list")) return nullptr;
  return Real<DIR*(const char*)>("opendir")(path);
}

DIR* fdopendir(int descriptor) {
  Note("list ", descriptor);
  if (IsRefused("list")) return nullptr;
  return Real<DIR*(int)>("fdopendir")(descriptor);
}

dirent* readdir(DIR* list) {
  if (IsRefused("next")) return nullptr;
  return Real<dirent*(DIR*)>("readdir")(list);
}

int flock(int descriptor, int operation) noexcept {
  Note((operation & LOCK_NB) != 0 ? "try " : "wait ", descriptor);
  return Lock(descriptor, operation);
}

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  static const auto real = Real<int(clockid_t, timespec*)>("clock_gettime");
  if (clock == CLOCK_MONOTONIC && IsStandingAt(*time)) return 0;
  return real(clock, time);
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  Note("read ", descriptor);
  const std::size_t readable = Readable(descriptor, size);
  if (readable > 0 || size == 0)
    return Real<ssize_t(int, void*, std::size_t)>("read")(descriptor, buffer, readable);
  errno = EIO;
  return -1;
}

int fchmod(int descriptor, mode_t mode) {
  if (IsRefused("fchmod")) return -1;
  return Real<int(int, mode_t)>("fchmod")(descriptor, mode);
}

ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t place) {
  if (IsRefused("pread")) return -1;
  return Real<ssize_t(int, void*, std::size_t, off_t)>("pread")(descriptor, buffer, size, place);
}

}  // extern "C"
