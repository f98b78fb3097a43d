// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The print system of the machine, and the handing of documents to it.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// How the machine's print system stands. A machine that has one has a scheduler that answers, or
// the traces of one that ran here (its socket's folder, its list of printers), or is told by its
// settings to print on another machine.
enum class PrintSystem { kNone, kStopped, kRunning };

// Asks the scheduler whether it answers, for two seconds at most. Raises nothing.
PrintSystem FindPrintSystem();

// For systems whose queues take documents: gives a PDF document to a queue as one job with this
// title, with the options that the user has set for the queue. When it returns, the queue has the
// whole document. Raises kPrinterError with the print system's own words if the queue does not
// exist or does not take the job.
void SubmitPrintJob(const std::string& queue, const std::string& title, std::string_view pdf);

}  // namespace logbook
