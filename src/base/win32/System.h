// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system's own header, without those of its macros that would rename routines of ours; a handle
// that is closed with its object, and texts for the system's calls.
#pragma once

#ifndef NOMINMAX  // the compiler's library may have said so
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#undef CopyFile
#undef DeleteFile
#undef GetPrivateProfileInt
#undef GetPrivateProfileString
#undef WritePrivateProfileString

#include <string>
#include <string_view>
#include <utility>

namespace logbook::win32 {

class Handle {
 public:
  Handle() = default;
  // Both of the values that the system's calls give for a failure are no handle.
  explicit Handle(HANDLE value) : value_(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
  ~Handle() { Close(); }
  Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }

  HANDLE Value() const { return value_; }
  bool IsOpen() const { return value_ != nullptr; }
  void Close() {
    if (value_ != nullptr) CloseHandle(value_);
    value_ = nullptr;
  }

 private:
  HANDLE value_ = nullptr;
};

// UTF-8 to the system's text and back. Halves of surrogate pairs, which names on a disk may hold,
// come back as they were; bytes that are no UTF-8 become U+FFFD.
std::wstring Wide(std::string_view text);
std::string Narrow(std::wstring_view text);

// A native path for the system's calls: backslashes, and a full one that comes near the limit of
// their length in the form that takes names literally and has no such limit.
std::wstring WidePath(std::string_view native_path);

}  // namespace logbook::win32
