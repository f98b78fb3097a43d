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
Command WriteAllReports();
Command Archive();
// "logbookctl export" in place of an older file.
Command ExportValues();

// On a workstation that is tied to a content server.
Command RecordAndUpload();
Command DeleteAndUpload();
Command PrintListToPdf();

// The agent with two submissions: to a shared folder, and to a WebDAV server that keeps its files
// in this native folder.
Command DeliverToFolder();
Command DeliverToServer(const std::string& url, const std::string& root);

// For others: the earlier logs, the OK of an editor, and a look into an archive.
void PutLogs(Station& station);
void ConfirmEditor(Station& station);
// Names in the archive; none if it cannot be read to its end or a file's sum is another one.
std::vector<std::string> NamesInZip(const std::string& bytes);

}  // namespace logbook::test
