// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The bridge to the print service: before a document is printed it finds out whether the default
// printer is the PDF device and, if it is, has that device keep the next job as a file of a known
// name, the print image. The default printer itself is only read, never changed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The driver of the PDF device, compared without regard to case.
inline constexpr char kPdfDriverName[] = "Adobe PDF Converter";

// The time-out that all callers give.
inline constexpr std::int32_t kPrintTimeOut = 3000;

// Arms the PDF device for a document; `folder` empty: "PDF\" in the workstation's folder. On
// failure shows the service's message. The caller prints in any case: the print image path is
// empty if no image will come. Raises kOverflow for a time-out of 0.
void PrepareDocumentOutput(AppState& state, Services& services, const std::string& document_name,
                           const std::string& folder, std::int32_t time_out,
                           std::string& image_path);

// As above without the message box: false with error code and message on failure; true with an
// empty path for an ordinary printer. An empty document name is error 87 of the PDF device.
bool SetPdfOutput(const AppState& state, Services& services, const std::string& document_name,
                  const std::string& folder, std::int32_t time_out, const std::string& program_file,
                  std::string& path, std::int32_t& error_code, std::string& message);

// Names of the default printer and its driver and error code 0; on failure false, empty names and
// the service's error code.
bool GetPrinterNames(PrintService& print, std::string& printer_name, std::string& driver_name,
                     std::int32_t& error_code);

// The part before the first NUL; the whole text if it holds none.
std::string TrimToNul(std::string_view text);

// What follows the last backslash, or the whole path if there is none.
std::string GetLastPathComponent(std::string_view path);

}  // namespace logbook
