// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The one exception of the program: a run-time error with the platform's number and description.
// It is raised where an operation fails that the caller may trap; an untrapped one is reported in
// a message box by the frame around every event handler and ends the program with status 1.
#pragma once

#include <stdexcept>
#include <string>

namespace logbook {

// The numbers in use. Other numbers are possible where a library reports one.
enum class ErrorNumber : int {
  kInvalidProcedureCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kInternalError = 51,
  kFileNotFound = 53,
  kDeviceInputOutput = 57,
  kFileAlreadyExists = 58,
  kDiskFull = 61,
  kInputPastEndOfFile = 62,
  kPermissionDenied = 70,
  kPathFileAccess = 75,
  kPathNotFound = 76,
  kObjectUnloaded = 364,
  kPrinterError = 482,
};

// The description that belongs to a number, such as "Path not found" for 76; "Application-defined
// or object-defined error" for a number without one.
std::string DescriptionOf(ErrorNumber number);

class RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(ErrorNumber number);

  // As above with a description of the raiser's own.
  RunTimeError(ErrorNumber number, const std::string& description);

  ErrorNumber Number() const { return number_; }
  // The description, without the number.
  std::string Description() const { return what(); }

 private:
  ErrorNumber number_;
};

}  // namespace logbook
