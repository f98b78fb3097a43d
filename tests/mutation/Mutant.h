// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The switch of a planted fault: put before each source that holds some, never part of a program
// that is shipped. Faults are numbered from 1; the environment variable MUTANT names the one that
// is on, and the file of MUTANT_REACHED, if there is one, gets a byte of 1 for each that was asked.
#pragma once

namespace mutant {

extern int now;
extern unsigned char* reached;

inline bool Is(int number) {
  reached[number] = 1;
  return number == now;
}

}  // namespace mutant

#define MUTANT(number) (::mutant::Is(number))
