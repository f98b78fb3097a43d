// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the environment of the process says: its variables, and the folders that the system gives
// each user for a kind of file. Raises nothing and writes nothing.
#pragma once

#include <string>

namespace logbook {

// The value of a variable in UTF-8; empty if it is not set.
std::string EnvironmentText(const char* name);

// The user's folders, absolute native paths without a slash at their end; empty if the environment
// names none. They need not exist. On Windows %LOCALAPPDATA% (data and cache) and %APPDATA%
// (configuration); elsewhere, where a relative folder counts as not set:

// $XDG_DATA_HOME, else ~/.local/share.
std::string UserDataFolder();
// $XDG_CONFIG_HOME, else ~/.config.
std::string UserConfigFolder();
// $XDG_CACHE_HOME, else ~/.cache: what can be made again.
std::string UserCacheFolder();

}  // namespace logbook
