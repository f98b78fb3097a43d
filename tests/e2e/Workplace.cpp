// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Workplace.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace logbook::e2e {

Workplace::Workplace(const DesktopKind& kind) : desktop_(kind) {
  RunHost({"init", "--seed", kSeed});
}

Environment Workplace::Variables() const {
  Environment variables = desktop_.Variables();
  variables["LOGBOOK_HOME"] = machine_.home();
  return variables;
}

void Workplace::RunHost(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), QUOREX_HOST_PROGRAM);
  const auto result = RunCommand(arguments, Variables(), desktop_.NewFile("host"));
  ASSERT_EQ(result.status, 0) << result.output;
}

ChildProcess& Workplace::StartHost(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {QUOREX_HOST_PROGRAM, "run", "--id", kHostId};
  command.insert(command.end(), arguments.begin(), arguments.end());
  host_ = std::make_unique<ChildProcess>(command, Variables(), desktop_.NewFile("host"));
  WaitFor("the host", [this] {
    if (!host_->Runs()) throw std::runtime_error("the host has ended: " + host_->Output());
    return host_->Output().find("waiting as") != std::string::npos;
  });
  return *host_;
}

ChildProcess& Workplace::StartHostWithLogbook(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"--start-logbook", LOGBOOK_PROGRAM};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return StartHost(all);
}

std::unique_ptr<ChildProcess> Workplace::StartLogbook(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {LOGBOOK_PROGRAM};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return std::make_unique<ChildProcess>(command, Variables(), desktop_.NewFile("logbook"));
}

void Workplace::PutPlainLogs(int count) {
  for (int i = 1; i <= count; ++i) {
    char day[3];
    std::snprintf(day, sizeof day, "%02d", i % 100);
    const std::string folder = kLogRoot + ("2601" + std::string(day)) + "00\\";
    machine_.Put(folder + "logfile.ini", "[LogFile]\r\nDate=01/" + std::string(day) +
                                             "/2026 08:30:00\r\n[OPTION]\r\nLENS=0\r\n");
    machine_.Put(folder + "comment.txt", "Log " + std::to_string(i) + "\r\n");
  }
}

std::vector<std::string> Workplace::Logs() const {
  std::vector<std::string> names;
  const fs::path root = machine_.Native(kLogRoot);
  if (!fs::exists(root)) return names;
  for (const auto& entry : fs::directory_iterator(root)) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::map<std::string, std::string> Workplace::FilesIn(const std::string& folder) const {
  std::map<std::string, std::string> files;
  const fs::path root = machine_.Native(folder);
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_directory()) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    files[fs::relative(entry.path(), root).string()] = {std::istreambuf_iterator<char>(in), {}};
  }
  return files;
}

void WholeProgram::SetUp() {
  const std::string missing = Desktop::Missing();
  if (!missing.empty()) GTEST_SKIP() << "this machine lacks " << missing;
  work_ = std::make_unique<Workplace>(Kind());
}

void WholeProgram::TearDown() {
  if (!work_ || !HasFailure()) return;
  const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name = test->test_suite_name() + std::string(".") + test->name();
  std::replace(name.begin(), name.end(), '/', '-');
  const std::string file = PictureFolder() + "/failed-" + name + ".png";
  desktop().TakePicture(file);
  std::printf("The screen at the failure: %s\n", file.c_str());
}

void ReadableProgram::SetUp() {
  WholeProgram::SetUp();
  if (!IsSkipped()) reader_ = std::make_unique<ScreenReader>(desktop());
}

void ReadableProgram::TearDown() {
  WholeProgram::TearDown();
  reader_.reset();
}

void ReadableProgram::ClickRow(const std::string& log, const std::string& key) {
  desktop().ClickScreen(Row(log).place.Middle(), key);
}

void ReadableProgram::WaitForButton(const std::string& caption, bool enabled) {
  WaitFor("the button \"" + caption + "\" to be " + (enabled ? "enabled" : "disabled"),
          [&] { return reader().WaitFor("push button", caption).enabled == enabled; });
}

std::string DayName(std::time_t time) {
  char text[16];
  std::strftime(text, sizeof text, "%y%m%d", std::localtime(&time));
  return text;
}

std::time_t TimeOfDate(const std::string& date) {
  std::tm time = {};
  time.tm_isdst = -1;
  if (std::sscanf(date.c_str(), "%2d/%2d/%4d %2d:%2d:%2d", &time.tm_mon, &time.tm_mday,
                  &time.tm_year, &time.tm_hour, &time.tm_min, &time.tm_sec) != 6)
    throw std::runtime_error("no date: " + date);
  time.tm_mon -= 1;
  time.tm_year -= 1900;
  return std::mktime(&time);
}

}  // namespace logbook::e2e
