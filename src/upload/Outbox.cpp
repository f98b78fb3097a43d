// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Outbox.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

constexpr const char* kUnfinished = ".new";  // being taken over
constexpr const char* kDelivered = ".done";  // arrived, being deleted
constexpr std::size_t kRandomDigits = 9;     // a hyphen and eight hexadecimal digits

void Rename(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0) posix::RaiseFileError(errno, from);
}

// Up to the disk: a file's bytes or a folder's names.
void Sync(const std::string& path) {
  const posix::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.IsOpen() || fsync(file.Number()) != 0) posix::RaiseFileError(errno, path);
}

void MakeFolder(const std::string& path) {
  if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) posix::RaiseFolderError(errno);
}

bool IsThere(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0;
}

// Never a part of the names: what is not seen here would be deleted with the rest after delivery.
std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    names.push_back(entry->path().filename().string());
  if (error) posix::RaiseFolderError(error.value());
  std::sort(names.begin(), names.end());
  return names;
}

// Puts what has been taken back where it was staged. What refuses to go is left to Recover.
void GiveBack(const std::string& unfinished, const std::string& staged) {
  std::error_code ignored;
  fs::rename(unfinished + "/upload.xml", staged + ".xml", ignored);
  fs::rename(unfinished + "/files", staged, ignored);
  fs::remove(unfinished, ignored);
}

std::string RandomEnding() {
  char digits[kRandomDigits + 1];
  std::snprintf(digits, sizeof digits, "-%08x", std::random_device{}());
  return digits;
}

std::string OneLine(std::string text) {
  for (char& byte : text) {
    if (byte == '\n' || byte == '\r') byte = ' ';
  }
  return text;
}

}  // namespace

Outbox::Outbox(const std::string& area) : area_(area) {
  while (area_.size() > 1 && area_.back() == '/') area_.pop_back();
  folder_ = area_ + "/outbox";
}

std::string Outbox::PathOf(const std::string& submission) const {
  return folder_ + "/" + submission;
}

std::string Outbox::AgentLock() const {
  return folder_ + "/.agent";
}

std::string Outbox::DescriptorOf(const std::string& submission) const {
  return PathOf(submission) + "/upload.xml";
}

std::string Outbox::FileOf(const std::string& submission, const std::string& name) const {
  return PathOf(submission) + "/files/" + name;
}

std::vector<std::string> Outbox::FilesOf(const std::string& submission) const {
  return NamesIn(PathOf(submission) + "/files");
}

void Outbox::TakeOver(const std::string& staging_name) {
  const std::string staged = area_ + "/" + staging_name;
  MakeFolder(folder_);
  const FileLock lock(folder_ + "/.taking-over", FileLock::Patience::kWait);
  for (const std::string& name : NamesIn(staged)) Sync(staged + "/" + name);
  Sync(staged);
  Sync(staged + ".xml");
  const std::string unfinished = PathOf(staging_name + RandomEnding()) + kUnfinished;
  MakeFolder(unfinished);
  try {
    Rename(staged, unfinished + "/files");
    Rename(staged + ".xml", unfinished + "/upload.xml");
    FinishTakingOver(unfinished);
  } catch (const RunTimeError&) {
    GiveBack(unfinished, staged);
    throw;
  }
}

// Up to the last rename everything is on the disk and can still be given back; from it on the
// agent may be at work. A power cut that takes the last rename back leaves it to Recover.
void Outbox::FinishTakingOver(const std::string& unfinished) {
  Sync(unfinished);
  Sync(folder_);
  Sync(area_);
  Rename(unfinished, unfinished.substr(0, unfinished.size() - std::string(kUnfinished).size()));
}

void Outbox::Recover() {
  if (!IsThere(folder_)) return;
  const FileLock lock(folder_ + "/.taking-over", FileLock::Patience::kWait);
  for (const std::string& name : NamesIn(folder_)) {
    try {
      if (name.ends_with(kDelivered)) fs::remove_all(PathOf(name));
      if (name.ends_with(kUnfinished)) RecoverUnfinished(name);
    } catch (const std::exception&) {
      // What cannot be brought to its end now stays for the next time.
    }
  }
}

void Outbox::RecoverUnfinished(const std::string& name) {
  const std::string path = PathOf(name);
  if (!IsThere(path + "/files")) {
    rmdir(path.c_str());  // cut short before anything was taken
    return;
  }
  const std::string staging_name =
      name.substr(0, name.size() - std::string(kUnfinished).size() - kRandomDigits);
  if (!IsThere(path + "/upload.xml"))
    Rename(area_ + "/" + staging_name + ".xml", path + "/upload.xml");
  FinishTakingOver(path);
}

std::vector<std::string> Outbox::Names() const {
  struct stat status = {};
  if (lstat(folder_.c_str(), &status) != 0 && errno == ENOENT) return {};
  return NamesIn(folder_);
}

std::vector<std::string> Outbox::Waiting() const {
  std::vector<std::string> names = Names();
  std::erase_if(names, [](const std::string& name) {
    return name.starts_with('.') || name.ends_with(kDelivered) || name.ends_with(kUnfinished);
  });
  return names;
}

std::vector<std::string> Outbox::Unfinished() const {
  std::vector<std::string> names = Names();
  std::erase_if(names, [](const std::string& name) {
    return name.starts_with('.') || !name.ends_with(kUnfinished);
  });
  return names;
}

bool Outbox::IsEmpty() const {
  const std::vector<std::string> names = Names();
  return std::all_of(names.begin(), names.end(),
                     [](const std::string& name) { return name.starts_with('.'); });
}

void Outbox::Remove(const std::string& submission) {
  const std::string delivered = PathOf(submission) + kDelivered;
  Rename(PathOf(submission), delivered);
  Sync(folder_);
  std::error_code ignored;
  fs::remove_all(delivered, ignored);
}

DeliveryNote Outbox::NoteOf(const std::string& submission) const {
  DeliveryNote note;
  std::ifstream in(PathOf(submission) + "/note");
  in >> note.tries >> note.last_try;
  in.ignore();
  std::getline(in, note.reason);
  return note;
}

void Outbox::SetNote(const std::string& submission, const DeliveryNote& note) {
  const std::string path = PathOf(submission) + "/note";
  std::ofstream out(path + ".new", std::ios::trunc);
  out << note.tries << ' ' << note.last_try << '\n' << OneLine(note.reason) << '\n';
  out.close();
  if (out) std::rename((path + ".new").c_str(), path.c_str());
}

FileLock::FileLock(const std::string& path, Patience patience)
    : descriptor_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  if (descriptor_ < 0) posix::RaiseFileError(errno, path);
  const int operation = LOCK_EX | (patience == Patience::kTry ? LOCK_NB : 0);
  while (flock(descriptor_, operation) != 0) {
    if (errno == EINTR) continue;
    const int error = errno;
    close(descriptor_);
    descriptor_ = -1;
    if (error == EWOULDBLOCK) return;
    posix::RaiseFileError(error, path);
  }
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace logbook
