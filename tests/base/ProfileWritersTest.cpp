// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <random>

#include "base/NativeFile.h"
#include "base/Profile.h"
#include "support/DiskCalls.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

constexpr char kFile[] = "C:\\folder\\shared.ini";

pid_t Start(const std::function<bool()>& work) {
  const pid_t process = fork();
  if (process == 0) _exit(work() ? 0 : 1);
  return process;
}

bool EndedWell(pid_t process) {
  int status = 0;
  return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string Value(const Machine& machine, const std::string& key) {
  return GetPrivateProfileString(machine, "Shared", key, "missing", 70000, kFile);
}

int CountFiles(const TestMachine& machine) {
  int count = 0;
  for (const auto& entry : fs::directory_iterator(machine.Native("C:\\folder"))) {
    count += entry.exists() ? 1 : 0;
  }
  return count;
}

TEST(ProfileWritersTest, TwoProcessesThatWriteTheSameFileLoseNoKey) {
  const TestMachine machine;
  machine.MakeFolders("C:\\folder");
  const auto write_keys = [&machine](const std::string& prefix) {
    return [&machine, prefix] {
      // The system lets a busy writer take its lock again and again before one that waits, which
      // would go without after a while.
      const DiskCalls calls;
      DiskCalls::WaitForEveryLock();
      for (int i = 0; i < 200; ++i) {
        const std::string key = prefix + std::to_string(i);
        if (!WritePrivateProfileString(machine, "Shared", key, key + " value", kFile)) return false;
      }
      return true;
    };
  };
  const pid_t first = Start(write_keys("first"));
  const pid_t second = Start(write_keys("second"));
  EXPECT_TRUE(EndedWell(first));
  EXPECT_TRUE(EndedWell(second));
  for (const std::string prefix : {"first", "second"}) {
    for (int i = 0; i < 200; ++i) {
      const std::string key = prefix + std::to_string(i);
      EXPECT_EQ(Value(machine, key), key + " value");
    }
  }
  EXPECT_EQ(CountFiles(machine), 1);
}

TEST(ProfileWritersTest, AReaderBesideAWriterSeesWholeValuesOnly) {
  const TestMachine machine;
  machine.Put(kFile, "[Shared]\r\nother=kept\r\nv=0\r\n");
  const pid_t writer = Start([&machine] {
    for (int i = 1; i <= 100; ++i) {
      const std::string value(static_cast<std::size_t>(i * 50), static_cast<char>('a' + i % 26));
      if (!WritePrivateProfileString(machine, "Shared", "v", value, kFile)) return false;
    }
    return true;
  });
  bool running = true;
  while (running) {
    running = waitpid(writer, nullptr, WNOHANG) == 0;
    const std::string value = Value(machine, "v");
    ASSERT_FALSE(value.empty());
    EXPECT_EQ(value.find_first_not_of(value[0]), std::string::npos) << value;
    EXPECT_EQ(Value(machine, "other"), "kept");
  }
  EXPECT_EQ(Value(machine, "v").size(), 5000u);
}

// Writes ever longer values to one key until it is killed, and says so after the first.
void WriteForever(const Machine& machine, int pipe_end) {
  for (std::size_t i = 1;; ++i) {
    const std::string value(i % 40 * 1000 + 1, static_cast<char>('a' + i % 26));
    WritePrivateProfileString(machine, "Shared", "v", value, kFile);
    if (i == 1 && write(pipe_end, "x", 1) != 1) _exit(1);
  }
}

TEST(ProfileWritersTest, AWriterKilledAtAnyMomentTearsNothingAndBlocksNobody) {
  const TestMachine machine;
  machine.Put(kFile, "; top\r\n[Shared]\r\nother=kept\r\nv=start\r\n\r\n[Last]\r\nx=1\r\n");
  std::mt19937 random(20261115);
  std::uniform_int_distribution<int> microseconds(0, 20000);
  for (int round = 0; round < 60; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = Start([&machine, &ends] {
      WriteForever(machine, ends[1]);
      return false;
    });
    char byte = 0;
    ASSERT_EQ(read(ends[0], &byte, 1), 1);
    usleep(static_cast<useconds_t>(microseconds(random)));  // the moment is what is tried here
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    close(ends[0]);
    close(ends[1]);

    const std::string value = Value(machine, "v");
    ASSERT_EQ(value.size() % 1000, 1u) << round;
    ASSERT_EQ(value.find_first_not_of(value[0]), std::string::npos) << round;
    ASSERT_EQ(machine.Get(kFile),
              "; top\r\n[Shared]\r\nother=kept\r\nv=" + value + "\r\n\r\n[Last]\r\nx=1\r\n");
    ASSERT_LE(CountFiles(machine), 2) << "at most one file that the killed writer left";
  }
  EXPECT_TRUE(WritePrivateProfileString(machine, "Shared", "v", "end", kFile));
  EXPECT_EQ(CountFiles(machine), 1);
}

}  // namespace
}  // namespace logbook::test
