// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system shows of the programs' files: version, names, icon.

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <vector>

#include "win32/Program.h"

namespace logbook::windows_test {
namespace {

constexpr const char* kPrograms[] = {"logbook", "logbookctl", "ecm-agent", "quorex-host"};

// The version resource of a file; empty if it has none.
std::vector<char> FactsOf(const std::string& file) {
  DWORD unused = 0;
  std::vector<char> facts(GetFileVersionInfoSizeA(file.c_str(), &unused));
  if (!facts.empty() &&
      !GetFileVersionInfoA(file.c_str(), 0, static_cast<DWORD>(facts.size()), facts.data()))
    facts.clear();
  return facts;
}

std::string Fact(const std::vector<char>& facts, const std::string& name) {
  void* text = nullptr;
  UINT size = 0;
  if (facts.empty() ||
      !VerQueryValueA(facts.data(), ("\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &size))
    return "none";
  return static_cast<const char*>(text);
}

std::string NumberedVersion(const std::vector<char>& facts) {
  void* data = nullptr;
  UINT size = 0;
  if (facts.empty() || !VerQueryValueA(facts.data(), "\\", &data, &size)) return "none";
  const auto* numbers = static_cast<const VS_FIXEDFILEINFO*>(data);
  EXPECT_EQ(numbers->dwFileVersionMS, numbers->dwProductVersionMS);
  EXPECT_EQ(numbers->dwFileVersionLS, numbers->dwProductVersionLS);
  EXPECT_EQ(LOWORD(numbers->dwFileVersionLS), 0);
  return std::to_string(HIWORD(numbers->dwFileVersionMS)) + "." +
         std::to_string(LOWORD(numbers->dwFileVersionMS)) + "." +
         std::to_string(HIWORD(numbers->dwFileVersionLS));
}

TEST(ProgramFactsTest, EachProgramTellsVersionProductAndWhatItIs) {
  std::set<std::string> descriptions;
  for (const char* program : kPrograms) {
    SCOPED_TRACE(program);
    const std::string name = std::string(program) + ".exe";
    const std::vector<char> facts = FactsOf(BesideThisProgram(name));
    EXPECT_EQ(NumberedVersion(facts), LOGBOOK_VERSION);
    EXPECT_EQ(Fact(facts, "FileVersion"), LOGBOOK_VERSION);
    EXPECT_EQ(Fact(facts, "ProductVersion"), LOGBOOK_VERSION);
    EXPECT_EQ(Fact(facts, "ProductName"), "Maintenance LogBook");
    EXPECT_EQ(Fact(facts, "OriginalFilename"), name);
    descriptions.insert(Fact(facts, "FileDescription"));
  }
  EXPECT_EQ(descriptions.size(), std::size(kPrograms));
  EXPECT_EQ(descriptions.count("none"), 0u);
}

// One picture of the icon as its folder in the file lists them.
#pragma pack(push, 2)
struct IconEntry {
  BYTE width, height, colours, reserved;
  WORD planes, bits;
  DWORD bytes;
  WORD id;
};
#pragma pack(pop)

// Widths of the pictures of an icon in a file, in their order; 256 is written as 0 there.
std::vector<int> IconWidths(const std::string& file, const char* icon) {
  std::vector<int> widths;
  const HMODULE module = LoadLibraryExA(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  const HRSRC found = FindResourceA(module, icon, MAKEINTRESOURCEA(14));  // a group of icons
  if (found != nullptr) {
    const auto* bytes = static_cast<const BYTE*>(LockResource(LoadResource(module, found)));
    const WORD count = reinterpret_cast<const WORD*>(bytes)[2];
    const auto* entries = reinterpret_cast<const IconEntry*>(bytes + 6);
    for (WORD i = 0; i < count; ++i)
      widths.push_back(entries[i].width == 0 ? 256 : entries[i].width);
  }
  FreeLibrary(module);
  return widths;
}

TEST(ProgramFactsTest, TheLogbookHasItsIconInEverySizeThatTheSystemAsksFor) {
  EXPECT_EQ(IconWidths(BesideThisProgram("logbook.exe"), "IDI_ICON1"),
            (std::vector<int>{16, 24, 32, 48, 64, 256}));
}

}  // namespace
}  // namespace logbook::windows_test
