// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A test workstation that is tied to a content server: its client is the real one, and so is the
// agent, which the test starts itself or lets the client start.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

#include "support/RunProgram.h"
#include "support/TestServices.h"
#include "upload/ContentServerClient.h"
#include "upload/Outbox.h"

namespace logbook::test {

class UploadStation : public TestWorkstation {
 public:
  // Who starts the agent; what the client starts otherwise ends at once.
  enum class Agent { kStartedByClient, kStartedByTest };
  explicit UploadStation(Agent agent);

  // Writes section "Content Server" of arecm.cfg, with short pauses.
  void Configure(const std::map<std::string, std::string>& values);
  // As above for a server, its password in a file of its own.
  void Configure(const std::string& url, const std::string& user, const std::string& password,
                 const std::string& ca_file);

  // The four events of the logbook. The default printer is the PDF device.
  void Record();
  void DeleteLog(int row);
  void PrintLogList();
  void PrintErrorLog(const std::string& log);
  // A submission of one file of any size, through the same client. Its name at the server.
  void Submit(const std::string& name, const std::string& bytes);

  // Runs the agent with these options to its end.
  ProgramResult RunAgent(const std::string& options = {}) const;
  // Starts the agent; the caller ends it with Kill or waits with Wait.
  pid_t StartAgent() const;
  std::string Status() const { return RunAgent("--status").output; }

  // Waits up to a minute; false if the first submission has not been tried then.
  bool WaitForATry() const;
  // Waits up to a minute; false if the outbox still holds something then.
  bool WaitUntilEmpty() const;

  std::string Area() const { return disk.Native("C:\\Norvane.Quorex.ECM"); }
  Outbox TheOutbox() const { return Outbox(Area()); }

  // Contents of everything that has been submitted, by the path that it has at the server.
  std::map<std::string, std::string> expected;

  ContentServerClient client;
  Services real;

 private:
  // The image that the next print makes.
  void ExpectImage(const std::string& name);
  void RememberSubmissions();
};

}  // namespace logbook::test
