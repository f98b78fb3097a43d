// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What differs between a desktop and a test: the partners and surroundings of the program, each an
// interface of few functions, gathered in one struct that is handed beside the state. Files,
// profiles and the code page are not here: they are the real thing everywhere.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "state/Control.h"

namespace logbook {

struct AppState;
class F1Book;

// Requests of named text items from the host control panel (docs/host-link.md).
class HostLink {
 public:
  virtual ~HostLink() = default;
  // Sends one request to the application `host_id` on the topic and returns the reply. Waits 5 s
  // at most. Raises RunTimeError if there is no host, no such item or no answer in time.
  virtual std::string Request(const std::string& host_id, const std::string& topic,
                              const std::string& item) = 0;
  // True if a host of this id runs, whether it answers or not. Raises nothing.
  virtual bool IsThere(const std::string& host_id) = 0;
  // Closes the link. Raises nothing.
  virtual void Close() = 0;
};

// The handshake cell DDELabel, a text that both sides read and write (docs/host-link.md).
class HandshakeCell {
 public:
  virtual ~HandshakeCell() = default;
  // The text; empty at start.
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // True while another process can read and write the text; never before this process is the
  // running logbook.
  virtual bool IsReachable() const = 0;
};

// Delivery of pending window and bus events from inside a wait, and what the windows show while
// long work keeps the events waiting.
class EventDelivery {
 public:
  virtual ~EventDelivery() = default;
  // Delivers what is pending. If nothing is, sleeps until an event comes, for a short while at
  // most. Returns for how many polls of a tight loop this stands, at least 1.
  virtual int Deliver() = 0;

  // Long work begins and ends: between the two the pointer tells the user to wait. May nest.
  virtual void BeginWork() = 0;
  virtual void EndWork() = 0;
  // Has the windows paint themselves, if a moment has passed since they last did. Delivers nothing:
  // what the user and the bus send waits until the work is over. To be called between files.
  virtual void Paint() = 0;
};

// A piece of long work, from here to the end of the block.
class LongWork {
 public:
  explicit LongWork(EventDelivery& events) : events_(events) { events_.BeginWork(); }
  ~LongWork() { events_.EndWork(); }
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

 private:
  EventDelivery& events_;
};

enum class MessageIcon { kNone, kCritical, kExclamation, kInformation };
enum class MessageButtons { kOk, kYesNo };
enum class MessageAnswer { kOk, kYes, kNo };

struct Message {
  std::string Text;  // UTF-8; a carriage return, with or without line feed, breaks the line
  MessageIcon Icon = MessageIcon::kExclamation;
  MessageButtons Buttons = MessageButtons::kOk;
  std::optional<std::string> Title;  // nothing: the program's default title, string 112
};

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  // Shows the box modally and returns the answer. Closing a Yes/No box counts as No.
  virtual MessageAnswer Show(const Message& message) = 0;
};

// What the dialog asks before a file is saved.
struct SaveRequest {
  std::string Title;
  std::string DefaultExtension;  // ".zip"; added to a name without extension
  std::string Filter;            // pairs of description and pattern, separated by "|"
  std::string InitialFolder;     // path text; one that does not exist stands for the toolkit's own
  std::string FileName;
  bool OverwritePrompt = true;   // asks before it returns the name of a file that exists
  bool PathMustExist = true;     // takes no name in a folder that does not exist
  bool NoReadOnlyReturn = true;  // takes no read-only file, and no name in a folder to read only
};

class SaveDialog {
 public:
  virtual ~SaveDialog() = default;
  // Shows the dialog modally. The chosen file as a path text, or nothing if it was cancelled.
  virtual std::optional<std::string> Show(const SaveRequest& request) = 0;
};

struct LocalTime {
  int Year = 2000, Month = 1, Day = 1, Hour = 0, Minute = 0, Second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() = 0;
  // Waits; nothing is delivered meanwhile.
  virtual void Sleep(int milliseconds) = 0;
};

// The process as such.
class Process {
 public:
  virtual ~Process() = default;
  // True if another process is the running logbook. Claims that place otherwise.
  virtual bool OtherInstanceRuns() = 0;
  // Gives that place back. Raises nothing.
  virtual void Resign() = 0;
  // Ends the process at once with this exit status; windows get no further events.
  [[noreturn]] virtual void End(int status) = 0;
};

// The content-server client of the workstation.
class EcmClient {
 public:
  virtual ~EcmClient() = default;
  // True if content-server integration is on for this workstation.
  virtual bool EcmEnabled(std::string& message) = 0;
  // Hands a staging folder over. On false the message says why.
  virtual bool EcmSubmit(const std::string& staging_folder, std::string& message) = 0;
  virtual void EcmSetOwnerWindow(std::intptr_t window) = 0;
  virtual void EcmReleaseOwnerWindow(std::intptr_t window) = 0;
};

// The print service of the workstation. Texts are UTF-8. What it writes into a buffer ends in a NUL
// and is cut to fit; texts given to it may end in one. The time-out and the program file name the
// caller to a service in another process; one within the program needs neither.
class PrintService {
 public:
  virtual ~PrintService() = default;
  // Names of the default printer and of its driver, and error code 0. Returns 0 and an error code
  // if there is no default printer; the buffers are then left alone.
  virtual std::int32_t exptGetDefaultPrinter(std::span<char> printer_name,
                                             std::span<char> driver_name,
                                             std::int32_t* error_code) = 0;
  // Has the PDF device keep the next job as a file in this folder (a path text), and writes the
  // full path of the file that will be made into the buffer. Returns 0 and an error code if it
  // cannot.
  virtual std::int32_t exptSetAcrobatOutput(const std::string& program_file,
                                            const std::string& document_name,
                                            const std::string& output_folder, std::int32_t time_out,
                                            std::span<char> output_file,
                                            std::int32_t* error_code) = 0;
  // The words for an error code; the second argument is 0.
  virtual void exptGetMessageFromErrorCode(std::int32_t error_code, std::int32_t reserved,
                                           std::span<char> message) = 0;
  // Prints the sheet on the default printer, without a dialog. When it returns, the job has been
  // taken over, or the PDF file is complete. Raises RunTimeError if the job cannot be printed.
  virtual void PrintSheet(const F1Book& sheet) = 0;
};

// The platform's two engines for help files. Nothing is reported and nothing raised; an engine
// shows of its own that it lacks a file. `data` is a number for the engine, or receives one.
class HelpEngine {
 public:
  virtual ~HelpEngine() = default;
  virtual void HtmlHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                        std::uint32_t& data) = 0;
  virtual void WinHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                       std::uint32_t data) = 0;
};

// The windows of the program. Modal ones return when they have closed.
class Forms {
 public:
  virtual ~Forms() = default;

  // Brings the main window to what state.frmMain and state.ListView1 say.
  virtual void UpdateMain() = 0;
  // Sets the main window's outer size in twips; returns the inner size that results.
  virtual Size SetMainSize(Size outer) = 0;
  virtual std::intptr_t MainWindowHandle() = 0;

  // Shows frmLogEditor modally, with this caption before its load if there is one. Raises
  // kObjectUnloaded (364) if the dialog unloads itself while it loads.
  virtual void ShowLogEditor(const std::optional<std::string>& caption) = 0;
  // Loads frmLogView, then sets its caption and shows it modally.
  virtual void ShowLogView(const std::string& caption) = 0;
  // Brings an open frmLogView to the front again.
  virtual void ShowLogViewAgain() = 0;
  virtual void ShowChangeItem() = 0;
  virtual bool ChangeItemVisible() = 0;
};

// The window system's part of placing windows; used by placement/AsDialog alone. Rectangles are in
// pixels. Calls on windows that do not exist do nothing and return empty results.
struct PixelRect {
  long Left = 0, Top = 0, Right = 0, Bottom = 0;
};
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;
  enum class Band { kNormal, kTopmost };
  // Moves the window to the top of a band without moving or sizing it.
  virtual void SetBand(std::intptr_t window, Band band) = 0;
  virtual std::string ClassName(std::intptr_t window) = 0;
  // The first child of this class, compared without regard to case; 0 if there is none.
  virtual std::intptr_t FindChild(std::intptr_t parent, const std::string& class_name) = 0;
  virtual void SetParent(std::intptr_t window, std::intptr_t parent) = 0;
  // The client area; its origin is 0, 0.
  virtual PixelRect ClientRect(std::intptr_t window) = 0;
  virtual PixelRect WorkArea() = 0;
  // The desktop as an owner: what it owns belongs to no window of the program.
  virtual std::intptr_t DesktopWindow() = 0;
  // The normal position of the window, frame included.
  virtual PixelRect NormalPosition(std::intptr_t window) = 0;
  virtual void SetNormalPosition(std::intptr_t window, const PixelRect& place) = 0;
};

struct Services {
  HostLink& host;
  HandshakeCell& cell;
  EventDelivery& events;
  MessageBoxes& messages;
  Clock& clock;
  Process& process;
  EcmClient& ecm;
  Forms& forms;
  WindowSystem& windows;
  PrintService& print;
  HelpEngine& help;
  SaveDialog& save;
};

}  // namespace logbook
