// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A file that somebody takes away at once: rename of this test program is this module's.
#pragma once

namespace logbook::test {

// The next file that gets another name is gone.
void LetTheNextRenamedFileVanish();
// True as long as none has got one.
bool AFileIsToVanish();

}  // namespace logbook::test
