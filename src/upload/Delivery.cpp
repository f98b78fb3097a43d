// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Delivery.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <optional>
#include <set>
#include <thread>

#include "base/FileLock.h"
#include "base/RunTimeError.h"

namespace logbook {

namespace {

using Reach = DeliveryError::Reach;
using std::chrono::milliseconds;

constexpr milliseconds kLook{200};  // how often a pause looks for newcomers

// Sends a file and gives it its name; does nothing if the server holds it already.
void DeliverFile(ContentStore& store, const std::string& native_file, const std::string& path,
                 const std::string& temporary) {
  native::Reader file;
  if (file.Open(native_file, native::Links::kAsThemselves)) FailToRead(native_file);
  const Digest local = DigestOfFile(file, native_file);
  if (const std::optional<Digest> arrived = store.DigestOf(path, local.size)) {
    if (*arrived == local) return;
    throw DeliveryError(Reach::kThisSubmission,
                        "The content server holds another file of the name " + path + ".");
  }
  try {
    store.Put(temporary, file);
  } catch (const std::exception&) {
    if (file.Failure()) FailToRead(native_file);
    throw;
  }
  if (store.DigestOf(temporary, local.size) != local)
    throw DeliveryError(Reach::kThisSubmission,
                        "The content server did not store " + path + " as it was sent.");
  store.Move(temporary, path);
}

// A temporary name that no file of the submission bears.
std::string TemporaryEnding(const std::vector<std::string>& files) {
  const std::set<std::string> names(files.begin(), files.end());
  std::string ending = ".part";
  const auto clashes = [&](const std::string& name) { return names.contains(name + ending); };
  while (std::any_of(files.begin(), files.end(), clashes)) ending += ".part";
  return ending;
}

std::int64_t Now() {
  return static_cast<std::int64_t>(std::time(nullptr));
}

void NoteFailure(Outbox& outbox, const std::string& submission, const std::string& reason) {
  DeliveryNote note = outbox.NoteOf(submission);
  outbox.SetNote(submission, {.tries = note.tries + 1, .last_try = Now(), .reason = reason});
}

struct RoundResult {
  int delivered = 0;
  int failed = 0;
};

// The store that is open, and for which settings.
struct OpenStore {
  ServerSettings settings;
  std::unique_ptr<ContentStore> store;
};

// What fails at the configured folder fails for all submissions.
ContentStore& OpenRoot(const Machine& machine, OpenStore& open) {
  if (open.store != nullptr) return *open.store;
  try {
    std::unique_ptr<ContentStore> store = OpenContentStore(machine, open.settings);
    store->MakeRoot();
    open.store = std::move(store);
    return *open.store;
  } catch (const DeliveryError& error) {
    throw DeliveryError(Reach::kWholeServer, error.what());
  }
}

// The local copies of what is delivered go some at a time: to bring each name to the disk by itself
// would take longer than to send a small package.
class Clearing {
 public:
  explicit Clearing(Outbox& outbox) : outbox_(outbox) {}
  ~Clearing() { outbox_.ClearDelivered(); }
  Clearing(const Clearing&) = delete;
  Clearing& operator=(const Clearing&) = delete;

  // After each delivery.
  void CountOne() {
    constexpr int kMost = 32;
    if (++delivered_ % kMost == 0) outbox_.ClearDelivered();
  }

 private:
  Outbox& outbox_;
  int delivered_ = 0;
};

// One attempt at each submission; ends early where the server as a whole fails.
RoundResult RunRound(const Machine& machine, OpenStore& open, Outbox& outbox,
                     const std::vector<std::string>& submissions) {
  RoundResult result;
  Clearing clearing(outbox);
  for (const std::string& submission : submissions) {
    try {
      Deliver(outbox, OpenRoot(machine, open), submission);
      clearing.CountOne();
      ++result.delivered;
    } catch (const DeliveryError& error) {
      ++result.failed;
      NoteFailure(outbox, submission, error.what());
      if (error.reach() == Reach::kWholeServer) return result;
    } catch (const std::exception& error) {
      ++result.failed;
      NoteFailure(outbox, submission, std::string("The outbox: ") + error.what() + ".");
    }
  }
  return result;
}

void PauseUnlessSomethingComes(const Outbox& outbox, milliseconds pause) {
  const std::vector<std::string> before = outbox.Waiting();
  const auto end = std::chrono::steady_clock::now() + pause;
  while (std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::min(kLook, pause));
    if (outbox.Waiting() != before) return;
  }
}

// Rounds until the outbox is empty, or one.
DrainResult DrainLocked(const Machine& machine, Outbox& outbox, const std::string& settings_file,
                        Rounds rounds) {
  milliseconds pause{0};
  OpenStore open;
  for (;;) {
    const ServerSettings settings = ReadServerSettings(machine, settings_file);
    if (!settings.Enabled()) return DrainResult::kDisabled;
    if (open.settings != settings) open = {.settings = settings, .store = nullptr};
    outbox.Recover();
    const std::vector<std::string> submissions = outbox.Waiting();
    if (submissions.empty()) return DrainResult::kEmpty;
    const RoundResult result = RunRound(machine, open, outbox, submissions);
    if (result.failed == 0) continue;
    open.store.reset();
    if (rounds == Rounds::kOne) return DrainResult::kWaiting;
    pause = NextPause(result.delivered > 0 ? milliseconds{0} : pause, settings);
    PauseUnlessSomethingComes(outbox, pause);
  }
}

// The right to be the agent, or null if another one is at work. A look at the status holds the lock
// for a moment, so one refusal says nothing yet.
std::unique_ptr<FileLock> LockOut(const Outbox& outbox) {
  constexpr int kAttempts = 5;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    auto lock = std::make_unique<FileLock>(outbox.AgentLock(), FileLock::Patience::kTry);
    if (lock->IsHeld()) return lock;
    std::this_thread::sleep_for(kLook / 2);
  }
  return nullptr;
}

}  // namespace

void Deliver(Outbox& outbox, ContentStore& store, const std::string& submission) {
  const std::vector<std::string> files = outbox.FilesOf(submission);
  if (files.empty())
    throw DeliveryError(Reach::kThisSubmission, "The files are missing in the outbox.");
  const std::string ending = TemporaryEnding(files);
  store.MakeFolder(submission);
  for (const std::string& name : files) {
    const std::string path = submission + "/" + name;
    DeliverFile(store, outbox.FileOf(submission, name), path, path + ending);
  }
  DeliverFile(store, outbox.DescriptorOf(submission), submission + ".xml",
              submission + ".xml.part");
  outbox.MarkDelivered(submission);
}

DrainResult Drain(const Machine& machine, const std::string& area, const std::string& settings_file,
                  Rounds rounds) {
  Outbox outbox(area);
  if (outbox.IsEmpty()) return DrainResult::kEmpty;
  for (;;) {
    DrainResult result;
    {
      const std::unique_ptr<FileLock> lock = LockOut(outbox);
      if (lock == nullptr) return DrainResult::kOtherAgent;
      result = DrainLocked(machine, outbox, settings_file, rounds);
    }
    // Whoever put something in while the lock was held has relied on us to see it.
    if (result != DrainResult::kEmpty || outbox.Waiting().empty()) return result;
  }
}

milliseconds NextPause(milliseconds last, const ServerSettings& settings) {
  return std::min(last.count() == 0 ? settings.retry_pause : last * 2, settings.longest_pause);
}

}  // namespace logbook
