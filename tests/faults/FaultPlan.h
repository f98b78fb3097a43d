// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The plan at work: what each call is answered. Inside of the library alone.
#pragma once

#include <string>

#include "Faults.h"
#include "PowerLoss.h"

namespace logbook::faults {

enum class Sort {
  kOpen,
  kCreate,
  kWrite,
  kSync,
  kMode,
  kRename,
  kRemove,
  kFolder,
  kLink,
  kLock,
  kRead,
  kList,
  kLook
};

// What a call is to do: to go on, to fail with errno set, or to write half and then to Die.
enum class Answer { kGo, kFail, kHalf };

// A call on this path, counted if it lies below the tree. Does not return where the plan kills.
Answer Meet(Sort sort, const char* call, int folder, const char* path);
Answer MeetDescriptor(Sort sort, const char* call, int descriptor);

// Ends the process as the plan says.
[[noreturn]] void Die();

// The journal for a power cut if one is planned and the place lies below the tree, else null.
PowerLoss* JournalFor(int folder, const char* path);
PowerLoss* JournalForDescriptor(int descriptor);

}  // namespace logbook::faults
