// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Handing of documents to the print system of the machine.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// Gives a PDF document to a queue as one job with this title, with the options that the user has
// set for the queue. When it returns, the queue has the whole document. Raises kPrinterError with
// the print system's own words if the queue does not exist or does not take the job.
void SubmitPrintJob(const std::string& queue, const std::string& title, std::string_view pdf);

}  // namespace logbook
