// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/TestMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "base/Utf8Path.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

// A new folder, nobody else's to look into.
std::string MakeTemporaryFolder() {
  std::random_device random;
  for (;;) {
    const fs::path folder =
        fs::temp_directory_path() / ("logbook-test-" + std::to_string(random()));
    if (!fs::create_directory(folder)) continue;
    fs::permissions(folder, fs::perms::owner_all);
    return folder.generic_string();
  }
}

}  // namespace

TestMachine::TestMachine(int code_page) {
  machine_.home = MakeTemporaryFolder();
  machine_.code_page = CodePage::Find(code_page);
  fs::create_directories(fs::path(machine_.home) / "drives" / "c");
}

TestMachine::~TestMachine() {
  std::error_code ignored;
  fs::remove_all(machine_.home, ignored);
}

std::string TestMachine::Native(std::string_view path) const {
  std::string text(path);
  std::replace(text.begin(), text.end(), '\\', '/');
  // The home itself may be named with a drive of the system.
  if (text.starts_with("C:") && !text.starts_with(home()))
    text = home() + "/drives/c" + text.substr(2);
  return text;
}

void TestMachine::Put(std::string_view path, std::string_view bytes) const {
  const fs::path native = Utf8Path(Native(path));
  fs::create_directories(native.parent_path());
  std::ofstream out(native, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) throw std::runtime_error("cannot write " + native.string());
}

std::string TestMachine::Get(std::string_view path) const {
  std::ifstream in(Utf8Path(Native(path)), std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "missing file " << path;
    return {};
  }
  return {std::istreambuf_iterator<char>(in), {}};
}

void TestMachine::MakeFolders(std::string_view path) const {
  fs::create_directories(Utf8Path(Native(path)));
}

bool TestMachine::Has(std::string_view path) const {
  return fs::exists(Utf8Path(Native(path)));
}

}  // namespace logbook::test
