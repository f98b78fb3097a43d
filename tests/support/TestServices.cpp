// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/TestServices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace logbook::test {

std::string TestHost::Request(const std::string& host_id, const std::string& topic,
                              const std::string& item) {
  requests.push_back(host_id + "|" + topic + "|" + item);
  if (on_request) on_request(item);
  const auto reply = replies.find(item);
  if (reply == replies.end()) throw RunTimeError(ErrorNumber::kInternalError);
  return reply->second;
}

int TestEvents::Deliver() {
  ++delivered;
  if (on_deliver) on_deliver(delivered);
  if (delivered >= limit) {
    ADD_FAILURE() << "a wait did not end after " << limit << " deliveries";
    throw ProcessEnded{-1};
  }
  return 1;
}

MessageAnswer TestMessages::Show(const Message& message) {
  shown.push_back(message);
  if (on_show) on_show();
  if (answers.empty())
    return message.Buttons == MessageButtons::kYesNo ? MessageAnswer::kNo : MessageAnswer::kOk;
  const MessageAnswer answer = answers.front();
  answers.pop_front();
  return answer;
}

bool TestEcm::EcmSubmit(const std::string& folder, std::string& message) {
  calls.push_back("EcmSubmit " + folder);
  if (on_call) on_call();
  if (!accepts) message = refusal;
  return accepts;
}

Size TestForms::SetMainSize(Size outer) {
  calls.push_back("SetMainSize");
  return {outer.Width - frame.Width, outer.Height - frame.Height};
}

void TestForms::ShowLogEditor(const std::optional<std::string>& caption) {
  calls.push_back("ShowLogEditor " + caption.value_or("(no caption)"));
  if (on_editor) on_editor(caption);
}

void TestForms::ShowLogView(const std::string& caption) {
  calls.push_back("ShowLogView " + caption);
  if (on_view) on_view();
}

void TestForms::ShowChangeItem() {
  calls.push_back("ShowChangeItem");
  if (on_change_item) on_change_item();
}

void TestWindows::SetBand(std::intptr_t window, Band band) {
  calls.push_back("SetBand " + std::to_string(window) +
                  (band == Band::kTopmost ? " topmost" : " normal"));
}

std::string TestWindows::ClassName(std::intptr_t window) {
  calls.push_back("ClassName " + std::to_string(window));
  return class_names[window];
}

std::intptr_t TestWindows::FindChild(std::intptr_t parent, const std::string& class_name) {
  return children[{parent, class_name}];
}

void TestWindows::SetParent(std::intptr_t window, std::intptr_t parent) {
  calls.push_back("SetParent " + std::to_string(window) + " " + std::to_string(parent));
}

PixelRect TestWindows::ClientRect(std::intptr_t window) {
  return client_rects[window];
}

namespace {

void Fill(std::span<char> buffer, const std::string& text) {
  std::copy_n(text.begin(), std::min(text.size(), buffer.size()), buffer.begin());
}

// NULs seen.
std::string Seen(std::string text) {
  std::replace(text.begin(), text.end(), '\0', '|');
  return text;
}

}  // namespace

std::int32_t TestPrint::exptGetDefaultPrinter(std::span<char> printer_name,
                                              std::span<char> driver_name,
                                              std::int32_t* error_code) {
  calls.push_back("exptGetDefaultPrinter " + std::to_string(printer_name.size()) + " " +
                  std::to_string(driver_name.size()));
  *error_code = printer_error;
  if (printer_error != 0) return 0;
  Fill(printer_name, printer);
  Fill(driver_name, driver);
  return 1;
}

std::int32_t TestPrint::exptSetAcrobatOutput(const std::string& program_file,
                                             const std::string& document_name,
                                             const std::string& output_folder,
                                             std::int32_t time_out, std::span<char> output_file,
                                             std::int32_t* error_code) {
  calls.push_back("exptSetAcrobatOutput " + Seen(program_file) + " " + Seen(document_name) + " " +
                  Seen(output_folder) + " " + std::to_string(time_out));
  *error_code = arming_error;
  if (arming_error != 0) return 0;
  Fill(output_file, image);
  return 1;
}

void TestPrint::exptGetMessageFromErrorCode(std::int32_t error_code, std::int32_t reserved,
                                            std::span<char> message) {
  calls.push_back("exptGetMessageFromErrorCode " + std::to_string(error_code) + " " +
                  std::to_string(reserved));
  Fill(message, "message " + std::to_string(error_code));
}

void TestPrint::PrintSheet(const F1Book& sheet) {
  calls.push_back("PrintSheet");
  if (print_error) throw *print_error;
  sheets.push_back(sheet);
  if (on_print) on_print();
}

void TestHelp::HtmlHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                        std::uint32_t& data) {
  constexpr std::uint32_t kInitialize = 28;
  if (command == kInitialize) data = kCookie;
  calls.push_back("HtmlHelp " + std::to_string(window) + " " + file + " " +
                  std::to_string(command) + " " + std::to_string(data));
}

void TestHelp::WinHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                       std::uint32_t data) {
  calls.push_back("WinHelp " + std::to_string(window) + " " + file + " " + std::to_string(command) +
                  " " + std::to_string(data));
}

TestWorkstation::TestWorkstation(int code_page) : disk(code_page), state(disk.machine()) {
  state.HostId = "HOST";
  state.ExePath = kExePath;
  state.IniFile = std::string(kExePath) + "logbook.ini";
  state.LogRoot = kLogRoot;
  disk.MakeFolders(kExePath);
  disk.MakeFolders(kLogRoot);
  host.replies = {{"_exepath$", kExePath},
                  {"_instpath$", "C:\\QUOREX\\inst1\\"},
                  {"_helppath$", "C:\\QUOREX\\help\\"},
                  {"_helpfile$", "quorex.chm"}};
}

void TestWorkstation::MakeLog(const std::string& name, const std::string& date,
                              const std::string& comment) {
  disk.Put(InLog(name, "logfile.ini"), "[LogFile]\r\nDate=" + date + "\r\n");
  if (!comment.empty()) disk.Put(InLog(name, "comment.txt"), comment + "\r\n");
}

std::set<std::string> TestWorkstation::RootEntries() const {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(disk.Native(kLogRoot)))
    names.insert(entry.path().filename().string());
  return names;
}

}  // namespace logbook::test
