// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A second user of the machine, who is not to reach what waits for the content server.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "UploadStation.h"

namespace logbook::test {
namespace {

class SecondUserTest : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only the administrator can act as a second user";
    // The way to the area is open, as that of a real drive is.
    for (const std::string& folder :
         {station.disk.home(), station.disk.home() + "/drives", station.disk.Native("C:")})
      ASSERT_EQ(chmod(folder.c_str(), 0755), 0) << folder;
    station.Configure({{"Url", "file:///nowhere"}});
    station.Submit("a.pdf", "bytes");
  }

  ProgramResult AsSecondUser(const std::string& command) const {
    return RunProgram("cd " + Quoted(station.Area() + "/..") +
                      " && setpriv --reuid=65534 --regid=65534 --clear-groups sh -c " +
                      Quoted(command) + " 2>&1");
  }
  std::string Area() const { return Quoted(station.Area()); }

  UploadStation station{UploadStation::Agent::kStartedByTest};
};

TEST_F(SecondUserTest, ReadsPlantsLocksAndMovesNothingOfTheArea) {
  station.disk.Put("C:\\open.txt", "for all");
  ASSERT_EQ(AsSecondUser("cat open.txt").output, "for all") << "the second user is none";
  const std::string waiting = station.TheOutbox().Waiting().at(0);
  const std::string submission = Quoted(station.Area() + "/outbox/" + waiting);
  for (const std::string& command :
       {"ls " + Area(), "cat " + submission + "/upload.xml", "cat " + submission + "/files/a.pdf",
        "mkdir " + Area() + "/planted", "ln -s /etc/passwd " + submission + "/files/passwd",
        "touch " + Area() + "/outbox/planted.new", "rm -r " + submission, "mv " + Area() + " moved",
        "flock --nonblock " + Area() + "/outbox/.agent true",
        "flock --nonblock " + Area() + "/outbox/.taking-over true"}) {
    EXPECT_NE(AsSecondUser(command).status, 0) << command;
  }
  EXPECT_EQ(station.TheOutbox().FilesOf(waiting), std::vector<std::string>{"a.pdf"});
  station.disk.MakeFolders("C:\\share");
  station.Configure({{"Url", "file://" + station.disk.Native("C:\\share")}});
  EXPECT_EQ(station.RunAgent("--once").status, 0) << station.Status();
}

}  // namespace
}  // namespace logbook::test
