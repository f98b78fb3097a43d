// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Test twins of the program's services: each records its calls and can be told what to answer or
// to fail. Files stay real (support/TestMachine.h).
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "state/AppState.h"
#include "state/F1Report.h"
#include "state/Services.h"
#include "support/TestMachine.h"

namespace logbook::test {

// Thrown where the process would end, so that a test sees the status.
struct ProcessEnded {
  int status;
};

class TestHost : public HostLink {
 public:
  std::string Request(const std::string& host_id, const std::string& topic,
                      const std::string& item) override;
  bool IsThere(const std::string&) override { return is_there; }
  void Close() override { closed = true; }

  bool is_there = true;
  std::map<std::string, std::string> replies;          // item to reply; others fail
  std::vector<std::string> requests;                   // "host|topic|item"
  std::function<void(const std::string&)> on_request;  // receives the item
  bool closed = false;
};

class TestCell : public HandshakeCell {
 public:
  std::string Text() const override {
    if (fails_on_read) throw RunTimeError(ErrorNumber::kInternalError);
    return text;
  }
  void SetText(const std::string& new_text) override {
    text = new_text;
    written.push_back(new_text);
    if (on_written) on_written(new_text);
  }
  bool IsReachable() const override { return reachable; }

  std::string text;
  std::vector<std::string> written;  // by the program
  std::function<void(const std::string&)> on_written;
  bool fails_on_read = false;
  bool reachable = true;
};

// Each delivery runs `on_deliver`. A wait that would never end fails the test.
class TestEvents : public EventDelivery {
 public:
  int Deliver() override;
  void BeginWork() override { ++works; }
  void EndWork() override { --works; }
  void Paint() override {
    if (works > 0) ++paints;
    if (on_paint) on_paint();
  }

  int works = 0;   // begun and not ended
  int paints = 0;  // inside of work
  std::function<void()> on_paint;
  std::function<void(int)> on_deliver;  // receives the number of the delivery, from 1
  int delivered = 0;
  int limit = 1000;
};

class TestMessages : public MessageBoxes {
 public:
  MessageAnswer Show(const Message& message) override;

  std::vector<Message> shown;
  std::deque<MessageAnswer> answers;  // next answers; OK, or No for a question, when empty
  std::function<void()> on_show;      // runs while the box is on show
};

class TestClock : public Clock {
 public:
  LocalTime Now() override {
    const LocalTime time = now;
    if (on_now) on_now();
    return time;
  }
  void Sleep(int milliseconds) override {
    sleeps.push_back(milliseconds);
    if (on_sleep) on_sleep();
  }
  LocalTime now{2026, 11, 15, 5, 9, 59};
  std::vector<int> sleeps;
  std::function<void()> on_now;  // after each reading
  std::function<void()> on_sleep;
};

class TestProcess : public Process {
 public:
  bool OtherInstanceRuns() override { return other_instance; }
  void Resign() override {
    if (on_resign) on_resign();
  }
  [[noreturn]] void End(int status) override { throw ProcessEnded{status}; }
  bool other_instance = false;
  std::function<void()> on_resign;
};

class TestEcm : public EcmClient {
 public:
  bool EcmEnabled(std::string&) override {
    calls.push_back("EcmEnabled");
    if (on_call) on_call();
    return enabled;
  }
  bool EcmSubmit(const std::string& folder, std::string& message) override;
  void EcmSetOwnerWindow(std::intptr_t window) override {
    calls.push_back("EcmSetOwnerWindow " + std::to_string(window));
  }
  void EcmReleaseOwnerWindow(std::intptr_t window) override {
    calls.push_back("EcmReleaseOwnerWindow " + std::to_string(window));
  }

  bool enabled = false;
  bool accepts = true;
  std::string refusal;
  std::vector<std::string> calls;
  std::function<void()> on_call;  // asked and submitted
};

class TestForms : public Forms {
 public:
  void UpdateMain() override {
    calls.push_back("UpdateMain");
    if (on_update) on_update();
  }
  Size SetMainSize(Size outer) override;
  std::intptr_t MainWindowHandle() override { return 4711; }
  void ShowLogEditor(const std::optional<std::string>& caption) override;
  void ShowLogView(const std::string& caption) override;
  void ShowLogViewAgain() override { calls.push_back("ShowLogViewAgain"); }
  void ShowChangeItem() override;
  bool ChangeItemVisible() override { return change_item_visible; }

  std::vector<std::string> calls;
  std::function<void()> on_update;
  std::function<void(const std::optional<std::string>&)> on_editor;
  std::function<void()> on_view;
  std::function<void()> on_change_item;
  Size frame{90, 405};  // what the frame takes from the outer size
  bool change_item_visible = false;
};

class TestWindows : public WindowSystem {
 public:
  void SetBand(std::intptr_t window, Band band) override;
  std::string ClassName(std::intptr_t window) override;
  std::intptr_t FindChild(std::intptr_t parent, const std::string& class_name) override;
  void SetParent(std::intptr_t window, std::intptr_t parent) override;
  PixelRect ClientRect(std::intptr_t window) override;
  PixelRect WorkArea() override { return work_area; }
  std::intptr_t DesktopWindow() override { return kDesktop; }
  PixelRect NormalPosition(std::intptr_t window) override { return positions[window]; }
  void SetNormalPosition(std::intptr_t window, const PixelRect& place) override {
    positions[window] = place;
  }

  static constexpr std::intptr_t kDesktop = 65552;
  std::vector<std::string> calls;
  std::map<std::intptr_t, std::string> class_names;
  std::map<std::pair<std::intptr_t, std::string>, std::intptr_t> children;
  std::map<std::intptr_t, PixelRect> client_rects;
  std::map<std::intptr_t, PixelRect> positions;
  PixelRect work_area{0, 0, 1920, 1080};
};

// A print service with an ordinary printer, until told otherwise. Keeps a copy of every sheet.
class TestPrint : public PrintService {
 public:
  std::int32_t exptGetDefaultPrinter(std::span<char> printer_name, std::span<char> driver_name,
                                     std::int32_t* error_code) override;
  std::int32_t exptSetAcrobatOutput(const std::string& program_file,
                                    const std::string& document_name,
                                    const std::string& output_folder, std::int32_t time_out,
                                    std::span<char> output_file, std::int32_t* error_code) override;
  void exptGetMessageFromErrorCode(std::int32_t error_code, std::int32_t reserved,
                                   std::span<char> message) override;
  void PrintSheet(const F1Book& sheet) override;

  std::string printer = "Office";
  std::string driver = "Office Laser";
  std::int32_t printer_error = 0;  // not 0: there is no default printer
  std::int32_t arming_error = 0;   // not 0: the PDF device cannot be armed
  std::string image;               // path that arming gives back
  std::optional<RunTimeError> print_error;
  std::function<void()> on_print;

  std::vector<std::string> calls;  // texts with their NULs as "|"
  std::vector<F1Book> sheets;
};

class TestHelp : public HelpEngine {
 public:
  void HtmlHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                std::uint32_t& data) override;
  void WinHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
               std::uint32_t data) override;

  static constexpr std::uint32_t kCookie = 815;
  std::vector<std::string> calls;  // "HtmlHelp window file command data"
};

class TestSaveDialog : public SaveDialog {
 public:
  std::optional<std::string> Show(const SaveRequest& request) override {
    requests.push_back(request);
    return answer;
  }

  std::vector<SaveRequest> requests;
  std::optional<std::string> answer;  // nothing: cancelled
};

// A workstation on drive C: of a temporary machine: host folders, state with its paths set, and
// the services.
class TestWorkstation {
 public:
  explicit TestWorkstation(int code_page = 1252);

  static constexpr const char* kExePath = "C:\\QUOREX\\qrxexe\\";
  static constexpr const char* kLogRoot = "C:\\QUOREX\\inst1\\maintain\\";

  // Path text of a file of a log.
  static std::string InLog(const std::string& log, const std::string& file) {
    return std::string(kLogRoot) + log + "\\" + file;
  }
  // Makes a log folder with a date and, if it is not empty, a comment of one line.
  void MakeLog(const std::string& name, const std::string& date, const std::string& comment = {});
  // Names of all entries of LogRoot, ascending.
  std::set<std::string> RootEntries() const;

  TestMachine disk;
  AppState state;
  TestHost host;
  TestCell cell;
  TestEvents events;
  TestMessages messages;
  TestClock clock;
  TestProcess process;
  TestEcm ecm;
  TestForms forms;
  TestWindows windows;
  TestPrint print;
  TestHelp help;
  TestSaveDialog save;
  Services services{host, cell,  events,  messages, clock, process,
                    ecm,  forms, windows, print,    help,  save};
};

}  // namespace logbook::test
