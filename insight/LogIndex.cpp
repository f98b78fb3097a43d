// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LogIndex.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "base/Environment.h"
#include "base/RunTimeError.h"
#include "base/Utf8Path.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;

constexpr int kMostAttempts = 4;
constexpr std::string_view kSuffix = ".db";
constexpr std::string_view kMarkSuffix = "-looked";

std::string Hexadecimal(std::uint64_t number) {
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(number));
  return digits.data();
}

std::uint64_t LongChecksum(const std::string& text) {
  return static_cast<std::uint64_t>(ChecksumOf(text)) << 32 | ChecksumOf(text + "\n");
}

// What the catalogues say; an index made from others is of no use.
std::string CatalogueDigest(const Catalogues& catalogues) {
  std::string text;
  for (int place = 0; place < kAllRows; ++place) {
    const RowInfo info = DescribeRow(catalogues, RowAtPlace(place));
    text += info.Label + "\n" + info.Unit + "\n" + info.Format + "\n" + info.Section + "\n";
  }
  return Hexadecimal(LongChecksum(text));
}

// A path with no link in it, as far as it exists.
std::string Canonical(const std::string& path) {
  std::error_code failure;
  const fs::path canonical = fs::weakly_canonical(Utf8Path(path), failure);
  return failure ? path : canonical.generic_string();
}

bool LiesIn(const std::string& folder, const std::string& path) {
  return path == folder || path.starts_with(folder == "/" ? folder : folder + "/");
}

// The files of an index are NAME.1.db, NAME.2.db and so on; the one with the highest number is in
// use. A damaged one is left behind rather than replaced, as another program may have it open.
int NumberOfFile(const std::string& file_name, const std::string& index_name) {
  if (!file_name.starts_with(index_name + ".") || !file_name.ends_with(kSuffix)) return 0;
  const std::size_t begin = index_name.size() + 1;
  const char* const end = file_name.data() + file_name.size() - kSuffix.size();
  int number = 0;
  const auto [stop, error] = std::from_chars(file_name.data() + begin, end, number);
  return error == std::errc() && stop == end ? number : 0;
}

int HighestNumber(const std::string& folder, const std::string& index_name) {
  int highest = 0;
  std::error_code failure;
  for (const auto& entry : fs::directory_iterator(Utf8Path(folder), failure)) {
    highest = std::max(highest, NumberOfFile(entry.path().filename().string(), index_name));
  }
  return highest;
}

// When a file was last written, in local time; nothing if it is not there.
std::optional<std::string> TimeOf(const std::string& path) {
  std::error_code failure;
  const fs::file_time_type written = fs::last_write_time(Utf8Path(path), failure);
  if (failure) return std::nullopt;
  const auto since = fs::file_time_type::clock::now() - written;
  const std::time_t time =
      std::time(nullptr) - std::chrono::duration_cast<std::chrono::seconds>(since).count();
  const std::tm* const local = std::localtime(&time);
  std::array<char, 32> text{};
  if (local == nullptr) return std::nullopt;
  return std::string(text.data(),
                     std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", local));
}

void MakeFolder(const std::string& folder) {
  std::error_code failure;
  if (!fs::create_directories(Utf8Path(folder), failure)) return;
  // Comments are nobody else's business.
  fs::permissions(Utf8Path(folder), fs::perms::owner_all, failure);
}

}  // namespace

std::string DefaultIndexFolder() {
  const std::string cache = UserCacheFolder();
  return cache.empty() ? cache : cache + "/quorex-logbook/insight";
}

LogIndex::LogIndex(const CodePage& code_page, const Catalogues& catalogues,
                   const std::string& native_root, IndexSettings settings)
    : code_page_(code_page),
      catalogues_(catalogues),
      root_(Canonical(native_root)),
      settings_(std::move(settings)) {
  const std::string folder = Canonical(settings_.Folder);
  const auto holds = [&](const std::string& root) { return LiesIn(Canonical(root), folder); };
  in_memory_ = settings_.Folder.empty() || LiesIn(root_, folder) ||
               std::any_of(settings_.GuardedRoots.begin(), settings_.GuardedRoots.end(), holds);
  if (!in_memory_) return;
  settings_.Warn(settings_.Folder.empty()
                     ? "the environment names no folder for the cache, so no index is kept"
                     : "the cache lies among the logs, so no index is kept");
}

LogIndex::~LogIndex() = default;

FindResult LogIndex::Find(const FindRequest& request) {
  for (int attempt = 1;; ++attempt) {
    try {
      Prepare();
      return FindInIndex(*store_, catalogues_, request);
    } catch (const IndexError& error) {
      store_.reset();
      if (attempt == kMostAttempts) throw;
      Recover(error);
    }
  }
}

void LogIndex::Prepare() {
  if (store_ != nullptr) return;
  if (walk_ == nullptr) walk_ = std::make_unique<LogRootWalk>(root_);
  Open();
  if (settings_.Look == IndexLook::kAtFolders && IsMostlyWaste(*store_)) {
    Retire();
    Open();
  }
  // An index that holds nothing may have been thrown away since.
  const bool is_there = !in_memory_ && store_->NextId() > 0;
  as_of_ = settings_.Look == IndexLook::kNone && is_there ? TimeOf(MarkFile()) : std::nullopt;
  if (as_of_) return;
  UpdateIndex(*store_, code_page_, catalogues_, *walk_, settings_.Progress);
  if (!in_memory_) MarkLook();
}

std::string LogIndex::MarkFile() const {
  return file_ + std::string(kMarkSuffix);
}

// Where it cannot be written, the next use looks again.
void LogIndex::MarkLook() const {
  std::error_code failure;
  const fs::path mark = Utf8Path(MarkFile());
  if (!fs::exists(mark, failure)) std::ofstream(mark).flush();
  fs::last_write_time(mark, fs::file_time_type::clock::now(), failure);
}

void LogIndex::Open() {
  const std::string page = std::to_string(code_page_.Number());
  if (!in_memory_ && file_.empty()) {
    MakeFolder(settings_.Folder);
    const std::string name = Hexadecimal(LongChecksum(root_)) + "-" + page;
    const int number = std::max(1, HighestNumber(settings_.Folder, name));
    file_ = settings_.Folder + "/" + name + "." + std::to_string(number) + std::string(kSuffix);
  }
  const std::string contents = root_ + "\n" + std::to_string(walk_->Identity()) + "\n" + page +
                               "\n" + CatalogueDigest(catalogues_);
  store_ = std::make_unique<IndexStore>(file_, contents);
}

void LogIndex::Retire() {
  store_.reset();
  if (in_memory_) return;
  const fs::path old = Utf8Path(file_);
  const std::string stem = old.stem().string();  // NAME.NUMBER
  const std::string name = stem.substr(0, stem.rfind('.'));
  const int number = NumberOfFile(old.filename().string(), name);
  file_ = settings_.Folder + "/" + name + "." + std::to_string(number + 1) + std::string(kSuffix);
  std::error_code ignored;
  for (int each = 1; each <= number; ++each) {
    const std::string path =
        settings_.Folder + "/" + name + "." + std::to_string(each) + std::string(kSuffix);
    for (const std::string_view part : {"", "-wal", "-shm", "-journal", kMarkSuffix.data()}) {
      fs::remove(Utf8Path(path + std::string(part)), ignored);
    }
  }
}

void LogIndex::Recover(const IndexError& error) {
  if (error.What() == IndexError::Kind::kDamaged) {
    Retire();
    return;
  }
  if (in_memory_) throw IndexError(error);
  settings_.Warn(std::string(error.what()) + "; an index in memory is used instead");
  in_memory_ = true;
  file_.clear();
}

}  // namespace logbook::insight
