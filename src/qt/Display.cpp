// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/Display.h"

#include <QtGlobal>

namespace logbook {

bool DisplayIsNamed() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
  return !qEnvironmentVariableIsEmpty("DISPLAY") ||
         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("WAYLAND_SOCKET") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
  return true;
#endif
}

}  // namespace logbook
