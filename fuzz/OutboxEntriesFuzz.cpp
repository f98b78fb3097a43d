// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Outboxes of any content: recovering, taking over and delivering bring what is there to the
// server whole, and nothing that lies outside.

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Fuzzing.h"
#include "base/RunTimeError.h"
#include "upload/Delivery.h"
#include "upload/FolderStore.h"
#include "upload/Outbox.h"

namespace fs = std::filesystem;

namespace logbook::fuzz {
namespace {

constexpr const char* kSecret = "not for the server";
constexpr std::array kFolders = {"",
                                 "/stage",
                                 "/outbox",
                                 "/outbox/stage-0000-0a1b2c3d",
                                 "/outbox/stage-0001-0a1b2c3d.new",
                                 "/outbox/stage-0002-0a1b2c3d.done",
                                 "/outbox/stage-0000-0a1b2c3d/files",
                                 "/outbox/stage-0001-0a1b2c3d.new/files",
                                 "/outbox/old-0a1b2c3d.new",
                                 "/outbox/old-0a1b2c3d.new/files"};
constexpr std::array kNames = {"stage", "stage.xml",  "old.xml", "upload.xml",   "files",
                               "note",  "a.zip",      "outbox",  ".taking-over", ".agent",
                               "b.csv", "a.zip.part", ""};
constexpr std::array kTargets = {"a.zip",         "../../../../outside/secret",
                                 "../upload.xml", ".",
                                 "b.csv",         "../../..",
                                 "files/a.zip",   "nowhere"};

template <typename Call>
bool Succeeds(Call call) {
  try {
    call();
    return true;
  } catch (const RunTimeError&) {
    return false;
  } catch (const DeliveryError&) {
    return false;
  }
}

std::string BytesOf(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// One file, folder or link somewhere in the area, or none where that cannot be.
void PutOne(const std::string& area, Input& input) {
  const std::string folder =
      area + kFolders[static_cast<std::size_t>(input.Number(kFolders.size()))];
  std::string name = kNames[static_cast<std::size_t>(input.Number(kNames.size()))];
  const int kind = input.Number(4);
  if (name.empty()) {
    name = input.Text();
    std::ranges::replace(name, '/', '_');
    if (name.empty() || name == "." || name == ".." || name.size() > 200) return;
  }
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  const std::string path = folder + "/" + name;
  if (kind == 0) fs::create_directory(path, ignored);
  if (kind == 1)
    fs::create_symlink(kTargets[static_cast<std::size_t>(input.Number(kTargets.size()))], path,
                       ignored);
  if (kind >= 2 && !fs::is_symlink(path, ignored)) std::ofstream(path) << input.Text();
}

// The contents of all files of the server.
std::vector<std::string> Arrived(const std::string& server) {
  std::vector<std::string> contents;
  for (const auto& entry : fs::recursive_directory_iterator(server)) {
    FUZZ_REQUIRE(!entry.is_symlink());
    if (entry.is_regular_file()) contents.push_back(BytesOf(entry.path()));
  }
  return contents;
}

std::vector<std::string> ContentsOf(const Outbox& outbox, const std::string& submission) {
  std::vector<std::string> contents;
  const std::string own = fs::canonical(outbox.Folder() + "/" + submission).string() + "/files/";
  for (const std::string& name : outbox.FilesOf(submission)) {
    const std::string file = outbox.FileOf(submission, name);
    std::error_code is_loop;
    FUZZ_REQUIRE(fs::weakly_canonical(file, is_loop).string().starts_with(own));
    if (fs::is_regular_file(file, is_loop)) contents.push_back(BytesOf(file));
  }
  return contents;
}

void DeliverOne(Outbox& outbox, const std::string& server, const std::string& submission) {
  std::vector<std::string> contents;
  if (!Succeeds([&] { contents = ContentsOf(outbox, submission); })) return;
  FolderStore store(server, "");
  if (!Succeeds([&] { Deliver(outbox, store, submission); })) return;
  const std::vector<std::string> arrived = Arrived(server);
  for (const std::string& content : contents)
    FUZZ_REQUIRE(std::ranges::find(arrived, content) != arrived.end());
  for (const std::string& waiting : outbox.Waiting()) FUZZ_REQUIRE(waiting != submission);
}

void TakeOver(Outbox& outbox, const std::string& area) {
  const auto count = [&] { return outbox.Waiting().size(); };
  const auto is_whole = [&] {
    std::error_code is_loop;
    return fs::is_directory(area + "/stage", is_loop) && fs::exists(area + "/stage.xml", is_loop);
  };
  const bool was_whole = is_whole();
  std::size_t before = 0;
  if (!Succeeds([&] { before = count(); })) return;
  if (Succeeds([&] { outbox.TakeOver("stage"); })) {
    FUZZ_REQUIRE(count() == before + 1);
  } else if (was_whole) {
    FUZZ_REQUIRE(is_whole());
  }
}

void Try(Input input) {
  Workshop& workshop = Workshop::Get();
  workshop.Clear();
  workshop.Put("C:\\outside\\secret", kSecret);
  const std::string area = workshop.Native("C:\\area");
  const std::string server = workshop.Native("C:\\server");
  fs::create_directory(server);
  for (int i = 0; i < 24 && !input.Rest().empty(); ++i) PutOne(area, input);
  Outbox outbox(area);
  outbox.Staged();
  Succeeds([&] { outbox.IsEmpty(); });
  TakeOver(outbox, area);
  Succeeds([&] { outbox.Recover(); });
  std::vector<std::string> waiting;
  Succeeds([&] { waiting = outbox.Waiting(); });
  for (const std::string& submission : waiting) {
    FUZZ_REQUIRE(!submission.ends_with(".new") && !submission.ends_with(".done"));
    DeliverOne(outbox, server, submission);
  }
  outbox.ClearDelivered();
  FUZZ_REQUIRE(workshop.Bytes("C:\\outside\\secret") == kSecret);
  for (const std::string& content : Arrived(server)) FUZZ_REQUIRE(content != kSecret);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
