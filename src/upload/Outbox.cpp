// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/Outbox.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>

#include "base/FileLock.h"
#include "base/NativeDisk.h"
#include "base/RunTimeError.h"

namespace logbook {

namespace {

constexpr const char* kUnfinished = ".new";  // being taken over
constexpr const char* kDelivered = ".done";  // arrived, being deleted
constexpr std::size_t kRandomDigits = 9;     // a hyphen and eight hexadecimal digits

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

bool IsThere(const std::string& path) {
  auto kind = native::Kind::kNothing;
  return !native::LookAt(path, native::Links::kAsThemselves, kind) &&
         kind != native::Kind::kNothing;
}

// Never a part of the names: what is not seen here would be deleted with the rest after delivery.
std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  if (const auto error = native::NamesIn(folder, names)) native::RaiseFolderError(error);
  return names;
}

// Puts what has been taken back where it was staged. What refuses to go is left to Recover.
void GiveBack(const std::string& unfinished, const std::string& staged) {
  native::Rename(unfinished + "/upload.xml", staged + ".xml");
  native::Rename(unfinished + "/files", staged);
  native::RemoveFolder(unfinished);
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
      if (name.ends_with(kDelivered)) native::RemoveTree(PathOf(name));
      if (name.ends_with(kUnfinished)) RecoverUnfinished(name);
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
  const std::string staging_name =
      name.substr(0, name.size() - std::string(kUnfinished).size() - kRandomDigits);
  if (!IsThere(path + "/upload.xml"))
    Rename(area_ + "/" + staging_name + ".xml", path + "/upload.xml");
  FinishTakingOver(path);
}

std::vector<std::string> Outbox::Names() const {
  auto kind = native::Kind::kNothing;
  const auto error = native::LookAt(folder_, native::Links::kAsThemselves, kind);
  if (!error && kind == native::Kind::kNothing) return {};
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
  native::RemoveTree(delivered);
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
  if (out) native::Rename(path + ".new", path);
}

}  // namespace logbook
