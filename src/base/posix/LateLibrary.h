// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A library of the system that is loaded when the first of its routines is called: what few runs
// need, with all the libraries that it needs itself, costs the others nothing.
#pragma once

#include <string>

namespace logbook::posix {

class LateLibrary {
 public:
  // By its name for the loader, such as "libzip.so.4"; nothing is loaded yet.
  explicit LateLibrary(const char* name) : name_(name) {}
  LateLibrary(const LateLibrary&) = delete;
  LateLibrary& operator=(const LateLibrary&) = delete;

  // The routine of this name and type. Loads the library, for good. Raises std::runtime_error with
  // the loader's words if there is no such library or routine.
  template <typename Routine>
  Routine* Find(const char* routine) {
    return reinterpret_cast<Routine*>(Address(routine));
  }

  // True if the library can be loaded; loads it. Raises nothing.
  bool IsThere();

 private:
  void* Address(const char* routine);

  const char* name_;
  void* library_ = nullptr;
};

}  // namespace logbook::posix

// Defines a routine of a library's header as a call of the one in the loaded library.
#define LOGBOOK_LATE_ROUTINE(library, result, name, parameters, arguments) \
  extern "C" result name parameters {                                      \
    static auto* const late = (library).Find<result parameters>(#name);    \
    return late arguments;                                                 \
  }
