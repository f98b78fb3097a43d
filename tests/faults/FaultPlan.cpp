// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "FaultPlan.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <sstream>

namespace logbook::faults {

namespace {

constexpr const char* kVariable = "LOGBOOK_FAULTS";

struct Work {
  Plan plan;
  Report own;
  Report* report = &own;
  std::unique_ptr<PowerLoss> power;
  int trace = -1;
  bool failing = false;  // the error has been given, and is given for ever
};
Work* work = nullptr;
int asides = 0;
std::recursive_mutex one_at_a_time;  // programs with threads change the tree in one of them

std::string TargetOf(const std::string& link) {
  char target[PATH_MAX];
  const long length = syscall(SYS_readlinkat, AT_FDCWD, link.c_str(), target, sizeof target);
  return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

std::string PathOfDescriptor(int descriptor) {
  return TargetOf("/proc/self/fd/" + std::to_string(descriptor));
}

std::string WholePath(int folder, const char* path) {
  if (path[0] == '/') return path;
  const std::string above =
      folder == AT_FDCWD ? TargetOf("/proc/self/cwd") : PathOfDescriptor(folder);
  return path[0] == '\0' ? above : above + "/" + path;
}

bool LiesBelow(const std::string& path) {
  const std::string& tree = work->plan.tree;
  return path.starts_with(tree) && (path.size() == tree.size() || path[tree.size()] == '/');
}

bool IsReading(Sort sort) {
  return sort == Sort::kOpen || sort == Sort::kRead || sort == Sort::kList || sort == Sort::kLook;
}

// Whether calls of this sort give the error on a disk that keeps giving it.
bool CanGive(Sort sort, int error) {
  const bool changes_names = sort == Sort::kCreate || sort == Sort::kRename ||
                             sort == Sort::kRemove || sort == Sort::kFolder || sort == Sort::kLink;
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return sort == Sort::kCreate || sort == Sort::kWrite || sort == Sort::kFolder ||
             sort == Sort::kLink;
    case EROFS:
    case EACCES:
      return changes_names || sort == Sort::kMode;
    case EMFILE:
      return sort == Sort::kCreate || sort == Sort::kOpen || sort == Sort::kList;
    default:
      return true;
  }
}

void Trace(const char* call, const std::string& path) {
  if (work->trace < 0) return;
  const std::string line = std::string(call) + " " + path + "\n";
  syscall(SYS_write, work->trace, line.data(), line.size());
}

Answer Strike(Sort sort, const char* call, const std::string& path) {
  const Plan& plan = work->plan;
  if (plan.act == Act::kCount) return Answer::kGo;
  std::strncpy(work->report->call, (std::string(call) + " " + path).c_str(),
               sizeof work->report->call - 1);
  work->report->struck = true;
  if (plan.act == Act::kHalfWrite && sort == Sort::kWrite) return Answer::kHalf;
  if (plan.act != Act::kAnswer) Die();
  work->failing = plan.times == Times::kForEver;
  errno = plan.error;
  return Answer::kFail;
}

Answer Count(Sort sort, const char* call, const std::string& path) {
  const Plan& plan = work->plan;
  const bool reads = IsReading(sort);
  const long number = ++(reads ? work->report->reading : work->report->changing);
  Trace(call, path);
  if (work->failing && CanGive(sort, plan.error)) {
    errno = plan.error;
    return Answer::kFail;
  }
  const bool is_meant = reads == (plan.calls == Calls::kReading) && number == plan.at;
  return is_meant ? Strike(sort, call, path) : Answer::kGo;
}

// Keeps what the look at a path does to errno.
class KeptErrno {
 public:
  ~KeptErrno() {
    if (keeps) errno = kept_;
  }
  bool keeps = true;

 private:
  const int kept_ = errno;
};

Answer MeetPath(Sort sort, const char* call, const std::string& path) {
  KeptErrno kept;
  const Answer answer = LiesBelow(path) ? Count(sort, call, path) : Answer::kGo;
  kept.keeps = answer != Answer::kFail;
  return answer;
}

template <typename Map>
Plan PlanFrom(const Map& value) {
  const auto number = [&](const char* name) { return std::atol(value(name).c_str()); };
  Plan plan;
  plan.tree = value("tree");
  plan.act = static_cast<Act>(number("act"));
  plan.calls = static_cast<Calls>(number("calls"));
  plan.at = number("at");
  plan.error = static_cast<int>(number("error"));
  plan.times = static_cast<Times>(number("times"));
  plan.loss = static_cast<Loss>(number("loss"));
  plan.store = value("store");
  plan.trace = value("trace");
  plan.report_file = value("report");
  return plan;
}

Report* MapReport(const std::string& file) {
  const long opened = syscall(SYS_openat, AT_FDCWD, file.c_str(), O_RDWR | O_CLOEXEC, 0);
  if (opened < 0) std::abort();
  void* memory = mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED,
                      static_cast<int>(opened), 0);
  if (memory == MAP_FAILED) std::abort();
  return static_cast<Report*>(memory);
}

// A preloaded program begins here.
[[gnu::constructor]] void TakePlanOfEnvironment() {
  const char* text = std::getenv(kVariable);
  if (text == nullptr) return;
  const std::string whole = text;
  unsetenv(kVariable);
  unsetenv("LD_PRELOAD");
  Arm(PlanFrom([&](const std::string& name) {
    const std::size_t begin = whole.find("\n" + name + "=");
    if (begin == std::string::npos) return std::string();
    const std::size_t start = begin + name.size() + 2;
    return whole.substr(start, whole.find('\n', start) - start);
  }));
}

}  // namespace

std::string PlanAsText(const Plan& plan) {
  std::ostringstream text;
  text << "\ntree=" << plan.tree << "\nact=" << static_cast<int>(plan.act)
       << "\ncalls=" << static_cast<int>(plan.calls) << "\nat=" << plan.at
       << "\nerror=" << plan.error << "\ntimes=" << static_cast<int>(plan.times)
       << "\nloss=" << static_cast<int>(plan.loss) << "\nstore=" << plan.store
       << "\ntrace=" << plan.trace << "\nreport=" << plan.report_file << "\n";
  return text.str();
}

void Arm(const Plan& plan) {
  Disarm();
  auto next = std::make_unique<Work>();
  next->plan = plan;
  if (plan.report != nullptr) next->report = plan.report;
  if (!plan.report_file.empty()) next->report = MapReport(plan.report_file);
  next->report->changing = next->report->reading = 0;
  if (plan.act == Act::kPowerLoss) next->power = std::make_unique<PowerLoss>(plan.store);
  if (!plan.trace.empty()) {
    next->trace = static_cast<int>(syscall(SYS_openat, AT_FDCWD, plan.trace.c_str(),
                                           O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  }
  work = next.release();
}

void Disarm() {
  delete work;
  work = nullptr;
}

Aside::Aside() {
  ++asides;
}
Aside::~Aside() {
  --asides;
}

Answer Meet(Sort sort, const char* call, int folder, const char* path) {
  if (work == nullptr || asides > 0) return Answer::kGo;
  const std::lock_guard lock(one_at_a_time);
  return MeetPath(sort, call, WholePath(folder, path));
}

Answer MeetDescriptor(Sort sort, const char* call, int descriptor) {
  if (work == nullptr || asides > 0) return Answer::kGo;
  const std::lock_guard lock(one_at_a_time);
  return MeetPath(sort, call, PathOfDescriptor(descriptor));
}

void Die() {
  if (work->power != nullptr) work->power->Lose(work->plan.loss);
  for (;;) kill(getpid(), SIGKILL);
}

PowerLoss* JournalFor(int folder, const char* path) {
  if (work == nullptr || work->power == nullptr || asides > 0) return nullptr;
  const KeptErrno kept;
  return LiesBelow(WholePath(folder, path)) ? work->power.get() : nullptr;
}

PowerLoss* JournalForDescriptor(int descriptor) {
  if (work == nullptr || work->power == nullptr || asides > 0) return nullptr;
  const KeptErrno kept;
  return LiesBelow(PathOfDescriptor(descriptor)) ? work->power.get() : nullptr;
}

}  // namespace logbook::faults
