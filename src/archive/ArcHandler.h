// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The command "Archive...": packs the selected logs into one zip file of the user's choice. The
// logs stay where they are. The folder of the last archive is key "ARCHIVE_FOLDER" in section
// "PCS,1" of qrxgen.ist (docs/file-formats.md).
#pragma once

#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The whole command, from the selection to the last message. Reports every outcome but success and
// a cancelled dialog in a message box. A zip file of the chosen name is replaced; after a failure
// it holds the logs before the failed one. Raises nothing of its own.
void ArchiveLogs(AppState& state, Services& services);

// The proposed file name: "m", year in two digits, month as one hexadecimal digit, day, hour and
// minute in two digits each, ".zip".
std::string GetArchiveName(Services& services);

}  // namespace logbook
