// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The print service of the workstation. The default printer is the one of the print system, unless
// the value "DefaultPrinter" of the workstation's registry key names another. "PDF" there, or a
// machine without any printer, stands for the built-in PDF device; a print system that is stopped
// stands for a missing default printer. A job of that device that was not announced goes to the
// user's documents folder under the sheet's title and name.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/Machine.h"
#include "state/Services.h"

namespace logbook {

class QtPrintService : public PrintService {
 public:
  // Error codes of the service.
  enum Code : std::int32_t {
    kNoError = 0,
    kNoDefaultPrinter = 2,
    kNoFolder = 3,
    kInvalidParameter = 87,
    kNameTooLong = 206,
    kUnknownPrinter = 1801,
  };

  // Runs `between_pages`, if there is one, before it lays out each page.
  QtPrintService(const Machine& machine, Clock& clock, std::function<void()> between_pages = {});

  std::int32_t exptGetDefaultPrinter(std::span<char> printer_name, std::span<char> driver_name,
                                     std::int32_t* error_code) override;
  // The file is the document's name with ".pdf"; characters that a file name cannot hold become
  // "_". The folder is made (one level) if it is missing. Holds for the next job alone, which goes
  // to the file whatever the default printer is by then.
  std::int32_t exptSetAcrobatOutput(const std::string& program_file,
                                    const std::string& document_name,
                                    const std::string& output_folder, std::int32_t time_out,
                                    std::span<char> output_file, std::int32_t* error_code) override;
  void exptGetMessageFromErrorCode(std::int32_t error_code, std::int32_t reserved,
                                   std::span<char> message) override;
  // A PDF file appears under its name when it is complete and replaces an older one. Raises
  // kPrinterError if there is no default printer or it does not take the job, and what writing the
  // file raises.
  void PrintSheet(const F1Book& sheet) override;

 private:
  struct Device {
    std::string name, driver;
    bool is_pdf = false;
  };
  // The default printer, or nothing and an error code.
  std::optional<Device> DefaultDevice(std::int32_t& error_code) const;
  void PrintToFile(const F1Book& sheet, const std::string& path);
  // A new file in the user's documents folder, which is made if it is missing.
  std::string UnannouncedFile(const F1Book& sheet) const;

  const Machine& machine_;
  Clock& clock_;
  const std::function<void()> between_pages_;
  std::optional<std::string> armed_;  // path text of the file that the next job becomes
};

}  // namespace logbook
