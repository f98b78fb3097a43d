// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/PrintQueue.h"

#include <cups/cups.h>

#include <memory>

#include "platform/RunTimeError.h"

namespace logbook {

namespace {

struct FreeDestination {
  void operator()(cups_dest_t* destination) const { cupsFreeDests(1, destination); }
};

[[noreturn]] void RaiseLastError() {
  const char* words = cupsLastErrorString();
  if (words == nullptr || *words == '\0') throw RunTimeError(ErrorNumber::kPrinterError);
  throw RunTimeError(ErrorNumber::kPrinterError,
                     DescriptionOf(ErrorNumber::kPrinterError) + ": " + words);
}

}  // namespace

void SubmitPrintJob(const std::string& queue, const std::string& title, std::string_view pdf) {
  const std::unique_ptr<cups_dest_t, FreeDestination> destination(
      cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.c_str(), nullptr));
  if (destination == nullptr) RaiseLastError();
  const int job = cupsCreateJob(CUPS_HTTP_DEFAULT, queue.c_str(), title.c_str(),
                                destination->num_options, destination->options);
  if (job == 0) RaiseLastError();
  constexpr int kLastDocument = 1;
  const bool taken =
      cupsStartDocument(CUPS_HTTP_DEFAULT, queue.c_str(), job, title.c_str(), CUPS_FORMAT_PDF,
                        kLastDocument) == HTTP_STATUS_CONTINUE &&
      cupsWriteRequestData(CUPS_HTTP_DEFAULT, pdf.data(), pdf.size()) == HTTP_STATUS_CONTINUE;
  if (taken && cupsFinishDocument(CUPS_HTTP_DEFAULT, queue.c_str()) <= IPP_STATUS_OK_CONFLICTING)
    return;
  const std::string words = cupsLastErrorString();
  cupsCancelJob2(CUPS_HTTP_DEFAULT, queue.c_str(), job, 0);
  throw RunTimeError(ErrorNumber::kPrinterError,
                     DescriptionOf(ErrorNumber::kPrinterError) + ": " + words);
}

}  // namespace logbook
