// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Additions to archives of any content: a failed one leaves the archive byte for byte as it was, a
// successful one holds what was added and what could be read before.

#include <zip.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "Fuzzing.h"
#include "ZipInput.h"
#include "archive/Archive.h"
#include "archive/ZipAddition.h"

namespace fs = std::filesystem;

namespace logbook::fuzz {
namespace {

constexpr const char* kZip = "C:\\out.zip";
constexpr zip_uint64_t kMost = 1 << 20;  // of an entry that claims more nothing is read

using Contents = std::map<std::string, std::string>;  // by raw names

std::optional<std::string> ReadEntry(zip_t* archive, zip_uint64_t index) {
  zip_stat_t status;
  const zip_uint64_t wanted = ZIP_STAT_SIZE;
  if (zip_stat_index(archive, index, 0, &status) != 0 || (status.valid & wanted) == 0 ||
      status.size > kMost)
    return std::nullopt;
  const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(zip_fopen_index(archive, index, 0),
                                                               zip_fclose);
  if (file == nullptr) return std::nullopt;
  std::string bytes(kMost + 1, '\0');
  zip_int64_t done = 0;
  for (;;) {
    const zip_int64_t count =
        zip_fread(file.get(), bytes.data() + done, bytes.size() - static_cast<zip_uint64_t>(done));
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    done += count;
  }
  bytes.resize(static_cast<std::size_t>(done));
  return bytes;
}

// What the zip library reads; nothing if it takes the file for no archive. Names that several
// entries bear are left out.
std::optional<Contents> Read(const std::string& native) {
  int error = 0;
  const std::unique_ptr<zip_t, void (*)(zip_t*)> archive(
      zip_open(native.c_str(), ZIP_RDONLY, &error), zip_discard);
  if (archive == nullptr) return std::nullopt;
  Contents contents;
  std::set<std::string> seen;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive.get(), 0); ++i) {
    const auto index = static_cast<zip_uint64_t>(i);
    const char* name = zip_get_name(archive.get(), index, ZIP_FL_ENC_RAW);
    if (name == nullptr) continue;
    const auto content = ReadEntry(archive.get(), index);
    if (!seen.insert(name).second) {
      contents.erase(name);
    } else if (content) {
      contents[name] = *content;
    }
  }
  return contents;
}

// Puts the files into the folder; what the archive is to hold of them, by their names in it.
std::multimap<std::string, std::string> PutFolder(Workshop& workshop, const ZipInput& input) {
  std::multimap<std::string, std::string> expected;
  fs::create_directories(workshop.Native("C:\\log\\"));
  for (auto [name, content] : input.files) {
    std::erase(name, '/');
    if (name.empty() || name == "." || name == ".." || name.size() > 100) continue;
    const std::string native = workshop.Native("C:\\log\\") + name;
    if (fs::exists(native)) continue;
    workshop.Put("C:\\put", content);
    fs::rename(workshop.Native("C:\\put"), native);
    expected.emplace("log/" + NameInZip(workshop.machine(), name), content);
  }
  return expected;
}

// The file, or one of the ends that set apart what are two names on the disk and one in a zip.
bool Holds(const Contents& contents, const std::string& name, const std::string& content) {
  for (const char* end : {"", "~", "~~", "~~~"}) {
    const auto found = contents.find(name + end);
    if (found != contents.end() && found->second == content) return true;
  }
  return false;
}

void Try(Input bytes) {
  const ZipInput input = ZipInput::From(bytes);
  Workshop& workshop = Workshop::Get();
  workshop.Clear();
  workshop.SetPage(*CodePage::Find(1252));
  const std::string native = workshop.Native(kZip);
  const bool is_there = !input.archive.empty();
  const bool adds = (input.options & 1) != 0;
  if (is_there) workshop.Put(kZip, input.archive);
  const auto added = PutFolder(workshop, input);
  const auto before = is_there && adds ? Read(native) : std::nullopt;

  std::string result(kZipResultBuffer, '\0');
  const std::int16_t code =
      arZip(workshop.machine(), 0, kZip, "C:\\log", adds ? "-a -r" : "-r", result);
  FUZZ_REQUIRE(result.size() == kZipResultBuffer);
  for (const auto& entry : fs::directory_iterator(workshop.Native("C:\\")))
    FUZZ_REQUIRE(!entry.path().filename().string().starts_with('.'));
  if (code != 0) {
    FUZZ_REQUIRE(fs::exists(native) == is_there);
    FUZZ_REQUIRE(workshop.Bytes(kZip) == input.archive);
    return;
  }
  const auto after = Read(native);
  FUZZ_REQUIRE(after.has_value());
  for (const auto& [name, content] : added) FUZZ_REQUIRE(Holds(*after, name, content));
  if (!before) return;
  for (const auto& [name, content] : *before)
    FUZZ_REQUIRE(name.starts_with("log") || after->at(name) == content);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
