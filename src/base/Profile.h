// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Profile files: sections, keys and values as text, the only form of configuration and of a log's
// descriptor. The format, with all its rare forms, is described in docs/file-formats.md. Names and
// values given here are UTF-8; the file is in the machine's code page, and text goes through the
// code page before it is compared or parsed. A file of more than 16 MB counts as one that cannot be
// read.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"

namespace logbook {

inline constexpr std::size_t kLargestProfile = 16 * 1024 * 1024;

// The value of a key as bytes in the code page, without a NUL: cut to size - 1 bytes. Section and
// key are compared without regard to case; blanks around the value and one pair of equal quotes
// around it are dropped. Missing file, section or key: the default, without its trailing blanks,
// cut likewise. Raises nothing.
std::string GetPrivateProfileString(const Machine& machine, std::string_view section,
                                    std::string_view key, std::string_view default_value,
                                    std::size_t size, std::string_view file);

// The same for the bytes of a profile that have been read already, so that several values cost one
// reading of the file.
std::string GetProfileString(const Machine& machine, std::string_view section, std::string_view key,
                             std::string_view default_value, std::size_t size,
                             std::string_view profile_bytes);

// The same for several keys of a section, at the cost of one walk over the bytes.
std::vector<std::string> GetProfileStrings(const Machine& machine, std::string_view section,
                                           std::span<const std::string_view> keys,
                                           std::string_view default_value, std::size_t size,
                                           std::string_view profile_bytes);

// The leading decimal digits of the value as a number, modulo 2 to the power of 32; a plus sign in
// front of them is passed over, a value without such digits, as a negative one, is 0. The default
// if the key is missing. Raises nothing.
int GetPrivateProfileInt(const Machine& machine, std::string_view section, std::string_view key,
                         int default_value, std::string_view file);

// The same for the bytes of a profile that have been read already.
int GetProfileInt(const Machine& machine, std::string_view section, std::string_view key,
                  int default_value, std::string_view profile_bytes);

// Sets a value: replaces it in place, or puts a new key at the end of its section, or a new
// section at the end of the file; makes the file if it is missing (its folder must exist). Every
// byte that the value does not touch stays. The file is replaced as a whole, so that a crash
// leaves the old or the new one, and writers in several processes wait for each other. Returns
// false if the file could not be written, or if section, key or value holds a line end, which would
// make other lines of it; the file is then unchanged. Raises nothing.
bool WritePrivateProfileString(const Machine& machine, std::string_view section,
                               std::string_view key, std::string_view value, std::string_view file);

struct ProfileValue {
  std::string section;
  std::string key;
  std::string value;
};

// Sets several values of one profile, one after the other in this order, in a single replacement:
// a crash leaves the file with all of them or with none, and so does a refusal of any.
bool WritePrivateProfileStrings(const Machine& machine, std::span<const ProfileValue> values,
                                std::string_view file);

}  // namespace logbook
