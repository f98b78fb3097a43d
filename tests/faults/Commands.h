// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The commands of the program as the matrix runs them, on a workstation with three earlier logs.
#pragma once

#include "Matrix.h"

namespace logbook::test {

Command RecordOK();
Command RecordCancel();
Command AutomaticRecord();
Command DeleteSeveral();
Command ChooseColumn();
Command RebuildList();
Command ViewAllReports();
Command Archive();

// With a content server.
Command RecordAndUpload();
Command DeleteAndUpload();
Command PrintListToPdf();
Command DeliverToFolder();

}  // namespace logbook::test
