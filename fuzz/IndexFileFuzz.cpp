// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The file of an index, and what may lie beside it, damaged anywhere: the next use answers as an
// index that is made from nothing, so does the one behind it, and the logs stay as they are.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "AllCatalogues.h"
#include "Fuzzing.h"
#include "RandomLogs.h"
#include "insight/LogIndex.h"

namespace fs = std::filesystem;

namespace logbook::fuzz {
namespace {

using namespace insight;
using test::AllCatalogues;
using test::RandomLogs;

constexpr std::array kQueries = {"", "cones OR cleaned", "state:na", "meter:0>0 auto:no"};
constexpr std::array kBeside = {"-wal", "-shm", "-journal", "-looked"};

std::string BytesOf(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void Put(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// What a use of the index tells.
using Answer = std::vector<std::string>;

class Shelf {
 public:
  Shelf() : cache_(logs_.disk().home() + "/cache") {
    logs_.Add(3);
    logs_.AddDamaged(3);
    // Logs that changed a moment ago are read at each use.
    do {
      read_ = 0;
      expected_ = Use();
    } while (read_ > 0);
    for (const auto& entry : fs::directory_iterator(cache_)) {
      if (entry.path().extension() == ".db") name_ = entry.path().filename().string();
    }
    bytes_ = BytesOf(cache_ + "/" + name_);
    for (const auto& entry : fs::recursive_directory_iterator(logs_.NativeRoot())) {
      if (entry.is_regular_file()) before_[entry.path().string()] = BytesOf(entry.path());
    }
  }

  const std::string& Bytes() const { return bytes_; }

  // The cache holds nothing else.
  void Fill(const std::string& bytes) const {
    fs::remove_all(cache_);
    fs::create_directory(cache_);
    Put(cache_ + "/" + name_, bytes);
  }
  void PutBeside(const std::string& part, const std::string& bytes) const {
    Put(cache_ + "/" + name_ + part, bytes);
  }

  void ExpectRight() {
    for (const char* use : {"the next use", "the one behind it"}) {
      const Answer answer = Use();
      if (answer == expected_) continue;
      Show(use, answer);
      FUZZ_REQUIRE(answer == expected_);
    }
    for (const auto& [path, bytes] : before_) FUZZ_REQUIRE(BytesOf(path) == bytes);
  }

 private:
  Answer Use() {
    IndexSettings settings;
    settings.Folder = cache_;
    settings.Progress = [this](const UpdateProgress& progress) {
      if (progress.Where == UpdateProgress::Step::kReading) read_ = progress.Done;
    };
    LogIndex index(*logs_.machine().code_page, AllCatalogues(), logs_.NativeRoot(), settings);
    Answer answer;
    for (const char* text : kQueries) {
      FindRequest request;
      request.What = ParseQuery(AllCatalogues(), text);
      request.Columns = {
          {{Catalogue::kMeter, 0}}, {{Catalogue::kSys, 83}}, {{Catalogue::kTune, 9}}};
      const FindResult result = index.Find(request);
      answer.push_back(std::to_string(result.Count));
      for (const FoundLog& log : result.Logs) Tell(log, answer);
    }
    return answer;
  }

  // What differs, for whoever reads what a run has found.
  void Show(const char* use, const Answer& answer) const {
    for (std::size_t i = 0; i < std::max(answer.size(), expected_.size()); ++i) {
      const std::string wanted = i < expected_.size() ? expected_[i] : "nothing";
      const std::string found = i < answer.size() ? answer[i] : "nothing";
      if (wanted != found)
        std::fprintf(stderr, "%s: %s instead of %s\n", use, found.c_str(), wanted.c_str());
    }
  }

  static void Tell(const FoundLog& log, Answer& answer) {
    answer.push_back(log.Folder + log.Record.Date + log.Record.Comment +
                     std::to_string(log.Record.Fingerprint));
    for (std::size_t i = 0; i < log.Values.size(); ++i)
      answer.push_back(PrintedText(AllCatalogues(), log.ValueRows[i], log.Values[i]));
  }

  RandomLogs logs_{9};
  std::string cache_;
  std::string name_;
  std::string bytes_;
  std::size_t read_ = 0;
  Answer expected_;
  std::map<std::string, std::string> before_;
};

// Damage at some places: some bytes again and again in place of those that were there, or the end
// of the file.
std::string Damaged(std::string bytes, Input& input) {
  const int count = input.Number(8);
  for (int i = 0; i < count && !bytes.empty(); ++i) {
    // Mostly on the first pages, where the file tells of itself.
    const bool is_far = input.Number(2) == 1;
    const std::size_t place = (input.Byte() * std::size_t{256} + input.Byte()) * (is_far ? 61 : 1);
    const std::size_t at = place % bytes.size();
    const std::size_t size = std::min(input.Byte() * std::size_t{64} + 1, bytes.size() - at);
    const std::string other = input.Text();
    if (other.empty()) {
      bytes.resize(at);
    } else {
      for (std::size_t k = 0; k < size; ++k) bytes[at + k] = other[k % other.size()];
    }
  }
  return bytes;
}

void Try(Input input) {
  static Shelf shelf;
  const bool is_whole = input.Number(4) == 3;
  shelf.Fill(is_whole ? input.Text() : Damaged(shelf.Bytes(), input));
  if (!input.Rest().empty()) {
    const char* part = kBeside.at(static_cast<std::size_t>(input.Number(kBeside.size())));
    shelf.PutBeside(part, std::string(input.Rest()));
  }
  shelf.ExpectRight();
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
