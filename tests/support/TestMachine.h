// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A machine over a fresh temporary folder that is removed with the object. Real files, no fakes.
#pragma once

#include <string>
#include <string_view>

#include "base/Machine.h"

namespace logbook::test {

class TestMachine {
 public:
  // A home with an empty drive C:.
  explicit TestMachine(int code_page = 1252);
  ~TestMachine();
  TestMachine(const TestMachine&) = delete;
  TestMachine& operator=(const TestMachine&) = delete;

  const Machine& machine() const { return machine_; }
  operator const Machine&() const { return machine_; }

  // Native path of the temporary home.
  const std::string& home() const { return machine_.home; }
  // Native path of a path text on drive C:, such as "C:\\logs\\a.txt"; plain mapping, no search.
  std::string Native(std::string_view path) const;

  // Writes bytes to a file by its path text; makes the folders above it.
  void Put(std::string_view path, std::string_view bytes) const;
  // The bytes of a file by its path text. Fails the test if it is missing.
  std::string Get(std::string_view path) const;
  // Makes a folder and those above it.
  void MakeFolders(std::string_view path) const;
  bool Has(std::string_view path) const;

 private:
  Machine machine_;
};

}  // namespace logbook::test
