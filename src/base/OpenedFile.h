// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A file opened for reading by its path text. Used inside this folder only; the rest of the program
// reads through Files.h.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "base/Machine.h"

namespace logbook {

class OpenedFile {
 public:
  // None: at its end from the start.
  OpenedFile();
  // Opens. Raises 53, 75 (also for a folder or an empty name), 76, 70, 57.
  OpenedFile(const Machine& machine, std::string_view path);
  ~OpenedFile();
  OpenedFile(OpenedFile&&) noexcept;
  OpenedFile& operator=(OpenedFile&&) noexcept;

  // Reads at most `size` bytes; 0 at the end. Raises 57.
  std::size_t Read(char* buffer, std::size_t size);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
