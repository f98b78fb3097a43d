// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "win32/LogbookAtHost.h"

#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

constexpr char kMainTitle[] = "Maintenance LogBook";
constexpr char kKey[] =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion]";

}  // namespace

LogbookAtHost::LogbookAtHost() {
  SetProcessDPIAware();  // places are counted in the pixels of the screen
  disk.MakeFolders("C:\\QUOREX\\qrxexe");
  disk.MakeFolders("C:\\QUOREX\\inst1");
  SetEnvironmentVariableA("LOGBOOK_HOME", disk.home().c_str());
}

std::map<std::string, std::string> LogbookAtHost::Items() {
  return {{"_exepath$", "C:\\QUOREX\\qrxexe\\"},
          {"_instpath$", "C:\\QUOREX\\inst1\\"},
          {"_helppath$", "C:\\QUOREX\\help\\"},
          {"_helpfile$", "quorex.chm"}};
}

std::string LogbookAtHost::FolderOfJob() const {
  const std::string settings = disk.Get(kSettings);
  const std::string key = "LogFileName=";
  const std::size_t begin = settings.find(key) + key.size();
  return settings.substr(begin, settings.find("\r\n", begin) - begin);
}

void LogbookAtHost::WriteSnapshot(const std::string& folder) const {
  for (const auto& entry : fs::directory_iterator(fs::path(TEST_DATA_DIR) / "snapshots/plain"))
    fs::copy(entry.path(), fs::path(disk.Native(folder)) / entry.path().filename(),
             fs::copy_options::overwrite_existing);
}

std::vector<std::string> LogbookAtHost::Logs() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(disk.Native(kLogRoot)))
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  return names;
}

void LogbookAtHost::AddLog(const std::string& name) const {
  disk.MakeFolders(kLogRoot + name);
  WriteSnapshot(kLogRoot + name);
  disk.Put(kLogRoot + name + "\\comment.txt", "Cones changed.\r\n");
}

void LogbookAtHost::AddRegistryValue(const std::string& name,
                                     const std::string& escaped_text) const {
  const std::string file = disk.home() + "/machine.reg";
  const std::string before = fs::exists(file) ? disk.Get(file) : "REGEDIT4\r\n";
  disk.Put(file, before + "\r\n" + kKey + "\r\n\"" + name + "\"=\"" + escaped_text + "\"\r\n");
}

void LogbookAtHost::Start(const std::string& arguments, const std::string& program) {
  host_.emplace("HOST", Items());
  logbook_.emplace(program, arguments);
  WaitFor("the last request", [&] { return host_->HasToldAll(); });
  WaitFor("the cell", [&] { return host_->FollowCell(); });
  main_ = WaitForWindow(kMainTitle);
}

HWND LogbookAtHost::WaitForWindow(const std::string& title) {
  const auto has_title = [&](const std::string& shown) {
    return title.empty() ? shown != kMainTitle : shown == title;
  };
  HWND found = nullptr;
  WaitFor("the window " + title, [&] {
    found = FindWindowOf(*logbook_, has_title);
    return found != nullptr;
  });
  return found;
}

HWND LogbookAtHost::View() {
  Click(main_, kFirstRow);
  Click(main_, kViewLog);
  return WaitForWindow("");
}

void LogbookAtHost::Exit() {
  Click(main_, kExit);
  const bool ended = host_->RunUntil([&] { return !logbook_->Runs(); },
                                     [&](const std::string& text) {
                                       if (text == "9") host_->WriteCell("0");
                                     });
  ASSERT_TRUE(ended) << "it does not end";
  EXPECT_EQ(logbook_->Status(), 0u);
}

void LogbookAtHost::WaitFor(const std::string& what, const std::function<bool()>& condition) {
  if (!host_->RunUntil(condition)) throw std::runtime_error("waited in vain for " + what);
}

}  // namespace logbook::windows_test
