// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A workstation for commands on a failing disk: real files and the real content-server client, a
// user and a host that follow a script. What the user is told is kept as text.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/TestServices.h"
#include "upload/ContentServerClient.h"

namespace logbook::test {

// All files below a folder by their paths relative to it, with their bytes; folders end in a slash.
using Disk = std::map<std::string, std::string>;
Disk ReadDisk(const std::string& native_folder);

class Station : public TestWorkstation {
 public:
  Station();

  // Puts a log with the host's files of one of the sample instruments.
  void PutSample(const std::string& log, const std::string& instrument, const std::string& comment);
  // Ties the workstation to a content server at this address, with name and password of the test
  // server for one that asks; nobody starts an agent.
  void TieTo(const std::string& url);

  // Runs a piece of the program as its frame does; an error is told and ends the process. True if
  // the piece came to its end.
  bool Handle(const std::function<void()>& piece);
  // What the user was told so far, a line each.
  std::string Told() const;

  // Called at the moments of a command at which what is on the disk is whole.
  std::function<void()> on_milestone;
  void Milestone() const {
    if (on_milestone) on_milestone();
  }

  // A host that answers each job at once: it puts its files into the folder that logbook.ini names.
  void AnswerJobs();

  ContentServerClient client;
  Services real;

 private:
  std::string error_;
};

}  // namespace logbook::test
