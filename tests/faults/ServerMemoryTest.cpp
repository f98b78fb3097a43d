// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A WebDAV store whose memory is used up at one moment: what it sends goes to the address that was
// meant or nowhere, and what it moves is there afterwards, under one name or the other.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "ShortMemory.h"
#include "support/DavServer.h"
#include "support/TestMachine.h"
#include "upload/Delivery.h"
#include "upload/WebDavStore.h"

namespace logbook::test {

namespace {

using Files = std::vector<std::string>;

constexpr const char* kContent = "the whole file\n";

class MemoryOfAServer : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!HasDavServer()) GTEST_SKIP() << "apache2 with mod_dav_fs is not installed";
    server_.Start();
    settings_.url = server_.Url();
    settings_.user = DavServer::kUser;
    disk_.Put("C:\\a.txt", kContent);
  }

  // A store that is at work already: it has a connection, and an address that it asked for last.
  // Its folder is its own, as the server may be at work still for one that has given up.
  std::unique_ptr<WebDavStore> Open(long number) {
    settings_.folder = "station" + std::to_string(number);
    auto store = std::make_unique<WebDavStore>(settings_, DavServer::kPassword, "");
    store->MakeRoot();
    EXPECT_EQ(store->DigestOf("a.txt", 100), std::nullopt);
    return store;
  }

  void Put(WebDavStore& store) const {
    native::Reader file;
    ASSERT_FALSE(file.Open(disk_.Native("C:\\a.txt"), native::Links::kAsThemselves));
    store.Put("a.txt.part", file);
  }

  // Calls `check` after the work with each of its allocations failing, with whether it was done.
  template <typename Prepare, typename Work, typename Check>
  void WithoutEachAllocation(Prepare prepare, Work work, Check check) {
    long allocations = 0;
    for (long failing = 1; failing <= allocations + 1; ++failing) {
      const std::unique_ptr<WebDavStore> store = Open(failing);
      prepare(*store);
      bool done = false;
      try {
        const ShortMemory memory(failing);
        work(*store);
        done = true;
      } catch (const std::exception&) {
        // Told; what is on the server counts here.
      }
      allocations = std::max(allocations, ShortMemory::Allocations());
      check(done, failing);
      if (HasFailure()) return;
    }
    EXPECT_GT(allocations, 20);
  }

  // The files of this store, and those that are in no store's folder; the server has working names.
  Files FilesNow() const {
    Files files;
    for (const std::string& file : server_.Files()) {
      const bool is_of_another =
          file.starts_with("station") && !file.starts_with(settings_.folder + "/");
      const bool is_working_name = file.find("/.davfs.tmp") != std::string::npos;
      if (!is_of_another && !is_working_name) files.push_back(file);
    }
    return files;
  }

  std::string Named(const std::string& name) const { return settings_.folder + "/" + name; }

  std::string ContentOf(const std::string& file) const {
    std::ifstream in(server_.Root() + "/" + file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  TestMachine disk_;
  DavServer server_;
  ServerSettings settings_;
};

TEST_F(MemoryOfAServer, WhatIsSentGoesToItsAddressOrNowhere) {
  WithoutEachAllocation([](WebDavStore&) {}, [this](WebDavStore& store) { Put(store); },
                        [this](bool done, long failing) {
                          const Files files = FilesNow();
                          if (!done && files.empty()) return;
                          ASSERT_EQ(files, Files{Named("a.txt.part")}) << failing;
                          if (done) {
                            EXPECT_EQ(ContentOf(Named("a.txt.part")), kContent) << failing;
                          }
                        });
}

TEST_F(MemoryOfAServer, WhatIsMovedIsThereUnderOneOfItsNames) {
  WithoutEachAllocation(
      [this](WebDavStore& store) { Put(store); },
      [](WebDavStore& store) { store.Move("a.txt.part", "a.txt"); },
      [this](bool done, long failing) {
        const Files files = FilesNow();
        ASSERT_EQ(files.size(), 1U) << failing;
        EXPECT_TRUE(files[0] == Named("a.txt") || (!done && files[0] == Named("a.txt.part")))
            << failing << " " << files[0];
        EXPECT_EQ(ContentOf(files[0]), kContent) << failing;
      });
}

}  // namespace

}  // namespace logbook::test
