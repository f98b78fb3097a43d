// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the fuzz targets share. A target takes any bytes, hands them to one reader or writer, and
// holds the result against an invariant: a breach ends the process, as a crash does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/Machine.h"

// The target: called once for each input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace logbook::fuzz {

// Says what does not hold, and ends the process by abort().
[[noreturn]] void Fail(const char* invariant, const char* file, int line);

// The bytes of one input, taken from the front. Past the end there are zeros and empty texts.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  std::uint8_t Byte();
  // A number from 0 to limit - 1.
  int Number(int limit);
  // Up to the next NUL, which is taken too; all that is left if there is none.
  std::string Text();
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// One of the known code pages.
const CodePage& AnyPage(Input& input);

// A machine over a folder in memory, one for the process, emptied by Clear and removed at its end.
class Workshop {
 public:
  static Workshop& Get();
  const Machine& machine() const { return machine_; }
  void SetPage(const CodePage& page) { machine_.code_page = &page; }
  // Native path of a path text on drive C:, "C:\\logs\\a.txt".
  std::string Native(std::string_view path) const;
  // Writes a file; makes the folders above it.
  void Put(std::string_view path, std::string_view bytes) const;
  // The bytes of a file; empty if it is missing.
  std::string Bytes(std::string_view path) const;
  // Removes all that lies on drive C:.
  void Clear() const;

 private:
  Workshop();
  ~Workshop();
  Machine machine_;
};

}  // namespace logbook::fuzz

#define FUZZ_REQUIRE(condition) \
  ((condition) ? static_cast<void>(0) : ::logbook::fuzz::Fail(#condition, __FILE__, __LINE__))
