// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Whether there is a screen to show windows on.
#pragma once

namespace logbook {

// True if the environment names a display or a platform of the toolkit. Starting the toolkit
// without one would abort the process.
bool DisplayIsNamed();

}  // namespace logbook
