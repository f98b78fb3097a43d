// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The outbox: what has been taken over for the content server and has not arrived there yet. It is
// the folder "outbox" of the temporary area; each submission is a folder in it, named after its
// staging folder, a running number and eight random hexadecimal digits (docs/file-formats.md). All
// changes of a submission's state are renames, so that a crash leaves one state or the next. A link
// to a file of the same submission is that file; every other link is left out, as if it were not
// there. Paths are native.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/NativeDisk.h"

namespace logbook {

// What became of the last attempt to deliver a submission.
struct DeliveryNote {
  int tries = 0;
  std::int64_t last_try = 0;  // seconds since 1970, 0 for none
  std::string reason;         // one line; empty if it was not tried
};

class Outbox {
 public:
  // The outbox of a temporary area; nothing is made yet.
  explicit Outbox(const std::string& area);

  // Takes the staging folder of this name and the descriptor beside it out of the area. All bytes
  // are on the disk when it returns. Raises RunTimeError if that fails; folder and descriptor then
  // stand in the area as before.
  void TakeOver(const std::string& staging_name);

  // Brings takings-over that a crash has cut short to their end and removes what is delivered.
  // What fails stays as it is. Raises RunTimeError if the outbox cannot be read or locked.
  void Recover();

  // Names of the submissions, oldest first. Empty if there is no outbox. Raises RunTimeError if it
  // cannot be read.
  std::vector<std::string> Waiting() const;
  // Names of what Recover has yet to bring to its end. Raises as above.
  std::vector<std::string> Unfinished() const;
  // True if there is neither a submission nor anything for Recover to do. Raises as above.
  bool IsEmpty() const;

  // What lies staged in the area and was not taken over: names of staging folders, and of files
  // beside them that are no descriptors of one, ascending. Empty if there is no area. Raises
  // nothing.
  std::vector<std::string> Staged() const;
  // Names of the files of a staging folder, ascending; none on any failure.
  std::vector<std::string> StagedFilesOf(const std::string& staging_name) const;

  std::string DescriptorOf(const std::string& submission) const;
  // The file of this name, or the one that a link of this name stands for.
  std::string FileOf(const std::string& submission, const std::string& name) const;
  // Names of the files of a submission, ascending: all of them. Raises RunTimeError if they cannot
  // be listed, also if a link leads there.
  std::vector<std::string> FilesOf(const std::string& submission) const;

  // A delivered submission waits no more. A crash leaves it to Recover; a power cut may bring it
  // back, whole. Raises RunTimeError if it cannot be marked so.
  void MarkDelivered(const std::string& submission);
  // Deletes all that this object has marked. What fails is left to the next time or to Recover.
  // Raises nothing.
  void ClearDelivered();

  DeliveryNote NoteOf(const std::string& submission) const;
  // Failures are ignored: a note is for the eye.
  void SetNote(const std::string& submission, const DeliveryNote& note);

  std::string Folder() const { return folder_; }
  // The file that the one agent at work holds locked.
  std::string AgentLock() const;

 private:
  std::vector<native::Entry> Entries() const;
  std::string PathOf(const std::string& submission) const;
  std::string NewName(const std::string& staging_name) const;
  std::string DescriptorStagedFor(const std::string& unfinished) const;
  void FinishTakingOver(const std::string& unfinished);
  void RecoverUnfinished(const std::string& name);

  std::string area_;
  std::string folder_;
  std::vector<std::string> marked_;  // paths of delivered submissions that are not deleted yet
};

}  // namespace logbook
