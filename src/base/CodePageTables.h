// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The tables of the code pages as make_code_pages writes them from the data files in codepages/:
// the layout, and the list of all pages.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace logbook {

inline constexpr std::size_t kCodePageCount = 14;

struct CodePageTable {
  int number;
  // The character of each single byte; kLead for a lead byte, kNone for a byte without character.
  const char16_t* singles;
  // One row for each lead byte from first_lead on, one character for each trail byte from
  // kFirstTrail to FF; kNone where there is none. Null in single-byte pages.
  const char16_t* pairs;
  int first_lead;
  // Whether a byte can be the second of a pair.
  const bool* trails;
  // The bytes of each character of the basic plane, similar characters included: rows of 256 by
  // the character's low byte, null where a row is empty. A double byte has its lead byte in the
  // high half; 0 stands for none (and for U+0000, which every page writes as itself).
  const std::uint16_t* const* rows;

  static constexpr char16_t kNone = 0xFFFD;
  static constexpr char16_t kLead = 0xFFFF;
  static constexpr int kFirstTrail = 0x40;
  static constexpr int kTrailCount = 0x100 - kFirstTrail;
};

extern const std::array<CodePageTable, kCodePageCount> kCodePageTables;

}  // namespace logbook
