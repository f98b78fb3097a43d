// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// In the place of the header of this name, which Windows has not.
#pragma once

#include "support/win32/PosixCalls.h"
