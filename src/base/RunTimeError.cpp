// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/RunTimeError.h"

namespace logbook {

std::string DescriptionOf(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::kInvalidProcedureCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::kOverflow:
      return "Overflow";
    case ErrorNumber::kOutOfMemory:
      return "Out of memory";
    case ErrorNumber::kSubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::kTypeMismatch:
      return "Type mismatch";
    case ErrorNumber::kInternalError:
      return "Internal error";
    case ErrorNumber::kFileNotFound:
      return "File not found";
    case ErrorNumber::kDeviceInputOutput:
      return "Device I/O error";
    case ErrorNumber::kFileAlreadyExists:
      return "File already exists";
    case ErrorNumber::kDiskFull:
      return "Disk full";
    case ErrorNumber::kInputPastEndOfFile:
      return "Input past end of file";
    case ErrorNumber::kPermissionDenied:
      return "Permission denied";
    case ErrorNumber::kPathFileAccess:
      return "Path/File access error";
    case ErrorNumber::kPathNotFound:
      return "Path not found";
    case ErrorNumber::kObjectUnloaded:
      return "Object was unloaded";
    case ErrorNumber::kPrinterError:
      return "Printer error";
  }
  return "Application-defined or object-defined error";
}

RunTimeError::RunTimeError(ErrorNumber number) : RunTimeError(number, DescriptionOf(number)) {}

RunTimeError::RunTimeError(ErrorNumber number, const std::string& description)
    : std::runtime_error(description), number_(number) {}

}  // namespace logbook
