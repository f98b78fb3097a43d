// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system's wish that a program without windows ends (SIGTERM, or SIGINT from its terminal), as
// something that an event loop can wait for. Without it the wish ends the process on the spot.
#pragma once

namespace logbook {

class EndSignal {
 public:
  // From here on the signals are held back from the process. Made first thing in main(), before
  // any other thread, and kept to its end.
  EndSignal();
  ~EndSignal();
  EndSignal(const EndSignal&) = delete;
  EndSignal& operator=(const EndSignal&) = delete;

  // A file descriptor that is readable once the system has asked for the end; -1 if the system
  // gives none. It belongs to this object.
  int Descriptor() const { return descriptor_; }

  // Lets the signals through again. To be called in a child process before it becomes another
  // program, which would inherit the hold; safe between fork and exec.
  static void Release();

 private:
  int descriptor_ = -1;
};

}  // namespace logbook
