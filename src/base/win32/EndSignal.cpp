// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system tells of its wish (Ctrl-C, Ctrl-Break, a console that closes) in a thread of its own.
// What can be waited for here is an event of the system; its handle stands for the descriptor.
// Handles have 32 bits that count.

#include "base/EndSignal.h"

#include <cstdint>

#include "base/win32/System.h"

namespace logbook {
namespace {

HANDLE EndEvent() {
  static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  return event;
}

// Where the console closes, or the user or the machine goes, the system ends the process as soon as
// this returns, or after some seconds: the program has those to end by itself.
BOOL WINAPI TakeWish(DWORD wish) {
  SetEvent(EndEvent());
  if (wish != CTRL_C_EVENT && wish != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

EndSignal::EndSignal() {
  if (EndEvent() == nullptr || !SetConsoleCtrlHandler(TakeWish, TRUE)) return;
  descriptor_ = static_cast<int>(reinterpret_cast<std::intptr_t>(EndEvent()));
}

EndSignal::~EndSignal() {
  Release();
}

// A program started here has no such routine, so there is nothing to let through for it.
void EndSignal::Release() {
  SetConsoleCtrlHandler(TakeWish, FALSE);
}

}  // namespace logbook
