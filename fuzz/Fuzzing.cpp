// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Fuzzing.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace logbook::fuzz {

void Fail(const char* invariant, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, invariant);
  std::abort();
}

std::uint8_t Input::Byte() {
  if (rest_.empty()) return 0;
  const char byte = rest_.front();
  rest_.remove_prefix(1);
  return static_cast<std::uint8_t>(byte);
}

int Input::Number(int limit) {
  return Byte() % limit;
}

std::string Input::Text() {
  const std::size_t end = std::min(rest_.find('\0'), rest_.size());
  std::string text(rest_.substr(0, end));
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return text;
}

const CodePage& AnyPage(Input& input) {
  constexpr std::array kPages = {1252, 932, 936, 949, 950, 1250, 1251};
  return *CodePage::Find(kPages[static_cast<std::size_t>(input.Number(kPages.size()))]);
}

Workshop& Workshop::Get() {
  static Workshop workshop;
  return workshop;
}

Workshop::Workshop() {
  const bool has_memory_disk = fs::is_directory("/dev/shm");
  std::string pattern =
      (has_memory_disk ? std::string("/dev/shm") : fs::temp_directory_path().string()) +
      "/logbook-fuzz-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  machine_.home = pattern;
  fs::create_directories(pattern + "/drives/c");
}

Workshop::~Workshop() {
  std::error_code ignored;
  fs::remove_all(machine_.home, ignored);
}

std::string Workshop::Native(std::string_view path) const {
  std::string native(path.substr(2));
  std::replace(native.begin(), native.end(), '\\', '/');
  return machine_.home + "/drives/c" + native;
}

void Workshop::Put(std::string_view path, std::string_view bytes) const {
  const fs::path native = Native(path);
  fs::create_directories(native.parent_path());
  std::ofstream(native, std::ios::binary | std::ios::trunc)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string Workshop::Bytes(std::string_view path) const {
  std::ifstream in(Native(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void Workshop::Clear() const {
  for (const fs::directory_entry& entry : fs::directory_iterator(machine_.home + "/drives/c"))
    fs::remove_all(entry.path());
}

}  // namespace logbook::fuzz
