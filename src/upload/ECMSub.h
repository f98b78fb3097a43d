// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Upload to the content server: stages the files of one event in a folder of the temporary area,
// writes the descriptor beside it and hands the folder to the content-server client. Four events
// are reported: a record was made, logs were deleted, the list or a report was printed. Nothing
// happens on a workstation whose client is not enabled. The formats are described in
// docs/file-formats.md, the road of a file to the server in docs/content-server.md.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The event "a record was made", after the editor has closed and the list is rebuilt: package of
// the folder LogPath, then listlog.csv. Nothing happens if the folder is gone. Each failed step
// shows its message and ends the upload; the package stays in LogRoot if staging fails. Raises
// nothing.
void UploadRecordedLog(AppState& state, Services& services);

// The event "logs were deleted": listlog.csv alone. Failures as above. Raises nothing.
void UploadChangedList(AppState& state, Services& services);

// The event "the list or a report was printed", after the print job has been handed over. `path`
// is the print image that the print service will make, or empty for a printer that makes none: then
// nothing happens. Waits for the file. Failures show their messages; raises what StageUploadFile
// raises, for the trap of the printing routine.
void UploadPrintImage(AppState& state, Services& services, const std::string& path);

// Copies a file into the staging folder of an event and adds it to the descriptor. `folder_name`
// is empty at the first file of an event and comes back filled for the next ones. Returns 0, or
// the code of MakeStagingFolder. Raises what copying and AddToUploadDescriptor raise.
int StageUploadFile(AppState& state, Services& services, std::string& folder_name,
                    const std::string& prefix, std::intptr_t window, const std::string& file,
                    const std::string& reason);

// The temporary area with trailing backslash: registry value "ECM_TEMP" (a longer one than 260
// bytes does not count, nor does an empty one), else "\Norvane.Quorex.ECM\" on the drive of the
// application's folder; on drive C: where that has none.
std::string GetEcmTempArea(const AppState& state);

// Makes the staging folder of an event, named by date, time, window handle and prefix, for this
// user alone. 0 is success, 1 no temporary area that we may use, 2 the folder could not be made;
// `folder_name` is then empty. Raises nothing.
int MakeStagingFolder(AppState& state, Services& services, std::string& folder_name,
                      std::intptr_t window, const std::string& prefix);

// Adds a file to the descriptor of a staging folder. Does nothing if a text but the reason is
// empty. Raises what AddToUploadDescriptor raises.
void WriteUploadDescriptor(const AppState& state, const std::string& area,
                           const std::string& folder_name, const std::string& source,
                           const std::string& destination, const std::string& file_name,
                           const std::string& reason);

// The workstation's root folder with trailing backslash: registry value "Path" (a longer one than
// 255 bytes does not count), else the folder above the application's.
std::string GetInstallRoot(const AppState& state);

// Waits until the file exists; false when the time is up, which is "Generate Timeout" of section
// "Upload PDF" in arecm.cfg, in milliseconds. Looks every 100 ms. Raises nothing.
bool WaitForPrintImage(AppState& state, Services& services, const std::string& path);

// True if the last character of the text is a backslash.
bool EndsWithBackslash(std::string_view text);

// The part before the first NUL; empty if there is no NUL.
std::string TrimAtNul(std::string_view text);

}  // namespace logbook
