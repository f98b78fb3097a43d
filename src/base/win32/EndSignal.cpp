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

BOOL WINAPI TakeWish(DWORD) {
  SetEvent(EndEvent());
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
