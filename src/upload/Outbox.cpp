// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Outbox.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <new>
#include <random>
#include <set>

#include "base/FileLock.h"
#include "base/NativeDisk.h"
#include "base/RunTimeError.h"
#include "base/Utf8Path.h"

namespace logbook {

namespace {

constexpr const char* kUnfinished = ".new";  // being taken over
constexpr const char* kDelivered = ".done";  // arrived, being deleted
constexpr std::size_t kRandomDigits = 9;     // a hyphen and eight hexadecimal digits
constexpr std::size_t kRunningDigits = 5;    // a hyphen and four decimal digits, before those

void Rename(const std::string& from, const std::string& to) {
  if (const auto error = native::Rename(from, to)) native::RaiseFileError(error, from);
}

// Up to the disk: a file's bytes or a folder's names.
void Sync(const std::string& path) {
  if (const auto error = native::Sync(path)) native::RaiseFileError(error, path);
}

void MakeFolder(const std::string& path) {
  const auto error = native::MakeFolder(path, native::Audience::kOwner);
  if (error && error != std::errc::file_exists) native::RaiseFolderError(error);
}

native::Kind KindOf(const std::string& path) {
  auto kind = native::Kind::kNothing;
  native::LookAt(path, native::Links::kAsThemselves, kind);
  return kind;
}

bool IsThere(const std::string& path) {
  return KindOf(path) != native::Kind::kNothing;
}

// A link there would lead to what is not ours to send.
void RefuseLink(const std::string& path) {
  if (KindOf(path) == native::Kind::kLink)
    native::RaiseFolderError(std::make_error_code(std::errc::not_a_directory));
}

// Never a part of the names: what is not seen here would be deleted with the rest after delivery.
std::vector<native::Entry> EntriesIn(const std::string& folder) {
  std::vector<native::Entry> entries;
  if (const auto error = native::EntriesIn(folder, entries)) native::RaiseFolderError(error);
  return entries;
}

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (native::Entry& entry : EntriesIn(folder)) names.push_back(std::move(entry.name));
  return names;
}

// Puts what has been taken back where it was staged. What refuses to go is left to Recover.
void GiveBack(const std::string& unfinished, const std::string& staged) {
  native::Rename(unfinished + "/upload.xml", staged + ".xml");
  native::Rename(unfinished + "/files", staged);
  native::RemoveFolder(unfinished);
}

// The running number behind this staging name, or -1.
int RunningNumberOf(const std::string& name, const std::string& staging_name) {
  const std::size_t start = staging_name.size() + 1;
  if (!name.starts_with(staging_name + "-") || name.size() < start + kRunningDigits ||
      name[start + kRunningDigits - 1] != '-')
    return -1;
  int number = -1;
  const char* const end = name.data() + start + kRunningDigits - 1;
  return std::from_chars(name.data() + start, end, number).ptr == end ? number : -1;
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
  const std::string folder = PathOf(submission) + "/files";
  const std::string path = folder + "/" + name;
  return KindOf(path) == native::Kind::kLink ? native::FileBehind(path, folder) : path;
}

std::vector<std::string> Outbox::FilesOf(const std::string& submission) const {
  const std::string folder = PathOf(submission) + "/files";
  RefuseLink(PathOf(submission));
  RefuseLink(folder);
  std::vector<std::string> names;
  for (native::Entry& entry : EntriesIn(folder)) {
    if (entry.kind != native::Kind::kLink || !FileOf(submission, entry.name).empty())
      names.push_back(std::move(entry.name));
  }
  return names;
}

// Behind those that wait: events of one second have the same staging name.
std::string Outbox::NewName(const std::string& staging_name) const {
  int number = 0;
  for (const std::string& name : NamesIn(folder_))
    number = std::max(number, RunningNumberOf(name, staging_name) + 1);
  char ending[kRunningDigits + kRandomDigits + 8];
  std::snprintf(ending, sizeof ending, "-%04d-%08x", number, std::random_device{}());
  return staging_name + ending;
}

void Outbox::TakeOver(const std::string& staging_name) {
  const std::string staged = area_ + "/" + staging_name;
  MakeFolder(folder_);
  const FileLock lock(folder_ + "/.taking-over", FileLock::Patience::kWait);
  for (const std::string& name : NamesIn(staged)) Sync(staged + "/" + name);
  Sync(staged);
  Sync(staged + ".xml");
  const std::string unfinished = PathOf(NewName(staging_name)) + kUnfinished;
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
      if (name.ends_with(kDelivered)) native::RemoveTree(PathOf(name));
      if (name.ends_with(kUnfinished) && KindOf(PathOf(name)) == native::Kind::kFolder)
        RecoverUnfinished(name);
    } catch (const std::exception&) {
      // What cannot be brought to its end now stays for the next time.
    }
  }
}

void Outbox::RecoverUnfinished(const std::string& name) {
  const std::string path = PathOf(name);
  if (!IsThere(path + "/files")) {
    native::RemoveFolder(path);  // cut short before anything was taken
    return;
  }
  if (!IsThere(path + "/upload.xml")) Rename(DescriptorStagedFor(name), path + "/upload.xml");
  FinishTakingOver(path);
}

// Names of an earlier edition have no running number.
std::string Outbox::DescriptorStagedFor(const std::string& unfinished) const {
  const std::string earlier =
      unfinished.substr(0, unfinished.size() - std::string(kUnfinished).size() - kRandomDigits);
  const std::string staging_name =
      earlier.substr(0, earlier.size() - std::min(earlier.size(), kRunningDigits));
  const bool is_numbered = RunningNumberOf(unfinished, staging_name) >= 0;
  return area_ + "/" + (is_numbered ? staging_name : earlier) + ".xml";
}

std::vector<native::Entry> Outbox::Entries() const {
  auto kind = native::Kind::kNothing;
  const auto error = native::LookAt(folder_, native::Links::kAsThemselves, kind);
  if (!error && kind == native::Kind::kNothing) return {};
  return EntriesIn(folder_);
}

std::vector<std::string> Outbox::Waiting() const {
  std::vector<std::string> names;
  for (native::Entry& entry : Entries()) {
    const std::string& name = entry.name;
    const bool waits = !name.starts_with('.') && !name.ends_with(kDelivered) &&
                       !name.ends_with(kUnfinished) && entry.kind != native::Kind::kLink;
    if (waits) names.push_back(std::move(entry.name));
  }
  return names;
}

std::vector<std::string> Outbox::Unfinished() const {
  std::vector<std::string> names;
  for (native::Entry& entry : Entries()) {
    if (!entry.name.starts_with('.') && entry.name.ends_with(kUnfinished))
      names.push_back(std::move(entry.name));
  }
  return names;
}

std::vector<std::string> Outbox::Staged() const {
  std::vector<std::string> names;
  native::NamesIn(area_, names);
  const std::set<std::string> all(names.begin(), names.end());
  std::erase_if(names, [&](const std::string& name) {
    const bool is_descriptor =
        name.ends_with(".xml") && all.contains(name.substr(0, name.size() - 4));
    return area_ + "/" + name == folder_ || is_descriptor;
  });
  return names;
}

std::vector<std::string> Outbox::StagedFilesOf(const std::string& staging_name) const {
  std::vector<std::string> names;
  native::NamesIn(area_ + "/" + staging_name, names);
  return names;
}

bool Outbox::IsEmpty() const {
  const std::vector<native::Entry> entries = Entries();
  return std::all_of(entries.begin(), entries.end(),
                     [](const native::Entry& entry) { return entry.name.starts_with('.'); });
}

void Outbox::MarkDelivered(const std::string& submission) {
  const std::string delivered = PathOf(submission) + kDelivered;
  Rename(PathOf(submission), delivered);
  marked_.push_back(delivered);
}

// The names are on the disk before the files are gone from it: a submission comes back whole or not
// at all.
void Outbox::ClearDelivered() {
  if (marked_.empty() || native::Sync(folder_)) return;
  try {
    for (const std::string& delivered : marked_) native::RemoveTree(delivered);
    marked_.clear();
  } catch (const std::bad_alloc&) {
    // The rest is left to the next time.
  }
}

DeliveryNote Outbox::NoteOf(const std::string& submission) const {
  DeliveryNote note;
  std::ifstream in(Utf8Path(PathOf(submission) + "/note"));
  in >> note.tries >> note.last_try;
  in.ignore();
  std::getline(in, note.reason);
  return note;
}

void Outbox::SetNote(const std::string& submission, const DeliveryNote& note) {
  const std::string path = PathOf(submission) + "/note";
  std::ofstream out(Utf8Path(path + ".new"), std::ios::trunc);
  out << note.tries << ' ' << note.last_try << '\n' << OneLine(note.reason) << '\n';
  out.close();
  if (out) native::Rename(path + ".new", path);
}

}  // namespace logbook
